// HOLDING PATTERN: the hold at the waypoint that was selected, else the first of the list, and what
// the pilot may change of it.
#include <cmath>

#include "base/module_state.h"
#include "cdu/formats.h"
#include "cdu_gns/gns_entry.h"
#include "cdu_gns/gns_pages.h"
#include "cdu_gns/gns_plan.h"
#include "cdu_gns/gns_waypoint.h"
#include "flightplan/flight_plan.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_edit.h"
#include "flightplan/route_entry.h"
#include "guidance/activation.h"
#include "guidance/guidance_state.h"
#include "guidance/holds.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr int kLabelY = 40;
constexpr int kCourseX = 400;
constexpr int kChoiceX = 360;
constexpr int kLengthX = 380;
constexpr double kFullCircle = 360;
constexpr double kLongestLeg = 99.9;  // minutes or nm

// What CLR has chosen and ENTER has not confirmed yet.
struct HoldChoices {
    bool right = true;
    bool automatic = false;
};

HoldChoices choices;
const StateReset choicesReset([] { choices = HoldChoices{}; });

// The entry of the active plan whose hold is shown, wherever it moves; kNoWaypoint: the first hold.
std::int32_t FixShown() {
    return GnsSelection().plan == &activePlan ? GnsSelection().index : kNoWaypoint;
}

// The hold that is shown; null without any.
HoldPattern* HoldShown() {
    const std::int32_t selected = HoldNumberAt(FixShown());
    const std::int32_t number = selected > 0 ? selected : 1;
    return number <= holdList.count ? &holdList.holds[static_cast<std::size_t>(number)] : nullptr;
}

bool IsRight(const HoldPattern& hold) {
    return hold.turnDirection == HoldTurn::Right;
}

bool HasHold(const LineRow&) {
    return HoldShown() != nullptr;
}

bool HasHoldField(const FieldRow&) {
    return HoldShown() != nullptr;
}

// ---- values ----
void ShowFix(const FieldRow&, UnitText& text) {
    const HoldPattern* hold = HoldShown();
    const bool placed = hold != nullptr && activePlan.Holds(hold->fixIndex);
    text.Put("AT %.6s", placed ? activePlan.entries[hold->fixIndex].ident.c_str() : "------");
}

void ShowCourse(const LineRow&, UnitText& text) {
    text.Put("%03.0f",
             PositiveModulo(std::floor(HoldShown()->inboundCourseMag + 0.5), kFullCircle));
}

void OfferCourse(const LineRow& row) {
    UnitText course;
    ShowCourse(row, course);
    LoadScratchpad(gns, course.view(), 3);
}

void ShowTurn(const LineRow& row, UnitText& text) {
    const bool right = IsSelected(gns, row) ? choices.right : IsRight(*HoldShown());
    text.Set(right ? "RIGHT" : "LEFT");
}

void ShowExitMode(const LineRow& row, UnitText& text) {
    const bool automatic =
        IsSelected(gns, row) ? choices.automatic : HoldShown()->exitAutomatic == 1;
    text.Set(automatic ? "AUTO" : "MANUAL");
}

// Nm, given or from the time at the present speed; a drawing changes no hold.
double LegDistanceNm(HoldPattern hold) {
    if (activePlan.Holds(hold.fixIndex)) {
        LayOutHold(hold, activePlan.entries[hold.fixIndex]);
    }
    return hold.legDistanceNm;
}

// Minutes, given or from the distance at the present speed.
double LegMinutes() {
    const HoldPattern& hold = *HoldShown();
    if (hold.legByTime == 1) {
        return hold.legMinutes;
    }
    HoldPattern oneMinute = hold;
    oneMinute.legByTime = 1;
    oneMinute.legMinutes = 1;
    return hold.legDistanceNm / LegDistanceNm(oneMinute);
}

// What is not given but follows stands in brackets.
void ShowLegTime(const LineRow&, UnitText& text) {
    text.Put(HoldShown()->legByTime == 1 ? "%-1.1f" : "(%-1.1f)", LegMinutes());
}

void ShowLegDistance(const LineRow&, UnitText& text) {
    const HoldPattern& hold = *HoldShown();
    const double distanceNm = LegDistanceNm(hold);
    if (distanceNm <= 0) {
        text.Set("----");
    } else {
        text.Put(hold.legByTime == 1 ? "(%-2.1f)" : "%-2.1f", distanceNm);
    }
}

// ---- entries ----
EntryResult EnterCourse(const LineRow&) {
    double course = 0;
    if (!ReadTypedWhole(course) || course > kFullCircle) {
        return EntryResult::InvalidEntry;
    }
    HoldShown()->inboundCourseMag = course == kFullCircle ? 0 : course;
    return EntryResult::Accepted;
}

EntryResult EnterLegTime(const LineRow&) {
    double minutes = 0;
    if (!ReadTypedTenths(minutes) || minutes <= 0 || minutes > kLongestLeg) {
        return EntryResult::InvalidEntry;
    }
    HoldShown()->legMinutes = minutes;
    HoldShown()->legByTime = 1;
    return EntryResult::Accepted;
}

