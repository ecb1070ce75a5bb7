// flightplan/hold_pattern.h - the holding patterns attached to plan entries.
//
// Holds are numbered from 1 and only the first is flown. They refer to plan entries by index, one
// into the active and one into the modified plan; every operation that moves entries renumbers
// them. Guidance lays out and flies the pattern.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace avq1 {

inline constexpr std::int32_t kHoldCapacity = 4;
inline constexpr std::int32_t kHoldRemoved = -1;

// How the first hold is being flown.
enum HoldState : std::int32_t {
    kHoldNormal = 0,
    kHoldLnavOff = 1,
    kHoldExitRequested = 2,
    kHoldExiting = 3,
    kHoldRemovedWhileFlown = 4,
};

struct HoldCorner {
    double latitude = 0;
    double longitude = 0;
    std::string name;
};

struct HoldPattern {
    std::int32_t fixIndex = 0;  // in the active plan; 0 = none
    // In the modified plan; 0 = none, kHoldRemoved = taken out there, goes when the plan is
    // executed.
    std::int32_t pendingFixIndex = 0;
    std::int32_t turnDirection = 1;  // 1 right turns, else left
    double legDistanceNm = 0;
    double legMinutes = 1.0;
    double inboundCourseMag = 0;
    std::int32_t legByTime = 1;
    std::array<HoldCorner, 5> corners;  // 0 is the fix
};

struct HoldList {
    std::array<HoldPattern, kHoldCapacity + 1> holds;  // from 1
    std::int32_t count = 0;
    std::int32_t holdActive = 0;        // the pattern is being flown
    std::int32_t holdTargetCorner = 0;  // 0 = not yet in the pattern
    std::int32_t previousCorner = 0;
    std::int32_t holdState = kHoldNormal;
    double lastHoldHeading = 0;  // magnetic, last sent
};

extern HoldList holdList;

// A new hold with the aircraft's own leg time.
HoldPattern NewHold();

// Removes the hold at this entry of the active plan. Nothing happens without one.
void DeleteHold(std::int32_t fixIndex);
// Removes the hold at this entry of the modified plan. One that the active plan has stays there,
// and may be being flown, until the modification is executed.
void DeletePendingHold(std::int32_t pendingFixIndex);
// The modified plan is replaced as a whole: none of its entries has a hold any more.
void DeleteAllPendingHolds();
void DeleteAllHolds();
// An active-plan entry moved from one index to another.
void RenumberHolds(std::int32_t from, std::int32_t to);
// A modified-plan entry moved from one index to another.
void RenumberPendingHolds(std::int32_t from, std::int32_t to);
// A modification starts anew from the active plan; holds that only the old one had are dropped.
void CopyHoldsToPending();
// Every positive pendingFixIndex becomes the fixIndex and is cleared; removed holds go.
void ExecutePendingHolds();

}  // namespace avq1
