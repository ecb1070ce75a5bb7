// TO, the home page: the leg being flown; PREV and NEXT make another waypoint the active one.
#include <cmath>
#include <string>

#include "cdu/formats.h"
#include "cdu_gns/mcu_pages.h"
#include "flightplan/flight_plan.h"
#include "flightplan/hold_pattern.h"
#include "guidance/guidance_state.h"
#include "guidance/holds.h"
#include "guidance/lnav.h"
#include "guidance/predictions.h"

namespace avq1 {
namespace {

constexpr std::size_t kShortIdent = 5;
constexpr std::size_t kLongField = 15;

bool IsFlying() {
    return HasActiveWaypoint() && activePlan.Holds(planBook.activeIndex);
}

bool Flying(const FieldRow&) {
    return IsFlying();
}

bool NothingFlown(const FieldRow&) {
    return !IsFlying();
}

// The next entry from `from` in steps of one, around the ends of 1..last, that has a position;
// `from` itself when there is no other.
std::int32_t NeighbourWaypoint(std::int32_t from, std::int32_t step) {
    const std::int32_t last = activePlan.lastIndex;
    std::int32_t index = from;
    for (std::int32_t tried = 0; tried < last; ++tried) {
        index += step;
        if (index > last) {
            index = 1;
        } else if (index < 1) {
            index = last;
        }
        if (!IsDiscontinuity(activePlan.entries[index])) {
            return index;
        }
    }
    return from;
}

void StepActiveWaypoint(std::int32_t step) {
    if (activePlan.lastIndex < 1) {
        SetActiveWaypoint(1);
        return;
    }
    // Without one, the first step in either direction lands on an end of the plan.
    const std::int32_t from = IsFlying() ? planBook.activeIndex : (step > 0 ? 0 : 1);
    SetActiveWaypoint(NeighbourWaypoint(from, step));
}

void HandleTo(const UnitInput& input) {
    if (input.prevPressed != input.nextPressed) {
        StepActiveWaypoint(input.nextPressed ? 1 : -1);
    }
}

void ShowWaypoint(const FieldRow&, UnitText& text) {
    const std::int32_t index = planBook.activeIndex;
    const PlanWaypoint& entry = activePlan.entries[index];
    const std::string& leg = entry.via.empty() ? entry.type : entry.via;
    const int last = activePlan.lastIndex;
    if (entry.flyover == 0 && entry.ident.size() <= kShortIdent) {
        text.Put("TO:   %-5s %-6.6s %d/%d", entry.ident.c_str(), leg.c_str(), index, last);
        return;
    }
    UnitText field;
    const char* mark = entry.flyover != 0 ? "(FO)" : "";
    field.Put("%.10s%s %s", entry.ident.c_str(), mark, leg.c_str());
    if (field.view().size() >= kLongField) {
        field.Put("%.10s%s", entry.ident.c_str(), mark);
    }
    text.Put("TO:   %-15s%d/%d", field.c_str(), index, last);
}

void ShowDistance(const FieldRow&, UnitText& text) {
    text.Put("DIST: %-4.1f NM", std::fmax(guidance.distanceToGoNm, 0.0));
}

void ShowBearing(const FieldRow&, UnitText& text) {
    text.Put("BRG:  %03.0f", WholeCourse(guidance.bearingToWaypointMag));
}

void ShowTimes(const FieldRow&, UnitText& text) {
    text.Put("ETE:  %s (%s)",
             HoursMinutesText(0, ShownMinutesTo(ActiveWaypointPrediction())).c_str(),
             HoursMinutesText(0, ShownMinutesTo(ActivePredictions().destination)).c_str());
}

void ShowDestination(const FieldRow&, UnitText& text) {
    text.Put("%s:%4.0f/%03.0f", activePlan.entries[activePlan.lastIndex].ident.c_str(),
             progress.destinationDistanceDirect, WholeCourse(progress.destinationBearingMag));
}

// The corner a hold is flown to, or its fix before the pattern is reached.
const char* HoldTarget() {
    const HoldPattern& hold = holdList.holds[1];
    if (holdFlight.holdTargetCorner == 0 && activePlan.Holds(hold.fixIndex)) {
        return activePlan.entries[hold.fixIndex].ident.c_str();
    }
    return hold.corners[static_cast<std::size_t>(holdFlight.holdTargetCorner)].name.c_str();
}

void ShowStatus(const FieldRow&, UnitText& text) {
    UnitText lateral;
    if (guidance.lnavEngaged != 0 && guidance.trackLeg != 0) {
        lateral.Put("LNAV(%.1f%c) ", guidance.crossTrackNm,
                    guidance.crossTrackSide == Side::Right ? 'R' : 'L');
    } else if (guidance.lnavEngaged != 0 && !HoldBeingFlown()) {  // a hold commands its own
        lateral.Put("DCTTO (%3.0fD) ", WholeCourse(guidance.headingCommandMag));
    }
    UnitText hold;
    if (holdFlight.holdActive != 0) {
        hold.Put("HOLD(%.8s) ", HoldTarget());
    }
    text.Put("%s%s%s", lateral.c_str(), hold.c_str(), guidance.vnavEngaged != 0 ? "VNAV" : "");
}

void ShowNothingFlown(const FieldRow&, UnitText& text) {
    const bool empty = activePlan.lastIndex < 1;
    text.Put("TO:   %-15s%d/%d", empty ? "NO FLIGHT PLAN" : "NO ACTIVE WPT", 0,
             empty ? 0 : activePlan.lastIndex);
}

void ShowAdvice(const FieldRow&, UnitText& text) {
    text.Set(activePlan.lastIndex < 1 ? "FPLN to load a flight plan"
                                      : "NEXT to fly to the first waypoint");
}

constexpr FieldRow Line(int row, McuStyle style, FieldRow::Show show) {
    return {.show = show,
            .visible = Flying,
            .style = style,
            .valueAt = {0, kMcuRowY[static_cast<std::size_t>(row)]}};
}

constexpr FieldRow EmptyLine(int row, McuStyle style, FieldRow::Show show) {
    FieldRow field = Line(row, style, show);
    field.visible = NothingFlown;
    return field;
}

constexpr FieldRow EmptyLine(int row, const char* dashes) {
    return {.label = dashes,
            .visible = NothingFlown,
            .labelStyle = kMcuData,
            .labelAt = {0, kMcuRowY[static_cast<std::size_t>(row)]}};
}

constexpr FieldRow kFields[] = {
    Line(0, kMcuActive, ShowWaypoint),
    Line(1, kMcuData, ShowDistance),
    Line(2, kMcuData, ShowBearing),
    Line(3, kMcuData, ShowTimes),
    Line(4, kMcuData, ShowDestination),
    Line(5, kMcuStatus, ShowStatus),
    EmptyLine(0, kMcuTitle, ShowNothingFlown),
    EmptyLine(1, "DIST: ---- NM"),
    EmptyLine(2, "BRG:  ---"),
    EmptyLine(3, "ETE:  --:-- (--:--)"),
    EmptyLine(5, kMcuStatus, ShowAdvice),
};

}  // namespace

constinit const PageRow kMcuToPage{.page = kMcuTo, .fields = kFields, .handle = HandleTo};

}  // namespace avq1
