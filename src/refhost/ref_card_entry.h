// The reference host's manual card entry: a small screen of its own on which the clerk types
// a card (number, expiry, zip, address, payment method) or swipes one (a line holding its
// tracks). A card that passes its checks is handed to the screen that asked for it; the form
// is cleared at once, so the full number lives only as long as that hand-over.
#pragma once
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/date.h"
#include "host/suite_services.h"
#include "refhost/trace.h"
#include "ui/combo_box.h"
#include "ui/command_button.h"
#include "ui/form.h"
#include "ui/label.h"
#include "ui/text_box.h"

namespace kiv::refhost {

//! True when the digits pass the Luhn check (and there are any).
bool LuhnValid(const std::string& digits);
//! The digits of a typed card number with blanks and dashes left out; empty when anything
//! else is typed or the count is outside 13 to 19.
std::string CardDigits(const std::string& typed);
//! "MM/YY" or "MM/YYYY" as the last day's month; none when malformed.
std::optional<Date> ExpiryMonthEnd(const std::string& typed);
//! The card brand its number starts with: "VISA", "MC", "AMEX", "DISC"; empty when unknown.
std::string BrandOf(const std::string& digits);
//! What a swipe line holds: the number and expiry ("MM/YYYY") read from track 1 ("%B...^...^YYMM")
//! or track 2 (";...=YYMM"), and the two tracks themselves.
struct SwipedCard {
  std::string track1, track2, number, expiry;
};
std::optional<SwipedCard> ReadSwipe(const std::string& line);

class frmCardEntry : public ui::Form {
 public:
  frmCardEntry();

  ui::Label& lblCustomer;
  ui::TextBox& txtSwipe;
  ui::TextBox& txtCardNo;
  ui::TextBox& txtExpDate;
  ui::TextBox& txtZip;
  ui::TextBox& txtAddress;
  ui::ComboBox& cmbPayMethod;
  ui::CommandButton& cmdOk;
  ui::CommandButton& cmdCancel;
};

class RefCardEntry : public host::CardEntryControl {
 public:
  explicit RefCardEntry(std::shared_ptr<TraceHook> trace);

  //! The Ui the entry screen is shown through (the program's); a silent one until given.
  void SetUi(std::shared_ptr<ui::Ui> ui) { form_.SetUi(std::move(ui)); }
  //! Today, for the expiry check.
  void SetToday(std::function<Date()> today) { today_ = std::move(today); }

  void Initialize(std::shared_ptr<host::AppServer> app_server, std::shared_ptr<host::DBConnection> db) override;
  void SetCustomerNo(int32_t customer_no) override { customer_no_ = customer_no; }
  void SetCustomerName(const std::string& full_name) override { customer_name_ = full_name; }
  //! Shows the entry screen modally; returns when the clerk has stored a card or cancelled.
  void BeginEntry() override;
  void SetCardEnteredHandler(std::function<void(std::shared_ptr<host::CardObject>)> handler) override {
    handler_ = std::move(handler);
  }

  frmCardEntry& Form() { return form_; }
  //! Cards handed over since the control was made.
  int CardsEntered() const { return cards_entered_; }

 private:
  void Ok();
  //! The reason the entry cannot be taken, with the field to go back to; empty when it can.
  std::string Check(ui::Control*& field) const;
  void ClearEntry();

  frmCardEntry form_;
  std::shared_ptr<TraceHook> trace_;
  std::function<Date()> today_;
  std::function<void(std::shared_ptr<host::CardObject>)> handler_;
  int32_t customer_no_ = 0;
  std::string customer_name_;
  bool initialized_ = false;
  int cards_entered_ = 0;
};

}  // namespace kiv::refhost
