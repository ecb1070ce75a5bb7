// flightplan/hold_pattern.h - the holding patterns attached to plan entries, and how the first of
// them is being flown.
//
// Holds are numbered from 1 and only the first is flown. They refer to plan entries by index, one
// into the active and one into the modified plan; every operation that moves entries renumbers
// them. Guidance lays out and flies the pattern: what is planned and its flight are two records,
// so that a flight can end and the hold stay. Positions are decimal degrees, distances nm.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace avq1 {

inline constexpr std::int32_t kHoldCapacity = 4;
inline constexpr std::int32_t kHoldRemoved = -1;

inline constexpr double kNoHoldHeading = -999;

enum class HoldTurn : std::int32_t { Right = 1, Left = 2 };

enum class HoldState : std::int32_t {
    Normal = 0,
    LnavOff = 1,            // its flight ended because LNAV was disengaged
    ExitRequested = 2,      // ends at the first corner, just beyond the fix
    Exiting = 3,            // ends at the next corner
    RemovedWhileFlown = 4,  // LNAV may pass the fix
};

struct HoldCorner {
    double latitude = 0;
    double longitude = 0;
    std::string name;
};

// How a hold is flown.
struct HoldShape {
    HoldTurn turnDirection = HoldTurn::Right;
    double legDistanceNm = 0;
    double legMinutes = 1.0;
    double inboundCourseMag = 0;
    std::int32_t legByTime = 1;
    std::int32_t exitAutomatic = 0;  // 1 = left after one circuit

    friend bool operator==(const HoldShape&, const HoldShape&) = default;
};

struct HoldPattern : HoldShape {
    std::int32_t fixIndex = 0;  // in the active plan; 0 = none
    // In the modified plan; 0 = none, kHoldRemoved = taken out there, goes when the plan is
    // executed.
    std::int32_t pendingFixIndex = 0;
    // The modification flies it as `pendingShape`; else both plans fly it alike.
    bool shapeIsPending = false;
    HoldShape pendingShape = {};
    // When clearance to go on is expected: UTC minutes of the day, -1 = unknown. Kept for the
    // pilot.
    std::int32_t clearanceMinutes = -1;
    std::array<HoldCorner, 5> corners;  // 0 is the fix
};

struct HoldList {
    std::array<HoldPattern, kHoldCapacity + 1> holds;  // from 1
    std::int32_t count = 0;
};

// The flight of the first hold.
struct HoldFlight {
    std::int32_t holdActive = 0;        // 1 = the pattern is being flown, or is next
    std::int32_t holdTargetCorner = 0;  // 1 to 4; 0 = not yet in the pattern
    std::int32_t previousCorner = 0;
    HoldState holdState = HoldState::Normal;
    double lastHoldHeading = kNoHoldHeading;  // degrees magnetic, last sent
};

extern HoldList holdList;
extern HoldFlight holdFlight;

// A new hold with the aircraft's own leg time.
HoldPattern NewHold();

// Adds a hold behind the others. False, and nothing changed, when the list is full.
bool AddHold(const HoldPattern& hold);

// The number of the hold at this entry of the active plan; 0 without one.
std::int32_t HoldNumberAt(std::int32_t fixIndex);

// How the modified plan flies the hold.
const HoldShape& PendingShape(const HoldPattern& hold);

// Makes hold `number`, which exists, the first; those before it move back by one.
void PutHoldFirst(std::int32_t number);

// Removes the hold at this entry of the active plan; a first hold that is being flown leaves the
// state RemovedWhileFlown. Nothing happens without one.
void DeleteHold(std::int32_t fixIndex);
// Removes the hold at this entry of the modified plan. One that the active plan has stays there,
// and may be being flown, until the modification is executed.
void DeletePendingHold(std::int32_t pendingFixIndex);
// The modified plan is replaced as a whole: none of its entries has a hold any more.
void DeleteAllPendingHolds();
void DeleteAllHolds();  // and the flight of the first
// An active-plan entry moved from one index to another.
void RenumberHolds(std::int32_t from, std::int32_t to);
// A modified-plan entry moved from one index to another.
void RenumberPendingHolds(std::int32_t from, std::int32_t to);
// A modification starts anew from the active plan; holds that only the old one had are dropped.
void CopyHoldsToPending();
// Every positive pendingFixIndex becomes the fixIndex and is cleared, and what the modification
// changed of a hold is flown from now on. Holds that the modified plan does not have go with the
// plan they belonged to.
void ExecutePendingHolds();

}  // namespace avq1
