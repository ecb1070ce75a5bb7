// cdu_gns/mcu_pages.h - the pages of the compact unit, one row each.
//
// A page is a function that handles what the keys left behind and one that composes the screen.
// To add a page: write the two functions and add their row to kMcuPages in mcu.cpp.
#pragma once

#include <cstdint>
#include <string>

#include "cdu_gns/mcu.h"
#include "cdu_gns/mcu_screen.h"

namespace avq1 {

struct McuPageRow {
    McuPage page;
    void (*handleKeys)();
    void (*compose)(McuScreen& screen);
};

void HandleToKeys();
void ComposeTo(McuScreen& screen);
void HandleFplnKeys();
void ComposeFpln(McuScreen& screen);
void HandleAltFlKeys();
void ComposeAltFl(McuScreen& screen);
void HandleLegsKeys();
void ComposeLegs(McuScreen& screen);
void HandleAptKeys();
void ComposeApt(McuScreen& screen);
void HandleDirtoKeys();
void ComposeDirto(McuScreen& screen);

// ---- what several pages need ----

// Up and down arrow, PREV and NEXT and the keyboard's keys, as rows to move a list's cursor: -1, 1
// or a whole page. Takes the keyboard's requests. `withArrows` is false where the arrows set a
// value.
std::int32_t McuRowsToMove(bool withArrows);

// Moves a cursor within 0..count-1 and scrolls the list so that it stays among the shown rows.
void MoveMcuCursor(std::int32_t& row, std::int32_t& first, std::int32_t rows, std::int32_t count);

// The altitude entry: left and right choose the step, up and down change mcu.newAltitude.
void StepMcuAltitude();

// ">" before the highlighted row of a list, and "3/12" at the right end of the title row.
void PutMcuCursor(McuScreen& screen, int y);
void PutMcuPosition(McuScreen& screen, std::int32_t row, std::int32_t count);

// The message line at the bottom: the keyboard's failure, else the last line of the message list.
// The list gives way while text is typed: the entry frame would run through it.
void PutMcuMessage(McuScreen& screen);

// Whether the page shown takes text from the computer keyboard, and the text it goes to.
bool McuPageTakesText();
std::string& McuTypedText();

void EndMcuEditing();

}  // namespace avq1
