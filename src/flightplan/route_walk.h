// flightplan/route_walk.h - the one walk along a plan's route.
//
// The route joins the entries that have a position by great circles; gaps and airway placeholders
// have none and are left out, so the way across a gap is straight. Distances are nm, courses
// degrees true, positions decimal degrees. Nothing is allocated and nothing kept: a plan that does
// not change gives the same answers (FlightPlan::revision tells).
#pragma once

#include <cstdint>
#include <iterator>

#include "flightplan/flight_plan.h"
#include "geometry/geometry.h"

namespace avq1 {

inline constexpr std::int32_t kNoEntry = -1;

// The nearest entry with a position from `index` on, that one included, towards the plan's end or
// its beginning; kNoEntry without one. Any index may be asked for.
std::int32_t PositionedEntryFrom(const FlightPlan& plan, std::int32_t index);
std::int32_t PositionedEntryBack(const FlightPlan& plan, std::int32_t index);

// The way between two neighbouring entries with a position, in the order in which it is flown
// whichever way it is walked.
struct RouteLeg {
    std::int32_t from = kNoEntry;
    std::int32_t to = kNoEntry;
    LatLon start;
    LatLon end;
    double distanceNm = 0;
    double walkedNm = 0;     // from where the walk began to the far end of this leg
    bool acrossGap = false;  // something without a position lies between the two

    double CourseTrue() const;  // at the start, in [1, 360]
};

// The legs between two entries, for a range-based for: ahead when `last` is not before `first`,
// else backwards. Either may lie outside the plan or have no position: the walk then begins and
// ends at the nearest entries between them that have one.
class RouteLegs {
  public:
    RouteLegs(const FlightPlan& plan, std::int32_t first, std::int32_t last);

    class Iterator {
      public:
        explicit Iterator(const RouteLegs& legs);
        const RouteLeg& operator*() const { return leg_; }
        Iterator& operator++();
        bool operator==(std::default_sentinel_t) const { return arrived_; }

      private:
        const RouteLegs* legs_;
        std::int32_t at_;  // the far end of the present leg
        RouteLeg leg_;
        bool arrived_ = false;
    };

    Iterator begin() const { return Iterator(*this); }
    static std::default_sentinel_t end() { return {}; }

  private:
    std::int32_t NextPositioned(std::int32_t index) const;

    const FlightPlan* plan_;
    std::int32_t first_;
    std::int32_t last_;
    std::int32_t step_;
};

// The route's length between two entries, 0 when no leg lies between them.
double RouteLengthNm(const FlightPlan& plan, std::int32_t first, std::int32_t last);

struct RoutePoint {
    LatLon position;
    RouteLeg leg;  // on which it lies
};

// The point `alongNm` from an entry along the route, ahead of it or, when negative, before it: of
// the plan's last index it is the point at a distance from the end. False, with `point` unchanged,
// where the route is shorter than that or has no leg.
bool FindPointOnRoute(const FlightPlan& plan, std::int32_t index, double alongNm,
                      RoutePoint& point);

}  // namespace avq1
