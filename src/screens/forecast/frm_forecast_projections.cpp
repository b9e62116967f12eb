// The projections of a forecast: skier days from nights and people, gross and net revenue
// from skier days, the day rate and the commission, worked out as the clerk types.
#include "core/format.h"
#include "core/text.h"
#include "core/variant.h"
#include "core/vb_error.h"
#include "screens/forecast/frm_forecast.h"

namespace kiv {

namespace {

//! A count as a 16-bit integer: empty is 0, anything else converts strictly.
int16_t Count(std::string_view text) {
  const std::string trimmed = Trim(text);
  if (trimmed.empty()) return 0;
  return CInt(Variant(trimmed));
}

}  // namespace

int16_t frmForecast::SkierDays(std::string_view nights, std::string_view people) {
  const int32_t product = static_cast<int32_t>(Count(nights)) * Count(people);
  // The product is a 16-bit integer too: it fails rather than wrap.
  if (product > INT16_MAX || product < INT16_MIN) RaiseError(kErrOverflow);
  return static_cast<int16_t>(product);
}

double frmForecast::Gross(double day_rate, int16_t skier_days) { return day_rate * skier_days; }

double frmForecast::Net(double day_rate, int16_t skier_days, double commission_rate) {
  return day_rate * skier_days * (1 - commission_rate / 100);
}

void frmForecast::UpdateSkierDays() {
  int16_t days = 0;
  try {
    days = SkierDays(txtNights.Text(), txtPeople.Text());
  } catch (...) {
    FillingScope filling(*this);
    txtProjectedSkierDays.SetText("");
    lblProjectedGross.SetCaption("");
    lblProjectedNet.SetCaption("");
    throw;
  }
  txtProjectedSkierDays.SetText(std::to_string(days));
  UpdateRevenue();
}

void frmForecast::UpdateRevenue() {
  const double rate = Val(txtDayRate.Text());
  const double commission = Val(txtCommissionRate.Text());
  int16_t days = 0;
  try {
    days = Count(txtProjectedSkierDays.Text());
  } catch (...) {
    lblProjectedGross.SetCaption("");
    lblProjectedNet.SetCaption("");
    throw;
  }
  lblProjectedGross.SetCaption(Format(Variant(Gross(rate, days)), "Currency"));
  lblProjectedNet.SetCaption(Format(Variant(Net(rate, days, commission)), "Currency"));
}

}  // namespace kiv
