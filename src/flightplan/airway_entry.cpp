#include "flightplan/airway_entry.h"

#include <cstdlib>
#include <string>
#include <utility>

#include "base/messages.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_moves.h"

namespace avq1 {
namespace {

constexpr std::string_view kNotOnAirway = " (N/A)";

PlanWaypoint AirwayEntry(const PointRecord& fix) {
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
    const Navaid& navaid = navDatabase.navaids[found];
    entry.type = PlanTypeOf(navaid.kind);
    entry.frequency = navaid.frequency;
    return true;
}

void LookupAirway(std::string_view enteredText) {
    const std::string name(enteredText.substr(enteredText.empty() ? 0 : 1));
    const std::string_view entryFix = modifiedPlan.Holds(planBook.editIndex)
                                          ? modifiedPlan.entries[planBook.editIndex].ident
                                          : std::string_view{};
    if (!FindAirway(name, entryFix)) {
        return;
    }
    planBook.airwayText = name;
    if (airwayLookup.entryIndex == 0) {
        planBook.airwayText += kNotOnAirway;
    }
}

bool InsertAirway(FlightPlan& plan) {
    const std::int32_t entryIndex = airwayLookup.entryIndex;
    const std::int32_t exitIndex = airwayLookup.exitIndex;
    const std::int32_t known = airwayLookup.fixes.count;
    if (entryIndex < 1 || exitIndex < 1 || entryIndex > known || exitIndex > known ||
        entryIndex == exitIndex || !plan.Holds(planBook.editIndex)) {
        return true;
    }
    if (plan.lastIndex + std::abs(exitIndex - entryIndex) > kMaxPlanIndex) {
        AppendMessage(kPlanFullMessage);
        return false;
    }
    const std::int32_t step = entryIndex < exitIndex ? 1 : -1;
    std::int32_t position = planBook.editIndex;
    for (std::int32_t fix = entryIndex; fix != exitIndex; fix += step) {
        OpenPlanEntry(plan, ++position);
        plan.Edit(position) = AirwayEntry(airwayLookup.fixes[fix + step]);
    }
    if (&plan == &modifiedPlan) {
        NoteEdit();
    }
    return true;
}

}  // namespace avq1
