// cdu/list_view.h - a list longer than the screen: one cursor, one pager.
//
// Rows are counted from 0, pages from 1. A list may shrink while it is shown: Move brings cursor
// and first row back inside it.
#pragma once

#include <algorithm>
#include <cstdint>

#include "cdu/unit_input.h"

namespace avq1 {

struct ListView {
    std::int32_t row = 0;    // the highlighted row
    std::int32_t first = 0;  // the first row shown

    // Moves the cursor within 0..count-1 and scrolls so that it stays among the shown rows.
    void Move(std::int32_t rows, std::int32_t count, std::int32_t shownRows) {
        row = std::clamp(row + rows, 0, std::max(count - 1, 0));
        if (first > count - 1) {  // the list has become shorter
            first = std::max(count - shownRows, 0);
        }
        first = std::clamp(first, std::max(row - shownRows + 1, 0), row);
    }

    // Calls put(slot, row, highlighted) for each row on the screen; slots count from 0.
    template <typename Put>
    void ForEachShown(std::int32_t count, std::int32_t shownRows, Put put) const {
        for (std::int32_t slot = 0; slot < shownRows && first + slot < count; ++slot) {
            put(slot, first + slot, first + slot == row);
        }
    }
};

// The rows a list's cursor is to move: PREV and NEXT and the keyboard's arrows one, its page keys
// `pageRows`.
inline std::int32_t RowsToMove(const UnitInput& input, std::int32_t pageRows) {
    return (input.nextPressed || input.downAsked) - (input.prevPressed || input.upAsked) +
           pageRows * (input.pageDownAsked - input.pageUpAsked);
}

// The same and the unit's own up and down arrows, for lists that have no value to set by them.
inline std::int32_t RowsToMoveWithArrows(const UnitInput& input, std::int32_t pageRows) {
    return RowsToMove(input, pageRows) + (input.arrowKey == UnitArrow::Down) -
           (input.arrowKey == UnitArrow::Up);
}

// How many pages `count` lines take, at least 1.
inline std::int32_t PageCount(std::int32_t count, std::int32_t linesPerPage) {
    return std::max((count + linesPerPage - 1) / linesPerPage, 1);
}

// PREV (-1) and NEXT (1) step a page counter within 1..pageCount and wrap at both ends; 0 only
// brings a counter back inside.
inline std::int32_t StepPage(std::int32_t page, std::int32_t step, std::int32_t pageCount) {
    const std::int32_t stepped = std::clamp(page, 1, pageCount) + step;
    return stepped > pageCount ? 1 : stepped < 1 ? pageCount : stepped;
}

// "n/m" of a page that has several.
struct SubPage {
    std::int32_t n = 1;
    std::int32_t m = 1;  // computed by the page at each draw

    void Step(std::int32_t step) { n = StepPage(n, step, m); }
    // How many there are now; brings the shown one back inside.
    SubPage& SetCount(std::int32_t count) {
        m = count;
        n = StepPage(n, 0, count);
        return *this;
    }
};

}  // namespace avq1
