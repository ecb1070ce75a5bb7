// RTE LEGS: the legs from the one flown on, five to a page. Left keys insert, leave out and delete
// waypoints, right keys take their restrictions; by the page's mode a left key also chooses where
// to fly to directly or to hold. RTE DATA shows times and fuel of the same legs.
#include <algorithm>
#include <charconv>
#include <cmath>

#include "base/module_state.h"
#include "cdu/formats.h"
#include "cdu/pilot_entries.h"
#include "cdu_gns/gns.h"
#include "cdu_gns/gns_values.h"
#include "cdu_smiths/smiths_pages.h"
#include "cdu_smiths/smiths_route.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_moves.h"
#include "flightplan/route_entry.h"
#include "flightplan/route_walk.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr std::int32_t kLegsPerPage = 5;
constexpr int kDistanceX = 45;
constexpr int kCrossingX = 130;
constexpr int kEtaX = 130;
constexpr int kCentreMarkX = 88;
constexpr int kSmallDrop = 5;  // small text on a data line
constexpr double kPoundsShown = 1000;
constexpr double kFullCircle = 360;
constexpr std::string_view kPresentPosition = "PPOS";

bool showsData = false;  // RTE DATA is shown in the place of the legs
const StateReset legsReset([] { showsData = false; });

// ---- which legs are shown ----
std::int32_t FirstLeg() {
    const std::int32_t flown = SmithsFlownIndex();
    return flown == kNoWaypoint ? kFirstWaypoint : std::max(flown, kFirstWaypoint);
}

// Behind the last entry of a route that does not end at an airport stands a row to type on.
std::int32_t LastRowIndex() {
    const FlightPlan& plan = SmithsPlan();
    return NextEntryPlace(plan) > plan.lastIndex ? plan.lastIndex + 1 : plan.lastIndex;
}

std::int32_t EntryOnRow(std::int32_t row) {
    const std::int32_t index =
        FirstLeg() + kLegsPerPage * (smiths.Counter(SmithsCounter::Legs).n - 1) + row;
    return SmithsPlan().lastIndex >= 0 && index <= LastRowIndex() ? index : kNoWaypoint;
}

bool ShowsLegs(const FieldRow&) {
    return !showsData;
}

bool ShowsData(const FieldRow&) {
    return showsData;
}

// ---- left keys ----
// A hold in the modified plan, which the hold page shows then.
EntryResult HoldAtEntry(std::int32_t index, double inboundCourseMag) {
    HoldPattern hold = NewHold();
    hold.inboundCourseMag = inboundCourseMag;
    if (!EditSmithsPlan([&](FlightPlan& plan) { return HoldAt(plan, index, hold); })) {
        return EntryResult::InvalidEntry;
    }
    smiths.legsMode = LegsMode::Normal;
    OpenSmithsHold(index);
    return EntryResult::Accepted;
}

EntryResult HoldAtEntry(std::int32_t index) {
    return HoldAtEntry(index, CourseIntoMag(SmithsPlan(), index));
}

// A direct leg takes an entry of its own.
EntryResult ResultOfDirect(bool chosen) {
    return chosen                  ? EntryResult::Accepted
           : SmithsPlan().IsFull() ? EntryResult::PlanFull
                                   : EntryResult::InvalidEntry;
}

EntryResult EnterLeg(const FieldRow& field, std::string_view text) {
    const FlightPlan& plan = SmithsPlan();
    const std::int32_t index = EntryOnRow(field.item);
    if (index == kNoWaypoint) {
        return EntryResult::InvalidEntry;
    }
    const std::int32_t further = FindEntry(plan, text, index);
    if (further == index && smiths.legsMode == LegsMode::DirectTo) {
        return ResultOfDirect(ChooseSmithsDirect(index));
    }
    if (further == index) {
        return smiths.legsMode == LegsMode::Hold ? HoldAtEntry(index) : EntryResult::Accepted;
    }
    if (further != kNoWaypoint) {
        return EditSmithsPlan([&](FlightPlan& edited) { return LeadTo(edited, index, further); })
                   ? EntryResult::Accepted
                   : EntryResult::InvalidEntry;
    }
    SmithsSelection() = {&plan, index};
    return TakeSmithsPoint(text, InsertAtSmithsSelection);
}

