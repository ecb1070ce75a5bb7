// tests/flightplan/plan_notation.h - plans as routes one can read:
//
//   KJFK SID:NEION2(BETTE,NEION) >J121 GEDIC@ DISCO STAR(AAA) APPR(BBB) KBOS
//
// An airway stands before the entry it leads to. "SID:NEION2(...)" are entries that belong to the
// departure: all but the first are reached by NEION2, or directly when no name is given; STAR, APPR
// and SIDSTAR likewise. ">" marks the tracked entry (the active waypoint in the active plan), "@"
// an entry with a hold, "^" the vertical target of the active plan, "+" the edit index of the
// modified one, "=" what a unit has selected; "+" or "=" alone is the place behind the last entry.
// "!" is an altitude to keep, "*" an entry to fly over.
// Names of four letters are airports.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "base/module_state.h"
#include "base/text.h"
#include "flightplan/flight_plan.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_moves.h"
#include "support/temp_sim_folder.h"

namespace avq1::test {

inline constexpr std::string_view kMarks = ">^+=";
inline constexpr double kRestrictionFt = 8000;
inline constexpr double kRestrictionKt = 230;

// Begins with a fresh state and an empty simulator folder.
class FolderTest : public testing::Test {
    struct FreshState {
        FreshState() { ResetModuleState(); }
    } freshState_;  // before the folder, whose path is module state

