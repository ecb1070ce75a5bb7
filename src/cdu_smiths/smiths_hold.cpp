// RTE HOLD: the holds of the route in its order, a page each.
//
// A change of a hold of the flown route waits for EXEC like any other change of it; leaving one
// does not wait. Courses and radials are magnetic.
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "cdu/formats.h"
#include "cdu/pilot_entries.h"
#include "cdu_smiths/smiths_pages.h"
#include "cdu_smiths/smiths_route.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_edit.h"
#include "guidance/guidance_state.h"
#include "guidance/holds.h"
#include "settings/aircraft_performance.h"
#include "simlink/aircraft_state.h"
#include "simlink/sim_variables.h"

namespace avq1 {
namespace {

constexpr double kWholeCircle = 360;
constexpr double kLongestLeg = 99.9;  // minutes or nm
constexpr double kEtaFromKt = 60;     // ground speed
constexpr double kMinutesPerHour = 60;
constexpr double kSectorDeg = 45;
constexpr const char* kQuadrants[] = {"N", "NE", "E", "SE", "S", "SW", "W", "NW"};

// ---- which hold ----
// Its fix in the plan shown; 0 = it is not in it.
std::int32_t FixOf(const HoldPattern& hold) {
    return std::max(SmithsShowsActivePlan() ? hold.fixIndex : hold.pendingFixIndex, 0);
}

struct HoldOrder {
    std::array<std::int32_t, kHoldCapacity> numbers{};  // in the list of holds
    std::int32_t count = 0;
};

// In the order of their fixes.
HoldOrder HoldsOnRoute() {
    HoldOrder order;
    const auto fixOf = [](std::int32_t number) {
        return FixOf(holdList.holds[static_cast<std::size_t>(number)]);
    };
    for (std::int32_t number = 1; number <= holdList.count; ++number) {
        if (fixOf(number) <= 0 || !SmithsPlan().Holds(fixOf(number))) {
            continue;
        }
        auto place = static_cast<std::size_t>(order.count++);
        for (; place > 0 && fixOf(order.numbers[place - 1]) > fixOf(number); --place) {
            order.numbers[place] = order.numbers[place - 1];
        }
        order.numbers[place] = number;
    }
    return order;
}

SubPage& CounterShown() {
    return smiths.Counter(SmithsCounter::Hold).SetCount(PageCount(HoldsOnRoute().count, 1));
}

// 0 without any.
std::int32_t NumberShown() {
    const HoldOrder order = HoldsOnRoute();
    const std::int32_t n = CounterShown().n;
    return n <= order.count ? order.numbers[static_cast<std::size_t>(n - 1)] : 0;
}

// Null without any.
HoldPattern* HoldShown() {
    const std::int32_t number = NumberShown();
    return number > 0 ? &holdList.holds[static_cast<std::size_t>(number)] : nullptr;
}

const HoldShape& ShapeOf(const HoldPattern& hold) {
    return SmithsShowsActivePlan() ? hold : PendingShape(hold);
}

const PlanWaypoint& FixEntry(const HoldPattern& hold) {
    return SmithsPlan().entries[FixOf(hold)];
}

bool HasHold(const FieldRow&) {
    return NumberShown() > 0;
}

// ---- what is shown ----
void ShowFix(const FieldRow&, UnitText& text) {
    const HoldPattern* hold = HoldShown();
    text.Set(hold == nullptr ? "- - - - -" : FixEntry(*hold).ident.substr(0, 7));
}

// What is predicted there, which keeps to what is restricted.
void ShowTarget(const FieldRow&, UnitText& text) {
    const HoldPattern* hold = HoldShown();
    text.Set("- - - / - - - - -");
    if (hold == nullptr) {
        return;
    }
    const PredictedPoint& point =
        SmithsPredictions().entries[static_cast<std::size_t>(FixOf(*hold))];
    if (point.known) {
        text.Put("%3.0f/%s", point.speedKt,
                 AltitudeText(point.altitudeFt, pilotEntries.transitionAltitudeFt).c_str());
    }
}

double RadialOf(const HoldShape& shape) {
    return WholeCourse(shape.inboundCourseMag + kWholeCircle / 2);
}

const char* QuadrantOf(double radialMag) {
    return kQuadrants[static_cast<std::size_t>(radialMag / kSectorDeg + 0.5) %
                      std::size(kQuadrants)];
}

void ShowRadial(const FieldRow&, UnitText& text) {
    text.Set(". . / . . .");
    if (const HoldPattern* hold = HoldShown()) {
        const double radial = RadialOf(ShapeOf(*hold));
        text.Put("%s / %03.0f", QuadrantOf(radial), radial);
    }
}

void ShowEta(const FieldRow&, UnitText& text) {
    const HoldPattern* hold = HoldShown();
    text.Set("- - - - . - Z");
    if (hold == nullptr || !HasActiveWaypoint() || !(ShownAircraft().groundSpeedKt > kEtaFromKt)) {
        return;
    }
    const PredictedPoint& point =
        SmithsPredictions().entries[static_cast<std::size_t>(FixOf(*hold))];
    if (point.known) {
        text.Put("%sZ", ClockTenthsText(point.zuluMinutes / kMinutesPerHour).c_str());
    }
}

void ShowCourse(const FieldRow&, UnitText& text) {
    text.Set("- - - /  -  T U R N");
    if (const HoldPattern* hold = HoldShown()) {
        const HoldShape& shape = ShapeOf(*hold);
        text.Put("%03.0f /  %s  T U R N", WholeCourse(shape.inboundCourseMag),
                 shape.turnDirection == HoldTurn::Right ? "R" : "L");
    }
}

void ShowClearance(const FieldRow&, UnitText& text) {
    const HoldPattern* hold = HoldShown();
    text.Set("- - - - Z");
    if (hold != nullptr && hold->clearanceMinutes >= 0) {
        text.Put("%02d%02dZ", hold->clearanceMinutes / 60, hold->clearanceMinutes % 60);
    }
}

void ShowLegTime(const FieldRow&, UnitText& text) {
    const HoldPattern* hold = HoldShown();
    text.Set("-.-   M I N");
    if (hold != nullptr && ShapeOf(*hold).legByTime == 1) {
        text.Put("%1.1f   M I N", ShapeOf(*hold).legMinutes);
    }
}

void ShowLegDistance(const FieldRow&, UnitText& text) {
    const HoldPattern* hold = HoldShown();
    text.Set("--.-  - N M");
    if (hold != nullptr && ShapeOf(*hold).legDistanceNm > 0) {
        text.Put("%2.1f - N M", ShapeOf(*hold).legDistanceNm);
    }
}

// How long the fuel beyond the reserve lasts at the present flow.
void ShowAvailable(const FieldRow&, UnitText& text) {
    const PredictedPoint& destination = SmithsPredictions().destination;
    const double spareLb = destination.fuelLb - planBook.reserveFuelInUse;
    const double flowPph = TotalFuelFlow();
    text.Set("- + - -");
    if (HoldShown() != nullptr && destination.known && flowPph > 0) {
        const WholeTime time = WholeMinutes(std::max(spareLb, 0.0) / flowPph, 0);
        text.Put("%.0f + %02.0f", time.hours, time.minutes);
    }
}

void ShowBestSpeed(const FieldRow&, UnitText& text) {
    text.Set("- - - KT");
    if (performance.holdIas > 0) {
        text.Put("%3d KT", performance.holdIas);
    }
}

// ---- entries ----
// Flies the hold shown as `shape`, once it is executed where the route is flown.
EntryResult Reshape(const HoldShape& shape) {
    const std::int32_t fix = FixOf(*HoldShown());
    const bool done = EditSmithsPlan([&](FlightPlan& plan) {
        for (std::int32_t i = 1; i <= holdList.count; ++i) {
            if (holdList.holds[static_cast<std::size_t>(i)].pendingFixIndex == fix) {
                return ReshapeHold(plan, i, shape);
            }
        }
        return false;
    });
    return done ? EntryResult::Accepted : EntryResult::InvalidEntry;
}

// Whole degrees 0 to 360 of one to three digits.
bool ReadCourse(std::string_view text, double& course) {
    double value = 0;
    if (text.empty() || text.size() > 3 ||
        text.find_first_not_of("0123456789") != std::string_view::npos ||
        !ReadSmithsNumber(text, value) || value > kWholeCircle) {
        return false;
    }
    course = value;
    return true;
}

// "270/R"; either part alone leaves the other as it is.
EntryResult EnterCourse(const FieldRow&, std::string_view entry) {
    if (HoldShown() == nullptr) {
        return EntryResult::InvalidEntry;
    }
    HoldShape shape = ShapeOf(*HoldShown());
    const std::size_t slash = std::min(entry.find('/'), entry.size());
    const std::string_view course = entry.substr(0, slash);
    const std::string_view turn = entry.substr(std::min(slash + 1, entry.size()));
    const bool turns = turn == "R" || turn == "L";
    if (!(course.empty() ? turns : ReadCourse(course, shape.inboundCourseMag)) ||
        (slash < entry.size() && !turns)) {
        return EntryResult::InvalidEntry;
    }
    if (turns) {
        shape.turnDirection = turn == "R" ? HoldTurn::Right : HoldTurn::Left;
    }
    return Reshape(shape);
}

// "NW/315", "/315" or "315": the inbound course leads in on it.
EntryResult EnterRadial(const FieldRow&, std::string_view entry) {
    const std::size_t slash = entry.find('/');
    const std::string_view radialText =
        slash == std::string_view::npos ? entry : entry.substr(slash + 1);
    const std::string_view quadrant =
        slash == std::string_view::npos ? std::string_view{} : entry.substr(0, slash);
    double radial = 0;
    if (HoldShown() == nullptr || !ReadCourse(radialText, radial) ||
        (!quadrant.empty() && quadrant != QuadrantOf(radial))) {
        return EntryResult::InvalidEntry;
    }
    HoldShape shape = ShapeOf(*HoldShown());
    shape.inboundCourseMag = WholeCourse(radial + kWholeCircle / 2);
    return Reshape(shape);
}

EntryResult EnterLegTime(const FieldRow&, std::string_view entry) {
    double minutes = 0;
    if (HoldShown() == nullptr || !ReadSmithsNumber(entry, minutes) || minutes <= 0 ||
        minutes > kLongestLeg) {
        return EntryResult::InvalidEntry;
    }
    HoldShape shape = ShapeOf(*HoldShown());
    shape.legMinutes = minutes;
    shape.legByTime = 1;
    shape.legDistanceNm = 0;  // follows from the time once it is flown
    return Reshape(shape);
}

EntryResult EnterLegDistance(const FieldRow&, std::string_view entry) {
    double distanceNm = 0;
    if (HoldShown() == nullptr || !ReadSmithsNumber(entry, distanceNm) || distanceNm <= 0 ||
        distanceNm > kLongestLeg) {
        return EntryResult::InvalidEntry;
    }
    HoldShape shape = ShapeOf(*HoldShown());
    shape.legDistanceNm = distanceNm;
    shape.legByTime = 0;
    return Reshape(shape);
}

// The leg is as long as the aircraft's file says again.
EntryResult EraseLeg(const FieldRow&) {
    if (HoldShown() == nullptr) {
        return EntryResult::InvalidDelete;
    }
    HoldShape shape = ShapeOf(*HoldShown());
    const double legMinutes = NewHold().legMinutes;
    if (shape.legByTime == 1 && shape.legMinutes == legMinutes) {
        return EntryResult::InvalidDelete;
    }
    shape.legMinutes = legMinutes;
    shape.legByTime = 1;
    shape.legDistanceNm = 0;
    return Reshape(shape);
}

// "1407" or "1407Z"
EntryResult EnterClearance(const FieldRow&, std::string_view entry) {
    if (entry.ends_with('Z')) {
        entry.remove_suffix(1);
    }
    std::int32_t digits = -1;
    const bool isTime = entry.size() == 4 &&
                        entry.find_first_not_of("0123456789") == std::string_view::npos &&
                        std::from_chars(entry.begin(), entry.end(), digits).ec == std::errc{};
    if (HoldShown() == nullptr || !isTime || digits / 100 >= 24 || digits % 100 >= 60) {
        return EntryResult::InvalidEntry;
    }
    HoldShown()->clearanceMinutes = digits / 100 * 60 + digits % 100;
    return EntryResult::Accepted;
}

EntryResult EraseClearance(const FieldRow&) {
    HoldPattern* hold = HoldShown();
    if (hold == nullptr || hold->clearanceMinutes < 0) {
        return EntryResult::InvalidDelete;
    }
    hold->clearanceMinutes = -1;
    return EntryResult::Accepted;
}

// ---- prompts ----
bool NextHoldShown(const FieldRow&) {
    return !SmithsModificationWaits();
}

EntryResult DefineNextHold(const FieldRow&) {
    if (holdList.count >= kHoldCapacity) {
        return EntryResult::InvalidEntry;
    }
    OpenSmithsLegs(LegsMode::Hold);
    return EntryResult::None;
}

// One that is being flown is left at its next exit point.
EntryResult ExitHold(const FieldRow&) {
    const HoldPattern& hold = *HoldShown();
    if (HoldBeingFlown() && NumberShown() == 1 && hold.fixIndex == planBook.activeIndex) {
        holdFlight.holdState = HoldState::ExitRequested;
    } else if (hold.fixIndex > 0) {
        DeleteHold(hold.fixIndex);
    } else {
        DeletePendingHold(hold.pendingFixIndex);
    }
    OpenSmithsLegs(LegsMode::Normal);
    return EntryResult::None;
}

constexpr FieldRow kFields[] = {
    SmithsTitle("RTE        HOLD"),
    SmithsField(
        kL1, {.label = "F I X                            S P D / T G T    A L T", .show = ShowFix}),
    SmithsField(kR1, {.show = ShowTarget}),
    SmithsField(kL2, {.label = "Q U A D / R A D I A L            F I X    E T A",
                      .show = ShowRadial,
                      .enter = EnterRadial}),
    SmithsField(kR2, {.show = ShowEta}),
    SmithsField(kL3, {.label = "I N B D    C R S / D I R        E F C    T I M E",
                      .show = ShowCourse,
                      .enter = EnterCourse}),
    SmithsField(kR3, {.show = ShowClearance, .enter = EnterClearance, .erase = EraseClearance}),
    SmithsField(
        kL4,
        {.label = "L E G  T I M E", .show = ShowLegTime, .enter = EnterLegTime, .erase = EraseLeg}),
    SmithsField(kR4, {.label = "H O L D    A V A I L", .show = ShowAvailable}),
    SmithsField(kL5, {.label = "L E G    D I S T",
                      .show = ShowLegDistance,
                      .enter = EnterLegDistance,
                      .erase = EraseLeg}),
    SmithsField(kR5, {.label = "B E S T    S P E E D", .show = ShowBestSpeed}),
    SmithsSeparatorRow(),
    SmithsPrompt(kL6, "< ERASE", 0,
                 {.visible = SmithsEraseShown, .press = EraseSmithsModification}),
    SmithsPrompt(kL6, "< NEXT HOLD", 0, {.visible = NextHoldShown, .press = DefineNextHold}),
    SmithsPrompt(kR6, "EXIT HOLD >", 0, {.visible = HasHold, .press = ExitHold}),
};

void ComposeHold(Screen& screen) {
    PutSmithsRouteTag(screen);
    PutSmithsCounter(screen, CounterShown());
}

}  // namespace

void OpenSmithsHold(std::int32_t index) {
    const HoldOrder order = HoldsOnRoute();
    CounterShown();
    for (std::int32_t i = 0; i < order.count; ++i) {
        const std::int32_t number = order.numbers[static_cast<std::size_t>(i)];
        if (FixOf(holdList.holds[static_cast<std::size_t>(number)]) == index) {
            smiths.Counter(SmithsCounter::Hold).n = i + 1;
        }
    }
    OpenSmithsPage(kSmithsHold);
}

constinit const PageRow kSmithsHoldPage{
    .page = kSmithsHold, .fields = kFields, .compose = ComposeHold};

}  // namespace avq1
