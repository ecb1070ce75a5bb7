#include "cdu/unit.h"

#include <algorithm>
#include <utility>

#include "base/redraw.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

PaintRecord& RecordOf(UnitPaint& paint, const DrawTarget& target) {
    const PaintRecord fresh{target.deviceContext, target.widthPx, target.heightPx};
    const auto found =
        std::ranges::find(paint.records, target.deviceContext, &PaintRecord::deviceContext);
    if (found == paint.records.end()) {
        PaintRecord& record = paint.records[paint.nextRecord];
        paint.nextRecord = (paint.nextRecord + 1) % paint.records.size();
        return record = fresh;
    }
    if (found->widthPx != target.widthPx || found->heightPx != target.heightPx) {
        *found = fresh;
    }
    return *found;
}

// Each press is handed over exactly once.
UnitInput TakeInput(CduState& state) {
    return std::exchange(state.input, {});
}

// What a line key without a field belongs to: it takes nothing.
constexpr FieldRow kNoField{};

void PressLine(const CduUnit& unit, const PageRow& page, std::int32_t line) {
    const FieldRow* field = FieldOfLine(page.fields, line);
    if (field == nullptr) {
        if (unit.entered == nullptr || line == 0 || line == kEnterLine) {
            return;
        }
        field = &kNoField;
    }
    const PilotEntry entry = unit.entry != nullptr ? unit.entry() : PilotEntry{};
    const FieldOutcome outcome = PressField(*field, entry);
    if (unit.entered != nullptr) {
        unit.entered(*field, outcome);
    }
    if (outcome.opens != 0) {
        OpenPage(unit.state, outcome.opens);
    }
}

void Answer(const CduUnit& unit, EntryResult result) {
    if (unit.answered != nullptr && result != EntryResult::None) {
        unit.answered(result);
    }
}

// What the keys mean to the selected line. True when ENTER has been used up by it.
bool HandleSelection(const CduUnit& unit, const PageRow& page, const UnitInput& input) {
    if (unit.selection == nullptr) {
        return false;
    }
    Answer(unit, PressSelectableLine(page.lines, *unit.selection, input.lineKey));
    if (input.clearPressed) {
        Answer(unit, ClearSelected(page.lines, *unit.selection));
    }
    const LineRow* row = SelectedRow(page.lines, *unit.selection);
    if (!input.enterPressed || row == nullptr || row->enter == nullptr) {
        return false;
    }
    Answer(unit, EnterSelected(page.lines, *unit.selection));
    return true;
}

void HandleKeys(const CduUnit& unit) {
    const PageRow* page = PageShown(unit);
    if (page == nullptr) {
        return;
    }
    const UnitInput input = TakeInput(unit.state);
    if (page->handle != nullptr) {
        page->handle(input);
    }
    PressLine(unit, *page, input.lineKey);
    const bool entered = HandleSelection(unit, *page, input);
    if (!entered && (input.enterPressed || (input.entryComplete && page->keyboardEnters))) {
        PressLine(unit, *page, kEnterLine);
    }
    if (unit.afterPage != nullptr) {
        unit.afterPage(input);
    }
    if (unit.state.lineKeyRepost != 0) {
        unit.state.input.lineKey = std::exchange(unit.state.lineKeyRepost, 0);
    }
}

// The page may be another one than the one that handled the keys.
void Compose(const CduUnit& unit, Screen& screen) {
    screen.Clear();
    if (const PageRow* page = PageShown(unit)) {
        if (page->compose != nullptr) {
            page->compose(screen);
        }
        DrawFields(page->fields, screen);
        if (unit.selection != nullptr) {
            DrawLineRows(page->lines, *unit.selection, unit.lineStyles, screen);
        }
        if (unit.overlay != nullptr) {
            unit.overlay(screen);
        }
    }
}

// Whether the composed screen is another one than the one shown, or must be painted anew.
void NoteChange(UnitPaint& paint) {
    if (paint.generation == 0 || paint.redrawCount != UnitRedrawCount() ||
        paint.composed != paint.shown) {
        paint.redrawCount = UnitRedrawCount();
        std::swap(paint.shown, paint.composed);
        ++paint.generation;
    }
}

void PaintDark(const CduUnit& unit, const DrawTarget& target, PaintRecord& record) {
    if (!record.dark) {
        const Surface cleared(target, unit.widthUnits, unit.heightUnits, false);
        record.dark = true;
        record.generation = 0;
    }
}

void Paint(const CduUnit& unit, const DrawTarget& target, PaintRecord& record) {
    Surface surface(target, unit.widthUnits, unit.heightUnits, true);
    if (surface.ShouldDraw()) {
        PaintScreen(unit.paint.shown, unit.styles, surface);
        record.generation = unit.paint.generation;
        record.dark = false;
    }
}

}  // namespace

const PageRow* PageShown(const CduUnit& unit) {
    const auto found = std::ranges::find(unit.pages, unit.state.page,
                                         [](const PageRow* row) { return row->page; });
    return found == unit.pages.end() ? nullptr : *found;
}

void OpenPage(CduState& state, std::int32_t page) {
    state.page = page;
    state.returnCount = 0;
}

void CallPage(CduState& state, std::int32_t page) {
    auto& pages = state.returnPages;
    if (state.returnCount == static_cast<std::int32_t>(pages.size())) {
        std::shift_left(pages.begin(), pages.end(), 1);
        --state.returnCount;
    }
    pages[static_cast<std::size_t>(state.returnCount++)] = state.page;
    state.page = page;
}

void ReturnPage(CduState& state, std::int32_t otherwise) {
    state.page = state.returnCount > 0
                     ? state.returnPages[static_cast<std::size_t>(--state.returnCount)]
                     : otherwise;
}

void DrawUnit(const CduUnit& unit, const DrawTarget& target) {
    if (target.mode == DisplayDrawMode::Skip || target.deviceContext == nullptr) {
        return;
    }
    DrawTarget drawn = target;
    drawn.mode = DisplayDrawMode::Normal;  // a unit paints whatever pop-ups are open
    PaintRecord& record = RecordOf(unit.paint, target);
    if (avionicsPower == 0) {
        PaintDark(unit, drawn, record);
        return;
    }
    HandleKeys(unit);
    Compose(unit, unit.paint.composed);
    NoteChange(unit.paint);
    if (record.generation != unit.paint.generation) {
        Paint(unit, drawn, record);
    }
}

}  // namespace avq1
