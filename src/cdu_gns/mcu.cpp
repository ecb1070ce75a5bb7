#include "cdu_gns/mcu.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "base/messages.h"
#include "base/module_state.h"
#include "base/redraw.h"
#include "cdu_gns/mcu_pages.h"
#include "drawing/palette.h"
#include "simlink/aircraft_state.h"
#include "simlink/keyboard.h"

namespace avq1 {

McuState mcu;

namespace {

constexpr double kDesignWidth = 239;
constexpr double kDesignHeight = 78;
constexpr double kTextPx = 14;
constexpr int kPositionX = 176;  // seven characters to the right edge

constexpr std::array<McuPageRow, 6> kMcuPages = {{
    {McuPage::To, HandleToKeys, ComposeTo},
    {McuPage::Fpln, HandleFplnKeys, ComposeFpln},
    {McuPage::Apt, HandleAptKeys, ComposeApt},
    {McuPage::Legs, HandleLegsKeys, ComposeLegs},
    {McuPage::Dirto, HandleDirtoKeys, ComposeDirto},
    {McuPage::AltFl, HandleAltFlKeys, ComposeAltFl},
}};

struct TextStyle {
    CanvasFont font;
    std::uint32_t argb;
};

// In the order of McuStyle.
constexpr std::array<TextStyle, 5> kTextStyles = {{
    {{"Courier New", kTextPx, true}, colour::Amber},
    {{"Courier New", kTextPx, false}, colour::PaleGreen},
    {{"Courier New", kTextPx, false}, colour::Amber},
    {{"Courier New", kTextPx, true}, colour::Magenta},
    {{"HW Arial", kTextPx, false}, colour::Amber},
}};

// What a surface shows: each placement and pop-up has its own, and each must be painted once per
// change. More surfaces than records only means a repaint too many.
struct PaintRecord {
    void* deviceContext = nullptr;
    int widthPx = 0;
    int heightPx = 0;
    std::uint32_t generation = 0;  // 0 = never painted
    bool dark = false;             // cleared for want of power
};

struct PaintState {
    std::array<PaintRecord, 16> records;
    std::size_t nextRecord = 0;
    std::uint32_t generation = 1;
    std::uint32_t redrawCount = 0;  // redraws asked for that have been painted
    McuScreen composed;
    McuScreen shown;  // what the present generation shows
};

PaintState paint;
const StateReset mcuReset([] {
    mcu = McuState{};
    paint = PaintState{};
});

PaintRecord& RecordOf(const DrawTarget& target) {
    const auto found = std::find_if(
        paint.records.begin(), paint.records.end(),
        [&](const PaintRecord& record) { return record.deviceContext == target.deviceContext; });
    if (found == paint.records.end()) {
        PaintRecord& record = paint.records[paint.nextRecord];
        paint.nextRecord = (paint.nextRecord + 1) % paint.records.size();
        record = {target.deviceContext, target.widthPx, target.heightPx};
        return record;
    }
    if (found->widthPx != target.widthPx || found->heightPx != target.heightPx) {
        *found = {target.deviceContext, target.widthPx, target.heightPx};
    }
    return *found;
}

const McuPageRow* PageRow() {
    const auto found = std::find_if(kMcuPages.begin(), kMcuPages.end(),
                                    [](const McuPageRow& row) { return row.page == mcu.page; });
    return found == kMcuPages.end() ? nullptr : &*found;
}

// The keys' one-shot marks are seen by exactly one draw, whichever surface it is for.
void HandleKeys() {
    if (const McuPageRow* row = PageRow()) {
        row->handleKeys();
    }
    mcu.arrowKey = McuArrow::None;
    mcu.enterPressed = false;
    mcu.prevPressed = false;
    mcu.nextPressed = false;
    mcu.fplnPressed = false;
    mcu.entryComplete = false;
    mcu.navigation = {};
}

void Compose() {
    paint.composed = McuScreen{};
    if (const McuPageRow* row = PageRow()) {
        row->compose(paint.composed);
    }
    paint.composed.entryFrame = mcu.editing != 0;
}

void Paint(Surface& surface) {
    surface.canvas().FillRectangle(colour::Black, 0, 0, 250, 85);
    for (std::int32_t i = 0; i < paint.shown.count; ++i) {
        const McuText& text = paint.shown.texts[i];
        const TextStyle& style = kTextStyles[static_cast<std::size_t>(text.style)];
        surface.Text(text.text.data(), style.font, style.argb, text.x, text.y);
    }
    if (paint.shown.entryFrame) {
        surface.canvas().DrawRectangle({colour::Purple}, 61, 0, 236 - 61, 74);
    }
}

}  // namespace

void McuScreen::Put(McuStyle style, int x, int y, const char* format, ...) {
    if (count >= static_cast<std::int32_t>(texts.size())) {
        return;
    }
    McuText& text = texts[count++];
    text.x = static_cast<std::int16_t>(x);
    text.y = static_cast<std::int16_t>(y);
    text.style = style;
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text.text.data(), text.text.size(), format, arguments);
    va_end(arguments);
}

