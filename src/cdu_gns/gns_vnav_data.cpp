// VNAV DATA: what the vertical profile is planned with, and when the autopilot's altitude will be
// reached.
#include <cmath>
#include <limits>

#include "cdu/formats.h"
#include "cdu/pilot_entries.h"
#include "cdu_gns/gns_entry.h"
#include "cdu_gns/gns_pages.h"
#include "cdu_gns/gns_values.h"
#include "guidance/guidance_state.h"
#include "guidance/vnav.h"
#include "settings/aircraft_performance.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr double kMinutesPerHour = 60;
constexpr double kSteepestPathDeg = 6.0;
constexpr double kStillFpm = 50;  // below it no altitude is being flown to

void ShowCruise(const LineRow&, UnitText& text) {
    text = vnav.cruiseAltitude > 0 ? NumberText(vnav.cruiseAltitude, 6) : Dashes(6);
}

EntryResult EnterCruise(const LineRow&) {
    double feet = 0;
    if (!ReadTypedWhole(feet)) {
        return EntryResult::InvalidEntry;
    }
    if (!HasActiveWaypoint()) {
        return EntryResult::NoActiveRoute;
    }
    SetCruiseAltitude(static_cast<std::int32_t>(feet));
    return EntryResult::Accepted;
}

void ShowTransition(const LineRow&, UnitText& text) {
    text = NumberText(pilotEntries.transitionAltitudeFt, 6);
}

EntryResult EnterTransition(const LineRow&) {
    double feet = 0;
    if (!ReadTypedWhole(feet)) {
        return EntryResult::InvalidEntry;
    }
    pilotEntries.transitionAltitudeFt = feet;
    return EntryResult::Accepted;
}

void ShowPathAngle(const LineRow&, UnitText& text) {
    text.Set("---");
    if (performance.flightPathAngleDeg > 0) {
        text.Put("%2.1f", performance.flightPathAngleDeg);
    }
}

// The descent rate goes with the angle, to the nearest hundred.
EntryResult EnterPathAngle(const LineRow&) {
    double degrees = 0;
    if (!ReadTypedTenths(degrees) || degrees <= 0) {
        return EntryResult::InvalidEntry;
    }
    performance.flightPathAngleDeg = std::min(degrees, kSteepestPathDeg);
    performance.descentRate =
        std::floor(
            (performance.descentTas / kMinutesPerHour * performance.flightPathAngleDeg * 100 + 50) *
            0.01) *
        100;
    return EntryResult::Accepted;
}

// ---- the altitude set on the autopilot ----
// Until it is reached at the present vertical speed.
double MinutesToPreselected() {
    const double feet = ShownAircraft().apAltitudeTargetFt - ShownAircraft().altitudeFt;
    const bool approaching = std::abs(ShownAircraft().verticalSpeedFpm) > kStillFpm &&
                             feet * ShownAircraft().verticalSpeedFpm > 0;
    return approaching ? feet / ShownAircraft().verticalSpeedFpm : kNone;
}

void ShowPreselected(const FieldRow&, UnitText& text) {
    text = NumberText(ShownAircraft().apAltitudeTargetFt, 4);
}

void ShowRange(const FieldRow&, UnitText& text) {
    const double minutes = MinutesToPreselected();
    text = std::isfinite(minutes)
               ? NumberText(minutes / kMinutesPerHour * ShownAircraft().groundSpeedKt, 4, 1)
               : Dashes(5);
}

void ShowEte(const FieldRow&, UnitText& text) {
    text = GnsMinutesText(MinutesToPreselected());
}

constexpr FieldRow kFields[] = {
    {.label = "VNAV  DATA 1/1", .labelAt = {90, 0}},
    {.label = "CRUISE ALT", .labelAt = {kGnsLabelX, 80}},
    {.label = "TRANS LEVEL", .labelAt = {kGnsLabelX, 120}},
    {.label = "DEFAULT FPA", .labelAt = {kGnsLabelX, 160}},
    {.label = "PRESEL ALT",
     .show = ShowPreselected,
     .style = kGnsData,
     .valueAt = {380, 240},
     .labelAt = {kGnsLabelX, 240}},
    {.label = "RANGE (NM)",
     .show = ShowRange,
     .style = kGnsData,
     .valueAt = {360, 280},
     .labelAt = {kGnsLabelX, 280}},
    {.label = "ETE",
     .show = ShowEte,
     .style = kGnsData,
     .valueAt = {360, 320},
     .labelAt = {kGnsLabelX, 320}},
};

constexpr LineRow kLines[] = {
    {.line = 7,
     .show = ShowCruise,
     .entryLength = 5,
     .select = [](const LineRow&) { OfferWhole(vnav.cruiseAltitude, 5); },
     .enter = EnterCruise,
     .style = kGnsData,
     .at = {340, 80}},
    {.line = 7,
     .state = 2,
     .show = ShowTransition,
     .entryLength = 5,
     .select = [](const LineRow&) { OfferWhole(pilotEntries.transitionAltitudeFt, 5); },
     .enter = EnterTransition,
     .style = kGnsData,
     .at = {340, 120}},
    {.line = 8,
     .show = ShowPathAngle,
     .showEntry = ShowTypedTenths,
     .entryLength = 3,
     .select = [](const LineRow&) { OfferTenths(performance.flightPathAngleDeg, 2); },
     .enter = EnterPathAngle,
     .style = kGnsData,
     .at = {400, 160}},
};

}  // namespace

constinit const PageRow kGnsVnavDataPage{.page = kGnsVnavData, .fields = kFields, .lines = kLines};

}  // namespace avq1