EntryResult EraseLeg(const FieldRow& field) {
    const std::int32_t index = EntryOnRow(field.item);
    return EditSmithsPlan([&](FlightPlan& plan) { return DeleteLeg(plan, index); })
               ? EntryResult::Accepted
               : EntryResult::InvalidDelete;
}

EntryResult ChooseLeg(const FieldRow& field) {
    const FlightPlan& plan = SmithsPlan();
    const std::int32_t index = EntryOnRow(field.item);
    if (!plan.Holds(index) || !HasPosition(plan.entries[index])) {
        return EntryResult::None;
    }
    if (smiths.legsMode == LegsMode::DirectTo) {
        return ResultOfDirect(ChooseSmithsDirect(index));
    }
    smiths.scratchpad = plan.entries[index].ident.substr(0, kSmithsScratchpadLength);
    return EntryResult::None;
}

// ---- right keys: "250/FL180", "250/", "/5000", "/5000A", "/5000B" ----
bool ReadWhole(std::string_view text, std::int32_t highest, double& value) {
    std::int32_t number = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    if (text.empty() || read.ec != std::errc{} || read.ptr != end || number < 1 ||
        number > highest) {
        return false;
    }
    value = number;
    return true;
}

// Three digits are a flight level.
bool ReadAltitude(std::string_view text, Crossing& crossing) {
    constexpr std::size_t kLevelDigits = 3;
    constexpr double kFeetPerLevel = 100;
    crossing.constraint = text.ends_with('A')   ? kCrossAtOrAbove
                          : text.ends_with('B') ? kCrossAtOrBelow
                                                : kCrossAt;
    if (crossing.constraint != kCrossAt) {
        text.remove_suffix(1);
    }
    const bool isLevel = text.starts_with("FL");
    text.remove_prefix(isLevel ? 2 : 0);
    if (isLevel && text.size() > kLevelDigits) {
        return false;
    }
    double number = 0;
    if (!ReadWhole(text, kHighestCrossingFt, number)) {
        return false;
    }
    crossing.altitudeFt = text.size() <= kLevelDigits ? number * kFeetPerLevel : number;
    return crossing.altitudeFt <= kHighestCrossingFt;
}

// A part that is not typed stays as the entry has it.
bool ReadCrossing(std::string_view text, const PlanWaypoint& entry, Crossing& crossing) {
    const std::size_t slash = text.find('/');
    if (slash == std::string_view::npos || text.size() < 2) {
        return false;
    }
    const std::string_view speed = text.substr(0, slash);
    const std::string_view altitude = text.substr(slash + 1);
    crossing.keepsSpeed = speed.empty();
    if (!speed.empty() && !ReadWhole(speed, kFastestCrossingKt, crossing.speedKt)) {
        return false;
    }
    if (!altitude.empty()) {
        return ReadAltitude(altitude, crossing);
    }
    crossing.altitudeFt = entry.altitude;
    crossing.constraint = entry.altitudeConstraint;
    return true;
}

EntryResult SetLegCrossing(std::int32_t index, const Crossing& crossing, EntryResult refused) {
    return EditSmithsPlan([&](FlightPlan& plan) { return SetCrossing(plan, index, crossing); })
               ? EntryResult::Accepted
               : refused;
}

EntryResult EnterCrossing(const FieldRow& field, std::string_view text) {
    const FlightPlan& plan = SmithsPlan();
    const std::int32_t index = EntryOnRow(field.item);
    Crossing crossing;
    if (!plan.Holds(index) || !ReadCrossing(text, plan.entries[index], crossing)) {
        return EntryResult::InvalidEntry;
    }
    return SetLegCrossing(index, crossing, EntryResult::InvalidEntry);
}

bool IsRestricted(const PlanWaypoint& entry) {
    return entry.altitudeConstraint != kNoCrossing || entry.speedConstraint != 0;
}

EntryResult EraseCrossing(const FieldRow& field) {
    const FlightPlan& plan = SmithsPlan();
    const std::int32_t index = EntryOnRow(field.item);
    if (!plan.Holds(index) || !IsRestricted(plan.entries[index])) {
        return EntryResult::InvalidDelete;
    }
    return SetLegCrossing(index, {}, EntryResult::InvalidDelete);
}

const char* SuffixOf(std::int32_t constraint) {
    return constraint == kCrossAtOrAbove ? "A" : constraint == kCrossAtOrBelow ? "B" : "";
}

