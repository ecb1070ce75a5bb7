// tests/flightplan/plan_notation.h - plans as short texts: "KJFK AAA(J1) >BBB@ DISCO KBOS".
//
// ">" marks the tracked entry (the active waypoint in the active plan), "@" an entry with a hold,
// brackets the airway of the leg to it, "/" the procedure the entry belongs to: "CCC/SID(SID1)".
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "base/text.h"
#include "flightplan/flight_plan.h"
#include "flightplan/hold_pattern.h"
#include "navdb/nav_database.h"

namespace avq1::test {

inline bool IsActive(const FlightPlan& plan) {
    return &plan == &activePlan;
}

inline void SetPlan(FlightPlan& plan, std::string_view notation) {
    std::int32_t& tracked = IsActive(plan) ? planBook.activeIndex : planBook.trackedIndex;
    tracked = kNoWaypoint;
    plan.lastIndex = -1;
    for (std::string_view word = NextWord(notation); !word.empty(); word = NextWord(notation)) {
        const std::int32_t index = ++plan.lastIndex;
        PlanWaypoint& entry = plan.entries[index];
        entry = PlanWaypoint{};
        if (word.front() == '>') {
            tracked = index;
            word.remove_prefix(1);
        }
        if (const auto bracket = word.find('('); bracket != std::string_view::npos) {
            entry.via = word.substr(bracket + 1, word.size() - bracket - 2);
            word = word.substr(0, bracket);
        }
        if (const auto slash = word.find('/'); slash != std::string_view::npos) {
            entry.procedure = word.substr(slash + 1);
            word = word.substr(0, slash);
        }
        if (word.back() == '@') {
            HoldPattern& hold = holdList.holds[++holdList.count];
            (IsActive(plan) ? hold.fixIndex : hold.pendingFixIndex) = index;
            entry.hasHold = 1;
            word.remove_suffix(1);
        }
        entry.ident = word;
        if (!IsDiscontinuity(entry)) {
            entry.type = word.size() == 4 ? "APT" : entry.procedure.empty() ? "INT" : "";
            entry.latitude = 40 + 0.5 * index;
            entry.longitude = -70;
        }
    }
}

inline bool HasHoldAt(const FlightPlan& plan, std::int32_t index) {
    return index > 0 &&
           std::any_of(holdList.holds.begin() + 1, holdList.holds.begin() + 1 + holdList.count,
                       [&](const HoldPattern& hold) {
                           return index == (IsActive(plan) ? hold.fixIndex : hold.pendingFixIndex);
                       });
}

inline std::string Show(const FlightPlan& plan, bool withProcedures = false) {
    const std::int32_t tracked = IsActive(plan) ? planBook.activeIndex : planBook.trackedIndex;
    std::string text;
    for (std::int32_t i = 0; i <= plan.lastIndex; ++i) {
        const PlanWaypoint& entry = plan.entries[i];
        text += i > 0 ? " " : "";
        text += i == tracked ? ">" : "";
        text += entry.ident;
        text += HasHoldAt(plan, i) ? "@" : "";
        text += withProcedures && !entry.procedure.empty() ? "/" + entry.procedure : "";
        text += entry.via.empty() ? "" : "(" + entry.via + ")";
    }
    return text;
}

// Puts one point into the search results. `ident` must outlive them.
inline void Offer(const char* ident, PointKind kind = PointKind::Intersection, double latitude = 45,
                  double longitude = -75, const char* frequency = "") {
    PointRecord record;
    record.ident = ident;
    record.kind = kind;
    record.latitude = latitude;
    record.longitude = longitude;
    record.frequency = frequency;
    navDatabase.searchResults.Clear();
    navDatabase.searchResults.Append(record);
}

}  // namespace avq1::test
