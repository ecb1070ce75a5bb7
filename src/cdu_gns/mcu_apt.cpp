#include <cstddef>
#include <cstdint>
#include <utility>

#include "base/text.h"
#include "cdu_gns/mcu_pages.h"
#include "flightplan/plan_airports.h"
#include "simlink/keyboard.h"

namespace avq1 {

namespace {

// The typed airport becomes the one shown. One that is not known keeps its text on the screen.
void TakeTypedAirport() {
    SetPlanAirport(mcu.entryText, PlanAirportMode::RunwaysOnly);
    if (planAirports.lastAirportIdent == mcu.entryText) {
        mcu.entryText.clear();
        mcu.runway = {};
        planAirports.patternRunwayOffset = kNoPatternRunway;
    }
}

constexpr std::size_t kLandingAidWidth = 3;

// A data file names the landing aid and its frequency in either order: the aid is the short one.
void PutRunway(McuScreen& screen, McuStyle style, int y, const PlanRunway& runway) {
    const std::string* aid = &runway.field6;
    const std::string* frequency = &runway.field7;
    if (aid->size() > kLandingAidWidth && frequency->size() <= kLandingAidWidth) {
        std::swap(aid, frequency);
    }
    screen.Put(style, kMcuColumnWidth, y, "%-3.3s %3.3s %-6.6s %03d %6d", runway.ident.c_str(),
               aid->c_str(), frequency->c_str(), TruncateToInteger(runway.heading), runway.length);
}

}  // namespace

void HandleAptKeys() {
    if (mcu.entryComplete && !mcu.entryText.empty()) {
        TakeTypedAirport();
        return;
    }
    const std::int32_t count = static_cast<std::int32_t>(planAirports.runways.size());
    MoveMcuCursor(mcu.runway.row, mcu.runway.first, McuRowsToMove(true), count);
    if (mcu.enterPressed && count > 0) {
        const std::int32_t offset = mcu.runway.row - planAirports.selectedRunway;
        const bool chosen = planAirports.patternRunwayOffset == offset;
        planAirports.patternRunwayOffset = chosen ? kNoPatternRunway : offset;
    }
}

void ComposeApt(McuScreen& screen) {
    if (mcu.editing != 0 || !mcu.entryText.empty()) {
        screen.Put(McuStyle::Title, 0, kMcuRowY[0], "APT:");
        screen.Put(McuStyle::Active, 67, kMcuRowY[0], "%.8s", mcu.entryText.c_str());
        screen.Put(McuStyle::Data, 67, kMcuListY[0], "%s",
                   mcu.editing == 0           ? "NOT IN DATABASE"
                   : !KeyboardMessage.empty() ? ""
                   : mcu.entryText.empty()    ? "TYPE IDENTIFIER"
                                              : "ENTER TO SHOW");
        PutMcuMessage(screen);
        return;
    }
    if (planAirports.lastAirportIdent.empty()) {
        screen.Put(McuStyle::Title, 0, kMcuRowY[0], "APT:");
        screen.Put(McuStyle::Data, kMcuColumnWidth, kMcuListY[0], "NO AIRPORT SET");
        PutMcuMessage(screen);
        return;
    }
    screen.Put(McuStyle::Title, 0, kMcuRowY[0], "APT: %-4s - Elev:%s",
               planAirports.lastAirportIdent.c_str(), lastAirportElevationText.c_str());
    const std::int32_t count = static_cast<std::int32_t>(planAirports.runways.size());
    for (int i = 0; i < kMcuListRows && mcu.runway.first + i < count; ++i) {
        const std::int32_t index = mcu.runway.first + i;
        const PlanRunway& runway = planAirports.runways[static_cast<std::size_t>(index)];
        const int y = kMcuListY[static_cast<std::size_t>(i)];
        const bool pattern =
            planAirports.patternRunwayOffset != kNoPatternRunway &&
            planAirports.patternRunwayOffset + planAirports.selectedRunway == index;
        const bool highlighted = index == mcu.runway.row;
        if (highlighted) {
            PutMcuCursor(screen, y);
        }
        PutRunway(screen,
                  pattern       ? McuStyle::Active
                  : highlighted ? McuStyle::Highlight
                                : McuStyle::Data,
                  y, runway);
    }
    PutMcuMessage(screen);
}

}  // namespace avq1