  protected:
    TempSimFolder folder_;
};

inline PlanSelection& Selection() {
    return planBook.selections[1];
}

inline void SetMark(const FlightPlan& plan, char mark, std::int32_t index) {
    if (mark == '>') {
        SetFlownIndex(plan, index);
    } else if (mark == '=') {
        Selection() = {&plan, index};
    } else if (mark == '^' && IsActivePlan(plan)) {
        planBook.verticalTargetIndex = index;
    } else if (mark == '+' && &plan == &modifiedPlan) {
        planBook.editIndex = index;
    }
}

// The marks of an index, in the order in which they are written; ">" alone unless `all`.
inline std::string Marks(const FlightPlan& plan, std::int32_t index, bool all) {
    std::string marks;
    marks += index == FlownIndex(plan) ? ">" : "";
    if (all) {
        const bool edits = &plan == &modifiedPlan && index == planBook.editIndex;
        const bool selected = Selection().plan == &plan && index == Selection().index;
        marks += IsActivePlan(plan) && index == planBook.verticalTargetIndex ? "^" : "";
        marks += edits ? "+" : "";
        marks += selected ? "=" : "";
    }
    return marks;
}

// "J121", "V3", "UL9": one or two letters and a number.
inline bool IsAirway(std::string_view word) {
    const std::size_t digits = word.find_first_of("0123456789");
    return digits >= 1 && digits <= 2 &&
           word.find_first_not_of("0123456789", digits) == std::string_view::npos;
}

// One word of a route that stands for entries: the procedure they belong to, its name, the fixes.
struct RouteWord {
    std::string_view procedure;
    std::string_view name;
    std::string_view fixes;  // separated by commas
};

inline RouteWord ReadRouteWord(std::string_view word) {
    const std::size_t bracket = word.find('(');
    if (bracket == std::string_view::npos) {
        return {"", "", word};
    }
    const std::string_view head = word.substr(0, bracket);
    const std::size_t colon = std::min(head.find(':'), head.size());
    return {head.substr(0, colon), head.substr(std::min(colon + 1, head.size())),
            word.substr(bracket + 1, word.size() - bracket - 2)};
}

inline std::string_view NextFix(std::string_view& fixes) {
    const std::size_t comma = std::min(fixes.find(','), fixes.size());
    const std::string_view fix = fixes.substr(0, comma);
    fixes.remove_prefix(std::min(comma + 1, fixes.size()));
    return fix;
}

inline void AppendEntry(FlightPlan& plan, std::string_view fix, std::string_view procedure,
                        std::string_view via) {
    const std::int32_t index = plan.lastIndex + 1;
    PlanWaypoint entry;
    entry.procedure = procedure;
    entry.via = via;
    for (; !fix.empty() && kMarks.find(fix.front()) != std::string_view::npos;
         fix.remove_prefix(1)) {
        SetMark(plan, fix.front(), index);
    }
    for (; !fix.empty() && (fix.front() == '!' || fix.front() == '*'); fix.remove_prefix(1)) {
        (fix.front() == '!' ? entry.altitudeConstraint : entry.flyover) = 1;
        entry.altitude = entry.altitudeConstraint != 0 ? kRestrictionFt : kUnset;
        entry.speed = entry.altitudeConstraint != 0 ? kRestrictionKt : kUnset;
    }
    if (fix.empty()) {
        return;
    }
    if (fix.back() == '@') {
        HoldPattern& hold = holdList.holds[++holdList.count];
        (IsActivePlan(plan) ? hold.fixIndex : hold.pendingFixIndex) = index;
        entry.hasHold = 1;
        fix.remove_suffix(1);
    }
    entry.ident = fix;
    if (!IsDiscontinuity(entry)) {
        entry.type = fix == "DIRECT"     ? "WPT"
                     : fix.size() == 4   ? "APT"
                     : procedure.empty() ? "INT"
                                         : "";
        entry.latitude = 40 + 0.5 * index;
        entry.longitude = -70;
    }
    plan.Append(std::move(entry));
}

inline void SetPlan(FlightPlan& plan, std::string_view route) {
    for (const char mark : kMarks) {
        if (mark != '+') {
            SetMark(plan, mark, mark == '^' ? 0 : kNoWaypoint);
        }
    }
    plan.CutTo(-1);
    std::string_view airway;
    for (std::string_view text = NextWord(route); !text.empty(); text = NextWord(route)) {
        if (IsAirway(text)) {
            airway = text;
            continue;
        }
        RouteWord word = ReadRouteWord(text);
        while (!word.fixes.empty()) {
            AppendEntry(plan, NextFix(word.fixes), word.procedure, airway);
            airway = word.name;
        }
        airway = {};
    }
}

inline bool HasHoldAt(const FlightPlan& plan, std::int32_t index) {
    return index > 0 && &plan != &previewPlan &&
           std::any_of(holdList.holds.begin() + 1, holdList.holds.begin() + 1 + holdList.count,
                       [&](const HoldPattern& hold) {
                           return index ==
                                  (IsActivePlan(plan) ? hold.fixIndex : hold.pendingFixIndex);
                       });
}

inline std::string ShowEntry(const FlightPlan& plan, std::int32_t index, bool allMarks) {
    const PlanWaypoint& entry = plan.entries[index];
    const bool restricted = entry.altitudeConstraint != 0 && entry.altitude == kRestrictionFt &&
                            entry.speed == kRestrictionKt;
    return Marks(plan, index, allMarks) + (allMarks && restricted ? "!" : "") +
           (allMarks && entry.flyover != 0 ? "*" : "") + entry.ident +
           (HasHoldAt(plan, index) ? "@" : "");
}

// Whether the entries that say so have the holds.
inline bool FlagsMatchHolds(const FlightPlan& plan) {
    for (std::int32_t i = 0; i <= plan.lastIndex; ++i) {
        if ((plan.entries[i].hasHold != 0) != HasHoldAt(plan, i)) {
            return false;
        }
    }
    return true;
}

// The last of the entries from `first` on that one word stands for.
inline std::int32_t EndOfWord(const FlightPlan& plan, std::int32_t first) {
    const std::string& procedure = plan.entries[first].procedure;
    std::int32_t last = first;
    while (!procedure.empty() && last < plan.lastIndex) {
        const PlanWaypoint& next = plan.entries[last + 1];
        if (next.procedure != procedure || (last > first && next.via != plan.entries[last].via)) {
            break;
        }
        ++last;
    }
    return last;
}

inline std::string Show(const FlightPlan& plan, bool allMarks = false) {
    std::string text;
    for (std::int32_t i = 0; i <= plan.lastIndex; ++i) {
        const PlanWaypoint& first = plan.entries[i];
        text += text.empty() ? "" : " ";
        text += first.via.empty() ? "" : first.via + " ";
        const std::int32_t last = EndOfWord(plan, i);
        const std::string& name = plan.entries[last].via;
        if (first.procedure.empty()) {
            text += ShowEntry(plan, i, allMarks);
            continue;
        }
        text += first.procedure + (last == i || name.empty() ? "" : ":" + name) + "(";
        for (; i < last; ++i) {
            text += ShowEntry(plan, i, allMarks) + ",";
        }
        text += ShowEntry(plan, last, allMarks) + ")";
    }
    const std::string behind = Marks(plan, plan.lastIndex + 1, allMarks);
    return text + (behind.empty() || text.empty() ? "" : " ") + behind;
}

// A route without what does not count in a plan.
inline std::string Without(std::string_view text, std::string_view marks) {
    std::string rest(text);
    std::erase_if(rest, [&](char c) { return marks.find(c) != std::string_view::npos; });
    while (rest.ends_with(' ')) {
        rest.pop_back();
    }
    return rest;
}

// An entry to insert.
inline PlanWaypoint Fix(std::string_view ident, double latitude = 45) {
    PlanWaypoint entry;
    entry.ident = ident;
    entry.type = "INT";
    entry.latitude = latitude;
    entry.longitude = -75;
    return entry;
}

}  // namespace avq1::test
