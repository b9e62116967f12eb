// The custom fields of the profile page: the site columns read through the profile
// procedure, typed and formatted by column type, checked as the clerk types, and saved as
// one update of the customer's profile row (created on the first save).
#include "screens/detail/custom_fields_page.h"

#include <charconv>
#include <cmath>
#include <optional>

#include "core/date.h"
#include "core/format.h"
#include "core/text.h"
#include "engine/c_cust_engine.h"
#include "host/db_patterns.h"
#include "screens/detail/frm_customer_detail.h"

namespace kiv {

namespace {

constexpr const char* kTrueFalse = "True/False";
constexpr const char* kInteger = "Integer";
constexpr const char* kCurrency = "Currency";
constexpr const char* kDate = "Date";
constexpr const char* kAlphaNumeric = "AlphaNumeric";
constexpr const char* kDecimal = "Decimal";
constexpr const char* kLargeInteger = "Large Integer";
constexpr const char* kOther = "Other";

//! The largest amount a currency column holds.
constexpr double kCurrencyLimit = 922337203685477.5807;

std::string Trimmed(const std::string& text) {
  const size_t first = text.find_first_not_of(" \t");
  if (first == std::string::npos) return {};
  const size_t last = text.find_last_not_of(" \t");
  return text.substr(first, last - first + 1);
}

//! A plain decimal number filling the whole text; nullopt for anything else.
std::optional<double> ParseNumber(const std::string& text) {
  const std::string t = Trimmed(text);
  if (t.empty()) return std::nullopt;
  const char* begin = t.data();
  if (*begin == '+') ++begin;
  double value = 0;
  auto [end, ec] = std::from_chars(begin, t.data() + t.size(), value, std::chars_format::fixed);
  if (ec != std::errc() || end != t.data() + t.size() || !std::isfinite(value)) return std::nullopt;
  return value;
}

//! A whole number filling the whole text; nullopt for anything else.
std::optional<long long> ParseWhole(const std::string& text) {
  const std::string t = Trimmed(text);
  if (t.empty()) return std::nullopt;
  const char* begin = t.data();
  if (*begin == '+') ++begin;
  long long value = 0;
  auto [end, ec] = std::from_chars(begin, t.data() + t.size(), value);
  if (ec != std::errc() || end != t.data() + t.size()) return std::nullopt;
  return value;
}

//! An amount as a clerk types it: "$1,250.50" or "-75".
std::optional<double> ParseAmount(const std::string& text) {
  std::string t = Replace(Replace(Trimmed(text), ",", ""), "$", "");
  return ParseNumber(t);
}

//! The range of an integer column by its width in bytes.
void IntegerRange(int32_t size, long long& low, long long& high) {
  switch (size) {
    case 1: low = 0, high = 255; return;
    case 2: low = -32768, high = 32767; return;
    case 8: low = INT64_MIN, high = INT64_MAX; return;
    default: low = INT32_MIN, high = INT32_MAX; return;
  }
}

bool IsCharacter(int32_t type) { return type == host::adChar || type == host::adVarChar; }

//! The first `count` characters of a UTF-8 text (never half a character).
std::string FirstChars(const std::string& text, int32_t count) {
  if (count <= 0) return text;
  size_t i = 0;
  for (int32_t n = 0; i < text.size() && n < count; ++n) {
    ++i;
    while (i < text.size() && (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80) ++i;
  }
  return text.substr(0, i);
}

//! Whole digits a numeric column holds before its decimal point.
int32_t WholeDigits(const CustomFieldsPage::CustomField& field) { return std::max(field.precision - field.scale, 0); }

Date Now(const frmCustomerDetail& screen) {
  CCustEngine* engine = screen.CustomerEngine();
  if (engine != nullptr && engine->GetClock()) return engine->GetClock()->Now();
  return SystemClock().Now();
}

}  // namespace

int CustomFieldsPage::TabIndex() const { return frmCustomerDetail::kTabProfile; }

bool CustomFieldsPage::IsSystemColumn(const std::string& name) {
  const std::string upper = UCase(name);
  return upper == "CUSTOMER_NO" || upper == "CREATED_BY" || upper == "CREATE_DATE" || upper == "MODIFIED_BY" ||
         upper == "MODIFIED_DATE";
}

std::string CustomFieldsPage::Description(const std::string& name) {
  const std::string spaced = Replace(name, "_", " ");
  std::string out;
  bool word_start = true;
  for (size_t i = 0; i < spaced.size();) {
    size_t len = 1;
    while (i + len < spaced.size() && (static_cast<unsigned char>(spaced[i + len]) & 0xC0) == 0x80) ++len;
    const std::string ch = spaced.substr(i, len);
    out += word_start ? UCase(ch) : LCase(ch);
    word_start = ch == " ";
    i += len;
  }
  return out;
}

std::string CustomFieldsPage::DataTypeName(int32_t type, int32_t precision, int32_t scale, int32_t actual_size) {
  switch (type) {
    case host::adInteger: return actual_size == 1 ? kTrueFalse : kInteger;
    case host::adCurrency: return kCurrency;
    case host::adDate:
    case host::adDBDate:
    case host::adDBTime:
    case host::adDBTimeStamp: return kDate;
    case host::adBoolean: return kTrueFalse;
    case host::adChar:
    case host::adVarChar: return kAlphaNumeric;
    case host::adDouble:
    case host::adNumeric:
      if (precision == 1) return kTrueFalse;
      return scale != 0 ? kDecimal : kLargeInteger;
    default: return kOther;
  }
}

std::string CustomFieldsPage::DataTypeName(host::Field& field) {
  return DataTypeName(field.Type(), field.Precision(), field.NumericScale(), field.ActualSize());
}

std::string CustomFieldsPage::ValueText(const std::string& type_name, const Variant& value) {
  if (value.IsNull() || value.IsEmpty() || value.Type() == VarType::Bytes) return {};
  try {
    if (type_name == kTrueFalse) return value.ToBool() ? "True" : "False";
    if (type_name == kCurrency) return Format(value, "Currency");
    if (type_name == kDate) return Format(value, "MM/dd/yyyy");
    return value.ToString();
  } catch (...) {
    // A value its column should not hold (text in a number column of a foreign tool) is
    // still shown, as the database has it.
    return NzString(value);
  }
}

std::string CustomFieldsPage::Refusal(const CustomField& field, const std::string& text) {
  if (Trimmed(text).empty()) return {};
  const std::string shown = "\"" + text + "\"";
  const std::string head = field.description + " expects ";
  const std::string tail = " (" + field.type_name + "); " + shown + " cannot be stored.";
  if (field.type_name == kTrueFalse) {
    if (EqualsNoCase(Trimmed(text), "True") || EqualsNoCase(Trimmed(text), "False")) return {};
    return head + "True or False" + tail;
  }
  if (field.type_name == kInteger) {
    long long low = 0, high = 0;
    IntegerRange(field.defined_size, low, high);
    std::optional<long long> n = ParseWhole(text);
    if (n && *n >= low && *n <= high) return {};
    return head + "a whole number from " + std::to_string(low) + " to " + std::to_string(high) + tail;
  }
  if (field.type_name == kCurrency) {
    std::optional<double> n = ParseAmount(text);
    if (n && std::fabs(*n) <= kCurrencyLimit) return {};
    return head + "an amount of money" + tail;
  }
  if (field.type_name == kDate) {
    std::optional<Date> d = Date::Parse(Trimmed(text));
    if (d && d->Year() >= 1753 && d->Year() <= 9999) return {};
    return head + "a date such as 03/01/2026" + tail;
  }
  if (field.type_name == kDecimal || field.type_name == kLargeInteger) {
    std::optional<double> n = ParseNumber(text);
    if (field.type != host::adNumeric) {
      if (n) return {};
      return head + "a number" + tail;
    }
    const int32_t whole = WholeDigits(field);
    if (n && std::fabs(*n) < std::pow(10.0, whole)) return {};
    std::string what = "a number of at most " + std::to_string(whole) + " digits";
    if (field.scale > 0) what += " before the point and " + std::to_string(field.scale) + " after it";
    return head + what + tail;
  }
  return {};
}

Variant CustomFieldsPage::StoredValue(const CustomField& field, const std::string& text) {
  if (Trimmed(text).empty()) return Variant::Null();
  if (field.type_name == kTrueFalse) {
    const bool truth = EqualsNoCase(Trimmed(text), "True");
    if (field.type == host::adInteger) return Variant(static_cast<int32_t>(truth ? 1 : 0));
    return Variant(truth);
  }
  if (IsCharacter(field.type)) return Variant(FirstChars(text, field.defined_size));
  if (field.type_name == kInteger) {
    const long long n = ParseWhole(text).value_or(0);
    if (n >= INT32_MIN && n <= INT32_MAX) return Variant(static_cast<int32_t>(n));
    return Variant(static_cast<double>(n));
  }
  if (field.type_name == kCurrency) return Variant(Currency::FromDouble(ParseAmount(text).value_or(0)));
  if (field.type_name == kDate) return Variant(Date::Parse(Trimmed(text)).value_or(Date()));
  if (field.type_name == kDecimal || field.type_name == kLargeInteger) {
    double n = ParseNumber(text).value_or(0);
    // A numeric column keeps its scale's decimals, rounded as the server rounds them.
    if (field.type == host::adNumeric) {
      const double factor = std::pow(10.0, field.scale);
      n = std::round(n * factor) / factor;
    }
    return Variant(n);
  }
  return Variant(text);
}

void CustomFieldsPage::Reset() {
  fields_.clear();
  dirty_ = false;
}

RefreshConfirmation CustomFieldsPage::RefreshQuestion() const {
  return {"The profile information has been changed.  Are you sure you want to lose those changes and refresh the "
          "data?",
          "Confirm Refresh Profile Data"};
}

bool CustomFieldsPage::Showing(const frmCustomerDetail& screen) const {
  return screen.tabCustomer.SelectedIndex() == TabIndex();
}

int CustomFieldsPage::FieldAt(const frmCustomerDetail& screen, int grid_row) const {
  const int i = grid_row - screen.grdMaster.FixedRows();
  if (i < 0 || i >= static_cast<int>(fields_.size())) return -1;
  return i;
}

void CustomFieldsPage::Activate(frmCustomerDetail& screen) {
  ui::Grid& grid = screen.grdMaster;
  grid.SetFormatString(kFormatString);
  grid.SetSelectionMode(ui::flexSelectionByRow);
  grid.SetEditable(screen.CanEditProfile() ? ui::flexEDKbdMouse : ui::flexEDNone);
  grid.SetVisible(true);
  grid.on_before_edit = [this, &screen, &grid](int row, int col, bool& cancel) {
    const int i = FieldAt(screen, row);
    cancel = i < 0 || col != kColValue || !screen.CanEditProfile();
    if (cancel) return;
    // The list is offered for the edit under way only: a free-text row must not meet it.
    grid.SetColComboList(kColValue, fields_[static_cast<size_t>(i)].type_name == kTrueFalse ? kTrueFalseList : "");
  };
  grid.on_validate_edit = [this, &screen, &grid](int row, int, bool& cancel) {
    const int i = FieldAt(screen, row);
    if (i < 0) return;
    const CustomField& field = fields_[static_cast<size_t>(i)];
    const std::string refusal = Refusal(field, grid.EditText());
    if (!refusal.empty()) {
      grid.SetColComboList(kColValue, "");
      screen.ui().MsgBox(refusal, ui::vbInformation, kInvalidTitle);
      cancel = true;
      return;
    }
    if (field.type_name == kTrueFalse && !Trimmed(grid.EditText()).empty())
      grid.SetEditText(EqualsNoCase(Trimmed(grid.EditText()), "True") ? "True" : "False");
  };
  grid.on_after_edit = [this, &screen, &grid](int row, int col) {
    grid.SetColComboList(kColValue, "");
    const int i = FieldAt(screen, row);
    if (i < 0 || col != kColValue) return;
    CustomField& field = fields_[static_cast<size_t>(i)];
    const std::string text = grid.TextMatrix(row, col);
    if (text == field.text) return;
    field.text = text;
    field.edited = true;
    dirty_ = true;
  };
  Render(screen);
}

void CustomFieldsPage::Load(frmCustomerDetail& screen) {
  Reset();
  if (screen.DBConnection()) {
    host::ProcedureCall call(*screen.DBConnection(), kProcedure);
    call.In("@customer_no", Variant(screen.CustomerNo()));
    host::ScopedRecordset rs = call.Open();
    // A customer without a profile row still lists every column, with empty values.
    const bool has_row = rs && !rs.Eof();
    for (int32_t c = 0; rs && c < rs->FieldCount(); ++c) {
      host::Field& f = rs->FieldAt(c);
      if (IsSystemColumn(f.Name())) continue;
      CustomField field;
      field.name = f.Name();
      field.description = Description(field.name);
      field.type = f.Type();
      field.defined_size = f.DefinedSize();
      field.precision = f.Precision();
      field.scale = f.NumericScale();
      field.value = has_row ? f.Value() : Variant::Null();
      field.type_name = DataTypeName(field.type, field.precision, field.scale, has_row ? f.ActualSize() : 0);
      field.text = ValueText(field.type_name, field.value);
      fields_.push_back(std::move(field));
    }
  }
  if (Showing(screen)) Render(screen);
}

void CustomFieldsPage::Render(frmCustomerDetail& screen) const {
  ui::Grid& grid = screen.grdMaster;
  grid.SetRows(grid.FixedRows());
  for (const CustomField& field : fields_)
    grid.AddItem(field.name + "\t" + field.description + "\t" + field.type_name + "\t" + field.text);
}

bool CustomFieldsPage::Save(frmCustomerDetail& screen) {
  bool saved = false;
  screen.Guard("SaveProfileData", [&] { saved = WriteRow(screen); });
  return saved;
}

bool CustomFieldsPage::WriteRow(frmCustomerDetail& screen) {
  // Every value is checked before anything is written: the row is updated whole or not at all.
  for (const CustomField& field : fields_) {
    if (!field.edited) continue;
    const std::string refusal = Refusal(field, field.text);
    if (refusal.empty()) continue;
    screen.ui().MsgBox(refusal, ui::vbInformation, kInvalidTitle);
    return false;
  }
  const int32_t customer_no = screen.CustomerNo();
  if (!screen.DBConnection() || customer_no == 0) return false;
  host::DBConnection& db = *screen.DBConnection();
  host::ScopedRecordset rs =
      host::OpenForUpdate(db, std::string(kSaveSql) + " WHERE customer_no = " + std::to_string(customer_no));
  if (!rs) return false;
  const std::string user = db.UserID();
  const Date now = Now(screen);
  if (rs.Eof()) {
    rs->AddNew();
    rs->FieldByName("CUSTOMER_NO").SetValue(Variant(customer_no));
    rs->FieldByName("CREATED_BY").SetValue(Variant(user));
    rs->FieldByName("CREATE_DATE").SetValue(Variant(now));
  }
  std::vector<Variant> written;
  for (const CustomField& field : fields_) {
    Variant value = field.edited ? StoredValue(field, field.text) : field.value;
    if (value.Type() == VarType::String && value.ToString().empty()) value = Variant::Null();
    rs->FieldByName(field.name).SetValue(value);
    written.push_back(std::move(value));
  }
  rs->FieldByName("MODIFIED_BY").SetValue(Variant(user));
  rs->FieldByName("MODIFIED_DATE").SetValue(Variant(now));
  rs->Update();
  for (size_t i = 0; i < fields_.size(); ++i) {
    CustomField& field = fields_[i];
    field.value = written[i];
    field.edited = false;
    field.text = ValueText(field.type_name, field.value);
  }
  dirty_ = false;
  if (Showing(screen)) Render(screen);
  return true;
}

}  // namespace kiv
