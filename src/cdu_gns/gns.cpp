#include "cdu_gns/gns.h"

#include <algorithm>
#include <span>

#include "base/module_state.h"
#include "cdu_gns/gns_pages.h"
#include "drawing/palette.h"

namespace avq1 {

GnsState gns;

namespace {

constexpr double kTextPx = 33;
constexpr double kSmallPx = 20;
constexpr double kNoticePx = 26;
constexpr std::size_t kLongEntry = 10;
constexpr std::size_t kShortEntry = 6;

constexpr std::array<const PageRow*, 16> kPages = {
    &kGnsPlanPage,       &kGnsDirectPage,   &kGnsDatabasePage, &kGnsNavigationPage,
    &kGnsDeparturePage,  &kGnsArrivalPage,  &kGnsApproachPage, &kGnsAirwayPage,
    &kGnsSavePage,       &kGnsCrossingPage, &kGnsHoldPage,     &kGnsFuelPage,
    &kGnsPilotPointPage, &kGnsOffsetPage,   &kGnsVnavPage,     &kGnsVnavDataPage,
};

constexpr CanvasFont kText{"Courier New", kTextPx, true};
constexpr CanvasFont kSmall{"Courier New", kSmallPx, true};

// In the order of GnsStyle.
constexpr std::array<ScreenStyle, 13> kStyles = {{
    {kText, colour::White},
    {kText, colour::Green},
    {kText, colour::Yellow},
    {kText, colour::Magenta},
    {kText, colour::Grey},
    {kText, colour::Blue},
    {kSmall, colour::Blue},
    {kSmall, colour::White},
    {kText, colour::Black},
    {{}, colour::Yellow},
    {{}, colour::Black},
    {{"Courier New", kNoticePx, true}, colour::Yellow},
    {kSmall, colour::Yellow},
}};

// The prompt arrows of a page stand beside the line keys that select something now.
constexpr std::array<std::int16_t, 5> kArrowY = {30, 98, 178, 265, 340};
constexpr int kRightArrowX = 460;
constexpr std::array<std::int16_t, 5> kSmallArrowY = {28, 108, 188, 268, 348};  // between rows
constexpr std::int32_t kLinesPerSide = 5;

UnitPaint paint;
const StateReset gnsReset([] {
    gns = GnsState{};
    paint = UnitPaint{};
});

// What a page has said itself stays.
void Answered(EntryResult result) {
    if (const std::string_view text = TextOf(result); !text.empty()) {
        gns.notice = text;
    }
}

void Entered(const FieldRow&, const FieldOutcome& outcome) {
    Answered(outcome.result);
}

void PutOverlay(Screen& screen);

const CduUnit kUnit{.state = gns,
                    .paint = paint,
                    .pages = kPages,
                    .styles = kStyles,
                    .widthUnits = 495,
                    .heightUnits = 400,
                    .entered = Entered,
                    .selection = &gns,
                    .lineStyles = {kGnsPrompt, kGnsEntry, kGnsHighlight},
                    .answered = Answered,
                    .overlay = PutOverlay};

std::span<const LineRow> LinesShown() {
    const PageRow* page = PageShown(kUnit);
    return page != nullptr ? page->lines : std::span<const LineRow>{};
}

// Where the arrows of both sides point to the right.
bool PointsRight() {
    return gns.page == kGnsDeparture || gns.page == kGnsArrival || gns.page == kGnsApproach ||
           gns.page == kGnsSave;
}

// Whether a text stands where the arrow of the full size would touch it.
bool ReachesUnderArrow(std::span<const ScreenItem> items, int x, int y) {
    return std::ranges::any_of(items, [x, y](const ScreenItem& item) {
        return item.kind == ScreenItem::Kind::Text && item.at.y < y + kGnsCharacterHeight &&
               y < item.at.y + kGnsCharacterHeight && item.at.x < x + kGnsCharacterWidth &&
               x < item.at.x + FixedWidthOf(item.text, kStyles[item.style].font);
    });
}

void PutArrows(Screen& screen) {
    if (gns.page == kGnsFuel || gns.page == kGnsVnav) {
        return;  // these put their own
    }
    const std::span<const LineRow> rows = LinesShown();
    const std::size_t values = screen.items().size();
    for (std::int32_t line = 1; line <= 2 * kLinesPerSide; ++line) {
        const bool left = line <= kLinesPerSide;
        const bool selectable = std::ranges::any_of(rows, [line](const LineRow& row) {
            return row.line == line && (row.visible == nullptr || row.visible(row));
        });
        if (selectable) {
            const int x = left ? 0 : kRightArrowX;
            const auto row = static_cast<std::size_t>((line - 1) % kLinesPerSide);
            const bool narrow = ReachesUnderArrow(screen.items().first(values), x, kArrowY[row]);
            screen.Put(narrow ? kGnsSmallPrompt : kGnsPrompt, x,
                       narrow ? kSmallArrowY[row] : kArrowY[row],
                       left && !PointsRight() ? "<" : ">");
        }
    }
}

void PutOverlay(Screen& screen) {
    screen.KeepLeftOf(static_cast<int>(kUnit.widthUnits), kStyles);
    PutArrows(screen);
    if (!gns.notice.empty()) {
        screen.Fill(kGnsBlank, 0, 0, 495, kGnsRowY[0] - 4);
        screen.Put(kGnsNotice, 4, 0, "%s", gns.notice.c_str());
    }
}

}  // namespace

GnsState::GnsState() {
    page = kGnsPlan;
    Counter(GnsCounter::Navigation).m = 4;
    Counter(GnsCounter::Vnav).m = 2;
    Counter(GnsCounter::Fuel).m = 6;
}

void InstallGns() {
    gns.page = kGnsPlan;
    gns.planView = kStoredView;
    gns.storedPlanOpen = 0;
    gns.Counter(GnsCounter::List).n = 1;
    gns.Counter(GnsCounter::ActivePlan).n = 1;
}

void DrawGns(const DrawTarget& target) {
    DrawUnit(kUnit, target);
}

void TypeGnsCharacter(std::string_view character) {
    const bool longEntry = gns.page == kGnsSave || gns.page == kGnsCrossing;
    gns.deletePending = false;
    TypeCharacter(gns, character, longEntry ? kLongEntry : kShortEntry);
}

void ClearGnsSelections() {
    ClearSelections(gns);
    gns.deletePending = false;
}

const LineRow* GnsSelectedLine() {
    return SelectedRow(LinesShown(), gns);
}

bool GnsClearActs() {
    return ClearActs(LinesShown(), gns);
}

GnsCounter GnsPlanCounter() {
    if (gns.planView == kActiveView) {
        return GnsCounter::ActivePlan;
    }
    return gns.storedPlanOpen == 1 ? GnsCounter::StoredPlan : GnsCounter::List;
}

SubPage& SetGnsPageCount(GnsCounter counter, std::int32_t count) {
    return gns.Counter(counter).SetCount(count);
}

std::int32_t NextChoice(std::int32_t value, std::int32_t first, std::int32_t last) {
    return value >= last ? first : value + 1;
}

}  // namespace avq1
