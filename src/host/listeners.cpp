#include "host/listeners.h"

#include "cdu_smiths/smiths.h"
#include "flightlog/flight_log.h"
#include "guidance/guidance_events.h"

namespace avq1 {
namespace {

struct ListenerRow {
    GuidanceEvent event;
    GuidanceListener listener;
};

constexpr ListenerRow kListeners[] = {
    {GuidanceEvent::PlanStarted, LogStartedPlan},
    {GuidanceEvent::WaypointPassed, LogPassedWaypoint},
    {GuidanceEvent::TopOfClimb, NoteSmithsPhase},
    {GuidanceEvent::TopOfDescent, NoteSmithsPhase},
    {GuidanceEvent::BackToCruise, NoteSmithsPhase},
};

}  // namespace

void ConnectListeners() {
    for (const ListenerRow& row : kListeners) {
        ConnectGuidanceListener(row.event, row.listener);
    }
}

}  // namespace avq1
