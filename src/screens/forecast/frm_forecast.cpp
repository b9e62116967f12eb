// The group forecast entry screen: its controls, the forecast shown and stored back, the
// date check, and OK and Cancel.
#include "screens/forecast/frm_forecast.h"

#include "core/date.h"
#include "core/format.h"
#include "core/text.h"
#include "core/variant.h"

namespace kiv {

using namespace forecast;

namespace {

std::string DateCell(const std::optional<Date>& date) {
  return date ? Format(Variant(*date), "MM/dd/yyyy") : std::string();
}

std::optional<Date> CellDate(const std::string& text) {
  if (Trim(text).empty()) return std::nullopt;
  return Date::Parse(Trim(text));
}

}  // namespace

frmForecast::frmForecast()
    : Screen("frmForecast"),
      lblForecastNo(Add<ui::Label>("lblForecastNo")),
      lblCustomerName(Add<ui::Label>("lblCustomerName")),
      lblSO(Add<ui::Label>("lblSO")),
      lblDateEntered(Add<ui::Label>("lblDateEntered")),
      lblLastEditedOn(Add<ui::Label>("lblLastEditedOn")),
      lblLastEditedBy(Add<ui::Label>("lblLastEditedBy")),
      cmbProperty(Add<ui::ComboBox>("cmbProperty")),
      cmbType(Add<ui::ComboBox>("cmbType")),
      cmbSegment(Add<ui::ComboBox>("cmbSegment")),
      cmbAorS(Add<ui::ComboBox>("cmbAorS")),
      cmbCategory(Add<ui::ComboBox>("cmbCategory")),
      cmbCountry(Add<ui::ComboBox>("cmbCountry")),
      dtArrivalDate(Add<ui::DatePicker>("dtArrivalDate")),
      dtDepartureDate(Add<ui::DatePicker>("dtDepartureDate")),
      ckbEBO(Add<ui::CheckBox>("ckbEBO", "EBO")),
      txtPeople(Add<ui::TextBox>("txtPeople")),
      txtNights(Add<ui::TextBox>("txtNights")),
      txtProjectedSkierDays(Add<ui::TextBox>("txtProjectedSkierDays")),
      txtDayRate(Add<ui::TextBox>("txtDayRate")),
      txtCommissionRate(Add<ui::TextBox>("txtCommissionRate")),
      lblProjectedGross(Add<ui::Label>("lblProjectedGross")),
      lblProjectedNet(Add<ui::Label>("lblProjectedNet")),
      txtStateOfOrigin(Add<ui::TextBox>("txtStateOfOrigin")),
      txtManager(Add<ui::TextBox>("txtManager")),
      txt2ndManager(Add<ui::TextBox>("txt2ndManager")),
      txtSource(Add<ui::TextBox>("txtSource")),
      tabNotes(Add<ui::TabStrip>("tabNotes")),
      txtNotes(Add<ui::TextBox>("txtNotes")),
      cmdOK(Add<ui::CommandButton>("cmdOK", "OK")),
      cmdCancel(Add<ui::CommandButton>("cmdCancel", "Cancel")) {
  SetCaption("Group Forecast");
  AddCaptions();
  dtArrivalDate.SetAllowNone(true);
  dtDepartureDate.SetAllowNone(true);
  txtNotes.SetMultiLine(true);
  for (const NotesTab& tab : kNotesTabs) tabNotes.AddTab(tab.key, tab.caption);
  cmdOK.SetDefault(true);
  cmdCancel.SetCancel(true);
  WireEvents();
}

void frmForecast::AddCaptions() {
  struct Caption {
    const char* name;
    const char* caption;
    const ui::Control& captions;
  };
  const Caption captions[] = {
      {"lblForecastNoCaption", "Forecast #:", lblForecastNo},
      {"lblCustomerNameCaption", "Group:", lblCustomerName},
      {"lblSOCaption", "Sales Orders:", lblSO},
      {"lblPropertyCaption", "Property:", cmbProperty},
      {"lblTypeCaption", "Type:", cmbType},
      {"lblSegmentCaption", "Segment:", cmbSegment},
      {"lblAorSCaption", "A or S:", cmbAorS},
      {"lblCategoryCaption", "Category:", cmbCategory},
      {"lblCountryCaption", "Country:", cmbCountry},
      {"lblArrivalCaption", "Arrival:", dtArrivalDate},
      {"lblDepartureCaption", "Departure:", dtDepartureDate},
      {"lblPeopleCaption", "People:", txtPeople},
      {"lblNightsCaption", "Nights:", txtNights},
      {"lblSkierDaysCaption", "Proj Skier Days:", txtProjectedSkierDays},
      {"lblDayRateCaption", "Day Rate:", txtDayRate},
      {"lblCommissionCaption", "Comm Rate %:", txtCommissionRate},
      {"lblGrossCaption", "Proj Gross:", lblProjectedGross},
      {"lblNetCaption", "Proj Net:", lblProjectedNet},
      {"lblOriginCaption", "St of Origin:", txtStateOfOrigin},
      {"lblManagerCaption", "Manager:", txtManager},
      {"lbl2ndManagerCaption", "2nd Manager:", txt2ndManager},
      {"lblSourceCaption", "Source:", txtSource},
      {"lblDateEnteredCaption", "Entered:", lblDateEntered},
      {"lblLastEditedCaption", "Last Edited:", lblLastEditedOn}};
  for (const Caption& c : captions) Add<ui::Label>(c.name, c.caption).SetBuddy(c.captions);
}

void frmForecast::WireEvents() {
  on_load = [this] { Guard("Form_Load", [this] { OnLoad(); }); };
  OnChange(txtNights, [this] {
    if (!Filling()) UpdateSkierDays();
  });
  OnChange(txtPeople, [this] {
    if (!Filling()) UpdateSkierDays();
  });
  for (ui::TextBox* box : {&txtProjectedSkierDays, &txtDayRate, &txtCommissionRate})
    OnChange(*box, [this] {
      if (!Filling()) UpdateRevenue();
    });
  for (ui::DatePicker* picker : {&dtArrivalDate, &dtDepartureDate})
    OnChange(*picker, [this] {
      if (!Filling()) CheckDates();
    });
  OnClick(tabNotes, [this] {
    StoreNotesTab();
    ShowNotesTab(tabNotes.SelectedIndex());
  });
  OnClick(cmdOK, [this] { Accept(); });
  cmdCancel.on_click = [this] {
    accepted_ = false;
    Hide();
  };
}

void frmForecast::SetForecast(Cells cells) {
  cells.resize(kColumnCount);
  cells_ = std::move(cells);
}

void frmForecast::OnLoad() {
  accepted_ = false;
  FillLists();
  ShowForecast();
}

void frmForecast::ShowForecast() {
  FillingScope filling(*this);
  lblForecastNo.SetCaption(cells_[kColForecastNo]);
  lblCustomerName.SetCaption(customer_name_);
  lblSO.SetCaption(cells_[kColSalesOrders]);
  lblDateEntered.SetCaption(cells_[kColDateEntered]);
  lblLastEditedOn.SetCaption(cells_[kColLastEditedOn]);
  lblLastEditedBy.SetCaption(cells_[kColLastEditedBy]);
  SelectKey(cmbProperty, cells_[kColProperty]);
  SelectKey(cmbType, cells_[kColType]);
  SelectKey(cmbSegment, cells_[kColSegment]);
  SelectKey(cmbAorS, cells_[kColAorS]);
  SelectKey(cmbCategory, cells_[kColCategory]);
  SelectKey(cmbCountry, cells_[kColCountry]);
  dtArrivalDate.SetValue(CellDate(cells_[kColArrival]));
  dtDepartureDate.SetValue(CellDate(cells_[kColDeparture]));
  const std::string& ebo = cells_[kColEBO];
  ckbEBO.SetValue(EqualsNoCase(ebo, "True") || ebo == "1" || ebo == "-1" ? ui::vbChecked : ui::vbUnchecked);
  txtPeople.SetText(cells_[kColPeople]);
  txtNights.SetText(cells_[kColNights]);
  txtProjectedSkierDays.SetText(cells_[kColSkierDays]);
  txtDayRate.SetText(cells_[kColDayRate]);
  txtCommissionRate.SetText(cells_[kColCommissionRate]);
  txtStateOfOrigin.SetText(cells_[kColOrigin]);
  txtManager.SetText(cells_[kColManager]);
  txt2ndManager.SetText(cells_[kColManager2nd]);
  txtSource.SetText(cells_[kColSource]);
  notes_tab_ = -1;
  tabNotes.SetSelectedIndex(1);
  ShowNotesTab(1);
  Guard("DisplayForecast", [this] { UpdateRevenue(); });
}

void frmForecast::StoreForecast() {
  StoreNotesTab();
  cells_[kColProperty] = cmbProperty.SelectedKey();
  cells_[kColType] = cmbType.SelectedKey();
  cells_[kColSegment] = cmbSegment.SelectedKey();
  cells_[kColAorS] = cmbAorS.SelectedKey();
  cells_[kColCategory] = cmbCategory.SelectedKey();
  cells_[kColCountry] = cmbCountry.SelectedKey();
  cells_[kColArrival] = DateCell(dtArrivalDate.Value());
  cells_[kColDeparture] = DateCell(dtDepartureDate.Value());
  cells_[kColEBO] = ckbEBO.Value() == ui::vbChecked ? "True" : "False";
  cells_[kColPeople] = Trim(txtPeople.Text());
  cells_[kColNights] = Trim(txtNights.Text());
  cells_[kColSkierDays] = Trim(txtProjectedSkierDays.Text());
  cells_[kColDayRate] = Trim(txtDayRate.Text());
  cells_[kColCommissionRate] = Trim(txtCommissionRate.Text());
  cells_[kColGross] = lblProjectedGross.Caption();
  cells_[kColNet] = lblProjectedNet.Caption();
  cells_[kColOrigin] = txtStateOfOrigin.Text();
  cells_[kColManager] = txtManager.Text();
  cells_[kColManager2nd] = txt2ndManager.Text();
  cells_[kColSource] = txtSource.Text();
}

bool frmForecast::CheckDates() {
  const auto& arrival = dtArrivalDate.Value();
  const auto& departure = dtDepartureDate.Value();
  // The same day is accepted, whatever the message says.
  if (!arrival || !departure || !(*departure < *arrival)) return true;
  ui().MsgBox("The departure date must be greater than the arrival date.", ui::vbInformation, "Invalid Dates");
  dtDepartureDate.SetFocus();
  return false;
}

bool frmForecast::Accept() {
  if (!CheckDates()) return false;
  // The projections are what the clerk sees: a number that does not convert stays out of
  // the forecast instead of stopping it.
  Guard("DisplayForecast", [this] { UpdateRevenue(); });
  StoreForecast();
  accepted_ = true;
  Hide();
  return true;
}

}  // namespace kiv
