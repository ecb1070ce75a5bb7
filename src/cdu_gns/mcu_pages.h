// cdu_gns/mcu_pages.h - the pages of the compact unit, one file each, and what they share.
//
// The screen is 239 x 78 design units; texts stand on the rows of kMcuRowY, lists on kMcuListY.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "cdu/unit.h"
#include "cdu_gns/mcu.h"

namespace avq1 {

extern const PageRow kMcuToPage;
extern const PageRow kMcuFplnPage;
extern const PageRow kMcuAptPage;
extern const PageRow kMcuLegsPage;
extern const PageRow kMcuDirtoPage;
extern const PageRow kMcuAltFlPage;

inline constexpr int kMcuColumnWidth = 17;  // two characters: texts beside a cursor start here
inline constexpr int kMcuListRows = 4;
inline constexpr std::array<std::int16_t, 6> kMcuRowY = {0, 12, 24, 36, 48, 62};
inline constexpr std::array<std::int16_t, kMcuListRows> kMcuListY = {13, 25, 37, 49};

enum McuStyle : std::uint8_t {
    kMcuTitle,      // amber, bold
    kMcuData,       // pale green
    kMcuHighlight,  // amber
    kMcuActive,     // magenta, bold: the leg being flown
    kMcuStatus,     // amber, proportional: a full status line fits the width
    kMcuFrame,      // purple
};

// The altitude entry: left and right choose the step, up and down change mcu.newAltitude.
void StepMcuAltitude(UnitArrow arrow);

// A list's style of a row, and ">" before the highlighted one.
McuStyle PutMcuCursor(Screen& screen, int y, bool highlighted);
// "3/12" at the right end of the title row.
void PutMcuPosition(Screen& screen, std::int32_t row, std::int32_t count);

// The message line at the bottom: the keyboard's failure, else the last line of the message list.
// The list gives way while text is typed: the entry frame would run through it.
void PutMcuMessage(Screen& screen);

// Whether the page shown takes text from the computer keyboard, and the text it goes to.
bool McuPageTakesText();
std::string& McuTypedText();

void EndMcuEditing();

}  // namespace avq1
