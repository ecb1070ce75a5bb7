#include "guidance/route_table.h"

#include <algorithm>

#include "base/module_state.h"
#include "flightplan/route_walk.h"

namespace avq1 {
namespace {

RouteTable activeRoute;
const StateReset resetActiveRoute([] { activeRoute = {}; });

}  // namespace

void MeasureRoute(const FlightPlan& plan, RouteTable& route) {
    route.plan = &plan;
    route.revision = plan.revision;
    route.first = PositionedEntryFrom(plan, 0);
    route.last = PositionedEntryBack(plan, plan.lastIndex);
    std::int32_t ahead = kNoEntry;
    for (std::int32_t i = plan.lastIndex; i >= 0; --i) {
        ahead = HasPosition(plan.entries[i]) ? i : ahead;
        route.flownTo[i] = ahead == kNoEntry ? i : ahead;
        route.alongNm[i] = 0;
    }
    for (const RouteLeg& leg : RouteLegs(plan, 0, plan.lastIndex)) {
        std::fill(route.alongNm.begin() + leg.from + 1, route.alongNm.begin() + leg.to,
                  route.alongNm[leg.from]);
        route.alongNm[leg.to] = leg.walkedNm;
    }
    for (std::int32_t i = std::max(route.last, 0) + 1; i <= plan.lastIndex; ++i) {
        route.alongNm[i] = route.LengthNm();
    }
}

const RouteTable& ActiveRoute() {
    if (activeRoute.revision != activePlan.revision) {
        MeasureRoute(activePlan, activeRoute);
    }
    return activeRoute;
}

RoutePosition FindRoutePosition(const RouteTable& route, std::int32_t activeIndex,
                                const LatLon& position) {
    if (!route.plan->Holds(activeIndex) || route.last < 0) {
        return {};
    }
    RoutePosition at;
    at.position = position;
    at.flownTo = std::min(route.flownTo[activeIndex], route.last);
    const PlanWaypoint& entry = route.plan->entries[at.flownTo];
    at.toEntryNm = GreatCircleDistanceNm(position.latitude, position.longitude, entry.latitude,
                                         entry.longitude);
    at.alongNm = route.alongNm[at.flownTo] - at.toEntryNm;
    return at;
}

LatLon PointAlong(const RouteTable& route, const RoutePosition& from, double alongNm) {
    const double ofEntryNm = route.alongNm[from.flownTo];
    RoutePoint point;
    if (alongNm >= ofEntryNm) {
        const double beyondNm = std::min(alongNm, route.LengthNm()) - ofEntryNm;
        const PlanWaypoint& entry = route.plan->entries[from.flownTo];
        point.position = {entry.latitude, entry.longitude};
        FindPointOnRoute(*route.plan, from.flownTo, beyondNm, point);
        return point.position;
    }
    // Before that entry: back along the bearing at which the aircraft flies to it.
    const PlanWaypoint& entry = route.plan->entries[from.flownTo];
    double distanceNm = 0;
    double bearingTrue = 0;
    DistanceAndCourse(entry.latitude, entry.longitude, from.position.latitude,
                      from.position.longitude, distanceNm, bearingTrue);
    LatLon back;
    PointAtDistance(entry.latitude, entry.longitude, bearingTrue, ofEntryNm - alongNm,
                    back.latitude, back.longitude);
    return back;
}

}  // namespace avq1
