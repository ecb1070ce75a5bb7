// NAV STATUS: the stations that are received and the position; NAV OPTIONS: which of them the radio
// position leaves out.
#include <cmath>

#include "base/text.h"
#include "cdu/formats.h"
#include "cdu_smiths/smiths_pages.h"
#include "guidance/radio_position.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr std::int32_t kPages = 2;
constexpr std::size_t kIdentLength = 5;

template <std::int32_t n>
constexpr FieldRow On(FieldRow field) {
    field.visible = OnSmithsSubPage<SmithsCounter::NavStatus, n>;
    return field;
}

// ---- page 1: what is received; the item is the receiver ----
ReceivedStation StationOf(const FieldRow& field) {
    return StationReceived(static_cast<NavReceiver>(field.item));
}

void ShowVor(const FieldRow& field, UnitText& text) {
    text.Set("- - - - -");
    if (const std::int32_t index = StationOf(field).navaid) {
        const Navaid navaid = navDatabase.navaids[index];
        text.Put("%-5.5s %-3.2f", UnitText(navaid.ident).c_str(), ToNumber(navaid.frequency));
    }
}

void ShowDme(const FieldRow& field, UnitText& text) {
    const ReceivedStation station = StationOf(field);
    text.Set("- - - - -");
    if (station.navaid != 0) {
        UnitText distance;
        distance.Put("%.1f", station.distanceNm);
        text.Put("%-5.5s %6s", UnitText(navDatabase.navaids.Ident(station.navaid)).c_str(),
                 distance.c_str());
    }
}

// The radial that the aircraft is on, magnetic.
void ShowRadial(const FieldRow& field, UnitText& text) {
    const ReceivedStation station = StationOf(field);
    text.Set("- - -");
    if (station.navaid != 0) {
        text = CourseText(TrueToMagnetic(PositiveModulo(station.bearingTrue + 180, 360),
                                         ShownAircraft().magneticVariation));
    }
}

void ShowPosition(const FieldRow&, UnitText& text) {
    const LatLon position{ShownAircraft().latitude, ShownAircraft().longitude};
    text.Set("- - - - -   - - - - -");
    if (std::isfinite(position.latitude + position.longitude)) {
        text = PositionTextOf(position);
    }
}

// ---- page 2: what is left out; the item is the place of two, and kVorItem for a VOR ----
constexpr std::int32_t kVorItem = 2;

std::string& InhibitedIn(const FieldRow& field) {
    auto& idents = field.item >= kVorItem ? navOptions.inhibitedVor : navOptions.inhibitedDme;
    return idents[static_cast<std::size_t>(field.item % kVorItem)];
}

void ShowInhibited(const FieldRow& field, UnitText& text) {
    text.Set(InhibitedIn(field).empty() ? "- - - - -" : std::string_view(InhibitedIn(field)));
}

EntryResult EnterInhibited(const FieldRow& field, std::string_view entry) {
    if (entry.size() > kIdentLength) {
        return EntryResult::InvalidEntry;
    }
    SearchResults found;
    SearchIdent(entry, SearchCategory::Navaids, found);
    if (found.count == 0) {
        return EntryResult::NotInDatabase;
    }
    InhibitedIn(field) = entry;
    return EntryResult::Accepted;
}

EntryResult EraseInhibited(const FieldRow& field) {
    if (InhibitedIn(field).empty()) {
        return EntryResult::InvalidDelete;
    }
    InhibitedIn(field).clear();
    return EntryResult::Accepted;
}

bool& UpdateOf(const FieldRow& field) {
    return field.item >= kVorItem ? navOptions.vorUpdate : navOptions.dmeUpdate;
}

void ShowUpdateState(const FieldRow& field, UnitText& text) {
    text.Set(UpdateOf(field) ? "ON" : "OFF");
}

EntryResult ToggleUpdate(const FieldRow& field) {
    UpdateOf(field) = !UpdateOf(field);
    return EntryResult::None;
}

constexpr FieldRow Inhibited(std::int32_t line, std::int32_t item, const char* label) {
    return On<2>(SmithsField(line, {.label = label,
                                    .show = ShowInhibited,
                                    .enter = EnterInhibited,
                                    .erase = EraseInhibited,
                                    .item = item}));
}

constexpr FieldRow Update(std::int32_t line, std::int32_t item, const char* label) {
    return On<2>(SmithsField(line, {.label = label,
                                    .show = [](const FieldRow&, UnitText& t) { t.Set("<ON/OFF"); },
                                    .press = ToggleUpdate,
                                    .item = item}));
}

// Beside "<ON/OFF" what it is.
constexpr FieldRow UpdateState(std::int32_t line, std::int32_t item) {
    FieldRow field = SmithsField(line, {.show = ShowUpdateState, .item = item});
    field.line = 0;
    field.style = kSmithsDataRight;
    field.valueAt.x = kSmithsRightX;
    return On<2>(field);
}

constexpr FieldRow kFields[] = {
    On<1>(
        SmithsField(kL1, {.label = "V O R - L                       V O R - R", .show = ShowVor})),
    On<1>(SmithsField(kR1, {.show = ShowVor, .item = 1})),
    On<1>(
        SmithsField(kL2, {.label = "D M E - L                        D M E - R", .show = ShowDme})),
    On<1>(SmithsField(kR2, {.show = ShowDme, .item = 1})),
    On<1>(SmithsField(kL3, {.label = "R A D I A L", .show = ShowRadial})),
    On<1>(SmithsField(kR3, {.label = "R A D I A L", .show = ShowRadial, .item = 1})),
    On<1>(SmithsField(kL4, {.label = "I R S    ( L )", .show = ShowPosition})),
    On<1>(SmithsPrompt(kR6, "POS  SHIFT >", kSmithsPos,
                       {.press = AtSmithsSubPage<SmithsCounter::Pos, 3>})),
    Inhibited(kL1, 0, "D M E    I N H I B I T"),
    Inhibited(kR1, 1, ""),
    Inhibited(kL2, kVorItem, "V O R    I N H I B I T"),
    Inhibited(kR2, kVorItem + 1, ""),
    Update(kL3, 0, "D M E    U P D A T E"),
    UpdateState(kL3, 0),
    Update(kL4, kVorItem, "V O R    U P D A T E"),
    UpdateState(kL4, kVorItem),
    SmithsPrompt(kL6, "< INDEX", kSmithsIndex),
    SmithsSeparatorRow(),
};

SubPage& CounterShown() {
    return smiths.Counter(SmithsCounter::NavStatus).SetCount(kPages);
}

void ComposeNavStatus(Screen& screen) {
    const SubPage& shown = CounterShown();
    screen.Put(kSmithsData, kSmithsTitleX, 0, "%s", shown.n == 1 ? "NAV  STATUS" : "NAV  OPTIONS");
    PutSmithsCounter(screen, shown);
}

}  // namespace

constinit const PageRow kSmithsNavStatusPage{
    .page = kSmithsNavStatus, .fields = kFields, .compose = ComposeNavStatus};

}  // namespace avq1