EntryResult CopyCrossing(const FieldRow& field) {
    const FlightPlan& plan = SmithsPlan();
    const std::int32_t index = EntryOnRow(field.item);
    if (!plan.Holds(index) || !IsRestricted(plan.entries[index])) {
        return EntryResult::None;
    }
    const PlanWaypoint& entry = plan.entries[index];
    UnitText speed;
    if (HasSpeedRestriction(entry) && entry.speed > 0) {
        speed.Put("%.0f", entry.speed);
    }
    UnitText altitude;
    if (entry.altitudeConstraint != kNoCrossing) {
        altitude.Put("%.0f%s", entry.altitude, SuffixOf(entry.altitudeConstraint));
    }
    smiths.scratchpad = speed.c_str();
    smiths.scratchpad += '/';
    smiths.scratchpad += altitude.c_str();
    return EntryResult::None;
}

// ---- the sixth row: direct-to ----
bool HasChosenDirect(const FieldRow&) {
    return !showsData && smiths.legsMode == LegsMode::DirectTo && smithsDirect.waits &&
           !SmithsShowsActivePlan();
}

bool ChoosesDirect(const FieldRow& field) {
    return !showsData && smiths.legsMode == LegsMode::DirectTo && !HasChosenDirect(field);
}

// A new point is flown to first, and the route goes on from it behind a gap.
EntryResult DirectToNewPoint(const PlanWaypoint& entry) {
    const std::int32_t at = FirstLeg();
    const FlightPlan& plan = SmithsPlan();
    if (plan.lastIndex < 0) {
        return EntryResult::InvalidEntry;
    }
    constexpr std::int32_t kMostAdded = 3;  // the point, its gap, the direct leg
    if (plan.lastIndex + kMostAdded > kMaxPlanIndex) {
        return EntryResult::PlanFull;
    }
    EditSmithsPlan([&](FlightPlan& edited) { return InsertLeg(edited, at, entry); });
    return ResultOfDirect(ChooseSmithsDirect(at));
}

std::int32_t FindAhead(std::string_view ident) {
    const std::int32_t ahead = FindEntry(SmithsPlan(), ident, FirstLeg());
    return ahead != kNoWaypoint ? ahead : FindEntry(SmithsPlan(), ident, kFirstWaypoint);
}

EntryResult EnterDirect(const FieldRow&, std::string_view text) {
    if (const std::int32_t index = FindAhead(text); index != kNoWaypoint) {
        return ResultOfDirect(ChooseSmithsDirect(index));
    }
    return TakeSmithsPoint(text, DirectToNewPoint);
}

// The leg that leads to a waypoint of the route, on the course it has there.
EntryResult EnterInterceptLeg(const FieldRow&, std::string_view text) {
    const std::int32_t index = FindAhead(text);
    return index != kNoWaypoint
               ? ResultOfDirect(ChooseSmithsIntercept(index, CourseIntoMag(SmithsPlan(), index)))
               : EntryResult::InvalidEntry;
}

EntryResult EnterInterceptCourse(const FieldRow&, std::string_view text) {
    constexpr std::size_t kCourseDigits = 3;
    double courseMag = 0;
    const bool isZero = text == "0" || text == "00" || text == "000";
    if (text.size() > kCourseDigits ||
        (!isZero && !ReadWhole(text, static_cast<std::int32_t>(kFullCircle), courseMag))) {
        return EntryResult::InvalidEntry;
    }
    return ResultOfDirect(ChooseSmithsIntercept(SmithsFlownIndex(), courseMag));
}

void ShowInterceptCourse(const FieldRow&, UnitText& text) {
    text = CourseText(smithsDirect.onCourse ? smithsDirect.courseMag
                                            : CourseIntoMag(SmithsPlan(), SmithsFlownIndex()));
}

// ---- the sixth row: holds ----
bool ChoosesHold(const FieldRow&) {
    return !showsData && smiths.legsMode == LegsMode::Hold;
}

bool HasRoomForHold() {
    return SmithsPlan().lastIndex >= 0 && holdList.count < kHoldCapacity;
}

