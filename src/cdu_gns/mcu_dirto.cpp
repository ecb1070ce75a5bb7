// DIRTO: the points that bear the typed identifier; ENTER flies to the highlighted one.
#include <algorithm>
#include <string>

#include "base/module_state.h"
#include "cdu_gns/mcu_pages.h"
#include "flightplan/plan_edit.h"
#include "geometry/geometry.h"
#include "guidance/activation.h"
#include "navdb/nav_database.h"
#include "simlink/aircraft_state.h"
#include "simlink/keyboard.h"

namespace avq1 {
namespace {

constexpr int kTypedX = 67;

// The records found for the typed identifier.
struct Candidates {
    std::string ident;
    SearchResults found;
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
        SearchIdent(candidates.ident, SearchCategory::All, candidates.found);
        mcu.candidates.row = std::max(NearestResult(candidates.found) - 1, 0);
    }
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
    FlyDirectToPoint(EntryFrom(candidates.found[mcu.candidates.row + 1]), true);
    mcu.entryText.clear();
    OpenPage(mcu, kMcuTo);
    return EntryResult::Accepted;
}

void PutCandidate(Screen& screen, std::int32_t row, int y, bool highlighted) {
    const FoundPoint& record = candidates.found[row + 1];
    double distanceNm = 0;
    double courseTrue = 0;
    DistanceAndCourse(aircraft.latitude, aircraft.longitude, record.latitude, record.longitude,
                      distanceNm, courseTrue);
    const std::string kind(KindText(record.kind));
    screen.Put(highlighted ? kMcuHighlight : kMcuData, kTypedX, y, "%s%-5s %3s %03.0f",
               highlighted ? "> " : "  ", record.ident.c_str(), kind.c_str(),
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
