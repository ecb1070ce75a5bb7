// cdu_gns/gns.h - the GNS-style unit: its state, keys and screen.
//
// One state for both gauges, GNSXLS and GNSXLS_LM; see cdu/unit.h for how keys, pages and painting
// meet and cdu/line_select.h for how lines are selected and typed into. Altitudes are feet.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/key_area.h"
#include "cdu/line_select.h"
#include "cdu/list_view.h"
#include "cdu/unit.h"
#include "drawing/surface.h"
#include "flightplan/flight_plan.h"
#include "simlink/keyboard.h"

namespace avq1 {

enum GnsPage : std::int32_t {
    kGnsPlan = 1,
    kGnsDirect = 7,
    kGnsDatabase = 8,
    kGnsNavigation = 9,
    kGnsDeparture = 10,
    kGnsArrival = 11,
    kGnsApproach = 12,
    kGnsAirway = 13,
    kGnsSave = 14,
    kGnsVnav = 15,
    kGnsVnavData = 16,
    kGnsCrossing = 17,
    kGnsHold = 18,
    kGnsFuel = 19,
    kGnsPilotPoint = 20,
    kGnsOffset = 21,
};

enum GnsPlanView : std::int32_t { kActiveView = 1, kStoredView = 2 };

// The pages that have pages, each with its own counter.
enum class GnsCounter : std::uint8_t {
    ActivePlan,
    List,
    StoredPlan,
    Database,
    Direct,
    Departure,
    Arrival,
    Approach,
    Airway,
    Navigation,
    Vnav,
    Fuel,
    Offset,
    kCount,
};

// Right column of the active plan, in the order in which CLR steps it.
enum GnsColumn : std::int32_t { kColumnEte = 1, kColumnEta = 2, kColumnDis = 3, kColumnAlt = 4 };

struct GnsState : CduState, LineSelection {
    GnsState();

    SubPage& Counter(GnsCounter counter) { return subPage[static_cast<std::size_t>(counter)]; }

    std::int32_t planView = kStoredView;
    std::int32_t storedPlanOpen = 0;    // 1 = the contents of the stored plan that was opened
    std::int32_t storedPlanNumber = 0;  // of the plan opened, in the list, from 1
    bool listWanted = false;            // the list is to be read anew when it is shown
    std::array<SubPage, static_cast<std::size_t>(GnsCounter::kCount)> subPage;
    std::int32_t returnPage = kGnsPlan;  // where a waypoint or procedure page goes back to
    std::string notice;                  // in the title's place until the next key
    std::int32_t columnMode = kColumnEte;
    std::int32_t pendingColumnMode = kColumnEte;
    bool deletePending = false;  // the selected waypoint line shows "DELETE?"
    std::int32_t editing = 0;    // 1 while the unit has the computer keyboard
    bool enteredOnLm = false;    // ENTER was pressed on the GNSXLS_LM gauge
};

extern GnsState gns;

inline constexpr int kGnsKeyCount = 59;
extern const std::array<KeyArea, kGnsKeyCount> kGnsKeys;
extern const std::array<KeyArea, kGnsKeyCount> kGnsLmKeys;

// The install event of the GNSXLS gauge: the list of stored plans is shown.
void InstallGns();

// Draws the unit's screen when something changed since the last painted frame.
void DrawGns(const DrawTarget& target);

// What a character key does; taken only while a line waits for an entry.
void TypeGnsCharacter(std::string_view character);

// Takes what was typed on the computer keyboard; before each draw.
void PollGnsKeyboard();

extern const KeyboardUser kGnsKeyboard;

}  // namespace avq1