// Where a fix that is not in the route goes: it is flown to first.
EntryResult HoldAtNewPoint(const PlanWaypoint& entry) {
    const std::int32_t at = FirstLeg();
    if (!HasRoomForHold()) {  // it may have gone while the pilot chose among several
        return EntryResult::InvalidEntry;
    }
    if (!EditSmithsPlan([&](FlightPlan& plan) { return InsertLeg(plan, at, entry); })) {
        return EntryResult::PlanFull;
    }
    return HoldAtEntry(at);
}

EntryResult HoldHere(const FieldRow&) {
    if (!HasRoomForHold()) {
        return EntryResult::InvalidEntry;
    }
    const std::int32_t at = FirstLeg();
    SearchResults here;
    FoundPoint point;
    point.ident = kHoldPresentPosition;
    point.latitude = aircraft.latitude;
    point.longitude = aircraft.longitude;
    here.Append(point);
    const bool inserted = EditSmithsPlan([&](FlightPlan& plan) {
        if (!InsertNamedPoint(plan, at, here, 1)) {
            return false;
        }
        SetFlownIndex(plan, at);
        return true;
    });
    if (!inserted) {
        return EntryResult::PlanFull;
    }
    const double trackMag = GnsTrackMag();  // it goes on as the aircraft does
    return std::isfinite(trackMag) ? HoldAtEntry(at, trackMag) : HoldAtEntry(at);
}

EntryResult EnterHoldFix(const FieldRow& field, std::string_view text) {
    if (!HasRoomForHold()) {
        return EntryResult::InvalidEntry;
    }
    if (text == kPresentPosition) {
        return HoldHere(field);
    }
    const std::int32_t index = FindEntry(SmithsPlan(), text, FirstLeg());
    return index != kNoWaypoint ? HoldAtEntry(index) : TakeSmithsPoint(text, HoldAtNewPoint);
}

// ---- the sixth row: prompts ----
// The modes have entries in the place of the prompts; a direct-to that was chosen can be erased.
bool PromptsShown(const FieldRow&) {
    return !showsData && smiths.legsMode == LegsMode::Normal;
}

bool EraseShown(const FieldRow& field) {
    return (PromptsShown(field) || HasChosenDirect(field)) && SmithsEraseShown(field);
}

bool ActivateShown(const FieldRow& field) {
    return PromptsShown(field) && SmithsActivateShown(field);
}

bool StepShown(const FieldRow& field) {
    return PromptsShown(field) && !SmithsActivateShown(field) && SmithsMapStepShown(field);
}

bool DataPromptShown(const FieldRow& field) {
    return PromptsShown(field) && !SmithsActivateShown(field) && !SmithsMapStepShown(field);
}

EntryResult ShowData(const FieldRow&) {
    showsData = true;
    return EntryResult::Accepted;
}

EntryResult ShowLegs(const FieldRow&) {
    showsData = false;
    return EntryResult::Accepted;
}

constexpr FieldRow LegRow(std::int32_t line, std::int32_t row) {
    return {.line = line,
            .visible = ShowsLegs,
            .enter = EnterLeg,
            .erase = EraseLeg,
            .press = ChooseLeg,
            .item = row};
}

constexpr FieldRow CrossingRow(std::int32_t line, std::int32_t row) {
    return {.line = line,
            .visible = ShowsLegs,
            .enter = EnterCrossing,
            .erase = EraseCrossing,
            .press = CopyCrossing,
            .item = row};
}

constexpr FieldRow kFields[] = {
    LegRow(kL1, 0),
    LegRow(kL2, 1),
    LegRow(kL3, 2),
    LegRow(kL4, 3),
    LegRow(kL5, 4),
    CrossingRow(kR1, 0),
    CrossingRow(kR2, 1),
    CrossingRow(kR3, 2),
    CrossingRow(kR4, 3),
    CrossingRow(kR5, 4),
    SmithsField(kL6, {.label = "D I R E C T    T O",
                      .show = [](const FieldRow&, UnitText& text) { text = SpacedDashes(7); },
                      .visible = ChoosesDirect,
                      .enter = EnterDirect}),
    SmithsField(kR6, {.label = "I N T C    L E G",
                      .show = [](const FieldRow&, UnitText& text) { text = SpacedDashes(10); },
                      .visible = ChoosesDirect,
                      .enter = EnterInterceptLeg}),
    SmithsField(kR6, {.label = "I N T C    C R S",
                      .show = ShowInterceptCourse,
                      .visible = HasChosenDirect,
                      .enter = EnterInterceptCourse}),
    SmithsField(kL6, {.label = "H O L D   A T",
                      .show = [](const FieldRow&, UnitText& text) { text = SpacedDashes(5); },
                      .visible = ChoosesHold,
                      .enter = EnterHoldFix}),
    SmithsPrompt(kR6, "PPOS >", 0, {.visible = ChoosesHold, .press = HoldHere}),
    SmithsPrompt(kL6, "< LEGS", 0, {.visible = ShowsData, .press = ShowLegs}),
    SmithsPrompt(kL6, "< ERASE", 0, {.visible = EraseShown, .press = EraseSmithsModification}),
    SmithsPrompt(kR6, "ACTIVATE >", 0, {.visible = ActivateShown, .press = ActivateSmithsRoute}),
    SmithsPrompt(kR6, "STEP >", 0, {.visible = StepShown, .press = StepSmithsMap}),
    SmithsPrompt(kR6, "RTE DATA >", 0, {.visible = DataPromptShown, .press = ShowData}),
};

