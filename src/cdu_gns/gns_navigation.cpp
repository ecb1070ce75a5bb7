// NAVIGATION: the leg being flown, what is ahead, the aircraft's motion, and the unit's own data.
#include <algorithm>
#include <array>
#include <cmath>
#include <span>

#include "base/messages.h"
#include "base/module_state.h"
#include "cdu/formats.h"
#include "cdu/pilot_entries.h"
#include "cdu_gns/gns_entry.h"
#include "cdu_gns/gns_pages.h"
#include "cdu_gns/gns_values.h"
#include "flightplan/hold_pattern.h"
#include "geometry/geometry.h"
#include "guidance/guidance_state.h"
#include "guidance/holds.h"
#include "guidance/lnav.h"
#include "guidance/vnav.h"
#include "navdb/database_cycle.h"
#include "navdb/nav_database.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "simlink/key_events.h"

namespace avq1 {
namespace {

constexpr int kValueX = 320;
constexpr int kTimeX = 380;
constexpr int kShortValueX = 400;
constexpr int kIdentX = 90;
constexpr double kFullCircle = 360;
constexpr int kMessageRows = 5;
constexpr int kMessageHeight = 30;

// What the pilot is choosing, and has chosen.
struct NavigationChoices {
    bool showsEta = false;  // beside TO, in place of the altitude restriction
    bool pendingEta = false;
    bool pendingAuto = false;
    bool headingEntry = false;  // MAN is confirmed: the heading is being typed
};

NavigationChoices choices;
const StateReset choicesReset([] { choices = NavigationChoices{}; });

std::int32_t SubPageShown() {
    return gns.Counter(GnsCounter::Navigation).n;
}

bool OnFirst(const LineRow&) {
    return SubPageShown() == 1;
}

bool OnLegPages(const LineRow&) {
    return SubPageShown() <= 3;
}

// ---- the top part of sub-pages 1 to 3 ----
void ShowIdent(std::int32_t index, UnitText& text) {
    text.Set(activePlan.Holds(index) ? activePlan.entries[index].ident : "------");
}

void ShowFrom(const FieldRow&, UnitText& text) {
    ShowIdent(HasActiveWaypoint() ? planBook.activeIndex - 1 : kNoWaypoint, text);
}

void ShowTo(const FieldRow&, UnitText& text) {
    ShowIdent(planBook.activeIndex, text);
}

void ShowNext(const FieldRow&, UnitText& text) {
    ShowIdent(GnsNextIndex(), text);
}

void ShowNextTime(const FieldRow&, UnitText& text) {
    text = GnsMinutesText(GnsMinutesTo(GnsNextIndex()));
}

bool NotHolding(const FieldRow&) {
    return !HoldBeingFlown();
}

bool Holding(const FieldRow&) {
    return HoldBeingFlown();
}

bool HoldingLine(const LineRow&) {
    return HoldBeingFlown() && SubPageShown() <= 3;
}

void ShowHoldFix(const FieldRow&, UnitText& text) {
    text.Put("AT %.6s", activePlan.entries[holdList.holds[1].fixIndex].ident.c_str());
}

// How long until the fix is passed again, as minutes and seconds.
void ShowHoldState(const FieldRow&, UnitText& text) {
    const bool leaves = holdFlight.holdState == HoldState::ExitRequested ||
                        holdFlight.holdState == HoldState::Exiting;
    const double seconds = GnsSecondsToHoldFix();
    text.Put("%s %s", leaves ? "EXIT HOLD" : "HOLDING",
             std::isfinite(seconds) ? HoursMinutesText(0, seconds).c_str() : "--:--");
}

void ShowHoldTurn(const LineRow& row, UnitText& text) {
    if (!IsSelected(gns, row)) {
        text.Set(holdList.holds[1].turnDirection == HoldTurn::Right ? "HOLD RIGHT" : "HOLD LEFT");
    }
}

EntryResult ExitHold(const LineRow&) {
    holdFlight.holdState = HoldState::ExitRequested;
    return EntryResult::Accepted;
}

constexpr FieldRow kTopFields[] = {
    {.label = "FR", .visible = NotHolding, .labelAt = {kGnsLabelX, 40}},
    {.show = ShowFrom, .visible = NotHolding, .style = kGnsPassed, .valueAt = {kIdentX, 40}},
    {.show = ShowHoldFix, .visible = Holding, .style = kGnsSmall, .valueAt = {234, 48}},
    {.show = ShowHoldState, .visible = Holding, .style = kGnsSmall, .valueAt = {330, 48}},
    {.label = "TO", .labelAt = {kGnsLabelX, 80}},
    {.show = ShowTo, .style = kGnsActive, .valueAt = {kIdentX, 80}},
    {.label = "NX", .labelAt = {kGnsLabelX, 120}},
    {.show = ShowNext, .style = kGnsData, .valueAt = {kIdentX, 120}},
};

// ---- sub-page 1 ----
void ShowDistance(const FieldRow&, UnitText& text) {
    text = NumberText(GnsDistanceTo(planBook.activeIndex), 7, 1);
}

void ShowEte(const FieldRow&, UnitText& text) {
    const double minutes = GnsMinutesTo(planBook.activeIndex);
    text.Set("--:----");
    if (std::isfinite(minutes)) {
        const double tenths = std::floor(minutes * 10 + 0.5);
        const double hours = std::floor(tenths / 600);
        const double left = (tenths - hours * 600) / 10;
        text.Put("%02.0f:%s%2.1f", hours, left < 10 ? "0" : "", left);
    }
}

void ShowDesiredTrack(const FieldRow&, UnitText& text) {
    text = Dashes(3);
    if (HoldBeingFlown()) {
        text = CourseText(holdList.holds[1].inboundCourseMag);
    } else if (HasActiveWaypoint()) {
        text = CourseText(guidance.desiredTrackMag);
    }
}

void ShowTrueTrack(const FieldRow&, UnitText& text) {
    const double trackTrue = guidance.desiredTrackMag + ShownAircraft().magneticVariation;
    if (HasActiveWaypoint() && !HoldBeingFlown() && std::isfinite(trackTrue)) {
        text.Put("(%.0f)", WholeCourse(trackTrue));
    }
}

void ShowWind(const FieldRow&, UnitText& text) {
    text.Set("---/---");
    if (std::isfinite(ShownAircraft().windSpeedKt) &&
        std::isfinite(ShownDerived().windDirectionMag)) {
        text.Put("%03.0f/%-3.0f", WholeCourse(ShownDerived().windDirectionMag),
                 ShownAircraft().windSpeedKt);
    }
}

constexpr FieldRow kLegFields[] = {
    {.show = ShowNextTime, .style = kGnsData, .valueAt = {360, 120}},
    {.label = "DIS",
     .show = ShowDistance,
     .style = kGnsData,
     .valueAt = {kValueX, 160},
     .labelAt = {kGnsLabelX, 160}},
    {.label = "ETE",
     .show = ShowEte,
     .style = kGnsData,
     .valueAt = {kValueX, 200},
     .labelAt = {kGnsLabelX, 200}},
    {.label = "DTK", .visible = NotHolding, .labelAt = {kGnsLabelX, 240}},
    {.label = "INBOUND CRS", .visible = Holding, .labelAt = {kGnsLabelX, 240}},
    {.show = ShowTrueTrack, .style = kGnsData, .valueAt = {160, 240}},
    {.show = ShowDesiredTrack, .style = kGnsData, .valueAt = {kShortValueX, 240}},
    {.label = "GS",
     .show = [](const FieldRow&, UnitText& t) { t = NumberText(ShownAircraft().groundSpeedKt, 3); },
     .style = kGnsData,
     .valueAt = {kShortValueX, 280},
     .labelAt = {kGnsLabelX, 280}},
    {.label = "WIND", .labelAt = {kGnsLabelX, 320}},
    {.show = ShowWind, .style = kGnsData, .valueAt = {360, 320}},
};

// ---- sub-page 2 ----
void ShowHeadwind(const FieldRow&, UnitText& text) {
    text = NumberText(std::abs(ShownDerived().headwindKt), 3);
}

void ShowCrosswind(const FieldRow&, UnitText& text) {
    text = NumberText(std::abs(ShownDerived().crosswindKt), 3);
}

std::int32_t Destination() {
    return activePlan.lastIndex;
}

void ShowDestinationLabel(const FieldRow& field, UnitText& text) {
    text.Put("%s-%.6s", field.item == 0 ? "ETA" : "FUEL",
             activePlan.Holds(Destination()) ? activePlan.entries[Destination()].ident.c_str()
                                             : "------");
}

void ShowTrackError(const FieldRow&, UnitText& text) {
    const double error = GnsTurnDeg(guidance.desiredTrackMag, GnsTrackMag());
    text = HasActiveWaypoint() ? SideText(error, 'L', 'R') : UnitText("- ---");
}

void ShowCrossTrack(const FieldRow&, UnitText& text) {
    text.Set("- ----");
    if (HasActiveWaypoint() && guidance.crossTrackNm != kNoCrossTrack) {
        text.Put("%c %s", guidance.crossTrackSide == Side::Right ? 'R' : 'L',
                 NumberText(guidance.crossTrackNm, 4, 2).c_str());
    }
}

constexpr FieldRow kAheadFields[] = {
    {.label = "WIND", .labelAt = {kGnsLabelX, 160}},
    {.show = [](const FieldRow&,
                UnitText& t) { t.Set(ShownDerived().headwindKt < 0 ? "TAIL" : "HEAD"); },
     .style = kGnsSmall,
     .valueAt = {118, 168}},
    {.show = ShowHeadwind, .style = kGnsData, .valueAt = {170, 160}},
    {.show = [](const FieldRow&,
                UnitText& t) { t.Set(ShownDerived().crosswindKt < 0 ? "LEFT" : "RIGHT"); },
     .style = kGnsSmall,
     .valueAt = {304, 168}},
    {.show = ShowCrosswind, .style = kGnsData, .valueAt = {370, 160}},
    {.show = ShowDestinationLabel, .item = 0, .style = kGnsLabel, .valueAt = {kGnsLabelX, 200}},
    {.show = [](const FieldRow&,
                UnitText& t) { t = GnsClockText(ActivePredictions().destination); },
     .style = kGnsData,
     .valueAt = {kTimeX - kGnsCharacterWidth, 200}},
    {.show = ShowDestinationLabel, .item = 1, .style = kGnsLabel, .valueAt = {kGnsLabelX, 240}},
    {.show =
         [](const FieldRow&, UnitText& t) {
             t = NumberText(InWeightUnit(GnsFuelAtPounds(ActivePredictions().destination)), 5);
         },
     .style = kGnsData,
     .valueAt = {kTimeX, 240}},
    {.label = "TKE",
     .show = ShowTrackError,
     .style = kGnsData,
     .valueAt = {kTimeX, 280},
     .labelAt = {kGnsLabelX, 280}},
    {.label = "XTK   TRMNL",
     .show = ShowCrossTrack,
     .style = kGnsData,
     .valueAt = {340, 320},
     .labelAt = {kGnsLabelX, 320}},
    {.label = "SXTK",
     .show = [](const FieldRow&, UnitText& t) { t = Dashes(5); },  // none can be selected
     .style = kGnsData,
     .valueAt = {kTimeX, 360},
     .labelAt = {kGnsLabelX, 360}},
};

// ---- sub-page 3 ----
void ShowVariation(const FieldRow&, UnitText& text) {
    text.Set("- ---");
    if (std::isfinite(ShownAircraft().magneticVariation)) {
        text.Put("%s %3d", ShownAircraft().magneticVariation < 0 ? "W" : "E",
                 static_cast<int>(std::floor(std::abs(ShownAircraft().magneticVariation) + 0.5)));
    }
}

void ShowBearing(const FieldRow&, UnitText& text) {
    text = HasActiveWaypoint() ? CourseText(guidance.bearingToWaypointMag) : Dashes(3);
}

constexpr FieldRow kMotionFields[] = {
    {.label = "DRIFT",
     .show =
         [](const FieldRow&, UnitText& t) {
             t = SideText(GnsTurnDeg(ShownAircraft().headingMag, GnsTrackMag()), 'L', 'R');
         },
     .style = kGnsData,
     .valueAt = {kTimeX, 160},
     .labelAt = {kGnsLabelX, 160}},
    {.label = "VAR",
     .show = ShowVariation,
     .style = kGnsData,
     .valueAt = {kTimeX, 200},
     .labelAt = {kGnsLabelX, 200}},
    {.label = "TAS",
     .show = [](const FieldRow&,
                UnitText& t) { t = NumberText(ShownDerived().trueAirspeedEstimateKt, 3); },
     .style = kGnsData,
     .valueAt = {kShortValueX, 240},
     .labelAt = {kGnsLabelX, 240}},
    {.label = "HDG",
     .show = [](const FieldRow&, UnitText& t) { t = CourseText(ShownAircraft().headingMag); },
     .style = kGnsData,
     .valueAt = {kShortValueX, 280},
     .labelAt = {kGnsLabelX, 280}},
    {.label = "BRG",
     .show = ShowBearing,
     .style = kGnsData,
     .valueAt = {kShortValueX, 320},
     .labelAt = {kGnsLabelX, 320}},
    {.label = "TK",
     .show = [](const FieldRow&, UnitText& t) { t = CourseText(GnsTrackMag()); },
     .style = kGnsData,
     .valueAt = {kShortValueX, 360},
     .labelAt = {kGnsLabelX, 360}},
};

// ---- sub-page 4 ----
constexpr int kDataX = 210;

constexpr FieldRow kUnitFields[] = {
    {.label = "IDENT", .labelAt = {kGnsLabelX, 40}},
    {.show = [](const FieldRow&,
                UnitText& t) { t.Set(DatabaseCycle.empty() ? "------" : DatabaseCycle); },
     .style = kGnsData,
     .valueAt = {kDataX, 40}},
    {.show = [](const FieldRow&, UnitText& t) { t.Set(DatabaseValidity); },
     .style = kGnsData,
     .valueAt = {kDataX, 80}},
    {.label = "EXPIRED",
     .visible = [](const FieldRow&) { return IsDatabaseExpired(); },
     .labelAt = {kGnsLabelX, 80}},
    {.label = "POS", .labelAt = {kGnsLabelX, 120}},
    {.show = [](const FieldRow&, UnitText& t) { t = GnsLatitudeText(ShownAircraft().latitude); },
     .style = kGnsData,
     .valueAt = {kDataX, 120}},
    {.show = [](const FieldRow&, UnitText& t) { t = GnsLongitudeText(ShownAircraft().longitude); },
     .style = kGnsData,
     .valueAt = {kDataX, 160}},
};

void PutMessages(Screen& screen) {
    const std::int32_t first = std::max(messages.count - kMessageRows, 0) + 1;
    for (std::int32_t i = first; i <= messages.count; ++i) {
        screen.Put(kGnsSmall, kGnsLabelX, 204 + (i - first) * kMessageHeight, "%.37s",
                   messages.lines[static_cast<std::size_t>(i)].c_str());
    }
}

// ---- the choices ----
// Beside TO: its altitude restriction, or when it is reached.
void ShowRestrictionOrEta(const LineRow& row, UnitText& text) {
    if (IsSelected(gns, row)) {
        text.Set(choices.pendingEta ? "ETA?" : "ALT?");
    } else if (choices.showsEta) {
        text = GnsClockText(GnsPredictionOf(planBook.activeIndex));
    } else if (ActiveWaypoint().altitudeConstraint != 0) {
        text.Put("%5.0fA", ActiveWaypoint().altitude);
    } else {
        text = Dashes(5);
    }
}

EntryResult ToggleEta(const LineRow&) {
    choices.pendingEta = !choices.pendingEta;
    return EntryResult::None;
}

EntryResult ConfirmEta(const LineRow&) {
    choices.showsEta = choices.pendingEta;
    return EntryResult::Accepted;
}

void ShowSteering(const LineRow& row, UnitText& text) {
    if (choices.headingEntry && gns.lineState[static_cast<std::size_t>(row.line)] > row.state) {
        return;  // the heading stands there
    }
    const bool automatic = IsSelected(gns, row) ? choices.pendingAuto : guidance.lnavEngaged != 0;
    text.Put("%s%s", automatic ? "AUTO" : "MAN", IsSelected(gns, row) ? "?" : "");
}

EntryResult ToggleSteering(const LineRow&) {
    choices.pendingAuto = !choices.pendingAuto;
    return EntryResult::None;
}

bool HeadingIsTyped(const LineRow& row) {
    return OnFirst(row) && choices.headingEntry;
}

EntryResult SendTypedHeading(const LineRow&) {
    double heading = 0;
    if (!ReadTypedWhole(heading) || heading > kFullCircle) {
        return EntryResult::InvalidEntry;
    }
    SendKeyEvent(KeyEvent::HeadingBugSet, WholeHeading(heading));
    DisengageLnav();
    return EntryResult::Accepted;
}

// The heading bug's present value is offered as three digits.
void OfferHeading(const LineRow&) {
    LoadScratchpad(gns, CourseText(ShownAircraft().apHeadingBug).view(), 3);
}

// The pause at the top of descent, where the settings allow it.
bool OnUnitPage(const LineRow&) {
    return SubPageShown() == 4 && settings.ArmPauseAtTod != 0;
}

void ShowPause(const LineRow&, UnitText& text) {
    text.Put("PAUSE AT TOD (%s)", vnav.pauseArmed != 0 ? "ON" : "OFF");
}

// The key itself toggles it.
void TogglePause(const LineRow&) {
    vnav.pauseArmed = vnav.pauseArmed == 0 ? 1 : 0;
    ClearGnsSelections();
}

EntryResult ConfirmSteering(const LineRow& row);

constexpr std::size_t kHeadingLine = 4;

constexpr LineRow kLines[] = {
    {.line = 1,
     .prompt = "EXIT HOLD?",
     .show = ShowHoldTurn,
     .visible = HoldingLine,
     .enter = ExitHold,
     .style = kGnsLabel,
     .at = {kGnsLabelX, 40}},
    {.line = 5,
     .show = ShowPause,
     .visible = OnUnitPage,
     .select = TogglePause,
     .style = kGnsLabel,
     .at = {kGnsLabelX, 360}},
    {.line = 7,
     .show = ShowRestrictionOrEta,
     .visible = OnLegPages,
     .select = [](const LineRow&) { choices.pendingEta = !choices.showsEta; },
     .enter = ConfirmEta,
     .clear = ToggleEta,
     .style = kGnsData,
     .at = {360, 80}},
    {.line = 10,
     .show = ShowSteering,
     .visible = OnFirst,
     .select =
         [](const LineRow&) {
             choices.headingEntry = false;
             choices.pendingAuto = guidance.lnavEngaged == 0;
         },
     .enter = ConfirmSteering,
     .clear = ToggleSteering,
     .style = kGnsData,
     .at = {kTimeX, 360}},
    {.line = 10,
     .state = 2,
     .visible = HeadingIsTyped,
     .entryLength = 3,
     .select = OfferHeading,
     .enter = SendTypedHeading,
     .at = {kTimeX, 360}},
};

EntryResult ConfirmSteering(const LineRow&) {
    if (choices.pendingAuto) {
        return EngageLnav() ? EntryResult::Accepted : EntryResult::NoActiveRoute;
    }
    choices.headingEntry = true;
    SelectRow(kLines[kHeadingLine], gns);
    return EntryResult::None;
}

void ComposeNavigation(Screen& screen) {
    const SubPage& shown = SetGnsPageCount(GnsCounter::Navigation, 4);
    screen.Put(kGnsLabel, 90, 0, "NAVIGATION   %d/%d", shown.n, shown.m);
    constexpr std::array<std::span<const FieldRow>, 4> kFields = {kLegFields, kAheadFields,
                                                                  kMotionFields, kUnitFields};
    if (shown.n == 4) {
        PutMessages(screen);
    } else {
        DrawFields(kTopFields, screen);
    }
    DrawFields(kFields[static_cast<std::size_t>(shown.n - 1)], screen);
}

}  // namespace

constinit const PageRow kGnsNavigationPage{
    .page = kGnsNavigation, .lines = kLines, .compose = ComposeNavigation};

}  // namespace avq1