void DrawMcu(const DrawTarget& target) {
    if (target.mode == DisplayDrawMode::Skip || target.deviceContext == nullptr) {
        return;
    }
    DrawTarget drawn = target;
    drawn.mode = DisplayDrawMode::Normal;  // the unit paints whatever pop-ups are open
    PaintRecord& record = RecordOf(target);
    if (avionicsPower == 0) {
        if (!record.dark) {
            const Surface cleared(drawn, kDesignWidth, kDesignHeight);
            record.dark = true;
            record.generation = 0;
        }
        return;
    }
    HandleKeys();
    Compose();
    if (paint.composed != paint.shown || paint.redrawCount != UnitRedrawCount()) {
        mcu.redraw = 1;
    }
    if (mcu.redraw != 0 || mcu.force != 0) {
        paint.redrawCount = UnitRedrawCount();
        paint.shown = paint.composed;
        ++paint.generation;
        mcu.redraw = 0;
        mcu.force = 0;
    }
    if (record.generation == paint.generation) {
        return;
    }
    Surface surface(drawn, kDesignWidth, kDesignHeight);
    if (surface.ShouldDraw()) {
        Paint(surface);
        record.generation = paint.generation;
        record.dark = false;
    }
}

std::int32_t McuRowsToMove(bool withArrows) {
    const McuNavigation& asked = mcu.navigation;
    std::int32_t rows = 0;
    rows += (mcu.nextPressed || asked.down) - (mcu.prevPressed || asked.up);
    rows += kMcuListRows * (asked.pageDown - asked.pageUp);
    if (withArrows) {
        rows += (mcu.arrowKey == McuArrow::Down) - (mcu.arrowKey == McuArrow::Up);
    }
    return rows;
}

void MoveMcuCursor(std::int32_t& row, std::int32_t& first, std::int32_t rows, std::int32_t count) {
    row = std::clamp(row + rows, 0, std::max(count - 1, 0));
    first = std::clamp(first, std::max(row - kMcuListRows + 1, 0), row);
}

void PutMcuCursor(McuScreen& screen, int y) {
    screen.Put(McuStyle::Highlight, 0, y, ">");
}

void PutMcuPosition(McuScreen& screen, std::int32_t row, std::int32_t count) {
    std::array<char, 24> position{};
    std::snprintf(position.data(), position.size(), "%d/%d", row, count);
    screen.Put(McuStyle::Title, kPositionX, kMcuRowY[0], "%7s", position.data());
}

void PutMcuMessage(McuScreen& screen) {
    const char* text = "";
    if (!KeyboardMessage.empty()) {
        text = KeyboardMessage.c_str();
    } else if (messages.count > 0 && mcu.editing == 0) {
        text = messages.lines[static_cast<std::size_t>(messages.count)].c_str();
    }
    screen.Put(McuStyle::Status, 0, kMcuRowY[5], "%s", text);
}

}  // namespace avq1
