#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

#include "base/messages.h"
#include "base/text.h"
#include "flightplan/airway_entry.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_airports.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_moves.h"
#include "flightplan/procedures.h"

namespace avq1 {
namespace {

constexpr std::string_view kMissedApproachRole = "MAF";
constexpr std::string_view kSid = "SID";
constexpr std::string_view kStar = "STAR";
constexpr std::string_view kSidAndStar = "SIDSTAR";
constexpr std::string_view kApproach = "APPR";

PlanWaypoint EntryFrom(const ProcedureWaypoint& waypoint, std::string_view procedure) {
    PlanWaypoint entry;
    entry.ident = waypoint.ident;
    entry.latitude = waypoint.latitude;
    entry.longitude = waypoint.longitude;
    entry.flyover = waypoint.flyover;
    entry.procedure = procedure;
    entry.via = waypoint.viaLabel;
    entry.auxText = waypoint.roleText;
    TieToNavaid(entry);
    return entry;
}

void PlaceSlotAirport(PlanWaypoint& entry, const AirportDetail& airport) {
    entry.ident = airport.ident;
    entry.latitude = airport.latitude;
    entry.longitude = airport.longitude;
    entry.type = kAirportType;
    entry.frequency.clear();
}

// Each of these returns false when the plan is full.
bool InsertEntry(FlightPlan& plan, std::int32_t position, PlanWaypoint entry) {
    if (plan.IsFull()) {
        return false;
    }
    OpenPlanEntry(plan, position);
    plan.Edit(position) = std::move(entry);
    return true;
}

bool AppendEntry(FlightPlan& plan, PlanWaypoint entry) {
    return InsertEntry(plan, plan.lastIndex + 1, std::move(entry));
}

// The fix at which two parts of the route join stands once. One that an entry of `other` stands for
// too belongs to both procedures. What leads up to an approach keeps its last waypoint when that
// approach is replaced.
void MergeRepeated(FlightPlan& plan, std::string_view other, std::int32_t from = 1) {
    for (std::int32_t i = std::max(from, 1); i < plan.lastIndex; ++i) {
        if (plan.entries[i + 1].ident != plan.entries[i].ident) {
            continue;
        }
        PlanWaypoint& next = plan.Edit(i + 1);
        const PlanWaypoint& first = plan.entries[i];
        if (!other.empty() && first.procedure == other) {
            next.procedure = kSidAndStar;
        } else if (next.procedure == kApproach && first.procedure != kApproach) {
            next.procedure = first.procedure;
            next.via = first.via;
        }
        MergePlanEntries(plan, i);
    }
}

// The airport whose procedures are chosen, where the plan has none. A preview goes without.
void TakeChosenAirport(FlightPlan& plan, PlanAirportMode inActive, PlanAirportMode inModified) {
    if (&plan != &previewPlan) {
        SetPlanAirport(procedureChoice.airport, IsActivePlan(plan) ? inActive : inModified);
    }
    if (plan.lastIndex < 0) {
        plan.Append({});
    }
}

bool SpliceSid(FlightPlan& plan) {
    if (plan.lastIndex < 0 || plan.entries[0].type != kAirportType) {
        TakeChosenAirport(plan, PlanAirportMode::ActiveOrigin, PlanAirportMode::ModifiedOrigin);
    }
    std::int32_t kept = 1;
    while (plan.Holds(kept) && plan.entries[kept].procedure == kSid) {
        ++kept;
    }
    const bool fliesOldSid = FlownIndex(plan) >= 1 && FlownIndex(plan) < kept;
    ClosePlanEntries(plan, 1, kept);
    if (!airportSlots[kDepartureSlot].ident.empty()) {
        PlaceSlotAirport(plan.Edit(0), airportSlots[kDepartureSlot]);
    }
    std::int32_t position = 0;
    for (const ProcedureWaypoint& waypoint : procedureLists.sid) {
        if (!InsertEntry(plan, ++position, EntryFrom(waypoint, kSid))) {
            return false;
        }
    }
    MergeRepeated(plan, kStar);
    if (IsActivePlan(plan) || fliesOldSid) {
        SetFlownIndex(plan, 1);
    }
    return true;
}

// The arrival airport of slot 2, or the plan's own old last entry while that slot is empty; without
// an identifier when neither is an airport.
PlanWaypoint ArrivalAirportEntry(const PlanWaypoint& oldLast) {
    PlanWaypoint entry;
    if (!airportSlots[kArrivalSlot].ident.empty()) {
        PlaceSlotAirport(entry, airportSlots[kArrivalSlot]);
    } else if (oldLast.type == kAirportType) {
        entry = oldLast;
    }
    return entry;
}

// Without an airport in slot 2 that of the airport set last, which is the plan's.
double ArrivalElevationFt() {
    const AirportDetail& airport = airportSlots[kArrivalSlot];
    return airport.ident.empty() ? ToNumber(lastAirportElevationText) : airport.elevationFt;
}

bool AppendAirport(FlightPlan& plan, PlanWaypoint airport) {
    return airport.ident.empty() || AppendEntry(plan, std::move(airport));
}

// The last entry before the arrival's end of the plan: an earlier arrival, approach and airport.
std::int32_t LastEnRouteIndex(const FlightPlan& plan, bool arrivalIsEnRoute) {
    for (std::int32_t i = plan.lastIndex; i > 0; --i) {
        const PlanWaypoint& entry = plan.entries[i];
        const bool arrival = entry.procedure == kStar && !arrivalIsEnRoute;
        if (!arrival && entry.procedure != kApproach && entry.type != kAirportType) {
            return i;
        }
    }
    return 0;
}

// An approach's gap hides an earlier arrival from the walk back from the plan's end. The index of
// that arrival's first entry, or `gap` when there is none or no gap.
std::int32_t ArrivalBeforeGap(const FlightPlan& plan, std::int32_t gap) {
    std::int32_t first = gap;
    while (first > 1 && plan.entries[first - 1].procedure == kStar) {
        --first;
    }
    return IsDiscontinuity(plan.entries[gap]) ? first : gap;
}

// Returns where the gap stands afterwards.
std::int32_t RemoveArrivalBeforeGap(FlightPlan& plan, std::int32_t gap) {
    const std::int32_t first = ArrivalBeforeGap(plan, gap);
    if (FlownIndex(plan) >= first && FlownIndex(plan) < gap) {
        SetFlownIndex(plan, first - 1);
    }
    ClosePlanEntries(plan, first, gap);
    return first;
}

bool InsertStarBeforeApproach(FlightPlan& plan, std::int32_t enRoute) {
    std::int32_t position = RemoveArrivalBeforeGap(plan, enRoute) + 1;
    for (const ProcedureWaypoint& waypoint : procedureLists.star) {
        if (!InsertEntry(plan, position++, EntryFrom(waypoint, kStar))) {
            return false;
        }
    }
    PlanWaypoint& last = plan.Edit(plan.lastIndex);
    if (last.type == kAirportType) {
        const std::int32_t hasHold = last.hasHold;
        last = ArrivalAirportEntry(last);
        last.hasHold = hasHold;
        return true;
    }
    return AppendAirport(plan, ArrivalAirportEntry({}));
}

bool ReplaceArrival(FlightPlan& plan, std::int32_t lastBeforeArrival) {
    const std::int32_t arrival = ArrivalBeforeGap(plan, lastBeforeArrival);
    const std::int32_t enRoute = arrival < lastBeforeArrival ? arrival - 1 : lastBeforeArrival;
    const PlanWaypoint oldLast = plan.entries[plan.lastIndex];
    const bool tracksLast = &plan == &modifiedPlan && planBook.trackedIndex == plan.lastIndex;
    CutPlan(plan, enRoute);
    for (const ProcedureWaypoint& waypoint : procedureLists.star) {
        if (!AppendEntry(plan, EntryFrom(waypoint, kStar))) {
            return false;
        }
    }
    PlanWaypoint airport = ArrivalAirportEntry(oldLast);
    if (tracksLast) {
        airport.altitude = oldLast.altitude;
    }
    if (!AppendAirport(plan, std::move(airport))) {
        return false;
    }
    if (tracksLast) {
        planBook.trackedIndex = plan.lastIndex;
    }
    return true;
}

bool SpliceStar(FlightPlan& plan) {
    if (plan.lastIndex < 0 || plan.entries[plan.lastIndex].type != kAirportType) {
        TakeChosenAirport(plan, PlanAirportMode::AppendToActive, PlanAirportMode::AppendToModified);
    }
    const std::int32_t enRoute = LastEnRouteIndex(plan, false);
    if (IsActivePlan(plan) && planBook.activeIndex != kNoWaypoint) {
        planBook.activeIndex = std::min(planBook.activeIndex, enRoute);
    }
    const bool beforeApproach =
        enRoute + 1 < plan.lastIndex && plan.entries[enRoute + 1].procedure == kApproach;
    if (!(beforeApproach ? InsertStarBeforeApproach(plan, enRoute)
                         : ReplaceArrival(plan, enRoute))) {
        return false;
    }
    if (plan.lastIndex >= 2) {
        MergeRepeated(plan, kSid);
    }
    return true;
}

bool AppendApproach(FlightPlan& plan) {
    for (const ProcedureWaypoint& waypoint : procedureLists.approach) {
        if (waypoint.roleText != kMissedApproachRole &&
            !AppendEntry(plan, EntryFrom(waypoint, kApproach))) {
            return false;
        }
    }
    return true;
}

bool SpliceApproach(FlightPlan& plan, bool withDiscontinuity) {
    const bool active = IsActivePlan(plan);
    const PlanWaypoint oldLast =
        plan.lastIndex >= 0 ? plan.entries[plan.lastIndex] : PlanWaypoint{};
    std::int32_t enRoute = LastEnRouteIndex(plan, true);
    if (!active && enRoute > 0 && IsDiscontinuity(plan.entries[enRoute])) {
        --enRoute;
    }
    const bool fliesOldEnd = CutPlan(plan, enRoute);
    if (!active && withDiscontinuity && !AppendEntry(plan, Discontinuity())) {
        return false;
    }
    if (fliesOldEnd) {
        SetFlownIndex(plan, plan.lastIndex + 1);
    }
    if (!AppendApproach(plan)) {
        return false;
    }
    PlanWaypoint airport = ArrivalAirportEntry(oldLast);
    airport.altitude = active ? ArrivalElevationFt() : kUnset;
    airport.auxValue = active ? -1 : kUnset;
    if (!AppendAirport(plan, std::move(airport))) {
        return false;
    }
    MergeRepeated(plan, "", enRoute);
    return true;
}

// A choice as a plan names it: nothing chosen is an empty name.
std::string Chosen(std::string_view choice) {
    return std::string(choice == kNoChoice ? std::string_view{} : choice);
}

bool HasProcedure(const FlightPlan& plan, std::string_view tag) {
    const auto* const end = plan.entries.begin() + plan.lastIndex + 1;
    return std::any_of(plan.entries.begin(), end,
                       [tag](const PlanWaypoint& entry) { return entry.procedure == tag; });
}

// The runway stays.
void ForgetNames(FlightPlan& plan, std::string_view tag) {
    PlanProcedures& names = plan.EditProcedures();
    (tag == kSid ? names.sid : tag == kStar ? names.star : names.approach).clear();
    (tag == kSid    ? names.sidTransition
     : tag == kStar ? names.starTransition
                    : names.approachTransition)
        .clear();
}

// "NORTA2" and "NORTA2.ABC", what the legs of a procedure are flown along.
void ReadLabel(std::string_view label, std::string& procedure, std::string& transition) {
    const std::size_t dot = std::min(label.find('.'), label.size());
    procedure = label.substr(0, dot);
    transition = label.substr(std::min(dot + 1, label.size()));
}

// What a splice may change, to be put back when the plan turns out too full for it.
struct Backup {
    FlightPlan plan;
    PlanBook book;
    HoldList holds;
    HoldFlight flight;
};

template <typename Body>
bool DoneWhole(FlightPlan& plan, const Body& body) {
    const auto backup = std::make_unique<Backup>(Backup{plan, planBook, holdList, holdFlight});
    const bool done = body(plan);
    if (!done) {
        plan = backup->plan;
        planBook = backup->book;
        holdList = backup->holds;
        holdFlight = backup->flight;
    }
    return done;
}

template <typename Body>
bool Splice(FlightPlan& plan, const Body& body) {
    const bool editsAtEnd = planBook.editIndex >= plan.lastIndex;  // or nowhere yet
    if (!DoneWhole(plan, body)) {
        AppendMessage(kPlanFullMessage);
        return false;
    }
    KeepIndexesInPlan(plan);
    if (IsActivePlan(plan)) {
        planBook.verticalTargetIndex = NextRestriction(plan, planBook.activeIndex);
    } else if (&plan == &modifiedPlan && editsAtEnd) {
        planBook.editIndex = NextEntryPlace(plan);
    }
    NoteEdit(plan);
    return true;
}

}  // namespace

bool EditWhole(FlightPlan& plan, const std::function<bool(FlightPlan&)>& edits) {
    return DoneWhole(plan, edits);
}

bool InsertSid(FlightPlan& plan) {
    return Splice(plan, [](FlightPlan& target) {
        PlanProcedures& names = target.EditProcedures();
        names.sid = Chosen(procedureChoice.sidName);
        names.sidTransition = Chosen(procedureChoice.sidTransition);
        names.departureRunway = Chosen(procedureChoice.departureRunway);
        return SpliceSid(target);
    });
}

bool PutDeparture(FlightPlan& plan, const PlanProcedures& wanted) {
    const std::vector<Procedure>& sids = airportSlots[kDepartureSlot].procedures.sids;
    const auto sid = std::find_if(sids.begin(), sids.end(), [&](const Procedure& procedure) {
        return procedure.name == wanted.sid;
    });
    if (sid == sids.end()) {
        plan.EditProcedures().departureRunway = wanted.departureRunway;
        NoteEdit(plan);
        return true;
    }
    const auto choiceOf = [](const std::string& name) {
        return name.empty() ? std::string(kNoChoice) : name;
    };
    procedureChoice.sidNumber = static_cast<std::int32_t>(sid - sids.begin()) + 1;
    procedureChoice.sidName = wanted.sid;
    procedureChoice.sidTransition = choiceOf(wanted.sidTransition);
    procedureChoice.departureRunway = choiceOf(wanted.departureRunway);
    BuildSidWaypoints();
    return InsertSid(plan);
}

bool InsertStar(FlightPlan& plan) {
    return Splice(plan, [](FlightPlan& target) {
        PlanProcedures& names = target.EditProcedures();
        names.star = Chosen(procedureChoice.starName);
        names.starTransition = Chosen(procedureChoice.starTransition);
        names.arrivalRunway = Chosen(procedureChoice.arrivalRunway);
        const bool spliced = SpliceStar(target);
        if (!HasProcedure(target, kApproach)) {
            ForgetNames(target, kApproach);
        }
        return spliced;
    });
}

bool InsertApproach(FlightPlan& plan, bool withDiscontinuity) {
    procedureLists.approachReady = false;
    return Splice(plan, [&](FlightPlan& target) {
        PlanProcedures& names = target.EditProcedures();
        names.approach = Chosen(procedureChoice.approachType);
        names.approachTransition = Chosen(procedureChoice.approachTransition);
        names.arrivalRunway = Chosen(procedureChoice.arrivalRunway);
        return SpliceApproach(target, withDiscontinuity);
    });
}

PlanProcedures ProceduresOf(const FlightPlan& plan) {
    PlanProcedures names = plan.procedures;
    for (std::int32_t i = 1; i <= plan.lastIndex; ++i) {
        const PlanWaypoint& entry = plan.entries[i];
        if (!entry.via.empty() && entry.procedure == kSid && names.sid.empty()) {
            ReadLabel(entry.via, names.sid, names.sidTransition);
        } else if (!entry.via.empty() && entry.procedure == kStar && names.star.empty()) {
            ReadLabel(entry.via, names.star, names.starTransition);
        }
    }
    return names;
}

bool RemoveProcedure(FlightPlan& plan, std::string_view tag) {
    return Splice(plan, [tag](FlightPlan& target) {
        ForgetNames(target, tag);
        for (std::int32_t i = target.lastIndex; i >= 0; --i) {
            if (target.entries[i].procedure == tag) {
                ClosePlanEntries(target, i, i + 1);
            } else if (target.entries[i].procedure == kSidAndStar && tag != kApproach) {
                target.Edit(i).procedure = tag == kSid ? kStar : kSid;
            }
        }
        return true;
    });
}

}  // namespace avq1
