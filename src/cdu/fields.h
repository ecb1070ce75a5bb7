// cdu/fields.h - the fields of a page as rows, and the one walker that draws them, finds the one a
// key belongs to and hands it the pilot's entry.
//
// A row stands whole in one place: which line it is on, what it shows and when, what an entry does
// to it. Functions get their row, so that rows of one kind share them and tell themselves apart by
// `item`. A page's entry functions change plans and settings; a row that cannot take an entry says
// so by its result and changes nothing.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "cdu/screen.h"

namespace avq1 {

// How a field took what it was given. Refusals leave field and entry as they were.
enum class EntryResult : std::uint8_t {
    None,      // there was nothing to do
    Accepted,  // the entry is used up
    InvalidEntry,
    InvalidDelete,
    NotInDatabase,
    NoActiveRoute,
    PlanFull,
};

// The text a unit shows for a refusal; empty when nothing was refused.
std::string_view TextOf(EntryResult result);

// ENTER is a line of its own: on a unit with a cursor it belongs to the row under this number.
inline constexpr std::int32_t kEnterLine = 100;

struct FieldRow {
    using Show = void (*)(const FieldRow& field, UnitText& text);
    using Enter = EntryResult (*)(const FieldRow& field, std::string_view entry);
    using Act = EntryResult (*)(const FieldRow& field);
    using Visible = bool (*)(const FieldRow& field);

    std::int32_t line = 0;      // the line select key that belongs to it; 0 = it is only shown
    const char* label = "";     // its caption, where the unit puts one
    Show show = nullptr;        // its value; an empty one is not drawn
    Visible visible = nullptr;  // null: always; what is not visible takes no key either
    Enter enter = nullptr;      // takes a typed text
    Act erase = nullptr;        // takes a deletion
    Act press = nullptr;        // its key with nothing typed
    std::int32_t opens = 0;     // its key with nothing typed opens this page; 0 = none
    std::int32_t item = 0;
    std::uint8_t style = 0;       // of the value
    std::uint8_t labelStyle = 0;  // of the label
    ScreenPoint valueAt = {};
    ScreenPoint labelAt = {};
    bool isPrompt = false;  // its key acts and opens whatever has been typed, and leaves that
};

// What the pilot has in hand when a field's key is pressed.
struct PilotEntry {
    std::string_view text;
    bool deleting = false;
};

struct FieldOutcome {
    EntryResult result = EntryResult::None;
    std::int32_t opens = 0;  // the page to open next; 0 = stay
};

// Puts labels and values of all visible fields on the screen.
void DrawFields(std::span<const FieldRow> fields, Screen& screen);

// The visible field of a line, the first where rows share one; null without.
const FieldRow* FieldOfLine(std::span<const FieldRow> fields, std::int32_t line);

// Does what the key of `field` does: a deletion goes to erase, a typed text to enter, an empty hand
// to press and then to the page the row opens. What the row has no answer to is refused.
FieldOutcome PressField(const FieldRow& field, const PilotEntry& entry);

}  // namespace avq1
