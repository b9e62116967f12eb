// A group forecast as the forecast page keeps it beside its grid and as the entry screen
// edits it: one text per grid column, in the grid's order, each backed by a column of
// kiv_customer_forecast (or computed, for the projections).
#pragma once
#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace kiv::forecast {

enum Column : int {
  kColState = 0,
  kColForecastNo,
  kColDateEntered,
  kColSalesOrders,
  kColArrival,
  kColDeparture,
  kColEBO,
  kColOrigin,
  kColCountry,
  kColCategory,
  kColCommissionRate,
  kColNights,
  kColPeople,
  kColDayRate,
  kColSkierDays,
  kColGross,
  kColNet,
  kColAorS,
  kColProperty,
  kColSource,
  kColManager,
  kColManager2nd,
  kColSegment,
  kColType,
  kColNotes,
  kColTicketInstructions,
  kColSkiSchoolInstructions,
  kColActivitiesInstructions,
  kColGroupProfile,
  kColConfidential,
  kColLastEditedBy,
  kColLastEditedOn,
  kColDetail,
  kColumnCount
};

constexpr const char* kGridFormat =
    "State|Forecast#|Date Entered|SO Assoc|Arrival Date|Departure Date|EBO|St of Origin|Country|Cat|Comm Rate|"
    "Nights|People|Day/Rate|Proj Skier Days|Proj Gross|Proj Net|A or S|Property|Source|Mgr|2nd Mgr|Segment|Type|"
    "Notes|Tkt Inst|SS Inst|Acty Inst|Grp Prof|Conf Note|LastEditBy|LastEditDate|Detail";

//! How a column's text is written back.
enum class Kind { kNone, kText, kDate, kNumber, kBoolean };

struct ColumnField {
  const char* field;  //!< the result column it is read from; empty for a computed column
  Kind kind;
};

//! The field behind each grid column, by column.
inline constexpr std::array<ColumnField, kColumnCount> kFields = {{
    {"", Kind::kNone},
    {"forecast_no", Kind::kNone},
    {"fc_date_entered", Kind::kDate},
    {"salesorder_no", Kind::kNone},
    {"fc_arrival_date", Kind::kDate},
    {"fc_depart_date", Kind::kDate},
    {"fc_early_booking_offer", Kind::kBoolean},
    {"fc_origin", Kind::kText},
    {"fc_country", Kind::kText},
    {"fc_category", Kind::kText},
    {"fc_rate_after_commission", Kind::kNumber},
    {"fc_nights", Kind::kNumber},
    {"fc_people", Kind::kNumber},
    {"fc_rate", Kind::kNumber},
    {"fc_days", Kind::kNumber},
    {"", Kind::kNone},
    {"", Kind::kNone},
    {"fc_location", Kind::kText},
    {"fc_property", Kind::kNumber},
    {"fc_source", Kind::kText},
    {"fc_manager", Kind::kText},
    {"fc_manager_2nd", Kind::kText},
    {"fc_segment", Kind::kText},
    {"fc_type", Kind::kText},
    {"comment_note", Kind::kText},
    {"fc_ticket_instructions", Kind::kText},
    {"fc_ss_instructions", Kind::kText},
    {"fc_activities_instructions", Kind::kText},
    {"fc_group_profile", Kind::kText},
    {"fc_confidential_comments", Kind::kText},
    {"fc_last_edited_by", Kind::kText},
    {"fc_last_edited_on", Kind::kDate},
    {"", Kind::kNone},
}};

//! The six notes kinds of the entry screen's tab strip, with the column each is kept in.
struct NotesTab {
  const char* key;
  const char* caption;
  Column column;
};
inline constexpr std::array<NotesTab, 6> kNotesTabs = {{
    {"Notes", "Notes", kColNotes},
    {"Ticket", "Ticket Instructions", kColTicketInstructions},
    {"SkiSchool", "Ski School Instructions", kColSkiSchoolInstructions},
    {"Activities", "Activity Instructions", kColActivitiesInstructions},
    {"GroupProfile", "Group Profile", kColGroupProfile},
    {"Confidential", "Confidential Comments", kColConfidential},
}};

using Cells = std::vector<std::string>;

//! A forecast with every cell empty.
inline Cells EmptyCells() { return Cells(kColumnCount); }

}  // namespace kiv::forecast
