// PILOT ENTERED WPT: a point of the pilot's own, by its position typed digit by digit.
#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <string_view>

#include "base/module_state.h"
#include "cdu_gns/gns_pages.h"
#include "cdu_gns/gns_plan.h"
#include "cdu_gns/gns_waypoint.h"

namespace avq1 {
namespace {

constexpr std::string_view kEmptyField = "----------";
constexpr std::string_view kStartedField = "       .  ";  // behind the hemisphere letter
constexpr std::int32_t kFieldLength = 10;
constexpr ScreenPoint kLatitudeAt{200, 176};
constexpr ScreenPoint kLongitudeAt{200, 206};

// One coordinate as it is typed: the digits enter at the right and move to the left, slot by slot.
struct Coordinate {
    std::string_view hemispheres;  // the negative one second
    std::span<const std::size_t> slots;
    std::size_t degreeSlots;
    double limitDeg;
};

constexpr std::array<std::size_t, 6> kLatitudeSlots = {2, 3, 5, 6, 8, 9};
constexpr std::array<std::size_t, 7> kLongitudeSlots = {1, 2, 3, 5, 6, 8, 9};
constexpr Coordinate kLatitude{"NS", kLatitudeSlots, 2, 90};
constexpr Coordinate kLongitude{"EW", kLongitudeSlots, 3, 180};

struct TypedPosition {
    std::string latitude{kEmptyField};
    std::string longitude{kEmptyField};
};

TypedPosition typed;
const StateReset typedReset([] { typed = TypedPosition{}; });

bool IsEmpty(const std::string& field) {
    return field == kEmptyField;
}

bool TakesHemisphere(const Coordinate& coordinate, std::string& field, char character) {
    if (!IsEmpty(field) || coordinate.hemispheres.find(character) == std::string_view::npos) {
        return false;
    }
    field = kStartedField;
    field.front() = character;
    return true;
}

void TypeDigit(const Coordinate& coordinate, std::string& field, char digit) {
    const auto slots = coordinate.slots;
    if (field[slots.front()] != ' ') {
        return;  // full
    }
    for (std::size_t i = 1; i < slots.size(); ++i) {
        field[slots[i - 1]] = field[slots[i]];
    }
    field[slots.back()] = digit;
}

// Takes the digit typed last away; without one the hemisphere.
void TakeBack(const Coordinate& coordinate, std::string& field) {
    const auto slots = coordinate.slots;
    if (field[slots.back()] == ' ') {
        field = kEmptyField;
        return;
    }
    for (std::size_t i = slots.size() - 1; i > 0; --i) {
        field[slots[i]] = field[slots[i - 1]];
    }
    field[slots.front()] = ' ';
}

void TypeCharacterOfPosition(char character) {
    if (TakesHemisphere(kLatitude, typed.latitude, character) ||
        (!IsEmpty(typed.latitude) && TakesHemisphere(kLongitude, typed.longitude, character))) {
        return;
    }
    if (character < '0' || character > '9') {
        return;
    }
    if (!IsEmpty(typed.longitude)) {
        TypeDigit(kLongitude, typed.longitude, character);
    } else if (!IsEmpty(typed.latitude)) {
        TypeDigit(kLatitude, typed.latitude, character);
    }
}

EntryResult CancelPosition(const LineRow&) {
    typed = TypedPosition{};
    return EntryResult::None;
}

EntryResult TakeBackCharacter(const LineRow&) {
    if (!IsEmpty(typed.longitude)) {
        TakeBack(kLongitude, typed.longitude);
    } else if (!IsEmpty(typed.latitude)) {
        TakeBack(kLatitude, typed.latitude);
    }
    return EntryResult::None;
}

// False, with `degrees` unchanged, for a field that is not full or no coordinate.
bool ReadCoordinate(const Coordinate& coordinate, const std::string& field, double& degrees) {
    if (IsEmpty(field) || field[coordinate.slots.front()] == ' ') {
        return false;
    }
    double whole = 0;
    double hundredths = 0;  // of a minute
    for (std::size_t i = 0; i < coordinate.slots.size(); ++i) {
        double& part = i < coordinate.degreeSlots ? whole : hundredths;
        part = part * 10 + (field[coordinate.slots[i]] - '0');
    }
    const double value = whole + hundredths / 6000;
    if (hundredths >= 6000 || value > coordinate.limitDeg) {
        return false;
    }
    degrees = field.front() == coordinate.hemispheres.back() ? -value : value;
    return true;
}

EntryResult InsertTypedPoint() {
    PlanWaypoint entry;
    entry.ident = gnsWaypoint.name;
    entry.type = "WPT";
    if (!ReadCoordinate(kLatitude, typed.latitude, entry.latitude) ||
        !ReadCoordinate(kLongitude, typed.longitude, entry.longitude)) {
        return EntryResult::InvalidEntry;
    }
    InsertGnsWaypoint(entry);
    return EntryResult::None;
}

EntryResult EnterFromLine(const LineRow&) {
    return InsertTypedPoint();
}

EntryResult EnterFromPage(const FieldRow&) {
    return InsertTypedPoint();
}

constexpr FieldRow kFields[] = {
    {.line = kEnterLine, .press = EnterFromPage},
    {.label = "PILOT ENTERED WPT", .labelAt = {75, 0}},
    {.label = "WAYPOINT",
     .show = [](const FieldRow&, UnitText& t) { t.Set(gnsWaypoint.name); },
     .style = kGnsActive,
     .valueAt = {300, 80},
     .labelAt = {kGnsLabelX, 80}},
    {.label = "POS", .labelAt = {kGnsLabelX, 176}},
    {.label = "FLYOVER:", .labelAt = {kGnsLabelX, 320}},
};

constexpr LineRow kLines[] = {
    {.line = 8,
     .show = [](const LineRow&, UnitText& t) { t.Set(typed.latitude); },
     .showEntry = [](const LineRow&, UnitText& t) { t.Set(typed.latitude); },
     .entryLength = kFieldLength,
     .select = [](const LineRow&) { typed = TypedPosition{}; },
     .enter = EnterFromLine,
     .clear = TakeBackCharacter,
     .again = CancelPosition,
     .style = kGnsData,
     .at = kLatitudeAt},
    GnsFlyoverRow(320),
};

// What was typed since the last draw goes into the fields.
void HandlePilotPoint(const UnitInput&) {
    if (!IsSelected(gns, kLines[0])) {
        return;
    }
    for (const char each : std::string(TypedText(gns))) {
        TypeCharacterOfPosition(each);
    }
    LoadScratchpad(gns, {}, kFieldLength);
}

void ComposePilotPoint(Screen& screen) {
    const UnitText longitude(typed.longitude);
    if (IsSelected(gns, kLines[0])) {
        PutHighlighted({kGnsPrompt, kGnsEntry, kGnsHighlight}, kLongitudeAt, longitude,
                       kFieldLength, screen);
    } else {
        screen.PutText(kGnsData, kLongitudeAt, longitude);
    }
}

}  // namespace

void OpenGnsPilotPoint(std::string_view name) {
    gnsWaypoint.name = name;
    gns.returnPage = gns.page;
    OpenGnsPage(kGnsPilotPoint);
    SelectRow(kLines[0], gns);
}

constinit const PageRow kGnsPilotPointPage{.page = kGnsPilotPoint,
                                           .fields = kFields,
                                           .lines = kLines,
                                           .handle = HandlePilotPoint,
                                           .compose = ComposePilotPoint};

}  // namespace avq1
