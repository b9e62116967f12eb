// The group forecast entry screen: one forecast of a group customer, new or existing, with
// its lists, dates, head count and rates, the projected skier days and revenue worked out
// as the clerk types, and six kinds of notes under one tab strip. OK hands the forecast back
// to the opener (the forecast page), which keeps it until the customer is saved.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "screens/forecast/forecast_columns.h"
#include "screens/kit/screen.h"
#include "ui/check_box.h"
#include "ui/combo_box.h"
#include "ui/command_button.h"
#include "ui/date_picker.h"
#include "ui/label.h"
#include "ui/tab_strip.h"
#include "ui/text_box.h"

namespace kiv {

class frmForecast : public Screen {
 public:
  //! The customer group whose members are the properties a group may stay at.
  static constexpr const char* kPropertyGroup = "LODGE";
  static constexpr const char* kCountrySql = "SELECT * FROM kiv_country";
  static constexpr const char* kNoProperty = "<None>";

  frmForecast();

  // ---- what the opener hands over before Load ----
  void SetCustomerName(std::string v) { customer_name_ = std::move(v); }
  //! The forecast to edit (the page's cells); empty cells for a new one.
  void SetForecast(forecast::Cells cells);
  //! The forecast as OK left it.
  const forecast::Cells& Forecast() const { return cells_; }
  //! OK closed the screen with the forecast accepted.
  bool Accepted() const { return accepted_; }

  // ---- projections ----
  //! Nights × people as 16-bit integers: empty counts as 0; text that is not a number
  //! raises type mismatch (13) and a product beyond 32767 raises overflow (6).
  static int16_t SkierDays(std::string_view nights, std::string_view people);
  //! Day rate × skier days.
  static double Gross(double day_rate, int16_t skier_days);
  //! Gross less the commission: an empty (0) commission keeps the gross, 100 leaves nothing.
  static double Net(double day_rate, int16_t skier_days, double commission_rate);
  //! Works skier days out from nights and people; a failed conversion empties the
  //! projections and is raised for the caller's error report.
  void UpdateSkierDays();
  //! Works gross and net out from skier days, day rate and commission.
  void UpdateRevenue();

  //! The departure may not be before the arrival (the same day is fine); false after the
  //! message, with the focus on the departure date.
  bool CheckDates();
  //! OK: checks the dates, stores the controls into the forecast, hides.
  bool Accept();

  // ---- controls ----
  ui::Label& lblForecastNo;
  ui::Label& lblCustomerName;
  ui::Label& lblSO;
  ui::Label& lblDateEntered;
  ui::Label& lblLastEditedOn;
  ui::Label& lblLastEditedBy;
  ui::ComboBox& cmbProperty;
  ui::ComboBox& cmbType;
  ui::ComboBox& cmbSegment;
  ui::ComboBox& cmbAorS;
  ui::ComboBox& cmbCategory;
  ui::ComboBox& cmbCountry;
  ui::DatePicker& dtArrivalDate;
  ui::DatePicker& dtDepartureDate;
  ui::CheckBox& ckbEBO;
  ui::TextBox& txtPeople;
  ui::TextBox& txtNights;
  ui::TextBox& txtProjectedSkierDays;
  ui::TextBox& txtDayRate;
  ui::TextBox& txtCommissionRate;
  ui::Label& lblProjectedGross;
  ui::Label& lblProjectedNet;
  ui::TextBox& txtStateOfOrigin;
  ui::TextBox& txtManager;
  ui::TextBox& txt2ndManager;
  ui::TextBox& txtSource;
  ui::TabStrip& tabNotes;
  ui::TextBox& txtNotes;
  ui::CommandButton& cmdOK;
  ui::CommandButton& cmdCancel;

 private:
  void AddCaptions();
  void WireEvents();
  void OnLoad();

  // frm_forecast_lists.cpp: the fixed lists, countries and properties
  void FillLists();
  void FillProperties();
  //! Selects the item with this key; an unknown key not empty is added so nothing is lost.
  static void SelectKey(ui::ComboBox& list, const std::string& key);

  // frm_forecast.cpp: showing and storing the forecast
  void ShowForecast();
  void StoreForecast();

  // frm_forecast_notes.cpp: the notes tab strip over the six notes columns
  void ShowNotesTab(int index);
  void StoreNotesTab();

  std::string customer_name_;
  forecast::Cells cells_ = forecast::EmptyCells();
  bool accepted_ = false;
  //! The notes tab whose text txtNotes shows; -1 before the first is shown.
  int notes_tab_ = -1;
};

}  // namespace kiv
