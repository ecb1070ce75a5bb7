// cdu_gns/gns_pages.h - the pages of the GNS-style unit, one file each, and what they share.
//
// The screen is 495 x 400 design units, a character 20 units wide; rows stand 40 units apart.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "cdu/list_view.h"
#include "cdu/unit.h"
#include "cdu_gns/gns.h"

namespace avq1 {

extern const PageRow kGnsPlanPage;
extern const PageRow kGnsDirectPage;
extern const PageRow kGnsDatabasePage;
extern const PageRow kGnsNavigationPage;
extern const PageRow kGnsDeparturePage;
extern const PageRow kGnsArrivalPage;
extern const PageRow kGnsApproachPage;
extern const PageRow kGnsAirwayPage;
extern const PageRow kGnsSavePage;
extern const PageRow kGnsVnavPage;
extern const PageRow kGnsVnavDataPage;
extern const PageRow kGnsCrossingPage;
extern const PageRow kGnsHoldPage;
extern const PageRow kGnsFuelPage;
extern const PageRow kGnsPilotPointPage;
extern const PageRow kGnsOffsetPage;

enum GnsStyle : std::uint8_t {
    kGnsLabel,      // white: titles and labels
    kGnsData,       // green
    kGnsPrompt,     // yellow
    kGnsActive,     // magenta: the waypoint flown to
    kGnsPassed,     // grey: the waypoint flown from
    kGnsMark,       // blue: a waypoint with an altitude restriction
    kGnsNote,       // blue, small: what belongs to a waypoint
    kGnsSmall,      // white, small
    kGnsEntry,      // black: text on the highlight
    kGnsHighlight,  // yellow, filled
    kGnsBlank,      // black, filled: takes the title away
    kGnsNotice,     // yellow, small
    kGnsSmallPrompt,
};

inline constexpr int kGnsCharacterWidth = 20;
inline constexpr int kGnsCharacterHeight = 33;
inline constexpr int kGnsLabelX = 30;
inline constexpr std::size_t kGnsIdentLength = 6;
// Rows from the one below the title on.
inline constexpr std::array<std::int16_t, 9> kGnsRowY = {40, 80, 120, 160, 200, 240, 280, 320, 360};

// Selects nothing, on any page, and forgets what hung on the selection.
void ClearGnsSelections();
// The selected line of the page shown; null without.
const LineRow* GnsSelectedLine();
// Whether CLR belongs to the selected line of the page shown.
bool GnsClearActs();
// What CLR does: the selected line's, else it takes a character back.
void PressGnsClear();
// Shows a page with nothing selected.
void OpenGnsPage(GnsPage page);
// Steps the counter of the page shown.
void StepGnsPage(std::int32_t step);
// What PREV (-1) and NEXT (1) do, on the unit and on the computer keyboard.
void PressGnsPaging(std::int32_t step);

// Each opens its page as the pilot reached it.
void OpenGnsCrossing();  // of the selected waypoint
void OpenGnsCrossingOf(std::int32_t entry);
void OpenGnsDirect();
void OpenGnsHold();
void OpenGnsProcedure(GnsPage page);
void OpenGnsSave();
void ToggleGnsKeyboard();

// The counter of page 1 as it is shown.
GnsCounter GnsPlanCounter();
// Sets how many pages there are and brings the shown one back inside.
SubPage& SetGnsPageCount(GnsCounter counter, std::int32_t count);

// What CLR chooses from, in its order: the one after `value`, around.
std::int32_t NextChoice(std::int32_t value, std::int32_t first, std::int32_t last);

}  // namespace avq1