// ---- what stands on a row ----
bool HasPlace(std::int32_t index) {
    return SmithsPlan().Holds(index) && HasPosition(SmithsPlan().entries[index]);
}

// Course and length of the leg; of the one flown what is left of it.
void PutLegLabel(Screen& screen, std::int32_t index, std::int16_t y) {
    const FlightPlan& plan = SmithsPlan();
    if (index < 1 || !HasPlace(index) || !HasPlace(index - 1)) {
        return;
    }
    const PlanWaypoint& from = plan.entries[index - 1];
    const PlanWaypoint& to = plan.entries[index];
    double distanceNm = 0;
    double courseTrue = 0;
    DistanceAndCourse(from.latitude, from.longitude, to.latitude, to.longitude, distanceNm,
                      courseTrue);
    const PredictedPoint& point = SmithsPredictions().entries[static_cast<std::size_t>(index)];
    if (index == SmithsFlownIndex() && point.known) {
        distanceNm = point.distanceNm;
    }
    screen.Put(kSmithsLabel, kSmithsLabelX, y, "%s",
               CourseText(courseTrue - aircraft.magneticVariation).c_str());
    screen.Put(kSmithsLabel, kDistanceX, y, "%5.0f NM", distanceNm);
}

UnitText CrossingText(double speedKt, double altitudeFt, const char* suffix) {
    UnitText altitude("- - - - - -");
    if (std::isfinite(altitudeFt) && altitudeFt != kUnset) {
        if (altitudeFt > pilotEntries.transitionAltitudeFt) {
            altitude.Put("FL%03.0f%s", altitudeFt / 100, suffix);
        } else {
            altitude.Put("%5.0f%s", altitudeFt, suffix);
        }
    }
    UnitText text;
    if (std::isfinite(speedKt) && speedKt > 0) {
        text.Put("%5.0f / %s", speedKt, altitude.c_str());
    } else {
        text.Put("- - - - / %s", altitude.c_str());
    }
    return text;
}

// Restrictions stand in the size of data, what is only predicted is small.
void PutCrossing(Screen& screen, std::int32_t index, std::int16_t y) {
    const PlanWaypoint& entry = SmithsPlan().entries[index];
    const PredictedPoint& point = SmithsPredictions().entries[static_cast<std::size_t>(index)];
    const bool restricted = IsRestricted(entry);
    const double speedKt = HasSpeedRestriction(entry) ? entry.speed
                           : point.known              ? point.speedKt
                                                      : kUnset;
    // Without a cruise altitude the present one is kept all along: that tells a pilot nothing.
    const bool planned = point.known && SmithsPredictions().cruiseAltitudeFt > 0;
    const double altitudeFt = entry.altitudeConstraint != kNoCrossing ? entry.altitude
                              : planned                               ? point.altitudeFt
                                                                      : kUnset;
    screen.PutText(restricted ? kSmithsData : kSmithsLabel,
                   {kCrossingX, static_cast<std::int16_t>(restricted ? y : y + kSmallDrop)},
                   CrossingText(speedKt, altitudeFt, SuffixOf(entry.altitudeConstraint)));
}

