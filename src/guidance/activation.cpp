#include "guidance/activation.h"

#include "base/messages.h"
#include "base/text.h"
#include "flightplan/flight_plan.h"
#include "flightplan/plan_airports.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_files.h"
#include "guidance/guidance_state.h"
#include "guidance/lnav.h"
#include "guidance/radio_tuning.h"
#include "guidance/vnav.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "simlink/key_events.h"

namespace avq1 {
namespace {

constexpr double kOnGroundSpeedKt = 5;
constexpr std::int32_t kMessagesKept = 1;
constexpr std::int32_t kAirportStillToLoad = 1;

}  // namespace

void ResetForNewPlan() {
    guidance.firstLegPrepared = 0;
    guidance.destinationNearDone = 0;
    guidance.trackLeg = 0;
    planAirports.destinationAirportState = kAirportStillToLoad;
    planAirports.patternRunwayOffset = kNoPatternRunway;
}

void LoadPlanToActive(std::string_view fileName) {
    ResetForNewPlan();
    ReadPlanToActive(fileName);
    if (planBook.cruiseAltitudeFt > 0) {
        vnav.cruiseAltitude = planBook.cruiseAltitudeFt;
    }
    if (aircraft.groundSpeedKt < kOnGroundSpeedKt) {
        RequestPlanFuel();
        planBook.flightLogStartRequested = true;
    }
    CutMessages(kMessagesKept);
    if (activePlan.lastIndex >= 0 || planBook.entryNotice.empty()) {
        AppendMessage(
            Format("FPL '%.*s' loaded", static_cast<int>(fileName.size()), fileName.data()));
    }
    if (!planBook.entryNotice.empty()) {
        AppendMessage(planBook.entryNotice);
    }
    planBook.status = RouteStatus::Active;
    SetActiveWaypoint(1);
    if (settings.LnavSetEnRouteFreqs == 1) {
        TuneRadios(TuneMode::FlightPlan);
    }
    if (settings.SetWptBaro == 1) {
        SendKeyEvent(KeyEvent::AltimeterSet, 0);
    }
    requests.unitRedraw = 1;
}

}  // namespace avq1
