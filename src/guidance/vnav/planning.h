// guidance/vnav/planning.h - the vertical profile of a whole plan: cruise altitude, top of climb,
// top of descent, and what each entry is passed at.
//
// Pure arithmetic over a measured route: any plan can be planned, the one that is flown and one
// that waits. Altitudes feet, distances nm, speeds kt true unless named Ias, rates feet a minute,
// courses true. A rate or speed of 0, a route without legs and values that are not finite give no
// cruise altitude (0) and no marks.
#pragma once

#include <array>

#include "guidance/route_table.h"
#include "guidance/vnav/profile.h"
#include "settings/aircraft_performance.h"

namespace avq1 {

// What climbs and descends are planned with: the flight path angle's rates where there is one, and
// the middle of the climb speeds where none is given.
struct PlanningSpeeds {
    double climbTas = 0;
    double climbRate = 0;
    double descentTas = 0;
    double descentRate = 0;
    double climbIas = 0;

    bool AreUsable() const;
    double ClimbNm(double feet) const { return climbTas / 60 * feet / climbRate; }
    double DescentNm(double feet) const { return descentTas / 60 * feet / descentRate; }
};

PlanningSpeeds SpeedsOf(const AircraftPerformance& from);

// What a profile is planned for.
struct PlanningInput {
    const RouteTable* route = nullptr;
    RoutePosition at;                        // of the aircraft
    std::int32_t activeIndex = kNoWaypoint;  // at or before the entry flown to
    double altitudeFt = 0;                   // of the aircraft
    PlanningSpeeds speeds;
    bool climbOver = false;

    const PlanWaypoint& Entry(std::int32_t index) const { return route->plan->entries[index]; }
};

// The highest altitude the level rule allows at or below `altitudeFt` (from 42000 ft on, the one it
// names): even thousands on courses from 180 degrees on, else odd ones.
double ApplyLevelRule(double altitudeFt, double courseTrue);

// Half the route, less 15 nm when that half is longer than 35 nm.
double ClimbLimitNm(double routeLengthNm);

// At least 1000 ft above both airports, and as the level rule has it.
double LevelAboveAirports(const PlanningInput& input, double altitudeFt);

// The cruise altitude reached by climbing a minute at a time, at most 199; 0 when there is none.
double ChooseCruiseAltitude(const PlanningInput& input, double maxCruiseFt);

// An entry's altitude as far as it is known: its own, an airport's elevation, else 0.
double EntryAltitude(const FlightPlan& plan, std::int32_t index);

// What a descent from `fromFt` ends at: the altitude of the route's last entry. One that is no
// airport and has none gives nothing to descend to.
double DescentEndFt(const RouteTable& route, double fromFt);

// Whether a restriction is one of the climb: entries of a departure, and those before the middle of
// the route that no arrival or approach brought.
bool BelongsToClimb(const RouteTable& route, std::int32_t index);

// Climb distance, top of climb, top of descent, the targets, for a cruise altitude above 0.
void PlaceMarks(const PlanningInput& input, double cruiseAltitude, PlannedProfile& profile);

// The top of climb at a distance of the climb rate, counted from `fromNm` at `altitudeFt`.
void PlaceTopOfClimb(const PlanningInput& input, double fromNm, double altitudeFt,
                     PlannedProfile& profile);

// The top of descent from the profile's cruise altitude: at the descent rate before the anchor, or
// earlier where a restriction needs it. Entries up to `passedIndex` are no anchors.
void PlaceTopOfDescent(const PlanningInput& input, std::int32_t passedIndex,
                       PlannedProfile& profile);

// Distance from the first entry at which the descent from `fromFt` to the anchor begins, looking at
// the targets behind `passedIndex`.
double DescentBeginsNm(const PlanningInput& input, const PlannedProfile& profile, double fromFt,
                       std::int32_t passedIndex);

// What each entry is passed at: altitude feet, speed kt indicated.
struct EntryValues {
    std::array<double, kPlanCapacity> altitude{};
    std::array<double, kPlanCapacity> speed{};
};

// Also finds out which restrictions are targets: those to be met at their altitude, and of the
// others ("at or above", "at or below") those that the path would violate.
void WalkProfile(const PlanningInput& input, const AircraftPerformance& from,
                 PlannedProfile& profile, EntryValues& values);

// Targets and marks for a cruise altitude above 0; returns what the entries are passed at.
EntryValues PlanOnPaper(const PlanningInput& input, const AircraftPerformance& from,
                        double cruiseAltitude, PlannedProfile& profile);

}  // namespace avq1