EntryResult EnterLegDistance(const LineRow&) {
    double distanceNm = 0;
    if (!ReadTypedTenths(distanceNm) || distanceNm <= 0 || distanceNm > kLongestLeg) {
        return EntryResult::InvalidEntry;
    }
    HoldShown()->legDistanceNm = distanceNm;
    HoldShown()->legByTime = 0;
    return EntryResult::Accepted;
}

EntryResult ConfirmTurn(const LineRow&) {
    HoldShown()->turnDirection = choices.right ? HoldTurn::Right : HoldTurn::Left;
    return EntryResult::Accepted;
}

EntryResult ToggleTurn(const LineRow&) {
    choices.right = !choices.right;
    return EntryResult::None;
}

EntryResult ConfirmExitMode(const LineRow&) {
    HoldShown()->exitAutomatic = choices.automatic ? 1 : 0;
    return EntryResult::Accepted;
}

EntryResult ToggleExitMode(const LineRow&) {
    choices.automatic = !choices.automatic;
    return EntryResult::None;
}

// A hold at the waypoint that was selected, where there is none yet.
void PlanHoldAt(std::int32_t index) {
    if (HoldNumberAt(index) != 0 || !activePlan.Holds(index) ||
        !HasPosition(activePlan.entries[index])) {
        return;
    }
    HoldPattern hold = NewHold();
    hold.inboundCourseMag = CourseIntoMag(activePlan, index);
    if (EditActivePlan([&](FlightPlan& plan) { return HoldAt(plan, index, hold); })) {
        holdList.holds[static_cast<std::size_t>(HoldNumberAt(index))].corners[0].name = "Fix";
    } else {
        gns.notice = "NO MORE HOLDS";
    }
}

void HandleHold(const UnitInput& input) {
    if (input.openedPage == kGnsHold) {
        PlanHoldAt(FixShown());
    }
}

constexpr FieldRow kFields[] = {
    {.label = "HOLDING PATTERN 1/1", .labelAt = {50, 0}},
    {.show = ShowFix, .style = kGnsActive, .valueAt = {kGnsLabelX, kLabelY}},
    {.label = "DIRECT ENTRY", .visible = HasHoldField, .labelAt = {150, 80}},
    {.label = "INBOUND CRS", .labelAt = {kGnsLabelX, 120}},
    {.label = "TURN DIR", .labelAt = {kGnsLabelX, 200}},
    {.label = "LEG TIME", .labelAt = {kGnsLabelX, 240}},
    {.label = "LEG DIST", .labelAt = {kGnsLabelX, 280}},
    {.label = "EXIT MODE", .labelAt = {kGnsLabelX, 320}},
};

constexpr LineRow kLines[] = {
    {.line = 7,
     .show = ShowCourse,
     .visible = HasHold,
     .entryLength = 3,
     .select = OfferCourse,
     .enter = EnterCourse,
     .style = kGnsData,
     .at = {kCourseX, 120}},
    {.line = 8,
     .show = ShowTurn,
     .visible = HasHold,
     .select = [](const LineRow&) { choices.right = IsRight(*HoldShown()); },
     .enter = ConfirmTurn,
     .clear = ToggleTurn,
     .style = kGnsData,
     .at = {kChoiceX, 200}},
    {.line = 9,
     .show = ShowLegTime,
     .showEntry = ShowTypedTenths,
     .visible = HasHold,
     .entryLength = 4,
     .select = [](const LineRow&) { OfferTenths(LegMinutes(), 3); },
     .enter = EnterLegTime,
     .style = kGnsData,
     .at = {kLengthX, 240}},
    {.line = 9,
     .state = 2,
     .show = ShowLegDistance,
     .showEntry = ShowTypedTenths,
     .visible = HasHold,
     .entryLength = 4,
     .select = [](const LineRow&) { OfferTenths(LegDistanceNm(*HoldShown()), 3); },
     .enter = EnterLegDistance,
     .style = kGnsData,
     .at = {kLengthX, 280}},
    {.line = 10,
     .show = ShowExitMode,
     .visible = HasHold,
     .select = [](const LineRow&) { choices.automatic = HoldShown()->exitAutomatic == 1; },
     .enter = ConfirmExitMode,
     .clear = ToggleExitMode,
     .style = kGnsData,
     .at = {kChoiceX, 320}},
};

}  // namespace

// Before a waypoint of the plan that is being flown a hold can be planned: on the page's first row
// stands the one flown from.
void OpenGnsHold() {
    const std::int32_t selected = GnsSelectedEntry();
    const std::int32_t firstAhead = HasActiveWaypoint() ? planBook.activeIndex : 1;
    const bool ahead = GnsShowsActivePlan() && selected >= firstAhead && activePlan.Holds(selected);
    GnsSelection() = {&activePlan, ahead ? selected : kNoWaypoint};
    OpenGnsPage(kGnsHold);
}

constinit const PageRow kGnsHoldPage{
    .page = kGnsHold, .fields = kFields, .lines = kLines, .handle = HandleHold};

}  // namespace avq1
