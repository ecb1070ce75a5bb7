#include "flightplan/hold_pattern.h"

#include <algorithm>

#include "base/module_state.h"
#include "flightplan/flight_plan.h"
#include "settings/aircraft_performance.h"

namespace avq1 {

HoldList holdList;
HoldFlight holdFlight;

namespace {

const StateReset resetHolds([] {
    holdList = {};
    holdFlight = {};
});

// Takes record `number` out of the list. Only record 1 is ever flown, so only its removal touches
// the flight state.
void RemoveRecord(std::int32_t number) {
    for (std::int32_t i = number; i < holdList.count; ++i) {
        holdList.holds[i] = holdList.holds[i + 1];
    }
    holdList.holds[holdList.count] = HoldPattern{};
    --holdList.count;
    if (number == 1) {
        if (holdFlight.holdActive == 1 && holdFlight.holdTargetCorner > 0) {
            holdFlight.holdState = HoldState::RemovedWhileFlown;
        }
        holdFlight.holdTargetCorner = 0;
    }
    if (holdList.count == 0) {
        holdFlight.holdActive = 0;
    }
}

// Removes every record for which `unwanted` holds, the last first so that numbers stay valid.
template <typename Predicate>
void RemoveRecordsIf(Predicate unwanted) {
    for (std::int32_t i = holdList.count; i >= 1; --i) {
        if (unwanted(holdList.holds[i])) {
            RemoveRecord(i);
        }
    }
}

void MarkRemovedInModification(HoldPattern& hold) {
    hold.pendingFixIndex = hold.fixIndex > 0 ? kHoldRemoved : 0;
}

bool BelongsToNoPlan(const HoldPattern& hold) {
    return hold.fixIndex <= 0 && hold.pendingFixIndex <= 0;
}

}  // namespace

HoldPattern NewHold() {
    HoldPattern hold;
    hold.legMinutes = performance.holdLegMinutes;
    return hold;
}

bool AddHold(const HoldPattern& hold) {
    if (holdList.count >= kHoldCapacity) {
        return false;
    }
    holdList.holds[++holdList.count] = hold;
    return true;
}

std::int32_t HoldNumberAt(std::int32_t fixIndex) {
    for (std::int32_t i = 1; i <= holdList.count; ++i) {
        if (fixIndex > 0 && holdList.holds[i].fixIndex == fixIndex) {
            return i;
        }
    }
    return 0;
}

const HoldShape& PendingShape(const HoldPattern& hold) {
    return hold.shapeIsPending ? hold.pendingShape : hold;
}

void PutHoldFirst(std::int32_t number) {
    const auto first = holdList.holds.begin() + 1;
    std::rotate(first, first + number - 1, first + number);
}

void DeleteHold(std::int32_t fixIndex) {
    const std::int32_t number = HoldNumberAt(fixIndex);
    if (number == 0) {
        return;
    }
    const std::int32_t pendingFixIndex = holdList.holds[number].pendingFixIndex;
    RemoveRecord(number);
    if (activePlan.Holds(fixIndex)) {
        activePlan.Edit(fixIndex).hasHold = 0;
    }
    if (pendingFixIndex > 0 && modifiedPlan.Holds(pendingFixIndex)) {
        modifiedPlan.Edit(pendingFixIndex).hasHold = 0;
    }
}

void DeletePendingHold(std::int32_t pendingFixIndex) {
    for (std::int32_t i = 1; i <= holdList.count; ++i) {
        HoldPattern& hold = holdList.holds[i];
        if (pendingFixIndex > 0 && hold.pendingFixIndex == pendingFixIndex) {
            MarkRemovedInModification(hold);
            if (modifiedPlan.Holds(pendingFixIndex)) {
                modifiedPlan.Edit(pendingFixIndex).hasHold = 0;
            }
            RemoveRecordsIf(BelongsToNoPlan);
            return;
        }
    }
}

void DeleteAllPendingHolds() {
    for (std::int32_t i = 1; i <= holdList.count; ++i) {
        MarkRemovedInModification(holdList.holds[i]);
    }
    RemoveRecordsIf(BelongsToNoPlan);
}

void DeleteAllHolds() {
    for (std::int32_t i = 1; i <= holdList.count; ++i) {
        const HoldPattern& hold = holdList.holds[i];
        if (activePlan.Holds(hold.fixIndex)) {
            activePlan.Edit(hold.fixIndex).hasHold = 0;
        }
        if (modifiedPlan.Holds(hold.pendingFixIndex)) {
            modifiedPlan.Edit(hold.pendingFixIndex).hasHold = 0;
        }
    }
    holdList = {};
    holdFlight = {};
}

void RenumberHolds(std::int32_t from, std::int32_t to) {
    for (std::int32_t i = 1; i <= holdList.count; ++i) {
        if (from > 0 && holdList.holds[i].fixIndex == from) {
            holdList.holds[i].fixIndex = to;
        }
    }
}

void RenumberPendingHolds(std::int32_t from, std::int32_t to) {
    for (std::int32_t i = 1; i <= holdList.count; ++i) {
        if (from > 0 && holdList.holds[i].pendingFixIndex == from) {
            holdList.holds[i].pendingFixIndex = to;
        }
    }
}

void CopyHoldsToPending() {
    for (std::int32_t i = 1; i <= holdList.count; ++i) {
        holdList.holds[i].pendingFixIndex = holdList.holds[i].fixIndex;
        holdList.holds[i].shapeIsPending = false;
    }
    RemoveRecordsIf(BelongsToNoPlan);
}

void ExecutePendingHolds() {
    RemoveRecordsIf([](const HoldPattern& hold) { return hold.pendingFixIndex <= 0; });
    for (std::int32_t i = 1; i <= holdList.count; ++i) {
        HoldPattern& hold = holdList.holds[i];
        hold.fixIndex = hold.pendingFixIndex;
        hold.pendingFixIndex = 0;
        static_cast<HoldShape&>(hold) = HoldShape(PendingShape(hold));
        hold.shapeIsPending = false;
    }
}

}  // namespace avq1
