// cdu/unit.h - a control display unit: its pages as rows, its state, and the draw cycle they share.
//
// One state serves all gauges of a unit, so they always show the same page. Page and entry keys
// only change it; a page's work is done at the next draw. A screen is composed as items every draw
// event and painted on a surface only when that surface does not show it yet: on the others the
// last picture stays. With power a screen is opaque black behind its texts, without it is
// transparent and keys wait. Panel thread only.
//
// A page is one row of the unit's table. docs/adding-a-page.md tells how.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "cdu/fields.h"
#include "cdu/line_select.h"
#include "cdu/screen.h"
#include "cdu/unit_input.h"
#include "drawing/surface.h"

namespace avq1 {

struct PageRow {
    std::int32_t page = 0;  // its number, as the unit's page table has it
    std::span<const FieldRow> fields = {};
    std::span<const LineRow> lines = {};  // on a unit that selects lines
    // What the keys ask of the page itself: lists, modes, paging. Comes before the fields' keys.
    void (*handle)(const UnitInput& input) = nullptr;
    // What is on the screen beside the fields; put before them.
    void (*compose)(Screen& screen) = nullptr;
    bool keyboardEnters = false;  // Enter on the computer keyboard does what ENTER does
};

// What every unit keeps. A unit's own record begins with this one.
struct CduState {
    std::int32_t page = 0;                      // the one shown
    std::array<std::int32_t, 8> returnPages{};  // the way back, the last one opened from last
    std::int32_t returnCount = 0;
    UnitInput input;                 // since the last draw
    std::int32_t lineKeyRepost = 0;  // the line key the next draw sees although nobody pressed it
};

// Shows a page and forgets the way back: what a page key does.
void OpenPage(CduState& state, std::int32_t page);
// Shows a page that ends by ReturnPage: what a page does that needs another one's answer. A way
// back that is too long forgets its oldest step.
void CallPage(CduState& state, std::int32_t page);
// Back to the page that called this one; `otherwise` when none did.
void ReturnPage(CduState& state, std::int32_t otherwise);

// What a surface shows: each placement and pop-up has its own, and each must be painted once per
// change. More surfaces than records only means a repaint too many.
struct PaintRecord {
    void* deviceContext = nullptr;
    int widthPx = 0;
    int heightPx = 0;
    std::uint32_t generation = 0;  // 0 = never painted
    bool dark = false;             // cleared for want of power
};

struct UnitPaint {
    std::array<PaintRecord, 16> records;
    std::size_t nextRecord = 0;
    std::uint32_t generation = 0;   // of the shown screen; grows with every change
    std::uint32_t redrawCount = 0;  // redraws asked for that have been painted
    Screen composed;
    Screen shown;
};

// A unit as its constants.
struct CduUnit {
    CduState& state;
    UnitPaint& paint;
    std::span<const PageRow* const> pages;
    std::span<const ScreenStyle> styles;  // by the unit's own style numbers
    double widthUnits = 0;                // the design the surface is scaled to
    double heightUnits = 0;
    // What the pilot has typed, for the field whose key is pressed.
    PilotEntry (*entry)() = nullptr;
    // Told how the field took it, before the page it opens is shown; also of a line key that no
    // field belongs to, with an empty row.
    void (*entered)(const FieldRow& field, const FieldOutcome& outcome) = nullptr;
    // Null on a unit without line selection.
    LineSelection* selection = nullptr;
    LineStyles lineStyles = {};
    // Told what came of ENTER or CLR on a selected line.
    void (*answered)(EntryResult result) = nullptr;
    // What the keys ask of the unit whatever page is shown; comes after the page's own.
    void (*afterPage)(const UnitInput& input) = nullptr;
    // Put over every page: entry lines, frames.
    void (*overlay)(Screen& screen) = nullptr;
};

// The row of the unit's page table that is shown; null without.
const PageRow* PageShown(const CduUnit& unit);

// One draw event of one of the unit's gauges.
void DrawUnit(const CduUnit& unit, const DrawTarget& target);

}  // namespace avq1
