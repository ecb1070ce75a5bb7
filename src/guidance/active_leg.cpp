#include "guidance/active_leg.h"

#include "guidance/guidance_state.h"
#include "simlink/aircraft_state.h"

namespace avq1 {

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
