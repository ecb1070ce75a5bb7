#include "cdu/line_select.h"

#include <algorithm>

namespace avq1 {
namespace {

// What a page puts into a field that has no value.
constexpr std::string_view kPlaceholders[] = {"******", "------"};

bool IsVisible(const LineRow& row) {
    return row.visible == nullptr || row.visible(row);
}

std::int32_t& StateOf(LineSelection& selection, std::int32_t line) {
    return selection.lineState[static_cast<std::size_t>(line)];
}

void PadTo(std::string& text, std::size_t length) {
    text.resize(length, ' ');
}

void TrimRight(std::string& text) {
    text.resize(text.find_last_not_of(' ') + 1);
}

void DrawEntry(const LineRow& row, const LineSelection& selection, const LineStyles& styles,
               Screen& screen) {
    UnitText text(TypedText(selection));
    if (row.showEntry != nullptr) {
        row.showEntry(row, text);
    }
    PutHighlighted(styles, row.at, text, row.entryLength, screen);
}

}  // namespace

void PutHighlighted(const LineStyles& styles, ScreenPoint at, const UnitText& text,
                    std::int32_t length, Screen& screen) {
    const auto characters = std::max(length, static_cast<std::int32_t>(text.view().size()));
    screen.Fill(styles.highlight, at.x, at.y, kHighlightCharacterWidth * characters,
                kHighlightHeight);
    screen.PutText(styles.entry, at, text);
}

bool IsSelected(const LineSelection& selection, const LineRow& row) {
    return selection.lineState[static_cast<std::size_t>(row.line)] == row.state;
}

const LineRow* SelectedRow(std::span<const LineRow> rows, const LineSelection& selection) {
    const auto found = std::ranges::find_if(
        rows, [&](const LineRow& row) { return IsSelected(selection, row) && IsVisible(row); });
    return found == rows.end() ? nullptr : &*found;
}

void ClearSelections(LineSelection& selection) {
    selection.lineState.fill(0);
    selection.entryArmed = false;
}

void SelectRow(const LineRow& row, LineSelection& selection) {
    ClearSelections(selection);
    StateOf(selection, row.line) = row.state;
    if (row.entryLength > 0) {
        selection.entryArmed = true;
        LoadScratchpad(selection, {}, static_cast<std::size_t>(row.entryLength));
    }
    if (row.select != nullptr) {
        row.select(row);
    }
}

EntryResult PressSelectableLine(std::span<const LineRow> rows, LineSelection& selection,
                                std::int32_t line) {
    const auto isOfLine = [&](const LineRow& row) { return row.line == line; };
    if (line <= 0 || std::ranges::none_of(rows, isOfLine)) {
        return EntryResult::None;
    }
    const LineRow* selected = SelectedRow(rows, selection);
    if (selected != nullptr && selected->line == line && selected->again != nullptr) {
        const EntryResult result = selected->again(*selected);
        if (result != EntryResult::None) {
            return result;
        }
    }
    const std::int32_t state = StateOf(selection, line);
    const LineRow* next = nullptr;
    for (const LineRow& row : rows) {
        if (isOfLine(row) && row.state > state && IsVisible(row) &&
            (next == nullptr || row.state < next->state)) {
            next = &row;
        }
    }
    if (next != nullptr) {
        SelectRow(*next, selection);
    } else if (state != 0) {
        ClearSelections(selection);
    }
    return EntryResult::None;
}

EntryResult EnterSelected(std::span<const LineRow> rows, LineSelection& selection) {
    const LineRow* row = SelectedRow(rows, selection);
    if (row == nullptr || row->enter == nullptr) {
        return EntryResult::None;
    }
    const EntryResult result = row->enter(*row);
    if (result == EntryResult::Accepted && IsSelected(selection, *row)) {
        ClearSelections(selection);
    }
    return result;
}

bool ClearActs(std::span<const LineRow> rows, const LineSelection& selection) {
    const LineRow* row = SelectedRow(rows, selection);
    return row != nullptr && row->clear != nullptr &&
           (row->entryLength == 0 || selection.freshEntry);
}

EntryResult ClearSelected(std::span<const LineRow> rows, LineSelection& selection) {
    return ClearActs(rows, selection)
               ? SelectedRow(rows, selection)->clear(*SelectedRow(rows, selection))
               : EntryResult::None;
}

void TypeCharacter(LineSelection& selection, std::string_view text, std::size_t length) {
    if (!selection.entryArmed) {
        return;
    }
    std::string& pad = selection.scratchpad;
    if (selection.freshEntry) {
        pad.clear();
        selection.freshEntry = false;
    }
    if (std::ranges::find(kPlaceholders, std::string_view(pad)) != std::end(kPlaceholders)) {
        pad.clear();
    }
    TrimRight(pad);
    if (text == kBackspaceToken) {
        pad.resize(std::max<std::size_t>(pad.size(), 1) - 1);
    } else if (pad.size() < length) {
        pad += text;
    }
    PadTo(pad, length);
}

void LoadScratchpad(LineSelection& selection, std::string_view value, std::size_t length) {
    selection.scratchpad = value;
    selection.freshEntry = true;
    PadTo(selection.scratchpad, length);
}

std::string_view TypedText(const LineSelection& selection) {
    const std::string_view pad = selection.scratchpad;
    return pad.substr(0, pad.find_last_not_of(' ') + 1);
}

void DrawLineRows(std::span<const LineRow> rows, const LineSelection& selection,
                  const LineStyles& styles, Screen& screen) {
    for (const LineRow& row : rows) {
        if (!IsVisible(row)) {
            continue;
        }
        const bool selected = IsSelected(selection, row);
        if (selected && row.entryLength > 0) {
            DrawEntry(row, selection, styles, screen);
            continue;
        }
        UnitText text(selected && row.prompt[0] != '\0' ? row.prompt : row.text);
        if (row.show != nullptr) {
            row.show(row, text);
        }
        screen.PutText(selected ? styles.prompt : row.style, row.at, text);
    }
}

}  // namespace avq1
