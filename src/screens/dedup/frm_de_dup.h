// The duplicate merge: two customer numbers, a summary of each customer, two confirmations,
// then one procedure that moves everything of the "from" customer to the "to" customer and
// deletes the first. The opener starts its search over afterwards.
#pragma once
#include <memory>
#include <string>

#include "screens/kit/screen.h"
#include "ui/command_button.h"
#include "ui/frame.h"
#include "ui/text_box.h"

namespace kiv {

class CCustomer;

class frmDeDup : public Screen {
 public:
  static constexpr const char* kMergeProcedure = "SP_CUSTOMER_DEDUP";
  static constexpr const char* kConfirmTitle = "Confirm Merge of customers";

  frmDeDup();

  //! The customers entered so far; null until a number has loaded one.
  std::shared_ptr<CCustomer> FromCustomer() const { return from_; }
  std::shared_ptr<CCustomer> ToCustomer() const { return to_; }
  //! The merge ran and the procedure accepted it.
  bool Merged() const { return merged_; }

  //! The six summary lines of a customer, joined by carriage return and line feed.
  static std::string Summary(CCustomer& customer);
  //! The checks, both confirmations and the merge; true when the procedure accepted it.
  bool Merge();

  ui::Frame& fraFromCustomer;
  ui::TextBox& txtFromCustomer;
  ui::TextBox& txtFromCustomerInfo;
  ui::Frame& fraToCustomer;
  ui::TextBox& txtToCustomer;
  ui::TextBox& txtToCustomerInfo;
  ui::CommandButton& cmdOK;
  ui::CommandButton& cmdCancel;

 private:
  void WireNumberField(ui::TextBox& field, ui::TextBox& info, std::shared_ptr<CCustomer>& slot);
  //! Opens the customer of a numeric text through the engine; a text that is not a number,
  //! or a number with no customer, leaves the slot and its summary as they were.
  void LoadCustomer(const std::string& text, ui::TextBox& info, std::shared_ptr<CCustomer>& slot);
  //! Runs the procedure; errors inside are not raised, a null return value is a failure.
  bool RunMerge();

  std::shared_ptr<CCustomer> from_;
  std::shared_ptr<CCustomer> to_;
  bool merged_ = false;
};

}  // namespace kiv
