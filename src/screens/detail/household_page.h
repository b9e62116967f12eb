// The household part of the relationships page: a person's household in grdMaster, new
// family members through the related-customer screen, existing customers joining, members
// leaving, relationships edited, and the save that writes it all in a fixed order.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "core/variant.h"
#include "screens/detail/detail_page.h"
#include "screens/kit/list_rows.h"

namespace kiv {

class CCustomer;

class HouseholdPage : public DetailPage {
 public:
  enum Column : int {
    kColState = 0,
    kColLastName,
    kColFirstName,
    kColPrimary,
    kColRelationship,
    kColGender,
    kColDOB,
    kColCustomerNo,
    kColOrigPrimary,
  };
  static constexpr const char* kFormatString =
      "StateFlag|Last Name|First Name|Primary?|Relationship|Gender|DOB|CustomerNo|OrigPrimary";
  static constexpr const char* kPrimary = "PRIMARY";
  //! Page buttons: cmdButton1..3.
  static constexpr int kAddFamilyButton = 1, kAddExistingButton = 2, kRemoveButton = 3;

  int TabIndex() const override;
  DetailSaveSlot SaveSlot() const override { return DetailSaveSlot::kRelationships; }
  void Activate(frmCustomerDetail& screen) override;
  void Load(frmCustomerDetail& screen) override;
  bool Save(frmCustomerDetail& screen) override;
  bool Dirty() const override { return dirty_; }
  void Reset() override;
  RefreshConfirmation RefreshQuestion() const override;
  void ButtonClicked(frmCustomerDetail& screen, int which) override;

  // ---- the commands behind the buttons and the grid ----
  void AddFamilyMember(frmCustomerDetail& screen);
  void AddExistingCustomer(frmCustomerDetail& screen);
  void RemoveMember(frmCustomerDetail& screen);
  //! A cell edit of grdMaster, already stored in the grid.
  void CellEdited(frmCustomerDetail& screen, int grid_row, int col);

  const ListRows& Rows() const { return rows_; }

 private:
  static bool IsCompany(const frmCustomerDetail& screen);
  //! The rows as the database has them now, the editor's own customer among them.
  void ReadRows(frmCustomerDetail& screen, ListRows& into);
  void FillRelationTypes(frmCustomerDetail& screen);
  //! Rows the database has and the page does not (members another screen just added) join
  //! as loaded rows; the clerk's unsaved changes stay.
  void MergeNewMembers(frmCustomerDetail& screen);
  void Render(frmCustomerDetail& screen) const;
  bool Showing(const frmCustomerDetail& screen) const;
  //! A row for a member handed over by the related-customer screen (not yet created).
  bool CollectMember(frmCustomerDetail& screen, const std::vector<Variant>& values);
  //! The household's head as the rows have it now; -1 when no row is primary.
  int PrimaryRow() const;
  //! The customer number of a row, the editor's own customer read from the editor (it gets
  //! its number with the save that runs just before this page's).
  int32_t NumberOf(const frmCustomerDetail& screen, size_t row) const;
  std::string NameOf(size_t row) const;
  bool Listed(int32_t customer_no) const;
  //! The chosen customer is in a household other than this one.
  bool InAnotherHousehold(frmCustomerDetail& screen, CCustomer& chosen) const;
  //! The part of the save that may stop; the flag stays raised when it does.
  bool WriteHousehold(frmCustomerDetail& screen);
  bool WritePrimary(frmCustomerDetail& screen, size_t row, int32_t number);

  ListRows rows_;
  //! The list row of the editor's own customer; -1 when it is not listed.
  int self_row_ = -1;
  bool dirty_ = false;
  //! The relationships a clerk may choose, for the Relationship column's list.
  std::vector<std::string> relation_types_;
};

}  // namespace kiv
