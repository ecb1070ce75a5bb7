#include "flightplan/plan_edit.h"

#include <algorithm>
#include <string>
#include <utility>

#include "base/text.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/pilot_points.h"
#include "flightplan/plan_moves.h"
#include "geometry/geometry.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr double kLeastFuelLoad = 5;
constexpr std::size_t kRouteViewCapacity = 200;
constexpr std::string_view kHoldPresentPosition = "HOLD PPOS";

void OpenEntry(std::int32_t position) {
    OpenPlanEntry(modifiedPlan, position);
}

// Where an insertion goes: without a position, to the first place behind the departure.
std::int32_t InsertionPlace(std::int32_t position) {
    const std::int32_t wanted = position == kNoWaypoint ? 1 : position;
    return std::clamp(wanted, 0, modifiedPlan.lastIndex + 1);
}

// The tracked entry may have been the last one and gone.
void KeepTrackedIndexInPlan() {
    if (planBook.trackedIndex != kNoWaypoint && planBook.trackedIndex > modifiedPlan.lastIndex) {
        planBook.trackedIndex = modifiedPlan.lastIndex >= 0 ? modifiedPlan.lastIndex : kNoWaypoint;
    }
}

bool IsSamePoint(const PlanWaypoint& a, const PlanWaypoint& b) {
    return a.ident == b.ident && a.latitude == b.latitude && a.longitude == b.longitude;
}

bool HasResult(std::int32_t result) {
    return result >= 1 &&
           static_cast<std::size_t>(result) < navDatabase.searchResults.records.size();
}

PlanWaypoint EntryFromResult(const PointRecord& record) {
    PlanWaypoint entry;
    entry.ident = record.ident;
    entry.latitude = record.latitude;
    entry.longitude = record.longitude;
    entry.type = IsPilotPoint(record) ? kPilotPointType : PlanTypeOf(record.kind);
    entry.frequency = record.frequency;
    return entry;
}

// Turns a reference into the point at the pending bearing and distance from it.
void ApplyPendingBearing(PlanWaypoint& entry) {
    double latitude = 0;
    double longitude = 0;
    PointAtDistance(entry.latitude, entry.longitude,
                    planBook.pendingBearing + aircraft.magneticVariation,
                    planBook.pendingDistanceNm, latitude, longitude);
    entry.latitude = latitude;
    entry.longitude = longitude;
    entry.ident = NextPilotPointName(std::string_view(entry.ident).substr(0, 3));
    entry.type = kPilotPointType;
    entry.frequency.clear();
    planBook.pendingBearing = -1;
    planBook.pendingDistanceNm = -1;
}

}  // namespace

std::string_view PlanTypeOf(PointKind kind) {
    switch (kind) {
        case PointKind::Vor:
            return "VOR";
        case PointKind::Navaid:
            return "NDB";
        case PointKind::Intersection:
            return "INT";
        case PointKind::Airport:
            return "APT";
        case PointKind::None:
            break;
    }
    return kPilotPointType;
}

void CopyActiveToModified() {
    modifiedPlan = activePlan;
    for (std::int32_t i = 0; i <= modifiedPlan.lastIndex; ++i) {
        modifiedPlan.Edit(i).ataText.clear();
    }
    planBook.trackedIndex = planBook.activeIndex;
    CopyHoldsToPending();
}

bool InsertWaypoint(std::int32_t position) {
    const std::int32_t at = InsertionPlace(position <= 0 ? 1 : position);
    const bool needsGap = at < modifiedPlan.lastIndex;
    if (!HasResult(1) || modifiedPlan.lastIndex + (needsGap ? 2 : 1) > kMaxPlanIndex) {
        return false;
    }
    OpenEntry(at);
    modifiedPlan.Edit(at) = EntryFromResult(navDatabase.searchResults[1]);
    if (needsGap) {
        OpenEntry(at + 1);
        modifiedPlan.Edit(at + 1) = Discontinuity();
    }
    NoteEdit();
    return true;
}

bool InsertNamedPoint(std::int32_t position, std::int32_t result) {
    if (!HasResult(result) || modifiedPlan.IsFull()) {
        return false;
    }
    const std::int32_t at = InsertionPlace(position);
    PlanWaypoint entry = EntryFromResult(navDatabase.searchResults[result]);
    if (planBook.pendingBearing >= 0 && planBook.pendingDistanceNm >= 0) {
        ApplyPendingBearing(entry);
    }
    if (entry.ident == kHoldPresentPosition) {
        entry.ident = NextPilotPointName(kPilotPointPrefix);
        entry.type = kPilotPointType;
        entry.procedure = kHoldPresentPosition;
    }
    OpenEntry(at);
    modifiedPlan.Edit(at) = std::move(entry);
    NoteEdit();
    return true;
}

