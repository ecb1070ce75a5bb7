// DIRTO: the points that bear the typed identifier; ENTER flies to the highlighted one.
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

constexpr int kTypedX = 67;

// The records found for the typed identifier, kept here because every search fills the same table.
struct Candidates {
    std::string ident;
    PointTable found;
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
    mcu.candidates = {};
    if (!candidates.ident.empty()) {
        SearchIdent(candidates.ident, SearchCategory::All);
        candidates.found = navDatabase.searchResults;
        mcu.candidates.row = candidates.found.count > 0 ? NearestResult() - 1 : 0;
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
    activePlan.CutTo(-1);
    activePlan.Append(DirectEntry());
    activePlan.Append(chosen);
    if (keepsArrival) {
        arrival.ataText.clear();
        arrival.via.clear();  // its leg begins at the chosen point now, off any airway
        activePlan.Append(arrival);
    }
    planBook.verticalTargetIndex = activePlan.lastIndex;
    StartActivePlan();
    CopyActiveToModified();
}

void HandleDirto(const UnitInput& input) {
    RefreshCandidates();
    mcu.candidates.Move(RowsToMoveWithArrows(input, kMcuListRows), candidates.found.count,
                        kMcuListRows);
}

EntryResult FlyToHighlighted(const FieldRow&, std::string_view) {
    if (candidates.found.count == 0) {
        return EntryResult::NotInDatabase;
    }
    FlyDirectTo(candidates.found[mcu.candidates.row + 1]);
    mcu.entryText.clear();
    candidates = Candidates{};
    mcu.candidates = {};
    OpenPage(mcu, kMcuTo);
    return EntryResult::Accepted;
}

void PutCandidate(Screen& screen, std::int32_t row, int y, bool highlighted) {
    const PointRecord& record = candidates.found[row + 1];
    double distanceNm = 0;
    double courseTrue = 0;
    DistanceAndCourse(aircraft.latitude, aircraft.longitude, record.latitude, record.longitude,
                      distanceNm, courseTrue);
    const std::string ident(record.ident);
    const std::string kind(KindText(record.kind));
    screen.Put(highlighted ? kMcuHighlight : kMcuData, kTypedX, y, "%s%-5s %3s %03.0f",
               highlighted ? "> " : "  ", ident.c_str(), kind.c_str(),
               TrueToMagnetic(courseTrue, aircraft.magneticVariation));
}

void ComposeDirto(Screen& screen) {
    screen.Put(kMcuActive, kTypedX, kMcuRowY[0], "%.8s", mcu.entryText.c_str());
    if (mcu.entryText.empty()) {
        screen.Put(kMcuData, kTypedX, kMcuListY[0], "%s",
                   mcu.editing == 0          ? "EDIT TO TYPE"
                   : KeyboardMessage.empty() ? "TYPE IDENTIFIER"
                                             : "");
    } else if (candidates.found.count == 0) {
        screen.Put(kMcuData, kTypedX, kMcuListY[0], "NOT IN DATABASE");
    }
    mcu.candidates.ForEachShown(
        candidates.found.count, kMcuListRows,
        [&](std::int32_t slot, std::int32_t row, bool highlighted) {
            PutCandidate(screen, row, kMcuListY[static_cast<std::size_t>(slot)], highlighted);
        });
    PutMcuMessage(screen);
}

constexpr FieldRow kFields[] = {
    {.line = kEnterLine, .label = "DIRTO:", .enter = FlyToHighlighted, .labelStyle = kMcuTitle},
};

}  // namespace

constinit const PageRow kMcuDirtoPage{
    .page = kMcuDirto, .fields = kFields, .handle = HandleDirto, .compose = ComposeDirto};

}  // namespace avq1
