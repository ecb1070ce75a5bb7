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
        screen.Put(pattern       ? McuStyle::Active
                   : highlighted ? McuStyle::Highlight
                                 : McuStyle::Data,
                   kMcuColumnWidth, y, "%-3s %3s %-6s %03d %6d", runway.ident.c_str(),
                   runway.field6.c_str(), runway.field7.c_str(), static_cast<int>(runway.heading),
                   runway.length);
    }
    PutMcuMessage(screen);
}

}  // namespace avq1
