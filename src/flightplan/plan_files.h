// flightplan/plan_files.h - stored flight plans: the folder, the .RTE format, listing, previewing,
// loading and saving.
//
// A file that cannot be opened loads nothing and leaves the target plan empty. A save writes beside
// the target and renames, so a plan that was there is never lost. Plans of the simulator's planner
// (.PLN) are converted on reading, into "temp.rte" as well. Of a line no more counts than its first
// 148 characters.
// planBook.entryNotice, which goes to the message list too, becomes "Unable to load FP" for a file
// that holds no waypoint and for a name that leads out of the folder, and says so when a plan has
// more waypoints than entries.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "flightplan/flight_plan.h"

namespace avq1 {

inline constexpr std::int32_t kStoredPlanCapacity = 200;
inline constexpr std::int32_t kStoredPlansPerPage = 8;

struct StoredPlan {
    std::string fileName;
    std::string firstIdent;
    std::string lastIdent;
};

struct StoredPlanList {
    std::vector<StoredPlan> plans;  // the last entry is always "NEW FPL"
    std::int32_t pageCount = 0;     // pages of eight
    std::int32_t currentPage = 0;
};

extern StoredPlanList storedPlans;

// The plans folder with its closing back-slash.
std::string PlansFolder();

void ListStoredPlans();
// Reads a stored plan into the preview plan; whoever then loads it says its notice.
void PreviewPlan(std::string_view fileName);

// Reads a stored plan into the modified plan; "NEW FPL" or "NEXT FPL" starts an empty one, without
// fuel and cruise altitude.
void LoadPlan(std::string_view fileName);

// Reads a stored plan into the active and the modified plan and sets up destination, fuel totals,
// cruise altitude and holds; guidance/activation.h completes it and says what is to be said. True
// when an entry was read.
bool ReadPlanToActive(std::string_view fileName);

// Writes the active plan; types other than the five become "WPT" in the plan itself. False, with a
// message, when the file cannot be written or the name climbs out of the folder.
bool SavePlan(std::string_view fileName);

// Fills `plan` from a plan file's text; key lines go to `book` unless it is null. `anyFuelKey`
// takes every key that begins with FUEL as the fuel total. Returns how many waypoints had no room.
std::int32_t ParsePlanText(std::string_view text, FlightPlan& plan, PlanBook* book,
                           bool anyFuelKey);
std::string PlanText(FlightPlan& plan);

}  // namespace avq1
