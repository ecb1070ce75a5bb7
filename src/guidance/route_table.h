// guidance/route_table.h - a plan's route measured once, so that every distance along it is a
// subtraction.
//
// Distances are nm from the plan's first entry with a position. An entry without one (a gap, an
// airway still to be entered) lies where the entry before it does.
#pragma once

#include <array>

#include "flightplan/flight_plan.h"
#include "geometry/geometry.h"

namespace avq1 {

struct RouteTable {
    const FlightPlan* plan = nullptr;
    std::uint32_t revision = 0;  // of the plan when it was measured
    std::int32_t first = 0;      // the first and the last entry with a position, else -1
    std::int32_t last = -1;
    std::array<double, kPlanCapacity> alongNm{};
    std::array<std::int32_t, kPlanCapacity> flownTo{};  // the nearest with a position from it on

    double LengthNm() const { return last >= 0 ? alongNm[last] : 0; }
    double BetweenNm(std::int32_t from, std::int32_t to) const {
        return alongNm[to] - alongNm[from];
    }
};

void MeasureRoute(const FlightPlan& plan, RouteTable& route);

// The active plan's, measured again when the plan has changed.
const RouteTable& ActiveRoute();

// Where something is on its way along a route: an aircraft flying to an entry.
struct RoutePosition {
    std::int32_t flownTo = kNoWaypoint;  // an entry with a position; kNoWaypoint: not on the route
    LatLon position;
    double toEntryNm = 0;
    double alongNm = 0;  // may be negative before the first entry
};

// Of an aircraft at `position` that flies to entry `activeIndex`.
RoutePosition FindRoutePosition(const RouteTable& route, std::int32_t activeIndex,
                                const LatLon& position);

// The point at a distance along the route, as an aircraft at `from` will come to it: up to the
// entry it flies to that is on the straight line there. Beyond the ends, the end.
LatLon PointAlong(const RouteTable& route, const RoutePosition& from, double alongNm);

}  // namespace avq1
