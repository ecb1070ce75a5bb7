// cdu_smiths/smiths.h - the Smiths-style unit: its state, keys and screen.
//
// One state for both gauges, SMITHS_FMS and SMITHS_FMS_BR; see cdu/unit.h for how keys, pages and
// painting meet. The pilot types into the scratchpad; a line key then gives what was typed to its
// field. A message stands in the scratchpad's place until CLR takes it away; "DELETE" there makes
// the next line key delete. The screen is 282 x 245 design units.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "cdu/list_view.h"
#include "cdu/unit.h"
#include "cdu_smiths/smiths_keys.h"
#include "drawing/surface.h"
#include "guidance/guidance_events.h"
#include "simlink/keyboard.h"

namespace avq1 {

enum SmithsPage : std::int32_t {
    kSmithsStoredPlans = 1,
    kSmithsPerfInit = 3,
    kSmithsLegs = 6,
    kSmithsSelectWaypoint = 9,
    kSmithsDepartures = 10,
    kSmithsArrivals = 11,
    kSmithsApproachRef = 12,
    kSmithsRoute = 22,
    kSmithsIndex = 23,
    kSmithsDepArr = 24,
    kSmithsIdent = 25,
    kSmithsPos = 26,
    kSmithsTakeoffRef = 27,
    kSmithsRefNavData = 28,
    kSmithsNavSummary = 29,
    kSmithsNavStatus = 31,
    kSmithsProgress = 33,
    kSmithsClimb = 34,
    kSmithsCruise = 35,
    kSmithsDescent = 36,
    kSmithsFixInfo = 37,
    kSmithsForecasts = 38,
    kSmithsHold = 39,
};

// The pages that have pages, each with its own counter.
enum class SmithsCounter : std::uint8_t {
    StoredPlans,
    PerfInit,
    Legs,
    SelectWaypoint,
    Departures,
    Arrivals,
    Route,
    Pos,
    NavSummary,
    NavStatus,
    Progress,
    FixInfo,
    Hold,
    kCount,
};

// What a line key of RTE LEGS chooses a leg for.
enum class LegsMode : std::uint8_t { Normal, DirectTo, Hold };

struct SmithsState : CduState {
    SubPage& Counter(SmithsCounter counter) { return subPage[static_cast<std::size_t>(counter)]; }

    std::array<SubPage, static_cast<std::size_t>(SmithsCounter::kCount)> subPage;
    std::string scratchpad;  // at most kSmithsScratchpadLength characters
    std::string message;     // stands in the scratchpad's place
    LegsMode legsMode = LegsMode::Normal;
    bool execPressed = false;  // since the last draw
    std::int32_t editing = 0;  // 1 while the unit has the computer keyboard
};

inline constexpr std::size_t kSmithsScratchpadLength = 24;
inline constexpr std::string_view kSmithsDelete = "DELETE";

extern SmithsState smiths;

// The install event of one of the unit's gauges: IDENT, unless a page is shown already.
void InstallSmiths();

// Draws the unit's screen when something changed since the last painted frame.
void DrawSmiths(const DrawTarget& target);

// The annunciators of the bezel.
bool SmithsExecLit();
bool SmithsMessageLit();

// Listens to guidance: of the pages of climb, cruise and descent the one of the phase is shown. The
// descent looked at in the climb stays when cruise begins.
void NoteSmithsPhase(const GuidanceReport& report);

// Takes what was typed on the computer keyboard; before each draw.
void PollSmithsKeyboard();

extern const KeyboardUser kSmithsKeyboard;

}  // namespace avq1
