#include <string>

#include "base/module_state.h"
#include "cdu_gns/mcu_pages.h"
#include "flightplan/flight_plan.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_edit.h"
#include "geometry/geometry.h"
#include "guidance/activation.h"
#include "navdb/nav_database.h"
#include "simlink/aircraft_state.h"
#include "simlink/keyboard.h"

namespace avq1 {
namespace {

// The records found for the typed identifier, kept here because every search fills the same table.
struct Candidates {
    std::string ident;
    PointTable found;
    std::int32_t first = 0;  // the first one shown, from 0
};

Candidates candidates;
const StateReset candidatesReset([] { candidates = Candidates{}; });

// Searches when the typed text is another one; the nearest record is highlighted first.
void RefreshCandidates() {
    if (candidates.ident == mcu.entryText) {
        return;
    }
    candidates = Candidates{};
    candidates.ident = mcu.entryText;
    mcu.candidateIndex = 0;
    if (!candidates.ident.empty()) {
        SearchIdent(candidates.ident, SearchCategory::All);
        candidates.found = navDatabase.searchResults;
        mcu.candidateIndex = candidates.found.count > 0 ? NearestResult() - 1 : 0;
    }
}

PlanWaypoint DirectEntry() {
    PlanWaypoint entry;
    entry.ident = "DIRECT";
    entry.type = "WPT";
    entry.latitude = aircraft.latitude;
    entry.longitude = aircraft.longitude;
    return entry;
}

PlanWaypoint EntryOf(const PointRecord& record) {
    PlanWaypoint entry;
    entry.ident = record.ident;
    entry.type = PlanTypeOf(record.kind);
    entry.latitude = record.latitude;
    entry.longitude = record.longitude;
    entry.frequency = record.frequency;
    return entry;
}

// The plan becomes: present position, the chosen point, and the airport the old plan ended at.
void FlyDirectTo(const PointRecord& record) {
    PlanWaypoint arrival;
    if (activePlan.lastIndex >= 0) {
        arrival = activePlan.entries[activePlan.lastIndex];
    }
    const PlanWaypoint chosen = EntryOf(record);
    const bool isArrival = arrival.ident == chosen.ident && arrival.type == chosen.type;
    const bool keepsArrival = arrival.type == "APT" && !isArrival;
    DeleteAllHolds();
    activePlan.entries[0] = DirectEntry();
    activePlan.entries[1] = chosen;
    activePlan.lastIndex = 1;
    if (keepsArrival) {
        arrival.ataText.clear();
        arrival.via.clear();  // its leg begins at the chosen point now, off any airway
        activePlan.entries[2] = arrival;
        activePlan.lastIndex = 2;
    }
    planBook.verticalTargetIndex = activePlan.lastIndex;
    StartActivePlan();
    CopyActiveToModified();
    mcu.entryText.clear();
    candidates = Candidates{};
    mcu.candidateIndex = 0;
    mcu.page = McuPage::To;
}

}  // namespace

void HandleDirtoKeys() {
    RefreshCandidates();
    MoveMcuCursor(mcu.candidateIndex, candidates.first, McuRowsToMove(true),
                  candidates.found.count);
    if (mcu.enterPressed && candidates.found.count > 0) {
        const PointRecord chosen = candidates.found[mcu.candidateIndex + 1];
        FlyDirectTo(chosen);
    }
}

void ComposeDirto(McuScreen& screen) {
    screen.Put(McuStyle::Title, 0, kMcuRowY[0], "DIRTO:");
    screen.Put(McuStyle::Active, 67, kMcuRowY[0], "%.8s", mcu.entryText.c_str());
    if (mcu.entryText.empty()) {
        screen.Put(McuStyle::Data, 67, kMcuListY[0], "%s",
                   mcu.editing == 0          ? "EDIT TO TYPE"
                   : KeyboardMessage.empty() ? "TYPE IDENTIFIER"
                                             : "");
    } else if (candidates.found.count == 0) {
        screen.Put(McuStyle::Data, 67, kMcuListY[0], "NOT IN DATABASE");
    }
    for (int i = 0; i < kMcuListRows && candidates.first + i < candidates.found.count; ++i) {
        const std::int32_t index = candidates.first + i;
        const PointRecord& record = candidates.found[index + 1];
        double distanceNm = 0;
        double courseTrue = 0;
        DistanceAndCourse(aircraft.latitude, aircraft.longitude, record.latitude, record.longitude,
                          distanceNm, courseTrue);
        const bool highlighted = index == mcu.candidateIndex;
        const std::string ident(record.ident);
        const std::string kind(KindText(record.kind));
        screen.Put(highlighted ? McuStyle::Highlight : McuStyle::Data, 67,
                   kMcuListY[static_cast<std::size_t>(i)], "%s%-5s %3s %03.0f",
                   highlighted ? "> " : "  ", ident.c_str(), kind.c_str(),
                   TrueToMagnetic(courseTrue, aircraft.magneticVariation));
    }
    PutMcuMessage(screen);
}

}  // namespace avq1
