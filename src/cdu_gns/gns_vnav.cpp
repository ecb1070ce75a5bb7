// VNAV: the vertical target and how it will be met; behind it the profile point by point.
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <span>
#include <string>

#include "cdu/formats.h"
#include "cdu_gns/gns_pages.h"
#include "cdu_gns/gns_values.h"
#include "flightplan/flight_plan.h"
#include "guidance/guidance_state.h"
#include "guidance/vnav.h"
#include "guidance/vnav/planning.h"
#include "settings/aircraft_performance.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr double kMinutesPerHour = 60;
constexpr double kOnPathFt = 0.5;  // reads as no deviation
constexpr std::int32_t kProfileRows = 8;
constexpr int kAltitudeX = 380;
constexpr int kTimeX = 360;  // six dashes wide
constexpr int kProfileX = 320;

bool HasProfile() {
    return HasActiveWaypoint() && vnav.cruiseAltitude > 0;
}

// ---- the target ----
std::int32_t TargetEntry() {
    return vnav.targetIsEntry != 0 ? planBook.verticalTargetIndex : kNoWaypoint;
}

const PredictedPoint& TargetPoint() {
    if (vnav.targetIsEntry != 0) {
        return GnsPredictionOf(planBook.verticalTargetIndex);
    }
    return vnav.Phase() == VerticalPhase::Climb ? ActivePredictions().topOfClimb
                                                : ActivePredictions().topOfDescent;
}

void ShowPhase(const FieldRow&, UnitText& text) {
    constexpr const char* kNames[] = {"CLIMB", "CRUISE", "DESCENT"};
    text.Set(HasProfile() ? kNames[static_cast<std::size_t>(vnav.Phase())] : "INVALID");
}

void ShowTargetAltitude(const FieldRow&, UnitText& text) {
    text = NumberText(HasProfile() ? vnav.targetAltitude : kNone, 5);
}

void ShowTarget(const FieldRow&, UnitText& text) {
    if (!HasProfile()) {
        text.Set("TO ------");
    } else if (activePlan.Holds(TargetEntry())) {
        text.Put("TO %.6s", activePlan.entries[TargetEntry()].ident.c_str());
    } else {
        text.Set(vnav.Phase() == VerticalPhase::Climb ? "TO #TOC" : "TO #TOD");
    }
}

void ShowAltitudeThere(const FieldRow&, UnitText& text) {
    const bool isEntry = activePlan.Holds(TargetEntry());
    text = NumberText(!HasProfile() ? kNone
                      : isEntry     ? GnsAltitudeAt(activePlan, TargetEntry())
                                    : vnav.cruiseAltitude,
                      5);
}

void ShowRange(const FieldRow&, UnitText& text) {
    text = NumberText(HasProfile() ? GnsDistanceTo(TargetPoint()) : kNone, 5, 1);
}

void ShowEte(const FieldRow&, UnitText& text) {
    text = GnsMinutesText(HasProfile() ? GnsMinutesTo(TargetPoint()) : kNone);
}

void ShowCrossing(const FieldRow&, UnitText& text) {
    text = HasProfile() ? GnsClockText(TargetPoint()) : Dashes(6);
}

// ---- rates ----
// Worked out while it is flown, and in the descent at any rate.
void ShowRequired(const FieldRow&, UnitText& text) {
    const VerticalPhase phase = vnav.Phase();
    const bool known = phase == VerticalPhase::Descent ||
                       (phase == VerticalPhase::Climb && guidance.vnavEngaged == 1);
    text = NumberText(HasProfile() && known ? std::abs(vnav.requiredFpm) : kNone, 4);
}

void ShowActualLabel(const FieldRow&, UnitText& text) {
    text.Put("ACTUAL   FPM %s", ShownAircraft().verticalSpeedFpm < 0 ? "DN" : "UP");
}

void ShowActual(const FieldRow&, UnitText& text) {
    text = NumberText(std::abs(ShownAircraft().verticalSpeedFpm), 4);
}

double DeviationFt() {
    return ShownAircraft().altitudeFt - vnav.pathAltitude;
}

// What matters in the phase: the gradient, the rate from the top of descent on, the deviation.
void ShowPhaseLabel(const FieldRow&, UnitText& text) {
    if (!HasProfile()) {
        return;
    }
    switch (vnav.Phase()) {
        case VerticalPhase::Climb:
            text.Set("CLIMB GRAD");
            break;
        case VerticalPhase::Cruise:
            text.Set("@ #TOD   FM DN");
            break;
        case VerticalPhase::Descent:
            text.Set(DeviationFt() > kOnPathFt    ? "VERT DEV HIGH"
                     : DeviationFt() < -kOnPathFt ? "VERT DEV LOW"
                                                  : "VERT DEV");
            break;
    }
}

void ShowPhaseValue(const FieldRow&, UnitText& text) {
    if (!HasProfile()) {
        return;
    }
    switch (vnav.Phase()) {
        case VerticalPhase::Climb: {
            const bool moving = ShownAircraft().groundSpeedKt > kGnsTimesFromKt;
            const double feetPerNm = moving ? ShownAircraft().verticalSpeedFpm /
                                                  ShownAircraft().groundSpeedKt * kMinutesPerHour
                                            : kNone;
            text.Put("%s/NM", NumberText(feetPerNm, 4).c_str());
            break;
        }
        case VerticalPhase::Cruise:
            text = NumberText(SpeedsOf(performance).descentRate, 7);
            break;
        case VerticalPhase::Descent:
            text = NumberText(std::abs(DeviationFt()), 7);
            break;
    }
}

