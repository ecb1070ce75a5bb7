// cdu_smiths/smiths_pages.h - the pages of the Smiths-style unit, one file each, and what they
// share.
//
// A screen has a title and six line pairs, each a small letter-spaced label above its data, beside
// the line keys L1 to L6 and R1 to R6; the bottom line is the scratchpad's. Everything is green.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "cdu/unit.h"
#include "cdu_smiths/smiths.h"

namespace avq1 {

extern const PageRow kSmithsStoredPlansPage;
extern const PageRow kSmithsPerfInitPage;
extern const PageRow kSmithsLegsPage;
extern const PageRow kSmithsSelectPage;
extern const PageRow kSmithsDeparturesPage;
extern const PageRow kSmithsArrivalsPage;
extern const PageRow kSmithsApproachRefPage;
extern const PageRow kSmithsRoutePage;
extern const PageRow kSmithsIndexPage;
extern const PageRow kSmithsDepArrPage;
extern const PageRow kSmithsIdentPage;
extern const PageRow kSmithsPosPage;
extern const PageRow kSmithsTakeoffRefPage;
extern const PageRow kSmithsRefNavDataPage;
extern const PageRow kSmithsNavSummaryPage;
extern const PageRow kSmithsNavStatusPage;
extern const PageRow kSmithsProgressPage;
extern const PageRow kSmithsClimbPage;
extern const PageRow kSmithsCruisePage;
extern const PageRow kSmithsDescentPage;
extern const PageRow kSmithsFixInfoPage;
extern const PageRow kSmithsForecastsPage;
extern const PageRow kSmithsHoldPage;

// The texts of a style that says "right" end at their position. Fitted ones, names as long as their
// files have them, are made smaller until there is room.
enum SmithsStyle : std::uint8_t {
    kSmithsData,
    kSmithsDataRight,
    kSmithsLabel,
    kSmithsLabelRight,
    kSmithsFitted,       // on the left of two
    kSmithsFittedRight,  // on the right of them
    kSmithsFittedLine,   // small, across the screen
    kSmithsBottom,       // the scratchpad: made smaller until it fits
    kSmithsCounter,      // the same beside the title
    kSmithsStyleCount,
};

// The line keys as `lineKey` has them.
enum SmithsLine : std::int32_t {
    kL1 = 1,
    kL2,
    kL3,
    kL4,
    kL5,
    kR1,
    kR2,
    kR3,
    kR4,
    kR5,
    kL6,
    kR6,
};

inline constexpr std::int32_t kSmithsRows = 6;
inline constexpr std::array<std::int16_t, kSmithsRows> kSmithsLabelY = {22, 55, 88, 121, 154, 187};
inline constexpr std::array<std::int16_t, kSmithsRows> kSmithsDataY = {33, 66, 99, 132, 165, 198};
inline constexpr std::int16_t kSmithsTitleX = 63;
inline constexpr std::int16_t kSmithsCounterX = 230;
inline constexpr std::int16_t kSmithsLabelX = 12;  // of the left labels
inline constexpr std::int16_t kSmithsRightX = 281;
inline constexpr std::int16_t kSmithsLabelRightX = 270;
inline constexpr const char* kSmithsSeparator = "- - - - - - - - - - - - - - - - - - - - - - - -";

// The row of the screen that a line key stands beside, 0 to 5.
constexpr std::int32_t SmithsRowOf(std::int32_t line) {
    return line >= kL6 ? kSmithsRows - 1 : (line - 1) % (kSmithsRows - 1);
}
constexpr bool IsOnTheRight(std::int32_t line) {
    return line == kR6 || (line >= kR1 && line <= kR5);
}
// The line key of the row 0 to 5 on one side.
constexpr std::int32_t SmithsLineOf(std::int32_t row, bool right) {
    return row == kSmithsRows - 1 ? (right ? kR6 : kL6) : row + (right ? kR1 : kL1);
}

// ---- rows of the pages' field tables ----

// The field of a line key, its label and value beside the key.
constexpr FieldRow SmithsField(std::int32_t line, FieldRow field) {
    const auto row = static_cast<std::size_t>(SmithsRowOf(line));
    const bool right = IsOnTheRight(line);
    field.line = line;
    field.style = right ? kSmithsDataRight : kSmithsData;
    field.labelStyle = right ? kSmithsLabelRight : kSmithsLabel;
    field.valueAt = {right ? kSmithsRightX : std::int16_t{0}, kSmithsDataY[row]};
    field.labelAt = {right ? kSmithsLabelRightX : kSmithsLabelX, kSmithsLabelY[row]};
    return field;
}

// "< INDEX" or "ROUTE >": what the key opens, or does by `press`; what has been typed stays.
constexpr FieldRow SmithsPrompt(std::int32_t line, const char* text, std::int32_t opens,
                                FieldRow field = {}) {
    field = SmithsField(line, field);
    field.label = text;
    field.labelStyle = field.style;
    field.labelAt = field.valueAt;
    field.opens = opens;
    field.isPrompt = true;
    return field;
}

// A prompt whose text is worked out and whose key does something here.
constexpr FieldRow SmithsShownPrompt(std::int32_t line, FieldRow field) {
    field = SmithsField(line, field);
    field.isPrompt = true;
    return field;
}

// A label that is worked out, beside the line key; it takes no key.
constexpr FieldRow SmithsShownLabel(std::int32_t line, FieldRow::Show show) {
    const FieldRow beside = SmithsField(line, {});
    return {.show = show, .style = beside.labelStyle, .valueAt = beside.labelAt};
}

constexpr FieldRow SmithsTitle(const char* text, std::int16_t x = kSmithsTitleX) {
    return {.label = text, .labelStyle = kSmithsData, .labelAt = {x, 0}};
}

// A small text that belongs to no key.
constexpr FieldRow SmithsNote(const char* text, std::int16_t x, std::int16_t y) {
    return {.label = text, .labelStyle = kSmithsLabel, .labelAt = {x, y}};
}

// The dashed line in the label line of a row.
constexpr FieldRow SmithsSeparatorRow(std::size_t row = kSmithsRows - 1) {
    return SmithsNote(kSmithsSeparator, 0, kSmithsLabelY[row]);
}

// For FieldRow::visible: the page shows its sub-page n.
template <SmithsCounter counter, std::int32_t n>
bool OnSmithsSubPage(const FieldRow&) {
    return smiths.Counter(counter).n == n;
}

// For the prompt of a page that has sub-pages: it opens at sub-page n.
template <SmithsCounter counter, std::int32_t n>
EntryResult AtSmithsSubPage(const FieldRow&) {
    smiths.Counter(counter).n = n;
    return EntryResult::None;
}

// ---- what pages put and do ----

// "1 / 2" in the title line; the format takes n and m.
void PutSmithsCounter(Screen& screen, const SubPage& shown, const char* format = "%d / %d",
                      int x = kSmithsCounterX);

// Puts a message into the bottom line.
void SaySmiths(std::string_view message);
// Shows a page as a page key does.
void OpenSmithsPage(SmithsPage page);
// Shows the legs from the one flown to on.
void OpenSmithsLegs(LegsMode mode);

// A decimal number and nothing else, "12", "-4.5", ".3"; false, with `value` unchanged, for others.
bool ReadSmithsNumber(std::string_view text, double& value);

// PREV PAGE (-1) and NEXT PAGE (1), on the unit and on the computer keyboard.
void PressSmithsPaging(std::int32_t step);
void TypeSmithsCharacter(char character);
// Nothing, or blanks only.
inline bool IsSmithsBlank(std::string_view text) {
    return text.find_first_not_of(' ') == std::string_view::npos;
}
void PressSmithsClear();
void ToggleSmithsKeyboard();

}  // namespace avq1
