// The account page (tab 9). Its own tab strip tabAccountType switches three views: the house
// account with its payments ("RSVP"), the cards on file with the payments of the selected
// card ("CC"), and the entry of a new card through the host's card-entry control ("ADDCC").
// The payments grid and the payment-lines grid below are shared by the first two views.
// Split by view: account_page.cpp (frame, house account, payment lines), account_page_cc.cpp
// (card grid), account_page_addcc.cpp (new card).
#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "core/variant.h"
#include "host/suite_services.h"
#include "screens/detail/detail_page.h"
#include "ui/frame.h"
#include "ui/grid.h"
#include "ui/label.h"
#include "ui/panel.h"
#include "ui/tab_strip.h"

namespace kiv {

class AccountPage : public DetailPage {
 public:
  static constexpr int kTab = 9;
  static constexpr const char* kRsvp = "RSVP";
  static constexpr const char* kCards = "CC";
  static constexpr const char* kAddCard = "ADDCC";

  enum CardColumn : int {
    kColSeqNo = 0, kColActive, kColDtl, kColType, kColMasked, kColLastFour, kColExpDate, kColZip, kColModified
  };
  static constexpr const char* kCardsFormat = "SeqNo|Active|DTL|Type|Card#|Card#|Exp Date|Zip|Last Modified";
  static constexpr const char* kPaymentsFormat = "Audited|^Reg|^Ctrl|^Inv|^Payment|Date|Method|>Amount";
  static constexpr const char* kAmountFormat = "($#,###.00)";

  //! Creates the page's controls on the editor, hidden until tab 9 is shown.
  explicit AccountPage(frmCustomerDetail& screen);

  int TabIndex() const override { return kTab; }
  void Activate(frmCustomerDetail& screen) override;
  void Load(frmCustomerDetail& screen) override;
  void Reset() override;
  void ShowCardData(frmCustomerDetail& screen, bool show) override;

  //! The view by its tab key: frames shown and captioned, its data loaded.
  void ShowView(frmCustomerDetail& screen, const std::string& key);
  const std::string& View() const { return view_; }

  // ---- house account ----
  void LoadAccount(frmCustomerDetail& screen);
  //! The invoice lines behind the selected payment (in the account or the card view).
  void ShowPaymentLines(frmCustomerDetail& screen);

  // ---- cards on file (account_page_cc.cpp) ----
  //! Column 4 of a card row: `cc_card_no` when not null, else the last four of `x_card_no`.
  static std::string MaskedCardText(const Variant& cc_card_no, const Variant& x_card_no);
  //! The question asked before the Active box takes effect.
  static std::string ActivationQuestion(bool activate);
  //! The question asked before a card is deleted, built from its grid row.
  static std::string DeleteQuestion(const std::string& type, const std::string& masked, const std::string& exp_date);
  void LoadCards(frmCustomerDetail& screen);
  //! The payments made with the card on `row`; nothing when that card's are already shown.
  void LoadCardPayments(frmCustomerDetail& screen, int row);
  void CardCellEdited(frmCustomerDetail& screen, int row, int col);
  //! Delete pressed on the card grid.
  void DeleteCard(frmCustomerDetail& screen);
  //! Switches the card on or off through the server; false when refused. `modified_on`
  //! receives the new stamp. The DTL flag stays on screen: the server has no place for it.
  bool UpdateCardOnFile(frmCustomerDetail& screen, int32_t card_seq_no, bool is_active, bool dtl, Variant& modified_on);

  // ---- new card (account_page_addcc.cpp) ----
  void BeginCardEntry(frmCustomerDetail& screen);
  //! Stores the card the entry control handed over and shows the cards on file.
  void CardEntered(frmCustomerDetail& screen, const std::shared_ptr<host::CardObject>& card);

  ui::Panel& picAccount;
  ui::TabStrip& tabAccountType;
  ui::Frame& fraAccountRSVP;
  ui::Label& lblAccountNo;
  ui::Label& lblAccountDescription;
  ui::Label& lblAccountLimit;
  ui::Label& lblAccountBalance;
  ui::Frame& fraAccountCC;
  ui::Grid& fgCC;
  ui::Frame& fraAccountAddCC;
  ui::Panel& CCManual1;
  ui::Frame& fraAccountPayments;
  ui::Grid& vsfAccountPayments;
  ui::Frame& fraAccountLines;
  ui::Grid& vfgRSVPInvoiceLines;

 private:
  void WireCardGrid(frmCustomerDetail& screen);
  void ClearLines();
  void SetUpPayments();
  void ApplyCardColumns();
  bool Showing(const frmCustomerDetail& screen) const;
  //! Runs the delete procedure once; its return value, and the message in `message`.
  int32_t RunDelete(frmCustomerDetail& screen, int32_t card_seq_no, bool confirm, std::string& message);
  void RemoveCardRow(frmCustomerDetail& screen, int row);

  std::string view_ = kRsvp;
  //! The view tab is being selected from code: its click loads nothing.
  bool selecting_ = false;
  bool show_card_data_ = false;
  //! The card row whose payments are shown; -1 for none.
  int payments_row_ = -1;
  std::shared_ptr<host::CardEntryControl> card_entry_;
};

}  // namespace kiv
