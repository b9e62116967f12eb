// The manual card-entry screen: checks what was typed or swiped, hands the card over, and
// forgets it. Nothing here writes anywhere; the trace names the customer, never the card.
#include "refhost/ref_card_entry.h"

#include <cctype>
#include <cstdio>

#include "core/text.h"

namespace kiv::refhost {

namespace {

constexpr const char* kTitle = "Card Entry";

std::string OnlyDigits(const std::string& text) {
  std::string digits;
  for (char c : text)
    if (std::isdigit(static_cast<unsigned char>(c))) digits += c;
  return digits;
}

//! The card as typed or swiped; the full number stays in memory with it.
class EnteredCard : public host::CardObject {
 public:
  EnteredCard(std::string track1, std::string track2, std::string number, std::string expiry, std::string zip,
              std::string address, std::string method)
      : track1_(std::move(track1)),
        track2_(std::move(track2)),
        number_(std::move(number)),
        expiry_(std::move(expiry)),
        zip_(std::move(zip)),
        address_(std::move(address)),
        method_(std::move(method)) {}
  std::string Track1() const override { return track1_; }
  std::string Track2() const override { return track2_; }
  std::string CardNo() const override { return number_; }
  std::string ExpDate() const override { return expiry_; }
  std::string Zip() const override { return zip_; }
  std::string Address() const override { return address_; }
  std::string XCardNo() const override { return std::string(number_.size() - 4, 'X') + number_.substr(number_.size() - 4); }
  std::string PayMethodID() const override { return method_; }
  void SetCustomerNo(int32_t customer_no) override { customer_no_ = customer_no; }

