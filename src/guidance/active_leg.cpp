#include "guidance/active_leg.h"

#include <limits>

#include "guidance/guidance_state.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

bool SamePlace(const LatLon& a, const LatLon& b) {
    return a.latitude == b.latitude && a.longitude == b.longitude;
}

class RememberedCircle {
  public:
    const GreatCircle& Between(const LatLon& from, const LatLon& to) {
        if (!SamePlace(from, from_) || !SamePlace(to, to_)) {
            from_ = from;
            to_ = to;
            DistanceAndCourse(from.latitude, from.longitude, to.latitude, to.longitude,
                              circle_.distanceNm, circle_.courseTrue);
        }
        return circle_;
    }

  private:
    static constexpr double kNowhere = std::numeric_limits<double>::quiet_NaN();
    LatLon from_{kNowhere, kNowhere};
    LatLon to_{kNowhere, kNowhere};
    GreatCircle circle_;
};

// Nothing to reset: what they hold is true whatever the state of the module.
RememberedCircle alongLeg;
RememberedCircle fromAircraft;

}  // namespace

const GreatCircle& AlongLeg(const ActiveLeg& leg) {
    return alongLeg.Between(leg.from, leg.to);
}

const GreatCircle& FromAircraft(const LatLon& waypoint) {
    return fromAircraft.Between({aircraft.latitude, aircraft.longitude}, waypoint);
}

bool FindActiveLeg(ActiveLeg& leg) {
    if (!HasActiveWaypoint() || IsDiscontinuity(ActiveWaypoint())) {
        return false;
    }
    const PlanWaypoint& from = activePlan.entries[planBook.activeIndex - 1];
    const PlanWaypoint& to = ActiveWaypoint();
    leg.from = IsDiscontinuity(from) ? LatLon{aircraft.latitude, aircraft.longitude}
                                     : LatLon{from.latitude, from.longitude};
    leg.to = {to.latitude, to.longitude};
    return true;
}

}  // namespace avq1
