// The employer part of the relationships page: a person's employers, or a company's
// employees, year by year in grdDetail; links added through the customer search, cleared
// for the current fiscal year only, and saved link by link.
#pragma once
#include <cstdint>
#include <string>

#include "screens/detail/detail_page.h"
#include "screens/kit/list_rows.h"

namespace kiv {

class EmployerPage : public DetailPage {
 public:
  enum Column : int { kColState = 0, kColYear, kColActive, kColName, kColCustNo, kColEmployerCustNo, kColComment };
  static constexpr const char* kPersonFormat = "StateFlag|Year|Active?|Employer|CustNo|EmployerCustNo|Comment";
  static constexpr const char* kCompanyFormat = "StateFlag|Year|Active?|Employee|CustNo|EmployerCustNo|Comment";
  static constexpr const char* kEmployersSql =
      "SELECT kiv_customer_employer.customer_no, fiscal_year, employer_customer_no, company_name, "
      "kiv_customer_employer.is_active, kiv_customer_employer.comment_note FROM kiv_customer_employer join "
      "kiv_customer on kiv_customer.customer_no = employer_customer_no ";
  static constexpr const char* kEmployeesSql =
      "SELECT kiv_customer_employer.customer_no, fiscal_year, employer_customer_no, kiv_customer_employer.customer_no, "
      "full_name, kiv_customer_employer.is_active, kiv_customer_employer.comment_note FROM kiv_customer_employer join "
      "kiv_customer on kiv_customer.customer_no = kiv_customer_employer.customer_no ";

  int TabIndex() const override;
  DetailSaveSlot SaveSlot() const override { return DetailSaveSlot::kEmployer; }
  void Activate(frmCustomerDetail& screen) override;
  void Load(frmCustomerDetail& screen) override;
  bool Save(frmCustomerDetail& screen) override;
  bool Dirty() const override { return dirty_; }
  void Reset() override;
  RefreshConfirmation RefreshQuestion() const override;
  void ButtonClicked(frmCustomerDetail& screen, int which) override;

  //! The list's query for this customer.
  static std::string ListSql(bool company, int32_t customer_no);

  void AddLink(frmCustomerDetail& screen);
  void ClearLink(frmCustomerDetail& screen);
  void CellEdited(frmCustomerDetail& screen, int grid_row, int col);

  const ListRows& Rows() const { return rows_; }

 private:
  static bool IsCompany(const frmCustomerDetail& screen);
  bool Showing(const frmCustomerDetail& screen) const;
  void Render(frmCustomerDetail& screen) const;
  bool WriteLinks(frmCustomerDetail& screen);
  //! The same link is listed and not cleared.
  bool Listed(const std::string& year, const std::string& employee, const std::string& employer) const;

  ListRows rows_;
  bool dirty_ = false;
  //! The list was read for a company (the columns differ).
  bool loaded_as_company_ = false;
};

}  // namespace kiv