bool InsertAirwayPlaceholder(std::int32_t position) {
    if (modifiedPlan.IsFull()) {
        return false;
    }
    const std::int32_t at = InsertionPlace(position);
    PlanWaypoint entry;
    entry.ident = kAirwayPlaceholder;
    entry.type = "OAWY";
    entry.via = planBook.airwayText;
    entry.speed = -1;
    OpenEntry(at);
    modifiedPlan.Edit(at) = std::move(entry);
    NoteEdit();
    return true;
}

void RemovePlaceholders() {
    std::int32_t kept = 0;
    for (std::int32_t i = 0; i <= modifiedPlan.lastIndex; ++i) {
        if (modifiedPlan.entries[i].ident != kAirwayPlaceholder) {
            if (kept != i) {
                MovePlanEntry(modifiedPlan, i, kept);
            }
            ++kept;
        } else if (planBook.trackedIndex == i) {
            planBook.trackedIndex = kept;  // the entry after the placeholder comes to stand here
        }
    }
    modifiedPlan.CutTo(kept - 1);
    KeepTrackedIndexInPlan();
}

void DeleteWaypoint(std::int32_t position, bool force) {
    if (modifiedPlan.lastIndex <= 1 || !modifiedPlan.Holds(position)) {
        return;
    }
    DeletePendingHold(position);
    if (position < 2 || position >= modifiedPlan.lastIndex - 1 || force) {
        for (std::int32_t i = position + 1; i <= modifiedPlan.lastIndex; ++i) {
            MovePlanEntry(modifiedPlan, i, i - 1);
        }
        modifiedPlan.CutTo(modifiedPlan.lastIndex - 1);
        KeepTrackedIndexInPlan();
    } else {
        modifiedPlan.Edit(position) = Discontinuity();
    }
    NoteEdit();
}

void DeleteRange(std::int32_t first, std::int32_t beyond) {
    if (first < 0 || beyond <= first || beyond > modifiedPlan.lastIndex + 1) {
        return;
    }
    for (std::int32_t i = beyond; i <= modifiedPlan.lastIndex; ++i) {
        modifiedPlan.Edit(i - (beyond - first)) = std::move(modifiedPlan.Edit(i));
    }
    modifiedPlan.CutTo(modifiedPlan.lastIndex - (beyond - first));
    NoteEdit();
    planBook.airwayText.clear();
    BuildRouteView();
}

void BuildRouteView() {
    std::string_view currentVia;
    planBook.routeView.clear();
    for (std::int32_t i = 1; i < modifiedPlan.lastIndex; ++i) {
        const PlanWaypoint& entry = modifiedPlan.entries[i];
        if (!entry.via.empty() && entry.via == currentVia && entry.ident != kAirwayPlaceholder) {
            planBook.routeView.back().to = entry.ident;
            continue;
        }
        currentVia = entry.via.empty() ? std::string_view("DIRECT") : std::string_view(entry.via);
        if (planBook.routeView.size() < kRouteViewCapacity) {
            planBook.routeView.push_back({entry.ident, std::string(currentVia)});
        }
    }
}

void TrackPassage(const PlanWaypoint& passed, const PlanWaypoint& next) {
    std::int32_t& tracked = planBook.trackedIndex;
    const bool isOfActiveRoute =
        planBook.status == RouteStatus::Active || planBook.status == RouteStatus::Modified;
    if (!isOfActiveRoute || !modifiedPlan.Holds(tracked) ||
        !IsSamePoint(modifiedPlan.entries[tracked], passed)) {
        return;
    }
    std::int32_t ahead = tracked + 1;
    while (ahead <= modifiedPlan.lastIndex && !IsSamePoint(modifiedPlan.entries[ahead], next)) {
        ++ahead;
    }
    tracked =
        ahead <= modifiedPlan.lastIndex ? ahead : std::min(tracked + 1, modifiedPlan.lastIndex);
}

void NoteEdit() {
    if (planBook.status == RouteStatus::None || planBook.status == RouteStatus::Active) {
        AdvanceRouteStatus();
    }
}

void RequestPlanFuel() {
    if (settings.LoadFuelonFlightPlanLoad == 1 && planBook.fuelTotal >= kLeastFuelLoad) {
        planBook.fuelLoadRequested = planBook.fuelTotal;
    }
}

void AdvanceRouteStatus() {
    switch (planBook.status) {
        case RouteStatus::None:
            planBook.status = RouteStatus::BeingBuilt;
            if (OnGround()) {
                RequestPlanFuel();
                planBook.reserveFuelInUse = planBook.reserveFuel;
            }
            break;
        case RouteStatus::BeingBuilt:
            planBook.status = RouteStatus::AwaitsExecution;
            break;
        case RouteStatus::AwaitsExecution:
        case RouteStatus::Modified:
            planBook.status = RouteStatus::Active;
            break;
        case RouteStatus::Active:
            planBook.status = RouteStatus::Modified;
            break;
    }
}

}  // namespace avq1
