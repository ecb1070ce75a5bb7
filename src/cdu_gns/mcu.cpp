#include "cdu_gns/mcu.h"

#include "base/messages.h"
#include "base/module_state.h"
#include "cdu_gns/mcu_pages.h"
#include "drawing/palette.h"
#include "simlink/keyboard.h"

namespace avq1 {

McuState mcu;

namespace {

constexpr double kTextPx = 14;
constexpr int kPositionX = 176;  // seven characters to the right edge

constexpr std::array<const PageRow*, 6> kPages = {
    &kMcuToPage, &kMcuFplnPage, &kMcuAptPage, &kMcuLegsPage, &kMcuDirtoPage, &kMcuAltFlPage,
};

// In the order of McuStyle.
constexpr std::array<ScreenStyle, 6> kStyles = {{
    {{"Courier New", kTextPx, true}, colour::Amber},
    {{"Courier New", kTextPx, false}, colour::PaleGreen},
    {{"Courier New", kTextPx, false}, colour::Amber},
    {{"Courier New", kTextPx, true}, colour::Magenta},
    {{"HW Arial", kTextPx, false}, colour::Amber},
    {{}, colour::Purple},
}};

UnitPaint paint;
const StateReset mcuReset([] {
    mcu = McuState{};
    paint = UnitPaint{};
});

PilotEntry TypedEntry() {
    return {McuPageTakesText() ? std::string_view(McuTypedText()) : std::string_view{}};
}

void PutEntryFrame(Screen& screen) {
    if (mcu.editing != 0) {
        screen.Frame(kMcuFrame, 61, 0, 236 - 61, 74);
    }
}

const CduUnit kUnit{.state = mcu,
                    .paint = paint,
                    .pages = kPages,
                    .styles = kStyles,
                    .widthUnits = 239,
                    .heightUnits = 78,
                    .entry = TypedEntry,
                    .overlay = PutEntryFrame};

}  // namespace

void DrawMcu(const DrawTarget& target) {
    DrawUnit(kUnit, target);
}

McuStyle PutMcuCursor(Screen& screen, int y, bool highlighted) {
    if (highlighted) {
        screen.Put(kMcuHighlight, 0, y, ">");
    }
    return highlighted ? kMcuHighlight : kMcuData;
}

void PutMcuPosition(Screen& screen, std::int32_t row, std::int32_t count) {
    UnitText position;
    position.Put("%d/%d", row, count);
    screen.Put(kMcuTitle, kPositionX, kMcuRowY[0], "%7s", position.c_str());
}

void PutMcuMessage(Screen& screen) {
    if (!KeyboardMessage.empty()) {
        screen.Put(kMcuStatus, 0, kMcuRowY[5], "%s", KeyboardMessage.c_str());
    } else if (messages.lastNotice > 0 && mcu.editing == 0) {
        screen.Put(kMcuStatus, 0, kMcuRowY[5], "%s",
                   messages.lines[static_cast<std::size_t>(messages.lastNotice)].c_str());
    }
}

}  // namespace avq1
