// LEGS: the active plan leg by leg; with the crossing entry the leg at the cursor gets an altitude.
#include <algorithm>
#include <cmath>

#include "cdu/formats.h"
#include "cdu_gns/gns_values.h"
#include "cdu_gns/mcu_pages.h"
#include "flightplan/plan_edit.h"
#include "geometry/geometry.h"
#include "guidance/activation.h"
#include "simlink/aircraft_state.h"
#include "simlink/keyboard.h"

namespace avq1 {
namespace {

constexpr std::size_t kAltitudeDigits = 5;
constexpr int kTypedX = 67;
constexpr int kNewAltitudeX = 84;
constexpr int kFlyoverX = kMcuColumnWidth + 151;
constexpr int kAltitudeX = kMcuColumnWidth + 176;

// The list leaves out entry 0, where no leg ends.
std::int32_t LegCount() {
    return std::max(activePlan.lastIndex, 0);
}

std::int32_t EntryAtCursor() {
    return mcu.legs.row + 1;
}

void PutLeg(Screen& screen, std::int32_t index, int y, bool highlighted) {
    const PlanWaypoint& entry = activePlan.entries[index];
    const PlanWaypoint& from = activePlan.entries[index - 1];
    const McuStyle cursorStyle = PutMcuCursor(screen, y, highlighted);
    const McuStyle style = index == planBook.activeIndex ? kMcuActive : cursorStyle;
    if (IsDiscontinuity(entry) || IsDiscontinuity(from)) {
        screen.Put(style, kMcuColumnWidth, y, "%-8.8s%s %s", entry.ident.c_str(), Dashes(5).c_str(),
                   Dashes(3).c_str());
    } else {
        double distanceNm = 0;
        double courseTrue = 0;
        DistanceAndCourse(from.latitude, from.longitude, entry.latitude, entry.longitude,
                          distanceNm, courseTrue);
        screen.Put(style, kMcuColumnWidth, y, "%-8.8s%5.0f %03.0f", entry.ident.c_str(), distanceNm,
                   TrueToMagnetic(courseTrue, aircraft.magneticVariation));
    }
    if (entry.flyover != 0) {
        screen.Put(style, kFlyoverX, y, "FO");
    }
    if (const double feet = GnsAltitudeAt(activePlan, index); std::isfinite(feet)) {
        screen.Put(style, kAltitudeX, y, "%5.0f", feet);
    }
}

// The first leg from the first on whose identifier begins with the typed text; none changes
// nothing.
void FindTypedLeg() {
    for (std::int32_t index = 1; index <= activePlan.lastIndex; ++index) {
        if (activePlan.entries[index].ident.starts_with(mcu.secondEntryText)) {
            mcu.legs.row = index - 1;
            return;
        }
    }
}

// The typed digits are the crossing altitude, in feet; what is beyond five digits or no digit is
// left out.
void TakeTypedAltitude() {
    std::int32_t feet = 0;
    std::string digits;
    for (const char each : mcu.secondEntryText) {
        if (each >= '0' && each <= '9' && digits.size() < kAltitudeDigits) {
            digits += each;
            feet = feet * 10 + (each - '0');
        }
    }
    mcu.secondEntryText = digits;
    mcu.newAltitude = feet;
}

// What has been typed since the last draw. Before the first character the arrows' value stands.
void TakeTypedText() {
    if (mcu.secondEntryText == mcu.takenText) {
        return;
    }
    if (mcu.crossingEntry) {
        if (mcu.takenText.empty()) {
            mcu.altitudeBeforeTyping = mcu.newAltitude;
        }
        TakeTypedAltitude();
        if (mcu.secondEntryText.empty()) {
            mcu.newAltitude = mcu.altitudeBeforeTyping;
        }
    } else if (!mcu.secondEntryText.empty()) {
        FindTypedLeg();
    }
    mcu.takenText = mcu.secondEntryText;
}

// In the crossing entry the arrows set the altitude and PREV and NEXT alone move the cursor.
void HandleLegs(const UnitInput& input) {
    PlanSelection& chosen = planBook.selections[static_cast<std::size_t>(PlanUnit::Compact)];
    if (input.openedPage == 0 && chosen.plan == &activePlan && activePlan.Holds(chosen.index)) {
        mcu.legs.row = chosen.index - 1;  // its entry may have moved
    }
    if (LegCount() > 0) {
        TakeTypedText();
    }
    mcu.legs.Move(mcu.crossingEntry ? RowsToMove(input, kMcuListRows)
                                    : RowsToMoveWithArrows(input, kMcuListRows),
                  LegCount(), kMcuListRows);
    chosen = {&activePlan, EntryAtCursor()};
    if (mcu.crossingEntry && LegCount() > 0) {
        StepMcuAltitude(input.arrowKey);
    }
}

// An altitude of 0 takes the constraint away. A gap has no crossing: the entry stays open.
EntryResult SetCrossingAltitude(const FieldRow&) {
    const double altitudeFt = mcu.newAltitude > 0 ? mcu.newAltitude : kUnset;
    const bool set = EditActivePlan([&](FlightPlan& plan) {
        return SetCrossing(plan, EntryAtCursor(), {.altitudeFt = altitudeFt, .keepsSpeed = true});
    });
    mcu.crossingEntry = !set;
    return set ? EntryResult::Accepted : EntryResult::InvalidEntry;
}

EntryResult SetTypedCrossing(const FieldRow& field, std::string_view) {
    return SetCrossingAltitude(field);
}

bool CrossingIsSet(const FieldRow&) {
    return mcu.crossingEntry && LegCount() > 0;
}

void ShowCrossing(const FieldRow&, UnitText& text) {
    if (!KeyboardMessage.empty()) {
        return;
    }
    if (!HasPosition(activePlan.entries[EntryAtCursor()])) {
        text.Set("> No crossing at a gap");
    } else {
        text.Put("> Cross %s At %d", activePlan.entries[EntryAtCursor()].ident.c_str(),
                 mcu.newAltitude);
    }
}

void ShowNewAltitude(const FieldRow&, UnitText& text) {
    text.Put("%05d", mcu.newAltitude);
}

void ShowTyped(const FieldRow&, UnitText& text) {
    text.Put("%.8s", mcu.secondEntryText.c_str());
}

bool SearchIsTyped(const FieldRow&) {
    return !mcu.crossingEntry && mcu.editing != 0;
}

void ComposeLegs(Screen& screen) {
    const std::int32_t count = LegCount();
    PutMcuPosition(screen, count == 0 ? 0 : EntryAtCursor(), count);
    if (count == 0) {
        screen.Put(kMcuData, kMcuColumnWidth, kMcuRowY[1], "NO FLIGHT PLAN");
    }
    mcu.legs.ForEachShown(
        count, kMcuListRows, [&](std::int32_t slot, std::int32_t row, bool highlighted) {
            PutLeg(screen, row + 1, kMcuRowY[static_cast<std::size_t>(slot) + 1], highlighted);
        });
    if (count == 0 || !mcu.crossingEntry || !KeyboardMessage.empty()) {
        PutMcuMessage(screen);
    }
}

constexpr FieldRow kFields[] = {
    {.label = "LEGS:", .labelStyle = kMcuTitle},
    {.show = ShowTyped,
     .visible = SearchIsTyped,
     .style = kMcuActive,
     .valueAt = {kTypedX, kMcuRowY[0]}},
    {.show = ShowNewAltitude,
     .visible = CrossingIsSet,
     .style = kMcuActive,
     .valueAt = {kNewAltitudeX, kMcuRowY[0]}},
    {.line = kEnterLine,
     .show = ShowCrossing,
     .visible = CrossingIsSet,
     .enter = SetTypedCrossing,
     .press = SetCrossingAltitude,
     .style = kMcuHighlight,
     .valueAt = {0, kMcuRowY[5]}},
};

}  // namespace

constinit const PageRow kMcuLegsPage{
    .page = kMcuLegs, .fields = kFields, .handle = HandleLegs, .compose = ComposeLegs};

}  // namespace avq1
