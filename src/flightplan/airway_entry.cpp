#include "flightplan/airway_entry.h"

#include <cstdlib>
#include <string>
#include <utility>

#include "base/messages.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_moves.h"

namespace avq1 {
namespace {

PlanWaypoint AirwayEntry(const FoundPoint& fix) {
    PlanWaypoint entry;
    entry.ident = fix.ident;
    entry.latitude = fix.latitude;
    entry.longitude = fix.longitude;
    entry.via = fix.name;
    if (!TieToNavaid(entry)) {
        entry.type = "INT";
    }
    return entry;
}

}  // namespace

bool TieToNavaid(PlanWaypoint& entry) {
    std::int32_t found = FindNavaid(entry.ident, "", entry.latitude);  // finds VORs only
    if (found == 0) {
        found = FindNavaid(entry.ident, KindText(PointKind::Navaid), entry.latitude);
    }
    if (found == 0) {
        return false;
    }
    const Navaid navaid = navDatabase.navaids[found];
    entry.type = PlanTypeOf(navaid.kind);
    entry.frequency = navaid.frequency;
    return true;
}

void LookupAirway(const FlightPlan& plan, std::int32_t entry, std::string_view enteredText,
                  AirwayLookup& lookup) {
    const std::string_view name = enteredText.substr(enteredText.empty() ? 0 : 1);
    FindAirway(name, plan.Holds(entry) ? plan.entries[entry].ident : std::string_view{}, lookup);
}

bool InsertAirway(FlightPlan& plan, std::int32_t entry, const AirwayLookup& lookup) {
    const std::int32_t entryIndex = lookup.entryIndex;
    const std::int32_t exitIndex = lookup.exitIndex;
    if (!lookup.fixes.Holds(entryIndex) || !lookup.fixes.Holds(exitIndex) ||
        entryIndex == exitIndex || !plan.Holds(entry)) {
        return true;
    }
    if (plan.lastIndex + std::abs(exitIndex - entryIndex) > kMaxPlanIndex) {
        AppendMessage(kPlanFullMessage);
        return false;
    }
    const std::int32_t step = entryIndex < exitIndex ? 1 : -1;
    std::int32_t position = entry;
    for (std::int32_t fix = entryIndex; fix != exitIndex; fix += step) {
        OpenPlanEntry(plan, ++position);
        plan.Edit(position) = AirwayEntry(lookup.fixes[fix + step]);
    }
    if (position < plan.lastIndex &&
        plan.entries[position + 1].ident == plan.entries[position].ident) {
        plan.Edit(position + 1).via = plan.entries[position].via;
        MergePlanEntries(plan, position);
    }
    if (IsActivePlan(plan)) {
        planBook.verticalTargetIndex = NextRestriction(plan, planBook.activeIndex);
    }
    NoteEdit(plan);
    return true;
}

}  // namespace avq1
