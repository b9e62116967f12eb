// A new card on file: a new customer is saved first, then the host's card-entry control is
// started; the card it hands back is stored on the customer and the cards view shown.
#include "records/c_customer.h"
#include "records/card_entry.h"
#include "screens/detail/account_page.h"
#include "screens/detail/frm_customer_detail.h"

namespace kiv {

namespace {

//! The card as the customer record stores it, read from the host's card object.
class EnteredCard : public CardEntry {
 public:
  explicit EnteredCard(std::shared_ptr<host::CardObject> card) : card_(std::move(card)) {}
  std::string Track1() const override { return card_->Track1(); }
  std::string Track2() const override { return card_->Track2(); }
  std::string CardNo() const override { return card_->CardNo(); }
  Variant ExpDate() const override { return Variant(card_->ExpDate()); }
  std::string Zip() const override { return card_->Zip(); }
  std::string Address() const override { return card_->Address(); }
  std::string XCardNo() const override { return card_->XCardNo(); }
  std::string PayMethodID() const override { return card_->PayMethodID(); }
  void SetCustomerNo(int32_t customer_no) override { card_->SetCustomerNo(customer_no); }

 private:
  std::shared_ptr<host::CardObject> card_;
};

}  // namespace

void AccountPage::BeginCardEntry(frmCustomerDetail& screen) {
  if (screen.CustomerNo() == 0) {
    const int answer = screen.ui().MsgBox(
        "You must save the current customer before adding cards on file.  Would you like to save the customer now?",
        ui::vbYesNo | ui::vbQuestion, "Save New Customer");
    if (answer == ui::vbYes) screen.Save();
    if (answer != ui::vbYes || screen.CustomerNo() == 0) {
      // Back to the view the clerk came from; the entry frame stays hidden.
      selecting_ = true;
      tabAccountType.SetSelectedIndex(tabAccountType.FindTab(view_));
      selecting_ = false;
      return;
    }
  }
  fraAccountRSVP.SetVisible(false);
  fraAccountCC.SetVisible(false);
  fraAccountAddCC.SetVisible(true);
  std::shared_ptr<host::AppServer> app_server = screen.AppServer();
  card_entry_ = app_server ? app_server->CreateCardEntry() : nullptr;
  if (!card_entry_) return;
  card_entry_->Initialize(app_server, screen.DBConnection());
  std::shared_ptr<CCustomer> customer = screen.Customer();
  card_entry_->SetCustomerNo(screen.CustomerNo());
  card_entry_->SetCustomerName(customer ? customer->FullName() : std::string());
  card_entry_->SetCardEnteredHandler([this, &screen](std::shared_ptr<host::CardObject> card) {
    screen.Guard("CCManual1_CardEntered", [&] { CardEntered(screen, card); });
  });
  card_entry_->BeginEntry();
}

void AccountPage::CardEntered(frmCustomerDetail& screen, const std::shared_ptr<host::CardObject>& card) {
  std::shared_ptr<CCustomer> customer = screen.Customer();
  if (!card || !customer) return;
  EnteredCard entered(card);
  if (!customer->StoreCreditCard(entered, true)) return;
  view_ = kCards;
  selecting_ = true;
  tabAccountType.SetSelectedIndex(tabAccountType.FindTab(kCards));
  selecting_ = false;
  ShowView(screen, kCards);
}

}  // namespace kiv
