#include <algorithm>
#include <cstdio>

#include "cdu_gns/mcu_pages.h"
#include "flightplan/flight_plan.h"
#include "geometry/geometry.h"
#include "simlink/aircraft_state.h"
#include "simlink/keyboard.h"

namespace avq1 {
namespace {

constexpr std::size_t kAltitudeDigits = 5;
constexpr int kFlyoverX = kMcuColumnWidth + 151;
constexpr int kAltitudeX = kMcuColumnWidth + 176;

void PutLeg(McuScreen& screen, std::int32_t index, int y) {
    const PlanWaypoint& entry = activePlan.entries[index];
    const bool active = index == planBook.activeIndex;
    const McuStyle style = active                    ? McuStyle::Active
                           : index == mcu.legsCursor ? McuStyle::Highlight
                                                     : McuStyle::Data;
    if (index == mcu.legsCursor) {
        PutMcuCursor(screen, y);
    }
    const PlanWaypoint& from = activePlan.entries[index - 1];
    if (IsDiscontinuity(entry) || IsDiscontinuity(from)) {
        screen.Put(style, kMcuColumnWidth, y, "%-8.8s----- ---", entry.ident.c_str());
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
    if (entry.altitude != kUnset) {
        screen.Put(style, kAltitudeX, y, "%5.0f", entry.altitude);
    }
}

// The first leg from the first on whose identifier begins with the typed text; none changes
// nothing.
void FindTypedLeg() {
    for (std::int32_t index = 1; index <= activePlan.lastIndex; ++index) {
        if (activePlan.entries[index].ident.starts_with(mcu.secondEntryText)) {
            mcu.legsCursor = index;
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
        TakeTypedAltitude();
    } else if (!mcu.secondEntryText.empty()) {
        FindTypedLeg();
    }
    mcu.takenText = mcu.secondEntryText;
}

}  // namespace

void HandleLegsKeys() {
    const std::int32_t last = activePlan.lastIndex;
    if (last < 1) {
        mcu.legsCursor = 1;
        mcu.legsScroll = 1;
        return;
    }
    TakeTypedText();
    std::int32_t row = mcu.legsCursor - 1;
    std::int32_t first = mcu.legsScroll - 1;
    MoveMcuCursor(row, first, McuRowsToMove(!mcu.crossingEntry), last);
    mcu.legsCursor = row + 1;
    mcu.legsScroll = first + 1;
    if (!mcu.crossingEntry) {
        return;
    }
    StepMcuAltitude();
    if (mcu.enterPressed) {
        // An altitude of 0 takes the constraint away.
        PlanWaypoint& entry = activePlan.entries[mcu.legsCursor];
        entry.altitude = mcu.newAltitude > 0 ? mcu.newAltitude : kUnset;
        entry.altitudeConstraint = mcu.newAltitude > 0 ? 1 : 0;
        mcu.crossingEntry = false;
    }
}

void ComposeLegs(McuScreen& screen) {
    const std::int32_t last = activePlan.lastIndex;
    screen.Put(McuStyle::Title, 0, kMcuRowY[0], "LEGS:");
    if (!mcu.crossingEntry && mcu.editing != 0) {
        screen.Put(McuStyle::Active, 67, kMcuRowY[0], "%.8s", mcu.secondEntryText.c_str());
    }
    PutMcuPosition(screen, last < 1 ? 0 : mcu.legsCursor, std::max(last, 0));
    if (last < 1) {
        screen.Put(McuStyle::Data, kMcuColumnWidth, kMcuRowY[1], "NO FLIGHT PLAN");
        PutMcuMessage(screen);
        return;
    }
    for (int i = 0; i < kMcuListRows && mcu.legsScroll + i <= last; ++i) {
        PutLeg(screen, mcu.legsScroll + i, kMcuRowY[static_cast<std::size_t>(i) + 1]);
    }
    if (!mcu.crossingEntry || !KeyboardMessage.empty()) {
        PutMcuMessage(screen);
    }
    if (!mcu.crossingEntry) {
        return;
    }
    screen.Put(McuStyle::Active, 84, kMcuRowY[0], "%05d", mcu.newAltitude);
    std::array<char, 8> altitude{};
    std::snprintf(altitude.data(), altitude.size(), "%d", mcu.newAltitude);
    if (!KeyboardMessage.empty()) {
        return;
    }
    screen.Put(McuStyle::Highlight, 0, kMcuRowY[5], "> Cross %s At %s",
               activePlan.entries[mcu.legsCursor].ident.c_str(), altitude.data());
}

}  // namespace avq1
