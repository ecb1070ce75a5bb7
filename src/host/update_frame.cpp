#include "host/update_frame.h"

#include <string>
#include <utility>

#include "base/module_state.h"
#include "base/redraw.h"
#include "displays/mfd/mfd.h"
#include "flightlog/flight_log.h"
#include "flightplan/flight_plan.h"
#include "flightplan/fuel_load.h"
#include "flightplan/tower_view.h"
#include "guidance/activation.h"
#include "guidance/guidance_state.h"
#include "guidance/holds.h"
#include "guidance/lnav.h"
#include "guidance/predictions.h"
#include "guidance/progress.h"
#include "guidance/radio_tuning.h"
#include "guidance/vnav.h"
#include "host/profile_report.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "simlink/key_events.h"
#include "simlink/sim_variables.h"

namespace avq1 {
namespace {

constexpr std::int32_t kLastBlinkFrame = 91;
constexpr std::int32_t kFramesCounted = 10;
constexpr std::int32_t kFramesWithoutBlink = 6;
constexpr std::int32_t kPanelAbsentFrames = 10;
constexpr std::int32_t kLoadFromUnit = 1;
constexpr std::int32_t kLoadFromList = 3;

// Tells whether the multifunction display's control panel is still being drawn; when it no longer
// is, the map mode that only it can leave ends.
struct PanelWatch {
    std::int32_t lastCounter = 0;
    std::int32_t unchangedFrames = 0;
};

PanelWatch panelWatch;
const StateReset resetPanelWatch([] { panelWatch = {}; });

void CountSeconds() {
    flightLog.secondChanged = aircraft.clockSecond != guidance.previousClockSecond;
    if (flightLog.secondChanged && flightLog.phase < kFlightLogDone) {
        guidance.elapsedSeconds += 1;
    }
    guidance.previousClockSecond = aircraft.clockSecond;
}

void WatchMfdPanel() {
    if (mfd.panelDrawn == 0) {
        return;
    }
    if (mfd.panelFrameCounter != panelWatch.lastCounter) {
        panelWatch = {mfd.panelFrameCounter, 0};
    } else if (++panelWatch.unchangedFrames > kPanelAbsentFrames) {
        mfd.panelDrawn = 0;
        LeaveMfdMapMode();
        panelWatch.unchangedFrames = 0;
        guidance.blinkCounter = kRestartBlink;
    }
}

void AdvanceDisplayTimers() {
    WatchMfdPanel();
    ++guidance.blinkCounter;
    if (guidance.blinkCounter > kLastBlinkFrame) {
        guidance.blinkCounter = 0;
    }
    if (guidance.framesSinceStart < kFramesCounted) {
        ++guidance.framesSinceStart;
    }
    if (guidance.framesSinceStart <= kFramesWithoutBlink) {
        guidance.blinkCounter = 0;
    }
}

void FlyActivePlan() {
    ReplanChangedRoute();
    StampArrivalTime();
    PrepareFirstLeg();
    ApplyPassedWaypointRule();
    BuildAndFlyHold();
    DeletePassedHolds();
    SequenceWaypoint();
    RefreshLegGeometry();
    PublishGuidance();
    UpdateRouteDistance();
    ApplyDestinationNear();
    RunVerticalGuidance();
    UpdateTimeToGo();
    LoadDestinationAirport();
    ApplyClimbFallback();
    Steer();
    SendHeadingBug();
}

// Nothing is flown: other panel code and the pages are told so, the heading bug is left alone.
void IdleGuidance() {
    if (guidance.lnavEngaged == 1) {
        DisengageLnav();
    }
    guidance.lastHeadingSent = kNoHeadingSent;
    RefreshLegGeometry();
    UpdateRouteDistance();
    UpdateTimeToGo();
    PublishGuidance();
}

void ServePageRequests() {
    if (requests.radioTuneMode != 0) {
        TuneRadios(static_cast<TuneMode>(std::exchange(requests.radioTuneMode, 0)));
    }
    const std::int32_t loadMode = std::exchange(requests.planLoadMode, 0);
    if (loadMode == kLoadFromUnit || loadMode == kLoadFromList) {
        const std::string fileName = std::exchange(requests.planLoadName, {});
        LoadPlanToActive(fileName);
    }
    EndVerticalFrame();
}

// After the requests for plans, so a plan's fuel is loaded in the frame that loads the plan.
void ServeDataRequests() {
    if (const double quantity = std::exchange(planBook.fuelLoadRequested, 0); quantity > 0) {
        LoadFuel(quantity);
        RequestUnitRedraw();
    }
    if (std::exchange(requests.towerView, 0) == 1) {
        SendTowerView();
        RequestUnitRedraw();
    }
}

void ReleaseAirspeedHold() {
    if (settings.SetSpdOffwhenAPMasterSetOff == 1 && guidance.previousAutopilotOn == 1.0 &&
        aircraft.autopilotOn == 0.0 && aircraft.apSpeed115 == 1.0) {
        SendKeyEvent(KeyEvent::AirspeedHoldOff, 0);
    }
    guidance.previousAutopilotOn = aircraft.autopilotOn;
}

}  // namespace

void UpdateFrame() {
    const double tick = ReadTick();
    if (tick == guidance.lastTick) {
        return;  // another gauge has done this tick's work
    }
    RefreshAircraftState();
    CountSeconds();
    guidance.lastTick = tick;
    AdvanceDisplayTimers();
    UpdateDerivedState();
    ReadBackCommands();
    ApplyTopOfDescentActions();
    if (HasActiveWaypoint()) {
        FlyActivePlan();
    } else {
        IdleGuidance();
    }
    RefreshPredictions();
    ServePageRequests();
    ServeDataRequests();
    FlightLogUpdate(FlightLogMode::FramePass);
    TellVerticalProfile();
    ReleaseAirspeedHold();
}

}  // namespace avq1
