#include <cmath>
#include <cstdio>

#include "cdu_gns/mcu_pages.h"
#include "flightplan/flight_plan.h"
#include "flightplan/hold_pattern.h"
#include "guidance/guidance_state.h"
#include "guidance/holds.h"
#include "guidance/lnav.h"

namespace avq1 {
namespace {

constexpr std::size_t kShortIdent = 5;
constexpr std::size_t kLongField = 15;

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
        mcu.page = McuPage::To;
        SetActiveWaypoint(1);
        return;
    }
    const bool flying = HasActiveWaypoint() && planBook.activeIndex <= activePlan.lastIndex;
    // Without one, the first step in either direction lands on an end of the plan.
    const std::int32_t from = flying ? planBook.activeIndex : (step > 0 ? 0 : 1);
    SetActiveWaypoint(NeighbourWaypoint(from, step));
}

// Whole degrees 1 to 360.
double ShownCourse(double courseMag) {
    const double whole = std::floor(courseMag + 0.5);
    return whole < 1 ? whole + 360 : whole;
}

struct ShownTime {
    double hours;
    double minutes;
};

// Rounded as one time, so that 59.7 minutes become the next hour.
ShownTime WholeMinutes(double hours, double minutes) {
    const double total = std::floor(hours * 60 + minutes + 0.5);
    const double wholeHours = std::floor(total / 60);
    return {wholeHours, total - wholeHours * 60};
}

void PutWaypoint(McuScreen& screen) {
    const std::int32_t index = planBook.activeIndex;
    const PlanWaypoint& entry = activePlan.entries[index];
    const std::string& leg = entry.via.empty() ? entry.type : entry.via;
    const int last = activePlan.lastIndex;
    if (entry.flyover == 0 && entry.ident.size() <= kShortIdent) {
        screen.Put(McuStyle::Active, 0, kMcuRowY[0], "TO:   %-5s %-6.6s %d/%d", entry.ident.c_str(),
                   leg.c_str(), index, last);
        return;
    }
    std::array<char, 40> field{};
    const char* mark = entry.flyover != 0 ? "(FO)" : "";
    const int length = std::snprintf(field.data(), field.size(), "%.10s%s %s", entry.ident.c_str(),
                                     mark, leg.c_str());
    if (length >= static_cast<int>(kLongField)) {
        std::snprintf(field.data(), field.size(), "%.10s%s", entry.ident.c_str(), mark);
    }
    screen.Put(McuStyle::Active, 0, kMcuRowY[0], "TO:   %-15s%d/%d", field.data(), index, last);
}

// The corner a hold is flown to, or its fix before the pattern is reached.
const char* HoldTarget() {
    const HoldPattern& hold = holdList.holds[1];
    const std::string& corner = hold.corners[holdList.holdTargetCorner].name;
    if (holdList.holdTargetCorner == 0 && activePlan.Holds(hold.fixIndex)) {
        return activePlan.entries[hold.fixIndex].ident.c_str();
    }
    return corner.c_str();
}

void PutStatus(McuScreen& screen) {
    std::array<char, 24> lateral{};
    if (guidance.lnavEngaged != 0 && guidance.trackLeg != 0) {
        std::snprintf(lateral.data(), lateral.size(), "LNAV(%.1f%c) ", guidance.crossTrackNm,
                      guidance.crossTrackSide == 1 ? 'R' : 'L');
    } else if (guidance.lnavEngaged != 0 && !HoldBeingFlown()) {  // a hold commands its own
        std::snprintf(lateral.data(), lateral.size(), "DCTTO (%3.0fD) ",
                      ShownCourse(guidance.headingCommandMag));
    }
    std::array<char, 24> hold{};
    if (holdList.holdActive != 0) {
        std::snprintf(hold.data(), hold.size(), "HOLD(%.8s) ", HoldTarget());
    }
    screen.Put(McuStyle::Status, 0, kMcuRowY[5], "%s%s%s", lateral.data(), hold.data(),
               guidance.vnavEngaged != 0 ? "VNAV" : "");
}

void PutNothingFlown(McuScreen& screen) {
    const bool empty = activePlan.lastIndex < 1;
    screen.Put(McuStyle::Title, 0, kMcuRowY[0], "TO:   %-15s%d/%d",
               empty ? "NO FLIGHT PLAN" : "NO ACTIVE WPT", 0, empty ? 0 : activePlan.lastIndex);
    screen.Put(McuStyle::Data, 0, kMcuRowY[1], "DIST: ---- NM");
    screen.Put(McuStyle::Data, 0, kMcuRowY[2], "BRG:  ---");
    screen.Put(McuStyle::Data, 0, kMcuRowY[3], "ETE:  --:-- (--:--)");
    screen.Put(McuStyle::Status, 0, kMcuRowY[5], "%s",
               empty ? "FPLN to load a flight plan" : "NEXT to fly to the first waypoint");
}

}  // namespace

void HandleToKeys() {
    if (mcu.prevPressed != mcu.nextPressed) {
        StepActiveWaypoint(mcu.nextPressed ? 1 : -1);
    }
}

void ComposeTo(McuScreen& screen) {
    if (!HasActiveWaypoint() || !activePlan.Holds(planBook.activeIndex)) {
        PutNothingFlown(screen);
        return;
    }
    PutWaypoint(screen);
    const ShownTime waypoint = WholeMinutes(progress.eteWaypointHours, progress.eteWaypointMinutes);
    const ShownTime destination =
        WholeMinutes(progress.eteDestinationHours, progress.eteDestinationMinutes);
    screen.Put(McuStyle::Data, 0, kMcuRowY[1], "DIST: %-4.1f NM",
               std::fmax(guidance.distanceToGoNm, 0.0));
    screen.Put(McuStyle::Data, 0, kMcuRowY[2], "BRG:  %03.0f",
               ShownCourse(guidance.bearingToWaypointMag));
    screen.Put(McuStyle::Data, 0, kMcuRowY[3], "ETE:  %02.0f:%02.0f (%02.0f:%02.0f)",
               waypoint.hours, waypoint.minutes, destination.hours, destination.minutes);
    screen.Put(McuStyle::Data, 0, kMcuRowY[4], "%s:%4.0f/%03.0f",
               activePlan.entries[activePlan.lastIndex].ident.c_str(),
               progress.destinationDistanceDirect, ShownCourse(progress.destinationBearingMag));
    PutStatus(screen);
}

}  // namespace avq1
