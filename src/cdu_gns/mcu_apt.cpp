// APT: an airport by its typed identifier, its runways, and the pattern's runway among them.
#include <cstddef>
#include <string>
#include <utility>

#include "base/text.h"
#include "cdu_gns/mcu_pages.h"
#include "flightplan/plan_airports.h"
#include "simlink/keyboard.h"

namespace avq1 {
namespace {

constexpr std::size_t kLandingAidWidth = 3;
constexpr int kTypedX = 67;

std::int32_t RunwayCount() {
    return static_cast<std::int32_t>(planAirports.runways.size());
}

bool TypingIsShown() {
    return mcu.editing != 0 || !mcu.entryText.empty();
}

void HandleApt(const UnitInput& input) {
    mcu.typingEnded = input.entryComplete;
    mcu.runways.Move(RowsToMoveWithArrows(input, kMcuListRows), RunwayCount(), kMcuListRows);
}

// The typed airport becomes the one shown. One that is not known keeps its text on the screen.
EntryResult TakeTypedAirport(const FieldRow&, std::string_view ident) {
    SetPlanAirport(ident, PlanAirportMode::RunwaysOnly);
    if (planAirports.lastAirportIdent != ident) {
        return EntryResult::NotInDatabase;
    }
    mcu.entryText.clear();
    mcu.runways = {};
    planAirports.patternRunwayOffset = kNoPatternRunway;
    return EntryResult::Accepted;
}

// ENTER with nothing typed ends the typing and no more: the runways were not on the screen.
EntryResult TogglePatternRunway(const FieldRow&) {
    if (RunwayCount() == 0 || mcu.typingEnded) {
        return EntryResult::None;
    }
    const std::int32_t offset = mcu.runways.row - planAirports.selectedRunway;
    const bool chosen = planAirports.patternRunwayOffset == offset;
    planAirports.patternRunwayOffset = chosen ? kNoPatternRunway : offset;
    return EntryResult::Accepted;
}

// A data file names the landing aid and its frequency in either order: the aid is the short one.
void PutRunway(Screen& screen, std::int32_t row, int y, bool highlighted) {
    const PlanRunway& runway = planAirports.runways[static_cast<std::size_t>(row)];
    const bool pattern = planAirports.patternRunwayOffset != kNoPatternRunway &&
                         planAirports.patternRunwayOffset + planAirports.selectedRunway == row;
    const std::string* aid = &runway.field6;
    const std::string* frequency = &runway.field7;
    if (aid->size() > kLandingAidWidth && frequency->size() <= kLandingAidWidth) {
        std::swap(aid, frequency);
    }
    const McuStyle style = PutMcuCursor(screen, y, highlighted);
    screen.Put(pattern ? kMcuActive : style, kMcuColumnWidth, y, "%-3.3s %3.3s %-6.6s %03d %6d",
               runway.ident.c_str(), aid->c_str(), frequency->c_str(),
               TruncateToInteger(runway.heading), runway.length);
}

void ShowTitle(const FieldRow&, UnitText& text) {
    if (TypingIsShown() || planAirports.lastAirportIdent.empty()) {
        text.Set("APT:");
    } else {
        text.Put("APT: %-4s - Elev:%s", planAirports.lastAirportIdent.c_str(),
                 lastAirportElevationText.c_str());
    }
}

void PutTyping(Screen& screen) {
    screen.Put(kMcuActive, kTypedX, kMcuRowY[0], "%.8s", mcu.entryText.c_str());
    screen.Put(kMcuData, kTypedX, kMcuListY[0], "%s",
               mcu.editing == 0           ? "NOT IN DATABASE"
               : !KeyboardMessage.empty() ? ""
               : mcu.entryText.empty()    ? "TYPE IDENTIFIER"
                                          : "ENTER TO SHOW");
}

void ComposeApt(Screen& screen) {
    if (TypingIsShown()) {
        PutTyping(screen);
    } else if (planAirports.lastAirportIdent.empty()) {
        screen.Put(kMcuData, kMcuColumnWidth, kMcuListY[0], "NO AIRPORT SET");
    } else {
        mcu.runways.ForEachShown(
            RunwayCount(), kMcuListRows,
            [&](std::int32_t slot, std::int32_t row, bool highlighted) {
                PutRunway(screen, row, kMcuListY[static_cast<std::size_t>(slot)], highlighted);
            });
    }
    PutMcuMessage(screen);
}

constexpr FieldRow kFields[] = {
    {.line = kEnterLine,
     .show = ShowTitle,
     .enter = TakeTypedAirport,
     .press = TogglePatternRunway,
     .style = kMcuTitle},
};

}  // namespace

constinit const PageRow kMcuAptPage{.page = kMcuApt,
                                    .fields = kFields,
                                    .handle = HandleApt,
                                    .compose = ComposeApt,
                                    .keyboardEnters = true};

}  // namespace avq1
