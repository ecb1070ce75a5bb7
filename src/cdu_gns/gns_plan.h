// cdu_gns/gns_plan.h - page 1 of the GNS-style unit, as its three views and the pages that end on
// it see it.
#pragma once

#include <cstdint>

#include "cdu/unit.h"
#include "cdu_gns/gns.h"

namespace avq1 {

inline constexpr std::int32_t kGnsPlanLines = 6;  // waypoint rows of a page

// The plan that page 1 shows and that entries on it change: the active one, else the modified one,
// which holds the stored plan that was opened.
FlightPlan& GnsPlanShown();
bool GnsShowsActivePlan();
bool GnsShowsPlanList();

// The entry on a waypoint row of the page shown, row 0 to 5. Behind the last entry stands the row
// to type on, lastIndex + 1; behind that nothing: kNoWaypoint.
std::int32_t GnsEntryOnRow(std::int32_t row);

// The entry whose line is selected, up to lastIndex + 1; kNoWaypoint without.
std::int32_t GnsSelectedEntry();

// Shows the page of an entry and selects its line.
void SelectGnsEntry(std::int32_t index);

// Back on page 1, with the column that was confirmed there.
void ReturnToGnsPlan();

// ENTER on the selected waypoint row: deletes it, or looks up what was typed.
EntryResult EnterGnsWaypoint(const LineRow& row);

// ---- the list of stored plans ----
void HandleGnsPlanList(const UnitInput& input);
void ComposeGnsPlanList(Screen& screen);
bool GnsPlanOnRow(std::int32_t row);  // row 0 to 7 of the page shown holds a plan
EntryResult OpenGnsStoredPlan(std::int32_t row);

}  // namespace avq1