void PutData(Screen& screen, std::int32_t index, std::int16_t y) {
    constexpr double kMinutesPerDay = 1440;
    const PredictedPoint& point = SmithsPredictions().entries[static_cast<std::size_t>(index)];
    UnitText eta("- - - -");
    if (std::isfinite(ShownMinutesTo(point))) {
        const WholeTime time = WholeMinutes(0, PositiveModulo(point.zuluMinutes, kMinutesPerDay));
        eta.Put("%02.0f%02.0fZ", PositiveModulo(time.hours, 24), time.minutes);
    }
    screen.PutText(kSmithsData, {kEtaX, y}, eta);
    UnitText fuel("- - . -");
    if (point.known) {
        fuel.Put("%3.1f", InWeightUnit(point.fuelLb) / kPoundsShown);
    }
    screen.PutText(kSmithsDataRight, {kSmithsRightX, y}, fuel);
}

void PutWaypointRow(Screen& screen, std::int32_t row, std::int32_t index) {
    const auto slot = static_cast<std::size_t>(row);
    const std::int16_t y = kSmithsDataY[slot];
    PutLegLabel(screen, index, kSmithsLabelY[slot]);
    screen.Put(kSmithsData, 0, y, "%-5.6s", SmithsPlan().entries[index].ident.c_str());
    if (!showsData && index == SmithsMapCentre()) {
        screen.Put(kSmithsLabelRight, kSmithsLabelRightX, kSmithsLabelY[slot], "M A P  C T R");
        screen.Put(kSmithsLabel, kCentreMarkX, y + kSmallDrop, "<CTR>");
    }
    showsData ? PutData(screen, index, y) : PutCrossing(screen, index, y);
}

void PutRow(Screen& screen, std::int32_t row) {
    const FlightPlan& plan = SmithsPlan();
    const std::int32_t index = EntryOnRow(row);
    const auto slot = static_cast<std::size_t>(row);
    if (index == kNoWaypoint) {
        return;
    }
    if (HasPlace(index)) {
        PutWaypointRow(screen, row, index);
    } else if (plan.Holds(index) && IsDiscontinuity(plan.entries[index])) {
        screen.Put(kSmithsLabel, 0, kSmithsLabelY[slot],
                   ". .  R O U T E  D I S C O N T I N U I T Y  .");
        screen.Put(kSmithsLabel, kSmithsLabelX, kSmithsDataY[slot] + kSmallDrop, "T H E N");
    } else {
        screen.Put(kSmithsLabel, kSmithsLabelX, kSmithsLabelY[slot], "%.12s",
                   plan.Holds(index) ? plan.entries[index].via.c_str() : "");
        screen.Put(kSmithsData, 0, kSmithsDataY[slot], "- - - - -");
    }
}

void ComposeLegs(Screen& screen) {
    const std::int32_t rows = SmithsPlan().lastIndex >= 0 ? LastRowIndex() - FirstLeg() + 1 : 0;
    const SubPage& shown =
        smiths.Counter(SmithsCounter::Legs).SetCount(PageCount(rows, kLegsPerPage));
    PutSmithsRouteTag(screen);
    screen.Put(kSmithsData, kSmithsTitleX, 0, showsData ? "RTE    DATA" : "RTE    LEGS");
    PutSmithsCounter(screen, shown, "%2d / %2d");
    for (std::int32_t row = 0; row < kLegsPerPage; ++row) {
        PutRow(screen, row);
    }
    if (showsData) {
        screen.Put(kSmithsLabel, kEtaX, kSmithsLabelY[0], "E T A");
        screen.Put(kSmithsLabelRight, kSmithsLabelRightX, kSmithsLabelY[0], "F U E L");
    } else if (smiths.legsMode == LegsMode::Normal) {
        const std::int16_t y = kSmithsLabelY[kSmithsRows - 1];
        screen.Put(kSmithsLabel, kSmithsLabelX, y, "R N P / A C T U A L");
        screen.Put(kSmithsLabelRight, kSmithsLabelRightX, y, "1 . 0 0 / 0 . 0 0 N M");
    }
}

}  // namespace

void OpenSmithsLegs(LegsMode mode) {
    smiths.legsMode = mode;
    smiths.Counter(SmithsCounter::Legs).n = 1;
    showsData = false;
    OpenSmithsPage(kSmithsLegs);
}

constinit const PageRow kSmithsLegsPage{
    .page = kSmithsLegs, .fields = kFields, .compose = ComposeLegs};

}  // namespace avq1
