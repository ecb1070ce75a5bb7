#include "guidance/vnav/flown.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

#include "base/messages.h"
#include "base/module_state.h"
#include "base/redraw.h"
#include "flightplan/plan_edit.h"
#include "flightplan/route_walk.h"
#include "geometry/geometry.h"
#include "guidance/guidance_state.h"
#include "guidance/performance_entries.h"
#include "guidance/vnav/table_optimum.h"
#include "settings/aircraft_performance.h"
#include "simlink/aircraft_state.h"

namespace avq1 {

VnavProfile vnav;

namespace {

constexpr double kHighestAltitudeFt = 60000;
constexpr double kAboveAirportFt = 200;
constexpr std::int32_t kLegsToFill = 2;

// What the profile was planned for. The plan's revision also counts changes that do not matter
// here.
struct PlannedFor {
    std::uint32_t revision = 0;
    std::uint64_t route = 0;
    std::int32_t activeIndex = kNoWaypoint;
    PlanningSpeeds speeds;
    SpeedLimit climbLimit;
    SpeedLimit descentLimit;
    bool saidNone = false;      // no cruise altitude was found, and the pilot knows
    bool cruiseChosen = false;  // by the planning, not by the plan or the pilot
};

// The optimum as it was last worked out.
struct ShownOptimum {
    std::uint32_t revision = 0;
    std::int32_t activeIndex = kNoWaypoint;
    double altitudeFt = 0;
};

PlannedFor plannedFor;
ShownOptimum shownOptimum;
const StateReset resetFlown([] {
    vnav = {};
    plannedFor = {};
    shownOptimum = {};
});

bool SameSpeeds(const PlanningSpeeds& a, const PlanningSpeeds& b) {
    return a.climbTas == b.climbTas && a.climbRate == b.climbRate && a.descentTas == b.descentTas &&
           a.descentRate == b.descentRate;
}

// A number that differs when the route or a restriction on it does.
std::uint64_t RouteMark() {
    std::uint64_t mark = 1;
    const auto mix = [&mark](double value) {
        mark = (mark ^ std::bit_cast<std::uint64_t>(value)) * 0x100000001b3U;
        mark ^= mark >> 29U;
    };
    for (std::int32_t i = 0; i <= activePlan.lastIndex; ++i) {
        const PlanWaypoint& entry = activePlan.entries[i];
        mix(entry.latitude);
        mix(entry.longitude);
        mix(entry.altitudeConstraint);
        mix(entry.altitudeConstraint != 0 ? entry.altitude : 0);
        mix(entry.speedConstraint != 0 ? entry.speed : 0);
        mix(HasPosition(entry) ? 1 : 0);
    }
    return mark;
}

void NotePlanned() {
    plannedFor.revision = activePlan.revision;
    plannedFor.route = RouteMark();
    plannedFor.activeIndex = planBook.activeIndex;
    plannedFor.speeds = SpeedsOf(performance);
    plannedFor.climbLimit = SpeedLimitOf(performance, VerticalPhase::Climb);
    plannedFor.descentLimit = SpeedLimitOf(performance, VerticalPhase::Descent);
}

double FindCruiseAltitude(PlanningInput& input) {
    const double fromTables = ComputeOptimumFromTables();
    if (fromTables > 0) {
        performance.flightPathAngleDeg = 0;
        KeepChosenSpeeds(performance);
        input.speeds = SpeedsOf(performance);
        return fromTables;
    }
    return ChooseCruiseAltitude(input, performance.maxCruiseAltitude);
}

void FillEntries(const EntryValues& values) {
    if (activePlan.lastIndex < kLegsToFill) {
        return;
    }
    for (std::int32_t i = std::max(planBook.activeIndex, 1); i <= activePlan.lastIndex; ++i) {
        const PlanWaypoint& entry = activePlan.entries[i];
        const auto at = static_cast<std::size_t>(i);
        const bool keepsAltitude = entry.altitudeConstraint != 0 ||
                                   (i == ActiveRoute().last && entry.type != kAirportType);
        const double altitude = keepsAltitude ? entry.altitude : values.altitude[at];
        const double speed =
            HasSpeedRestriction(entry) && entry.speed != kUnset ? entry.speed : values.speed[at];
        if (HasPosition(entry) && (altitude != entry.altitude || speed != entry.speed)) {
            activePlan.Edit(i).altitude = altitude;
            activePlan.Edit(i).speed = speed;
        }
    }
}

void ForgetProfile() {
    static_cast<PlannedProfile&>(vnav) = {};
    static_cast<FollowedProfile&>(vnav) = {};
}

void AimAtEntry(std::int32_t index) {
    const PlanWaypoint& entry = activePlan.entries[index];
    vnav.targetAltitude = EntryTargetFt(index);
    vnav.targetLatitude = entry.latitude;
    vnav.targetLongitude = entry.longitude;
    vnav.targetIsEntry = 1;
}

// A restriction above the cruise altitude never raises it.
void KeepTargetsWithinCruise() {
    for (std::int32_t i = planBook.activeIndex; i <= activePlan.lastIndex; ++i) {
        if (activePlan.entries[i].altitude > vnav.cruiseAltitude) {
            vnav.targets.reset(static_cast<std::size_t>(i));
        }
    }
}

void AimAtMark(double altitudeFt, double latitude, double longitude) {
    vnav.targetAltitude = altitudeFt;
    vnav.targetLatitude = latitude;
    vnav.targetLongitude = longitude;
    vnav.targetIsEntry = 0;
}

void AimInClimb(std::int32_t climbOffset) {
    const std::int32_t climbEnd = ComputeTopOfClimb(climbOffset);
    const std::int32_t target = planBook.verticalTargetIndex;
    AimAtMark(vnav.cruiseAltitude, vnav.tocLatitude, vnav.tocLongitude);
    if (target <= climbEnd && vnav.targets[static_cast<std::size_t>(target)] &&
        BelongsToClimb(ActiveRoute(), target)) {
        AimAtEntry(target);
    }
}

}  // namespace

double EntryTargetFt(std::int32_t index) {
    const PlanWaypoint& entry = activePlan.entries[index];
    if (index != ActiveRoute().last) {
        return entry.altitude;
    }
    const double feet = DescentEndFt(ActiveRoute(), vnav.cruiseAltitude);
    const bool above = entry.type == kAirportType && feet != vnav.cruiseAltitude;
    return feet + (above ? kAboveAirportFt : 0);
}

PlanningInput FlownInput() {
    PlanningInput input;
    input.route = &ActiveRoute();
    input.activeIndex = planBook.activeIndex;
    input.at =
        FindRoutePosition(*input.route, input.activeIndex, {aircraft.latitude, aircraft.longitude});
    input.altitudeFt = aircraft.altitudeFt;
    input.speeds = SpeedsOf(performance);
    input.climbOver = vnav.topOfClimbReached != 0;
    return input;
}

bool HasProfile() {
    return HasActiveWaypoint() && vnav.cruiseAltitude > 0;
}

double AircraftAlongNm() {
    return ActiveRoute().alongNm[planBook.activeIndex] - guidance.distanceToGoNm;
}

double ComputeOptimumFromTables() {
    const PlanningInput input = FlownInput();
    return input.at.flownTo == kNoWaypoint
               ? 0
               : OptimumFromTables(input, performanceTables, performance);
}

double OptimumCruiseAltitude() {
    ShownOptimum& shown = shownOptimum;
    if (shown.revision != activePlan.revision || shown.activeIndex != planBook.activeIndex) {
        const PlanningInput input = FlownInput();
        AircraftPerformance unused = performance;
        shown = {activePlan.revision, planBook.activeIndex,
                 input.at.flownTo == kNoWaypoint
                     ? 0
                     : OptimumFromTables(input, performanceTables, unused)};
    }
    return shown.altitudeFt;
}

bool PlanVerticalProfile(double cruiseAltitude, std::int32_t fillEntries) {
    PlanningInput input = FlownInput();
    plannedFor.cruiseChosen = cruiseAltitude <= 0;
    const bool flyable = input.at.flownTo != kNoWaypoint && input.route->LengthNm() > 0 &&
                         std::isfinite(input.altitudeFt + input.at.toEntryNm);
    double cruiseFt = 0;
    if (flyable) {
        cruiseFt = cruiseAltitude > 0 ? std::min(cruiseAltitude, kHighestAltitudeFt)
                                      : FindCruiseAltitude(input);
    }
    if (!(cruiseFt >= 1) || !input.speeds.AreUsable()) {
        ForgetProfile();
        NotePlanned();
        if (!std::exchange(plannedFor.saidNone, true)) {
            AppendMessage("VNAV NO CRUISE ALTITUDE");
        }
        return false;
    }
    PlannedProfile planned;
    const EntryValues values = PlanOnPaper(input, performance, cruiseFt, planned);
    static_cast<PlannedProfile&>(vnav) = planned;
    performance.cruiseMach = IndicatedToMach(performance.cruiseIas, cruiseFt);
    if (fillEntries == 1) {
        FillEntries(values);
    } else {
        vnav.topOfClimbReached = 0;
        vnav.descentActive = 0;
    }
    plannedFor.saidNone = false;
    NotePlanned();
    return true;
}

std::int32_t ComputeTopOfClimb(std::int32_t offset) {
    const PlanningInput input = FlownInput();
    if (!HasProfile() || input.at.flownTo == kNoWaypoint) {
        return activePlan.lastIndex;
    }
    std::int32_t end = kNoEntry;
    for (std::int32_t i = planBook.activeIndex + offset; i < input.route->last; ++i) {
        const PlanWaypoint& entry = activePlan.entries[i];
        if (entry.altitude >= vnav.cruiseAltitude) {
            break;
        }
        if (vnav.targets[static_cast<std::size_t>(i)] && BelongsToClimb(*input.route, i)) {
            end = vnav.tocIndex = i;
            vnav.tocNm = input.route->alongNm[i];
            vnav.tocLatitude = entry.latitude;
            vnav.tocLongitude = entry.longitude;
            AimAtEntry(i);
        }
    }
    if (end != kNoEntry) {
        return end;
    }
    PlannedProfile byDistance = vnav;
    PlaceTopOfClimb(input, input.at.alongNm, aircraft.altitudeFt, byDistance);
    if (offset == 0) {
        static_cast<PlannedProfile&>(vnav) = byDistance;
    }
    return std::min(byDistance.tocIndex + 1, input.route->last);
}

void ComputeTopOfDescent(std::int32_t replan) {
    if (!HasProfile()) {
        return;
    }
    const bool ofEntry = replan == 1 && ActiveWaypoint().altitude > 0;
    if (ofEntry) {
        vnav.cruiseAltitude =
            std::min(vnav.cruiseAltitude, static_cast<std::int32_t>(ActiveWaypoint().altitude));
        vnav.descentActive = 0;
        KeepTargetsWithinCruise();
    }
    PlaceTopOfDescent(FlownInput(), planBook.activeIndex - (replan == 1 ? 0 : 1), vnav);
}

double TodDistanceToDestination() {
    const RouteTable& route = ActiveRoute();
    if (route.last < 0) {
        return 0;
    }
    const PlanWaypoint& last = activePlan.entries[route.last];
    double directNm = 0;
    DistanceAndCourse(vnav.todLatitude, vnav.todLongitude, last.latitude, last.longitude, directNm,
                      vnav.todBearingToDestination);
    vnav.todDistanceToDestination = std::max(route.LengthNm() - vnav.todNm, 0.0);
    return vnav.todDistanceToDestination;
}

void ChooseTargetEntry(std::int32_t offset) {
    const std::int32_t from = planBook.activeIndex + offset;
    const std::int32_t last = ActiveRoute().last;
    if (vnav.cruiseAltitude == 0 || last < 0) {
        planBook.verticalTargetIndex = NextRestriction(activePlan, from);
        return;
    }
    std::int32_t target = std::min(from, last);
    while (target < last && !vnav.targets[static_cast<std::size_t>(target)]) {
        ++target;
    }
    planBook.verticalTargetIndex = target;
}

void AimAtTarget(std::int32_t climbOffset) {
    const VerticalPhase phase = vnav.Phase();
    if (phase == VerticalPhase::Climb) {
        AimInClimb(climbOffset);
    } else {
        AimAtEntry(planBook.verticalTargetIndex);
    }
    if (phase == VerticalPhase::Cruise) {
        AimAtMark(vnav.targetAltitude, vnav.todLatitude, vnav.todLongitude);
        vnav.altitude.set = 1;
    } else {
        vnav.altitude.set = 0;
        vnav.speed.set = 0;
    }
}

void BeginPath(double aheadNm) {
    const PlanningInput input = FlownInput();
    vnav.todNm = AircraftAlongNm() + aheadNm;
    const LatLon begins = PointAlong(*input.route, input.at, vnav.todNm);
    vnav.todLatitude = begins.latitude;
    vnav.todLongitude = begins.longitude;
    vnav.descentCruiseAltitude = aircraft.altitudeFt;
    vnav.descentStartIndex = planBook.activeIndex;
    vnav.descentPathLength =
        std::max(input.route->alongNm[planBook.verticalTargetIndex] - vnav.todNm, 0.0);
    TodDistanceToDestination();
}

void StartVerticalProfile() {
    ForgetProfile();
    const bool pauseArmed = vnav.pauseArmed != 0;
    static_cast<VerticalCommands&>(vnav) = {};
    vnav.pauseArmed = pauseArmed ? 1 : 0;
    if (!HasActiveWaypoint()) {
        NotePlanned();
        return;
    }
    if (PlanVerticalProfile(planBook.cruiseAltitudeFt, 1)) {
        ChooseTargetEntry(0);
        AimAtTarget(0);
    }
}

void SetCruiseAltitude(std::int32_t feet) {
    const std::int32_t before = vnav.cruiseAltitude;
    feet = std::clamp(feet, 0, static_cast<std::int32_t>(kHighestAltitudeFt));
    if (feet == before || !HasActiveWaypoint() || !PlanVerticalProfile(feet, 1)) {
        return;
    }
    ChooseTargetEntry(0);
    AimAtTarget(0);
    TakeVerticalEvent(vnav.cruiseAltitude > before ? VerticalEvent::CruiseRaised
                                                   : VerticalEvent::CruiseLowered);
    RequestUnitRedraw();
}

void ReplanChangedRoute() {
    const PlanningSpeeds speeds = SpeedsOf(performance);
    const bool sameSpeeds =
        SameSpeeds(speeds, plannedFor.speeds) &&
        SpeedLimitOf(performance, VerticalPhase::Climb) == plannedFor.climbLimit &&
        SpeedLimitOf(performance, VerticalPhase::Descent) == plannedFor.descentLimit;
    if (activePlan.revision == plannedFor.revision &&
        planBook.activeIndex == plannedFor.activeIndex && sameSpeeds) {
        return;
    }
    if (planBook.activeIndex == plannedFor.activeIndex && sameSpeeds &&
        RouteMark() == plannedFor.route) {
        plannedFor.revision = activePlan.revision;
        ChooseTargetEntry(0);
        return;
    }
    const bool choose = plannedFor.cruiseChosen && OnGround();
    if (!PlanVerticalProfile(choose ? 0 : vnav.cruiseAltitude, 1)) {
        return;
    }
    plannedFor.cruiseChosen = choose;
    vnav.crossingIndex = 0;
    ChooseTargetEntry(0);
    AimAtTarget(0);
    if (vnav.descentActive != 0) {
        BeginPath(0);
    }
}

void TargetOnPassing() {
    if (!HasProfile()) {
        return;
    }
    const auto passed = static_cast<std::size_t>(planBook.activeIndex);
    const bool restricted = vnav.targets[passed];
    const bool inClimb = vnav.Phase() == VerticalPhase::Climb;
    vnav.climbRestrictionPassed = inClimb && restricted ? 1 : 0;
    if (vnav.climbRestrictionPassed == 1) {
        vnav.climbFromLatitude = ActiveWaypoint().latitude;
        vnav.climbFromLongitude = ActiveWaypoint().longitude;
    }
    if (!inClimb && restricted && !BelongsToClimb(ActiveRoute(), planBook.activeIndex)) {
        TakeVerticalEvent(VerticalEvent::RestrictionPassed);
    }
    ChooseTargetEntry(1);
    AimAtTarget(1);
}

void CommandOnPassing() {
    plannedFor.activeIndex = planBook.activeIndex;
    vnav.restrictionDistanceLatch = 0;
    if (!HasProfile()) {
        return;
    }
    // Behind the last restriction of the climb its end is where the climb rate leads to.
    if (vnav.climbRestrictionPassed == 1 && vnav.targetIsEntry == 0) {
        AimAtTarget(0);
    }
    vnav.speed.set = 0;
    CommandSpeed();
}

}  // namespace avq1
