// PLAN: fuel on board, the way to the destination, fuel flow, flight time and weights.
#include <array>
#include <cmath>
#include <limits>
#include <span>

#include "cdu/formats.h"
#include "cdu/pilot_entries.h"
#include "cdu_gns/gns_entry.h"
#include "cdu_gns/gns_pages.h"
#include "cdu_gns/gns_values.h"
#include "flightlog/flight_log.h"
#include "flightplan/flight_plan.h"
#include "guidance/guidance_state.h"
#include "simlink/aircraft_state.h"
#include "simlink/calendar.h"
#include "simlink/sim_variables.h"

namespace avq1 {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr double kWeightsPerRange = 1000;
constexpr int kIdentX = 240;
constexpr int kWeightX = 300;
constexpr int kWeightUnitX = 430;
constexpr int kValueX = 360;
constexpr int kFlowX = 380;
constexpr int kTimeX = 380;
constexpr int kWholeWeightX = 340;
constexpr std::int32_t kReserveDigits = 6;

// ---- values ----
double HoursLeft() {
    const double flow = TotalFuelFlow();
    return flow > 0 ? FuelOnBoard() / flow : kNone;
}

double RangePerPound() {
    const double flow = TotalFuelFlow();
    return flow > 0 ? ShownAircraft().groundSpeedKt / flow : kNone;
}

double DirectDistance() {
    return HasActiveWaypoint() ? progress.destinationDistanceDirect : kNone;
}

// The straight way's share of what is predicted for the route.
double DirectShare() {
    return DirectDistance() / progress.routeDistanceToDestination;
}

double DirectMinutes() {
    return GnsMinutesTo(ActivePredictions().destination) * DirectShare();
}

double PlanFuelLb() {
    return FuelOnBoard() - GnsFuelAtPounds(ActivePredictions().destination);
}

// Rows of one kind share these: the item says which value.
enum WeightItem : std::int32_t {
    kRemaining,
    kFlow,
    kLegFuel,
    kPlanFuel,
    kBasicWeight,
    kPayload,
    kFuelUsed,
    kGrossWeight,
    kFlowOfEngine = 100,  // and its number
};

double PoundsOf(std::int32_t item) {
    const AircraftWeights* weighed = KnownAircraftWeights();
    switch (item) {
        case kRemaining:
            return FuelOnBoard();
        case kFlow:
            return TotalFuelFlow();
        case kLegFuel:
            return PlanFuelLb() * DirectShare();
        case kPlanFuel:
            return PlanFuelLb();
        case kBasicWeight:
            return weighed != nullptr ? weighed->zeroFuelLb - weighed->payloadLb : kNone;
        case kPayload:
            return weighed != nullptr ? weighed->payloadLb : kNone;
        case kFuelUsed:
            return HasFlightLog() ? flightLog.startFuel - FuelOnBoard() : kNone;
        case kGrossWeight:
            return GrossWeightLb();
        default:
            return EngineFuelFlow(item - kFlowOfEngine);
    }
}

void ShowWeight6(const FieldRow& field, UnitText& text) {
    text = NumberText(InWeightUnit(PoundsOf(field.item)), 6);
}

void ShowWeight5(const FieldRow& field, UnitText& text) {
    text = NumberText(InWeightUnit(PoundsOf(field.item)), 5);
}

void ShowWeight4(const FieldRow& field, UnitText& text) {
    text = NumberText(InWeightUnit(PoundsOf(field.item)), 4);
}

void ShowUnit(const FieldRow&, UnitText& text) {
    text.Set(WeightUnitText());
}

constexpr FieldRow Label(const char* text, std::int16_t y, std::int16_t x = kGnsLabelX) {
    return {.label = text, .labelStyle = kGnsLabel, .labelAt = {x, y}};
}

constexpr FieldRow Value(FieldRow::Show show, std::int16_t x, std::int16_t y,
                         std::int32_t item = 0) {
    return {.show = show, .item = item, .style = kGnsData, .valueAt = {x, y}};
}

// ---- FUEL STATUS ----
void ShowHours(const FieldRow&, UnitText& text) {
    const double hours = HoursLeft();
    text.Set("--:--");
    if (std::isfinite(hours) && hours < 100) {
        const WholeTime time = WholeMinutes(hours, 0);
        text.Put("%02d:%02d", static_cast<int>(time.hours), static_cast<int>(time.minutes));
    }
}

void ShowRange(const FieldRow&, UnitText& text) {
    text = NumberText(RangePerPound() * FuelOnBoard(), 5);
}

// Of a thousand: a transport flies some tenths of a mile on a pound.
void ShowRangePerWeight(const FieldRow&, UnitText& text) {
    text = NumberText(RangePerPound() * PoundsFrom(kWeightsPerRange), 4);
}

void ShowRangeUnit(const FieldRow&, UnitText& text) {
    text.Put("NM/%s", WeightUnitText());
}

constexpr FieldRow kStatusFields[] = {
    Label("FUEL STATUS", 40, 90),
    Label("REMAINING", 80),
    Value(ShowWeight6, kWeightX, 80, kRemaining),
    Value(ShowUnit, kWeightUnitX, 80),
    Label("RESERVE", 120),
    {.label = ">", .labelStyle = kGnsPrompt, .labelAt = {340, 120}},
    Label("FLOW", 160),
    Value(ShowWeight6, kWeightX, 160, kFlow),
    Value(ShowUnit, kWeightUnitX, 160),
    Label("HOURS", 200),
    Value(ShowHours, kWeightX + kGnsCharacterWidth, 200),
    Label("RANGE", 240),
    Value(ShowRange, kWeightX + kGnsCharacterWidth, 240),
    {.show = ShowRangeUnit, .style = kGnsLabel, .valueAt = {kGnsLabelX, 280}},
    {.label = "x1000", .labelStyle = kGnsSmall, .labelAt = {140, 288}},
    Value(ShowRangePerWeight, kWeightX + 2 * kGnsCharacterWidth, 280),
};

// ---- TRIP PLAN and FUEL PLAN ----
void ShowDestination(const FieldRow&, UnitText& text) {
    text.Put("TO %6.6s", activePlan.lastIndex >= 0
                             ? activePlan.entries[activePlan.lastIndex].ident.c_str()
                             : "------");
}

void ShowGroundSpeed(const FieldRow&, UnitText& text) {
    text = NumberText(ShownAircraft().groundSpeedKt, 3);
}

void ShowDistanceTrack(const FieldRow&, UnitText& text) {
    text.Set("----/---");
    if (HasActiveWaypoint()) {
        text.Put("%s/%s", NumberText(DirectDistance(), 4, 1).c_str(),
                 CourseText(progress.destinationBearingMag).c_str());
    }
}

void ShowDirectEte(const FieldRow&, UnitText& text) {
    text = GnsMinutesText(DirectMinutes());
}

void ShowPlanDistanceTime(const FieldRow&, UnitText& text) {
    text.Put(
        "%s/%s",
        NumberText(HasActiveWaypoint() ? progress.routeDistanceToDestination : kNone, 5).c_str(),
        GnsMinutesText(GnsMinutesTo(ActivePredictions().destination)).c_str());
}

void ShowEtaLabel(const FieldRow&, UnitText& text) {
    text.Put("ETA @ %.6s", activePlan.lastIndex >= 0
                               ? activePlan.entries[activePlan.lastIndex].ident.c_str()
                               : "------");
}

void ShowEta(const FieldRow&, UnitText& text) {
    text = GnsClockText(ActivePredictions().destination);
}

constexpr FieldRow kTripFields[] = {
    Label("TRIP PLAN", 40, 90),
    Label("DIRECT", 80),
    Value(ShowDestination, kIdentX, 80),
    Label("GS", 120),
    Value(ShowGroundSpeed, kValueX, 120),
    Label("DIS/DTK", 160),
    Value(ShowDistanceTrack, kIdentX, 160),
    Label("ETE", 200),
    Value(ShowDirectEte, kValueX, 200),
    Label("FPL", 240),
    Value(ShowPlanDistanceTime, kIdentX, 240),
    {.show = ShowEtaLabel, .style = kGnsLabel, .valueAt = {kGnsLabelX, 280}},
    Value(ShowEta, kValueX, 280),
};

constexpr FieldRow kFuelPlanFields[] = {
    Label("FUEL PLAN", 40, 90),
    Label("DIRECT", 80),
    Value(ShowDestination, kIdentX, 80),
    Label("GS", 120),
    Value(ShowGroundSpeed, kValueX + kGnsCharacterWidth, 120),
    Label("FLOW", 160),
    Value(ShowWeight4, kValueX, 160, kFlow),
    Label("LEG FUEL", 200),
    Value(ShowWeight5, kWholeWeightX, 200, kLegFuel),
    Label("FPL FUEL", 240),
    Value(ShowWeight5, kWholeWeightX, 240, kPlanFuel),
};

// ---- FUEL FLOW ----
constexpr FieldRow kFlowFields[] = {
    Label("FUEL FLOW", 40, 90),
    Label("ENGINE   1", 80),
    Value(ShowWeight4, kFlowX, 80, kFlowOfEngine + 1),
    Label("ENGINE   2", 120),
    Value(ShowWeight4, kFlowX, 120, kFlowOfEngine + 2),
    Label("ENGINE   3", 160),
    Value(ShowWeight4, kFlowX, 160, kFlowOfEngine + 3),
    Label("ENGINE   4", 200),
    Value(ShowWeight4, kFlowX, 200, kFlowOfEngine + 4),
    Label("TOTAL", 240),
    Value(ShowWeight4, kFlowX, 240, kFlow),
};

// ---- FLIGHT TIME ----
void ShowUtc(const FieldRow&, UnitText& text) {
    text = HoursMinutesText(ShownAircraft().zuluHour, std::floor(ShownAircraft().zuluMinute));
}

void ShowDate(const FieldRow&, UnitText& text) {
    const auto year = static_cast<std::int32_t>(ReadUtcYear());
    const CalendarDate date = DayOfYearToDate(static_cast<std::int32_t>(ReadUtcDayOfYear()), year);
    text.Put("%02d %.3s %02.0f", date.dateDay, date.dateMonthText.data(),
             static_cast<double>(year % 100));
}

void ShowLoggedTime(const std::string& logged, UnitText& text) {
    text.Set(logged.empty() ? "--:--" : logged);
}

void ShowTakeoff(const FieldRow&, UnitText& text) {
    ShowLoggedTime(flightLog.takeoffTimeText, text);
}

void ShowLanding(const FieldRow&, UnitText& text) {
    ShowLoggedTime(flightLog.landingTimeText, text);
}

void ShowFlightTime(const FieldRow&, UnitText& text) {
    text = HoursMinutesText(0, HasFlightLog() ? guidance.elapsedSeconds / 60 : kNone);
}

constexpr FieldRow kTimeFields[] = {
    Label("FLIGHT TIME", 40, 90),       Label("DATE", 80),
    Value(ShowDate, 300, 80),           Label("GMT", 120),
    Value(ShowUtc, kTimeX, 120),        Label("TAKEOFF", 160),
    Value(ShowTakeoff, kTimeX, 160),    Label("LAND", 200),
    Value(ShowLanding, kTimeX, 200),    Label("FLIGHT TIME", 240),
    Value(ShowFlightTime, kTimeX, 240),
};

// ---- AIRCRAFT WEIGHT ----
constexpr FieldRow kWeightFields[] = {
    Label("AIRCRAFT WEIGHT", 80, 120),
    Label("BASIC OP WT", 120),
    Value(ShowWeight6, kWholeWeightX, 120, kBasicWeight),
    Label("PAYLOAD", 160),
    Value(ShowWeight6, kWholeWeightX, 160, kPayload),
    Label("FUEL ON BOARD", 200),
    Value(ShowWeight6, kWholeWeightX, 200, kRemaining),
    Label("FUEL USED", 240),
    Value(ShowWeight6, kWholeWeightX, 240, kFuelUsed),
    Label("GROSS WEIGHT", 280),
    Value(ShowWeight6, kWholeWeightX, 280, kGrossWeight),
};

// ---- the reserve ----
bool OnStatus(const LineRow&) {
    return gns.Counter(GnsCounter::Fuel).n == 1;
}

void ShowReserve(const LineRow&, UnitText& text) {
    text = NumberText(InWeightUnit(planBook.reserveFuelInUse), kReserveDigits);
}

// What the pilot types on the GNSXLS is in the setting's unit, on the GNSXLS_LM always pounds.
EntryResult SetReserve(const LineRow&) {
    if (gns.freshEntry) {
        return EntryResult::Accepted;
    }
    double reserve = 0;
    if (!ReadTypedWhole(reserve)) {
        return EntryResult::InvalidEntry;
    }
    planBook.reserveFuelInUse = gns.enteredOnLm ? reserve : PoundsFrom(reserve);
    return EntryResult::Accepted;
}

void OfferReserve(const LineRow&) {
    LoadScratchpad(gns, NumberText(InWeightUnit(planBook.reserveFuelInUse), 1).view(),
                   kReserveDigits);
}

// ---- another log ----
bool OnTimes(const LineRow&) {
    return gns.Counter(GnsCounter::Fuel).n == 5;
}

EntryResult BeginLog(const LineRow&) {
    StartFlightLog();
    return EntryResult::Accepted;
}

constexpr LineRow kLines[] = {
    {.line = 5,
     .text = "NEW LOG",
     .prompt = "NEW LOG?",
     .visible = OnTimes,
     .enter = BeginLog,
     .style = kGnsLabel,
     .at = {kGnsLabelX, 360}},
    {.line = 7,
     .show = ShowReserve,
     .visible = OnStatus,
     .entryLength = kReserveDigits,
     .select = OfferReserve,
     .enter = SetReserve,
     .style = kGnsData,
     .at = {kValueX, 120}},
};

void HandleFuel(const UnitInput& input) {
    if (input.openedPage == kGnsFuel) {
        RefreshAircraftWeights();
    }
}

void ComposeFuel(Screen& screen) {
    const SubPage& shown = SetGnsPageCount(GnsCounter::Fuel, 6);
    constexpr std::array<std::span<const FieldRow>, 6> kFields = {
        kStatusFields, kTripFields, kFuelPlanFields, kFlowFields, kTimeFields, kWeightFields};
    screen.Put(kGnsLabel, 150, 0, "PLAN %d/%d", shown.n, shown.m);
    DrawFields(kFields[static_cast<std::size_t>(shown.n - 1)], screen);
}

}  // namespace

constinit const PageRow kGnsFuelPage{
    .page = kGnsFuel, .lines = kLines, .handle = HandleFuel, .compose = ComposeFuel};

}  // namespace avq1
