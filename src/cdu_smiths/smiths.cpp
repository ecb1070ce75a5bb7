#include "cdu_smiths/smiths.h"

#include <algorithm>

#include "base/module_state.h"
#include "cdu_smiths/smiths_pages.h"
#include "cdu_smiths/smiths_route.h"
#include "drawing/palette.h"
#include "flightplan/flight_plan.h"

namespace avq1 {

SmithsState smiths;

namespace {

constexpr double kWidthUnits = 282;
constexpr double kHeightUnits = 245;
constexpr double kDataPx = 18;
constexpr double kLabelPx = 12;
constexpr double kFittedUnits = 150;
constexpr double kGapUnits = 6;
constexpr int kScratchpadY = 222;
constexpr int kKeyboardMarkY = 227;

constexpr std::array<const PageRow*, 23> kPages = {
    &kSmithsStoredPlansPage, &kSmithsPerfInitPage,   &kSmithsLegsPage,        &kSmithsSelectPage,
    &kSmithsDeparturesPage,  &kSmithsArrivalsPage,   &kSmithsApproachRefPage, &kSmithsRoutePage,
    &kSmithsIndexPage,       &kSmithsDepArrPage,     &kSmithsIdentPage,       &kSmithsPosPage,
    &kSmithsTakeoffRefPage,  &kSmithsRefNavDataPage, &kSmithsNavSummaryPage,  &kSmithsNavStatusPage,
    &kSmithsProgressPage,    &kSmithsClimbPage,      &kSmithsCruisePage,      &kSmithsDescentPage,
    &kSmithsFixInfoPage,     &kSmithsForecastsPage,  &kSmithsHoldPage,
};

constexpr CanvasFont kData{"Arial", kDataPx};
constexpr CanvasFont kLabel{"Arial", kLabelPx};

// In the order of SmithsStyle.
constexpr std::array<ScreenStyle, 9> kStyles = {{
    {kData, colour::Green},
    {kData, colour::Green, true},
    {kLabel, colour::Green},
    {kLabel, colour::Green, true},
    {kData, colour::Green, false, kFittedUnits},
    {kData, colour::Green, true, kWidthUnits - kFittedUnits - kGapUnits},
    {kLabel, colour::Green, false, kWidthUnits},
    {kData, colour::Green, false, kWidthUnits},
    {kData, colour::Green, false, kWidthUnits - kSmithsCounterX},
}};
static_assert(kStyles.size() == kSmithsStyleCount);

UnitPaint paint;
const StateReset smithsReset([] {
    smiths = SmithsState{};
    paint = UnitPaint{};
});

std::string_view WithoutBlanks(std::string_view text) {
    const std::size_t first = std::min(text.find_first_not_of(' '), text.size());
    return text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

PilotEntry TypedEntry() {
    return {WithoutBlanks(smiths.scratchpad), smiths.message == kSmithsDelete};
}

// A refusal leaves the scratchpad as it was. A deletion is used up either way.
void Entered(const FieldRow& field, const FieldOutcome& outcome) {
    const bool deleting = smiths.message == kSmithsDelete;
    if (outcome.result == EntryResult::Accepted) {
        if (field.isPrompt && !deleting) {
            return;
        }
        (deleting ? smiths.message : smiths.scratchpad).clear();
    } else if (deleting && outcome.result == EntryResult::None) {
        smiths.message = TextOf(EntryResult::InvalidDelete);
    } else if (const std::string_view text = TextOf(outcome.result); !text.empty()) {
        smiths.message = text;
    }
}

void HandleUnitKeys(const UnitInput&) {
    if (smiths.execPressed) {
        ExecuteSmithsRoute();
    }
    smiths.execPressed = false;
}

void PutBottomLine(Screen& screen) {
    const std::string& shown = smiths.message.empty() ? smiths.scratchpad : smiths.message;
    screen.Put(kSmithsBottom, 0, kScratchpadY, "%s", shown.c_str());
    if (smiths.editing != 0 && IsSmithsBlank(shown)) {
        screen.Put(kSmithsLabelRight, kSmithsRightX, kKeyboardMarkY, "K E Y B O A R D");
    }
}

const CduUnit kUnit{.state = smiths,
                    .paint = paint,
                    .pages = kPages,
                    .styles = kStyles,
                    .widthUnits = kWidthUnits,
                    .heightUnits = kHeightUnits,
                    .entry = TypedEntry,
                    .entered = Entered,
                    .afterPage = HandleUnitKeys,
                    .overlay = PutBottomLine};

bool IsPhasePage(std::int32_t page) {
    return page == kSmithsClimb || page == kSmithsCruise || page == kSmithsDescent;
}

}  // namespace

void InstallSmiths() {
    if (smiths.page == 0) {
        smiths.page = kSmithsIdent;
    }
}

void DrawSmiths(const DrawTarget& target) {
    DrawUnit(kUnit, target);
}

bool SmithsExecLit() {
    return planBook.status == RouteStatus::AwaitsExecution ||
           planBook.status == RouteStatus::Modified;
}

bool SmithsMessageLit() {
    return !smiths.message.empty();
}

void SaySmiths(std::string_view message) {
    smiths.message = message;
}

void OpenSmithsPage(SmithsPage page) {
    OpenPage(smiths, page);
    smiths.input.openedPage = page;
}

void NoteSmithsPhase(const GuidanceReport& report) {
    const bool looksAhead =
        report.event == GuidanceEvent::TopOfClimb && smiths.page == kSmithsDescent;
    if (IsPhasePage(smiths.page) && !looksAhead) {
        smiths.page = report.event == GuidanceEvent::TopOfDescent ? kSmithsDescent : kSmithsCruise;
    }
}

}  // namespace avq1
