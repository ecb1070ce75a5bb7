#include "guidance/radio_tuning.h"

#include <array>
#include <string>
#include <string_view>

#include "base/text.h"
#include "flightplan/route_walk.h"
#include "geometry/geometry.h"
#include "guidance/guidance_state.h"
#include "simlink/aircraft_state.h"
#include "simlink/key_events.h"

namespace avq1 {
namespace {

constexpr double kTuningRangeNm = 230;
constexpr std::size_t kDecimalPointPosition = 3;  // of "113.90"
constexpr std::size_t kPilotEntryLength = 6;

void SendUnlessZero(KeyEvent event, std::int32_t parameter) {
    if (parameter != 0) {
        SendKeyEvent(event, parameter);
    }
}

void SendCourse(std::int32_t from, std::int32_t to) {
    if (from == kNoEntry) {
        return;
    }
    const PlanWaypoint& start = activePlan.entries[from];
    const PlanWaypoint& end = activePlan.entries[to];
    double distanceNm = 0;
    double courseTrue = 0;
    DistanceAndCourse(start.latitude, start.longitude, end.latitude, end.longitude, distanceNm,
                      courseTrue);
    const std::int32_t course =
        TruncateToInteger(TrueToMagnetic(courseTrue, aircraft.magneticVariation));
    if (course >= 1 && course <= 360) {  // others come of a variation that is none
        SendKeyEvent(KeyEvent::CourseSet, course);
    }
}

// "113.90" as the digits 11390.
std::int32_t FrequencyDigits(std::string_view frequency) {
    std::string text(frequency);
    if (text.size() > kDecimalPointPosition) {
        text[kDecimalPointPosition] = ' ';
    }
    std::array<std::string_view, 2> words;
    SplitWords(text, words);
    std::string digits(words[0]);
    digits += words[1];
    return ToInteger(digits);
}

void SendFrequency(const PlanWaypoint& entry) {
    if (entry.type == "NDB") {
        SendUnlessZero(KeyEvent::AdfFrequencySet, ToBcd(ToInteger(entry.frequency)));
    } else {
        SendUnlessZero(KeyEvent::NavFrequencySet, ToBcd(FrequencyDigits(entry.frequency)));
    }
}

std::int32_t FirstEntryWithFrequency() {
    for (std::int32_t index = planBook.activeIndex; index <= activePlan.lastIndex; ++index) {
        const PlanWaypoint& entry = activePlan.entries[index];
        if (!entry.frequency.empty() && !IsDiscontinuity(entry)) {
            return index;
        }
    }
    return kNoEntry;
}

void TuneFromPlan() {
    if (!HasActiveWaypoint()) {
        return;
    }
    const std::int32_t station = FirstEntryWithFrequency();
    if (station != kNoEntry) {
        const PlanWaypoint& entry = activePlan.entries[station];
        const double distanceNm = GreatCircleDistanceNm(aircraft.latitude, aircraft.longitude,
                                                        entry.latitude, entry.longitude);
        if (distanceNm <= kTuningRangeNm) {
            SendCourse(PositionedEntryBack(activePlan, station - 1), station);
            SendFrequency(entry);
        }
        return;
    }
    const std::int32_t passed = planBook.activeIndex - 1;
    if (!activePlan.entries[passed].frequency.empty() && !IsDiscontinuity(ActiveWaypoint())) {
        SendCourse(passed, planBook.activeIndex);
    }
}

void TuneFromPilotEntry() {
    const std::string_view entry = requests.radioEntry;
    std::array<std::string_view, 2> words;
    SplitWords(entry.substr(0, kPilotEntryLength), words);
    SendUnlessZero(KeyEvent::CourseSet, ToInteger(words[0]));
    SendUnlessZero(KeyEvent::NavFrequencySet, ToBcd(ToInteger(words[1])));
}

}  // namespace

void TuneRadios(TuneMode mode) {
    if (mode == TuneMode::FlightPlan) {
        TuneFromPlan();
    } else if (mode == TuneMode::PilotEntry) {
        TuneFromPilotEntry();
    }
}

}  // namespace avq1