 private:
  std::string track1_, track2_, number_, expiry_, zip_, address_, method_;
  int32_t customer_no_ = 0;
};

}  // namespace

bool LuhnValid(const std::string& digits) {
  if (digits.empty()) return false;
  int sum = 0;
  bool twice = false;
  for (auto it = digits.rbegin(); it != digits.rend(); ++it) {
    if (!std::isdigit(static_cast<unsigned char>(*it))) return false;
    int d = *it - '0';
    if (twice) d = d * 2 > 9 ? d * 2 - 9 : d * 2;
    sum += d;
    twice = !twice;
  }
  return sum % 10 == 0;
}

std::string CardDigits(const std::string& typed) {
  std::string digits;
  for (char c : typed) {
    if (c == ' ' || c == '-') continue;
    if (!std::isdigit(static_cast<unsigned char>(c))) return {};
    digits += c;
  }
  if (digits.size() < 13 || digits.size() > 19) return {};
  return digits;
}

std::optional<Date> ExpiryMonthEnd(const std::string& typed) {
  const std::string text = Trim(typed);
  const size_t slash = text.find('/');
  if (slash == std::string::npos || slash == 0 || slash > 2) return std::nullopt;
  const std::string month_text = text.substr(0, slash), year_text = text.substr(slash + 1);
  if (OnlyDigits(month_text) != month_text || OnlyDigits(year_text) != year_text) return std::nullopt;
  if (year_text.size() != 2 && year_text.size() != 4) return std::nullopt;
  const int month = std::stoi(month_text);
  int year = std::stoi(year_text);
  if (month < 1 || month > 12) return std::nullopt;
  if (year_text.size() == 2) year += 2000;
  const Date first_of_next = month == 12 ? Date::FromParts(year + 1, 1, 1) : Date::FromParts(year, month + 1, 1);
  return first_of_next.AddDays(-1);
}

std::string BrandOf(const std::string& digits) {
  if (digits.empty()) return {};
  if (digits[0] == '4') return "VISA";
  if (digits[0] == '5') return "MC";
  if (digits.rfind("34", 0) == 0 || digits.rfind("37", 0) == 0) return "AMEX";
  if (digits[0] == '6') return "DISC";
  return {};
}

std::optional<SwipedCard> ReadSwipe(const std::string& line) {
  SwipedCard card;
  const size_t t1 = line.find("%B");
  if (t1 != std::string::npos) {
    const size_t end = line.find('?', t1);
    card.track1 = line.substr(t1, end == std::string::npos ? std::string::npos : end - t1 + 1);
    const size_t caret = card.track1.find('^');
    const size_t caret2 = caret == std::string::npos ? caret : card.track1.find('^', caret + 1);
    if (caret != std::string::npos) card.number = card.track1.substr(2, caret - 2);
    if (caret2 != std::string::npos && card.track1.size() >= caret2 + 5) {
      const std::string yymm = card.track1.substr(caret2 + 1, 4);
      if (OnlyDigits(yymm) == yymm) card.expiry = yymm.substr(2, 2) + "/20" + yymm.substr(0, 2);
    }
  }
  const size_t t2 = line.find(';');
  if (t2 != std::string::npos) {
    const size_t end = line.find('?', t2);
    card.track2 = line.substr(t2, end == std::string::npos ? std::string::npos : end - t2 + 1);
    const size_t equals = card.track2.find('=');
    if (equals != std::string::npos) {
      if (card.number.empty()) card.number = card.track2.substr(1, equals - 1);
      const std::string yymm = card.track2.substr(equals + 1, 4);
      if (card.expiry.empty() && yymm.size() == 4 && OnlyDigits(yymm) == yymm)
        card.expiry = yymm.substr(2, 2) + "/20" + yymm.substr(0, 2);
    }
  }
  if (card.track1.empty() && card.track2.empty()) return std::nullopt;
  return card;
}

frmCardEntry::frmCardEntry()
    : ui::Form("frmCardEntry"),
      lblCustomer(Add<ui::Label>("lblCustomer")),
      txtSwipe(Add<ui::TextBox>("txtSwipe")),
      txtCardNo(Add<ui::TextBox>("txtCardNo")),
      txtExpDate(Add<ui::TextBox>("txtExpDate")),
      txtZip(Add<ui::TextBox>("txtZip")),
      txtAddress(Add<ui::TextBox>("txtAddress")),
      cmbPayMethod(Add<ui::ComboBox>("cmbPayMethod")),
      cmdOk(Add<ui::CommandButton>("cmdOk", "OK")),
      cmdCancel(Add<ui::CommandButton>("cmdCancel", "Cancel")) {
  SetCaption("Card on File Entry");
  cmdOk.SetDefault(true);
  cmdCancel.SetCancel(true);
  txtExpDate.SetMaxLength(7);
  txtZip.SetMaxLength(10);
  txtCardNo.SetMaxLength(23);
  txtAddress.SetMaxLength(60);
  // Empty: taken from the number's first digits.
  cmbPayMethod.AddItem("", "");
  for (const char* method : {"VISA", "MC", "AMEX", "DISC"}) cmbPayMethod.AddItem(method, method);
}

RefCardEntry::RefCardEntry(std::shared_ptr<TraceHook> trace) : trace_(std::move(trace)) {
  form_.cmdOk.on_click = [this] { Ok(); };
  form_.cmdCancel.on_click = [this] {
    ClearEntry();
    form_.Hide();
  };
}

void RefCardEntry::Initialize(std::shared_ptr<host::AppServer>, std::shared_ptr<host::DBConnection>) {
  initialized_ = true;
  TraceHostCall(trace_, "CardEntry.Initialize", {});
}

void RefCardEntry::BeginEntry() {
  TraceHostCall(trace_, "CardEntry.BeginEntry",
                {{"customer_no", Variant(customer_no_)}, {"customer_name", Variant(customer_name_)}});
  if (!initialized_) return;
  ClearEntry();
  form_.lblCustomer.SetCaption(customer_name_);
  form_.Show(ui::vbModal);
}

void RefCardEntry::ClearEntry() {
  for (ui::TextBox* box : {&form_.txtSwipe, &form_.txtCardNo, &form_.txtExpDate, &form_.txtZip, &form_.txtAddress})
    box->SetText("");
  form_.cmbPayMethod.SetListIndex(0);
}

std::string RefCardEntry::Check(ui::Control*& field) const {
  const auto swipe = ReadSwipe(form_.txtSwipe.Text());
  if (!Trim(form_.txtSwipe.Text()).empty() && (!swipe || CardDigits(swipe->number).empty())) {
    field = &form_.txtSwipe;
    return "The card could not be read.  Swipe it again or type its number.";
  }
  const std::string digits = swipe ? CardDigits(swipe->number) : CardDigits(form_.txtCardNo.Text());
  if (digits.empty() || !LuhnValid(digits)) {
    field = &form_.txtCardNo;
    return "The card number is not valid.  Check the number and type it again.";
  }
  const std::string expiry = swipe && !swipe->expiry.empty() ? swipe->expiry : form_.txtExpDate.Text();
  const auto month_end = ExpiryMonthEnd(expiry);
  if (!month_end) {
    field = &form_.txtExpDate;
    return "The expiration date must be given as month and year (MM/YY).";
  }
  if (today_ && *month_end < today_().DateOnly()) {
    field = &form_.txtExpDate;
    return "The card expired in " + Trim(expiry) + ".";
  }
  const std::string zip = Trim(form_.txtZip.Text());
  const std::string zip_digits = OnlyDigits(zip);
  const bool zip_ok = zip.empty() || (zip_digits.size() == 5 && zip == zip_digits) ||
                      (zip_digits.size() == 9 && zip.size() == 10 && zip[5] == '-');
  if (!zip_ok) {
    field = &form_.txtZip;
    return "The billing zip must be five digits (or five, a dash and four).";
  }
  return {};
}

void RefCardEntry::Ok() {
  ui::Control* field = nullptr;
  const std::string problem = Check(field);
  if (!problem.empty()) {
    form_.ui().MsgBox(problem, ui::vbOKOnly | ui::vbInformation, kTitle);
    if (field != nullptr) form_.MoveFocus(*field);
    return;
  }
  const auto swipe = ReadSwipe(form_.txtSwipe.Text());
  const std::string digits = swipe ? CardDigits(swipe->number) : CardDigits(form_.txtCardNo.Text());
  std::string expiry = swipe && !swipe->expiry.empty() ? swipe->expiry : Trim(form_.txtExpDate.Text());
  const Date month_end = *ExpiryMonthEnd(expiry);
  char stored[8];
  std::snprintf(stored, sizeof stored, "%02d/%04d", month_end.Month(), month_end.Year());
  std::string method = form_.cmbPayMethod.SelectedKey();
  if (method.empty()) method = BrandOf(digits);
  auto card = std::make_shared<EnteredCard>(swipe ? swipe->track1 : "", swipe ? swipe->track2 : "", digits, stored,
                                            Trim(form_.txtZip.Text()), Trim(form_.txtAddress.Text()), method);
  ClearEntry();
  TraceHostCall(trace_, "CardEntry.CardEntered",
                {{"customer_no", Variant(customer_no_)}, {"x_card_no", Variant(card->XCardNo())}});
  ++cards_entered_;
  form_.Hide();
  if (handler_) handler_(card);
}

}  // namespace kiv::refhost