constexpr FieldRow kTargetFields[] = {
    {.show = ShowPhase, .style = kGnsLabel, .valueAt = {kGnsLabelX, 40}},
    {.show = ShowTargetAltitude, .style = kGnsData, .valueAt = {kAltitudeX, 40}},
    {.show = ShowTarget, .style = kGnsActive, .valueAt = {kGnsLabelX, 80}},
    {.show = ShowAltitudeThere, .style = kGnsData, .valueAt = {kAltitudeX, 80}},
    {.label = "RANGE (NM)",
     .show = ShowRange,
     .style = kGnsData,
     .valueAt = {370, 120},
     .labelAt = {kGnsLabelX, 120}},
    {.label = "ETE",
     .show = ShowEte,
     .style = kGnsData,
     .valueAt = {kTimeX, 160},
     .labelAt = {kGnsLabelX, 160}},
    {.label = "REQUIRED FPM    ",
     .show = ShowRequired,
     .style = kGnsData,
     .valueAt = {400, 200},
     .labelAt = {kGnsLabelX, 200}},
    {.show = ShowActualLabel, .style = kGnsLabel, .valueAt = {kGnsLabelX, 240}},
    {.show = ShowActual, .style = kGnsData, .valueAt = {400, 240}},
    {.label = "EST CROSSING",
     .show = ShowCrossing,
     .style = kGnsData,
     .valueAt = {kTimeX, 280},
     .labelAt = {kGnsLabelX, 280}},
    {.show = ShowPhaseLabel, .style = kGnsLabel, .valueAt = {kGnsLabelX, 320}},
    {.show = ShowPhaseValue, .style = kGnsData, .valueAt = {340, 320}},
};

// ---- the profile ----
struct ProfilePoint {
    std::string_view name;
    double distanceNm = 0;
    double altitudeFt = 0;
};

// Calls visit(point) for the tops and the restricted entries that lie ahead, in the plan's order
// with the tops where they are passed.
template <typename Visit>
void ForEachProfilePoint(Visit visit) {
    const Predictions& ahead = ActivePredictions();
    std::array<const PredictedPoint*, 2> tops = {&ahead.topOfClimb, &ahead.topOfDescent};
    constexpr std::array<std::string_view, 2> kTopNames = {"#TOC", "#TOD"};
    const auto visitTops = [&](double beforeNm) {
        for (std::size_t i = 0; i < tops.size(); ++i) {
            if (tops[i] != nullptr && tops[i]->known && tops[i]->distanceNm <= beforeNm) {
                visit(ProfilePoint{kTopNames[i], tops[i]->distanceNm,
                                   static_cast<double>(vnav.cruiseAltitude)});
                tops[i] = nullptr;
            }
        }
    };
    for (std::int32_t i = HasProfile() ? planBook.activeIndex : kNoWaypoint;
         i <= activePlan.lastIndex; ++i) {
        const PlanWaypoint& entry = activePlan.entries[i];
        const PredictedPoint& point = GnsPredictionOf(i);
        if (entry.altitudeConstraint != 0 && entry.altitude != kUnset) {
            visitTops(point.known ? point.distanceNm : -1);
            visit(ProfilePoint{entry.ident, point.distanceNm, entry.altitude});
        }
    }
    if (HasProfile()) {
        visitTops(std::numeric_limits<double>::infinity());
    }
}

std::int32_t ProfilePointCount() {
    std::int32_t count = 0;
    ForEachProfilePoint([&](const ProfilePoint&) { ++count; });
    return count;
}

void PutProfile(Screen& screen, std::int32_t page) {
    std::int32_t row = -kProfileRows * (page - 1);
    ForEachProfilePoint([&](const ProfilePoint& point) {
        if (row >= 0 && row < kProfileRows) {
            const int y = kGnsRowY[static_cast<std::size_t>(row)];
            screen.Put(kGnsData, kGnsLabelX, y, "%.*s",
                       std::min(static_cast<int>(point.name.size()), 8), point.name.data());
            screen.Put(kGnsData, kProfileX, y, "%5d", static_cast<int>(point.altitudeFt));
        }
        ++row;
    });
    if (row == -kProfileRows * (page - 1)) {
        screen.Put(kGnsData, kGnsLabelX, kGnsRowY[0], "INVALID");
    }
}

EntryResult OpenData(const LineRow&) {
    OpenGnsPage(kGnsVnavData);
    return EntryResult::None;
}

constexpr LineRow kLines[] = {
    {.line = 5,
     .text = "DATA",
     .prompt = "DATA?",
     .enter = OpenData,
     .style = kGnsLabel,
     .at = {kGnsLabelX, 360}},
};

void ComposeVnav(Screen& screen) {
    const SubPage& shown =
        SetGnsPageCount(GnsCounter::Vnav, 1 + PageCount(ProfilePointCount(), kProfileRows));
    screen.Put(kGnsLabel, 90, 0, "VNAV   %d/%d", shown.n, shown.m);
    screen.Put(kGnsPrompt, 0, 330, "<");
    if (shown.n == 1) {
        DrawFields(kTargetFields, screen);
    } else {
        PutProfile(screen, shown.n - 1);
    }
}

}  // namespace

constinit const PageRow kGnsVnavPage{.page = kGnsVnav, .lines = kLines, .compose = ComposeVnav};

}  // namespace avq1
