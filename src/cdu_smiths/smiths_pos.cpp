// POS INIT, POS REF and POS SHIFT: where the aircraft is, by its own account and by the pilot's.
#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <string>

#include "base/module_state.h"
#include "base/text.h"
#include "cdu/formats.h"
#include "cdu_smiths/smiths_pages.h"
#include "flightplan/pilot_points.h"
#include "geometry/geometry.h"
#include "guidance/radio_position.h"
#include "navdb/nav_database.h"
#include "settings/parking.h"
#include "simlink/aircraft_state.h"
#include "simlink/calendar.h"
#include "simlink/sim_variables.h"

namespace avq1 {
namespace {

constexpr double kSecondsPerTenth = 6;
constexpr double kMinutesPerDegree = 60;
constexpr std::size_t kGateLength = 5;

struct KnownPosition {
    bool known = false;
    LatLon at;
};

// What the pilot has entered.
struct PositionEntries {
    std::string airport;
    std::string gate;
    KnownPosition airportAt;
    KnownPosition gateAt;
    KnownPosition irs;
};

PositionEntries entries;
const StateReset resetEntries([] { entries = {}; });

template <std::int32_t n>
bool OnPage(const FieldRow& field) {
    return OnSmithsSubPage<SmithsCounter::Pos, n>(field);
}

KnownPosition AircraftPosition() {
    const AircraftState& shown = ShownAircraft();
    return {std::isfinite(shown.latitude) && std::isfinite(shown.longitude),
            {shown.latitude, shown.longitude}};
}

// By a station that is received, unless NAV OPTIONS leaves it out.
KnownPosition StationPosition() {
    KnownPosition position;
    position.known = RadioPosition(position.at);
    return position;
}

KnownPosition AirportPosition() {
    return entries.airportAt;
}
KnownPosition GatePosition() {
    return entries.gateAt;
}
KnownPosition IrsEntry() {
    return entries.irs;
}

// By a field's item.
using PositionSource = KnownPosition (*)();
constexpr PositionSource kSources[] = {AircraftPosition, AirportPosition, GatePosition, IrsEntry,
                                       StationPosition};
enum Source : std::int32_t { kAircraft, kAirport, kGate, kIrs, kRadio };

void ShowPosition(const FieldRow& field, UnitText& text) {
    const KnownPosition position = kSources[field.item]();
    text = position.known ? PositionTextOf(position.at) : SpacedDashes(8);
}

std::string TypedAngle(double degrees, const char* hemispheres, int digits) {
    const double tenths = std::round(std::abs(degrees) * kMinutesPerDegree * 10);
    const double whole = std::floor(tenths / (kMinutesPerDegree * 10));
    return Format("%c%0*.0f%04.1f", hemispheres[degrees < 0 ? 1 : 0], digits, whole,
                  (tenths - whole * kMinutesPerDegree * 10) / 10);
}

// Into the scratchpad, as it would be typed.
EntryResult CopyPosition(const FieldRow& field) {
    const KnownPosition position = kSources[field.item]();
    if (position.known) {
        smiths.scratchpad =
            TypedAngle(position.at.latitude, "NS", 2) + TypedAngle(position.at.longitude, "EW", 3);
    }
    return EntryResult::None;
}

// ---- POS INIT ----
void ShowAirport(const FieldRow&, UnitText& text) {
    text.Set("- - - - -");
    if (!entries.airport.empty()) {
        text.Put("%.5s", entries.airport.c_str());
    }
}

// The gate belongs to the airport.
EntryResult EnterAirport(const FieldRow&, std::string_view entry) {
    SearchResults found;
    SearchIdent(entry, SearchCategory::Airports, found);
    if (found.count == 0) {
        return EntryResult::NotInDatabase;
    }
    const PositionEntries before = entries;
    entries = {};
    entries.irs = before.irs;
    entries.airport = found[1].ident;
    entries.airportAt = {true, {found[1].latitude, found[1].longitude}};
    return EntryResult::Accepted;
}

EntryResult EraseAirport(const FieldRow&) {
    if (entries.airport.empty()) {
        return EntryResult::InvalidDelete;
    }
    const KnownPosition irs = entries.irs;
    entries = {};
    entries.irs = irs;
    return EntryResult::Accepted;
}

void ShowGate(const FieldRow&, UnitText& text) {
    text.Set("- - - - -");
    if (!entries.gate.empty()) {
        text.Put("%s", entries.gate.c_str());
    }
}

// The parking position of the user's file stands for the gate.
EntryResult EnterGate(const FieldRow&, std::string_view entry) {
    const bool isName =
        std::ranges::all_of(entry, [](unsigned char c) { return std::isalnum(c) != 0; });
    if (entries.airport.empty() || entry.size() > kGateLength || !isName) {
        return EntryResult::InvalidEntry;
    }
    const ParkingPosition parking = FindParkingPosition(entries.airport);
    entries.gate = entry;
    entries.gateAt = {parking.latitude != 0 || parking.longitude != 0,
                      {parking.latitude, parking.longitude}};
    return EntryResult::Accepted;
}

EntryResult EraseGate(const FieldRow&) {
    if (entries.gate.empty()) {
        return EntryResult::InvalidDelete;
    }
    entries.gate.clear();
    entries.gateAt = {};
    return EntryResult::Accepted;
}

EntryResult EnterIrs(const FieldRow&, std::string_view entry) {
    LatLon at;
    if (!ParseTypedPosition(entry, at)) {
        return EntryResult::InvalidEntry;
    }
    entries.irs = {true, at};
    return EntryResult::Accepted;
}

EntryResult EraseIrs(const FieldRow&) {
    if (!entries.irs.known) {
        return EntryResult::InvalidDelete;
    }
    entries.irs = {};
    return EntryResult::Accepted;
}

void ShowTime(const FieldRow&, UnitText& text) {
    const AircraftState& shown = ShownAircraft();
    text.Set("- - - - . - z  - - / - -");
    if (!std::isfinite(shown.zuluHour) || !std::isfinite(shown.zuluMinute)) {
        return;
    }
    const CalendarDate date = DayOfYearToDate(static_cast<std::int32_t>(ReadUtcDayOfYear()),
                                              static_cast<std::int32_t>(ReadUtcYear()));
    const auto tenth = static_cast<int>(aircraft.clockSecond / kSecondsPerTenth) % 10;
    text.Put("%02.0f%02.0f.%d z  %02d/%02d", shown.zuluHour, std::floor(shown.zuluMinute), tenth,
             date.dateMonth, date.dateDay);
}

// ---- POS REF and POS SHIFT ----
void ShowGroundSpeed(const FieldRow&, UnitText& text) {
    text.Put("%s K T", NumberText(ShownAircraft().groundSpeedKt, 3).c_str());
}

void ShowRequiredAccuracy(const FieldRow&, UnitText& text) {
    text.Set("1 . 0 0 / 0 . 0 0 N M");
}

// Off the position of the unit, which takes theirs.
void ShowShift(const FieldRow&, UnitText& text) {
    text.Set(AircraftPosition().known ? "000 / 0.0 NM" : "- - - / - . -");
}

template <std::int32_t n>
constexpr FieldRow On(std::int32_t line, FieldRow field) {
    field.visible = OnPage<n>;
    return SmithsField(line, field);
}

constexpr FieldRow Position(std::int32_t line, const char* label, Source source) {
    return On<2>(line,
                 {.label = label, .show = ShowPosition, .press = CopyPosition, .item = source});
}

constexpr FieldRow kFields[] = {
    On<1>(kR1, {.label = "L A S T   P O S",
                .show = ShowPosition,
                .press = CopyPosition,
                .item = kAircraft}),
    On<1>(kL2, {.label = "R E F    A I R P O R T",
                .show = ShowAirport,
                .enter = EnterAirport,
                .erase = EraseAirport}),
    On<1>(kR2, {.show = ShowPosition, .press = CopyPosition, .item = kAirport}),
    On<1>(kL3, {.label = "G A T E", .show = ShowGate, .enter = EnterGate, .erase = EraseGate}),
    On<1>(kR3, {.show = ShowPosition, .press = CopyPosition, .item = kGate}),
    On<1>(kR4, {.label = "S E T   I R S    P O S",
                .show = ShowPosition,
                .enter = EnterIrs,
                .erase = EraseIrs,
                .press = CopyPosition,
                .item = kIrs}),
    On<1>(kL5, {.label = "G M T  -  M O N / D V", .show = ShowTime}),

    Position(kL1, "F M C    P O S", kAircraft),
    On<2>(kR1, {.label = "G S", .show = ShowGroundSpeed}),
    Position(kL2, "I R S   L", kAircraft),
    On<2>(kR2, {.label = "G S", .show = ShowGroundSpeed}),
    Position(kL3, "I R S   R", kAircraft),
    On<2>(kR3, {.label = "G S", .show = ShowGroundSpeed}),
    On<2>(kL4, {.label = "R N P / A C T U A L", .show = ShowRequiredAccuracy}),
    Position(kL5, "R A D I O", kRadio),

    On<3>(kL1, {.label = "I R S - L", .show = ShowShift}),
    On<3>(kR1, {.label = "I R S - R", .show = ShowShift}),

    SmithsSeparatorRow(),
    SmithsPrompt(kL6, "< INDEX", kSmithsIndex),
    SmithsPrompt(kR6, "ROUTE >", kSmithsRoute),
};

void ComposePos(Screen& screen) {
    constexpr const char* kTitles[] = {"POS   INIT", "POS  REF", "POS  SHIFT"};
    const SubPage& shown = smiths.Counter(SmithsCounter::Pos).SetCount(3);
    screen.Put(kSmithsData, kSmithsTitleX, 0, "%s", kTitles[shown.n - 1]);
    PutSmithsCounter(screen, shown);
}

}  // namespace

constinit const PageRow kSmithsPosPage{
    .page = kSmithsPos, .fields = kFields, .compose = ComposePos};

}  // namespace avq1
