// cdu/line_select.h - selecting a line of a page, typing into it, and what ENTER and CLR then do.
//
// The selectable lines of a page are rows, one for each selection state of a line key. Pressing the
// key steps through the rows of its line that are there, in the order of their states, and after
// the last one selects nothing. One row of the page is selected at a time: ENTER and CLR belong to
// it, and while it takes an entry so do the character keys.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "cdu/fields.h"
#include "cdu/screen.h"

namespace avq1 {

inline constexpr std::size_t kSelectableLines = 10;
inline constexpr std::string_view kBackspaceToken = "*1";

// Part of the state of a unit that selects lines.
struct LineSelection {
    std::array<std::int32_t, kSelectableLines + 1> lineState{};  // by line key, from 1: 0, 1 or 2
    bool entryArmed = false;                                     // character keys act only then
    bool freshEntry = true;  // the next character replaces what is in the field
    std::string scratchpad;  // padded with blanks to the field's length
};

struct LineRow {
    using Show = void (*)(const LineRow& row, UnitText& text);
    using Condition = bool (*)(const LineRow& row);
    using Act = EntryResult (*)(const LineRow& row);
    using Select = void (*)(const LineRow& row);

    std::int32_t line = 0;
    std::int32_t state = 1;
    const char* text = "";         // while it is not selected
    const char* prompt = "";       // while it is; empty: the text stays, drawn as selected
    Show show = nullptr;           // in place of text and prompt; an empty one is not drawn
    Show showEntry = nullptr;      // in place of the scratchpad
    Condition visible = nullptr;   // null: always; what is not visible cannot be selected either
    std::int32_t entryLength = 0;  // characters it takes; 0 = no entry
    Select select = nullptr;       // may put the present value into the scratchpad
    Act enter = nullptr;           // Accepted ends its selection, any other result leaves it
    Act clear = nullptr;           // what CLR does as long as nothing has been typed
    Act again = nullptr;           // what its key does on the selected row, before it goes on
    std::int32_t item = 0;
    std::uint8_t style = 0;
    ScreenPoint at = {};
};

// How a unit draws selected rows.
struct LineStyles {
    std::uint8_t prompt = 0;
    std::uint8_t entry = 0;      // text on the highlight
    std::uint8_t highlight = 0;  // filled behind an entry
};

// An entry highlight of n characters is 21 n by 35 units.
inline constexpr int kHighlightCharacterWidth = 21;
inline constexpr int kHighlightHeight = 35;

bool IsSelected(const LineSelection& selection, const LineRow& row);
// The visible row that is selected; null without.
const LineRow* SelectedRow(std::span<const LineRow> rows, const LineSelection& selection);

// Selects nothing; entry is disarmed.
void ClearSelections(LineSelection& selection);
void SelectRow(const LineRow& row, LineSelection& selection);
// What the line key does. Where the selected row answers to its key itself (`again`), any result
// but None ends there.
EntryResult PressSelectableLine(std::span<const LineRow> rows, LineSelection& selection,
                                std::int32_t line);

// ENTER on the selected row; None without one that ENTER means anything to.
EntryResult EnterSelected(std::span<const LineRow> rows, LineSelection& selection);
// Whether CLR is the selected row's and not a backspace.
bool ClearActs(std::span<const LineRow> rows, const LineSelection& selection);
EntryResult ClearSelected(std::span<const LineRow> rows, LineSelection& selection);

// One character, or kBackspaceToken, for an armed entry of at most `length` characters; nothing
// happens without one. A character beyond the length is dropped.
void TypeCharacter(LineSelection& selection, std::string_view text, std::size_t length);
// Puts a field's present value into the scratchpad, to be replaced by the first character.
void LoadScratchpad(LineSelection& selection, std::string_view value, std::size_t length);
// What has been typed, without the blanks behind it.
std::string_view TypedText(const LineSelection& selection);

// A text on the entry highlight of a field of `length` characters, wider for a longer text.
void PutHighlighted(const LineStyles& styles, ScreenPoint at, const UnitText& text,
                    std::int32_t length, Screen& screen);

void DrawLineRows(std::span<const LineRow> rows, const LineSelection& selection,
                  const LineStyles& styles, Screen& screen);

}  // namespace avq1
