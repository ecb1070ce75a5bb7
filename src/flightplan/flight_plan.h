// flightplan/flight_plan.h - the flight plan: its entries, its three copies and their bookkeeping.
//
// Entry 0 is the departure airport, the last entry the arrival airport; lastIndex is -1 when a
// plan is empty. Guidance flies the active copy; control units edit the modified copy; the preview
// copy holds a stored plan being looked at. Entries beyond lastIndex carry stale contents and are
// never read. Positions are decimal degrees.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "flightplan/performance_change.h"

namespace avq1 {

inline constexpr std::int32_t kPlanCapacity = 201;  // entries 0 to 200
inline constexpr std::int32_t kMaxPlanIndex = kPlanCapacity - 1;
inline constexpr std::int32_t kNoWaypoint = 999;   // "none" for an index
inline constexpr std::int32_t kFirstWaypoint = 1;  // flown to first: entry 0 is the departure
inline constexpr double kUnset = -999.0;           // an unset altitude or speed
inline constexpr std::string_view kDiscontinuity = "DISCO";
inline constexpr std::string_view kAirwayPlaceholder = "THEN";
inline constexpr std::string_view kEmptyRow = "******";  // shown to type on; never in a plan
inline constexpr std::string_view kAirportType = "APT";
inline constexpr std::string_view kPlanFullMessage = "FLIGHT PLAN FULL";

// PlanWaypoint::altitudeConstraint: how `altitude` restricts the crossing.
inline constexpr std::int32_t kNoCrossing = 0;
inline constexpr std::int32_t kCrossAt = 1;
inline constexpr std::int32_t kCrossAtOrAbove = 2;
inline constexpr std::int32_t kCrossAtOrBelow = 3;

struct PlanWaypoint {
    std::string ident;
    double latitude = 0;
    double longitude = 0;
    std::string type;       // "APT", "VOR", "NDB", "INT", "WPT", "OAWY", empty for a discontinuity
    std::string via;        // airway of the leg to this entry; empty = direct
    std::string procedure;  // "SID", "STAR", "SIDSTAR", "APPR", "HOLD PPOS" or empty
    std::string auxName;
    std::string auxText;       // approach role of the leg
    std::string ataText;       // actual time of arrival, "12:34"
    double altitude = kUnset;  // feet
    double speed = kUnset;     // knots
    double auxValue = -1;
    std::int32_t flyover = 0;
    std::int32_t speedConstraint = 0;  // 1: the speed was typed, with or without an altitude
    std::int32_t altitudeConstraint = kNoCrossing;
    std::int32_t hasHold = 0;
    std::string frequency;  // as written in the database; empty unless a navaid
};

// A speed of its own, not one that planning filled in.
inline bool HasSpeedRestriction(const PlanWaypoint& entry) {
    return entry.altitudeConstraint != kNoCrossing || entry.speedConstraint != 0;
}

// The departure, arrival and approach that were put into a plan, by name; empty = none. A runway
// may be chosen before anything that begins or ends there.
struct PlanProcedures {
    std::string sid;
    std::string sidTransition;
    std::string departureRunway;
    std::string star;
    std::string starTransition;
    std::string approach;  // its type, "ILS"
    std::string approachTransition;
    std::string arrivalRunway;

    friend bool operator==(const PlanProcedures&, const PlanProcedures&) = default;
};

// One copy of the plan. Everybody reads `entries` and `lastIndex`; whoever changes them goes
// through the functions below, each of which moves `revision` on, so that what was worked out from
// a plan can be kept until the plan is another one. A reference from Edit is for the change at
// hand.
class FlightPlan {
  public:
    FlightPlan() = default;
    FlightPlan(const FlightPlan& other);
    FlightPlan& operator=(const FlightPlan& other);  // all but the revision; a change like others

    const std::array<PlanWaypoint, kPlanCapacity>& entries = entries_;
    const std::int32_t& lastIndex = lastIndex_;
    const std::uint32_t& revision = revision_;  // never 0
    const PlanProcedures& procedures = procedures_;

    bool IsFull() const { return lastIndex_ >= kMaxPlanIndex; }
    bool Holds(std::int32_t index) const { return index >= 0 && index <= lastIndex_; }

    // The entry for writing. `index` is 0 to kMaxPlanIndex.
    PlanWaypoint& Edit(std::int32_t index);
    PlanProcedures& EditProcedures();
    // Entry `last`, -1 to lastIndex, ends the plan from here on; an empty plan has no procedures.
    void CutTo(std::int32_t last);
    // Puts the entry behind the last one; the plan must not be full.
    void Append(PlanWaypoint entry);

  private:
    std::array<PlanWaypoint, kPlanCapacity> entries_;
    std::int32_t lastIndex_ = -1;
    std::uint32_t revision_ = 1;
    PlanProcedures procedures_;
};

// A discontinuity has no position: it is left out of distances, tuning and drawing.
bool IsDiscontinuity(const PlanWaypoint& entry);
PlanWaypoint Discontinuity();

// Neither a discontinuity nor the placeholder of an airway being entered.
bool HasPosition(const PlanWaypoint& entry);

enum class RouteStatus : std::int32_t {
    None = 0,
    BeingBuilt = 1,
    AwaitsExecution = 2,
    Active = 3,
    Modified = 4,  // the active route has a modification awaiting execution
};

// One way of a route: along an airway or a procedure, or direct to one entry.
struct RoutePair {
    std::string to;
    std::string via;
    std::int32_t firstIndex = 0;  // its entries in the plan
    std::int32_t lastIndex = 0;
};

// What a control unit has chosen on its page: an entry of the plan shown, or the row behind its
// last one; and the entry maps in plan mode are centred on. It follows the entry; kNoWaypoint =
// nothing chosen.
struct PlanSelection {
    const FlightPlan* plan = nullptr;
    std::int32_t index = kNoWaypoint;
};
enum class PlanUnit : std::size_t { Compact, Gns, Smiths, MapCentre };
inline constexpr std::size_t kPlanUnitCount = 4;

// What is kept beside the plans.
struct PlanBook {
    std::string originIdent;
    std::string destinationIdent;
    std::int32_t activeIndex = kNoWaypoint;   // in the active plan: the waypoint being flown to
    std::int32_t verticalTargetIndex = 0;     // in the active plan: what the descent aims at
    std::int32_t editIndex = kNoWaypoint;     // in the modified plan: where the next entry goes
    std::int32_t trackedIndex = kNoWaypoint;  // in the modified plan: follows its entry
    std::array<PlanSelection, kPlanUnitCount> selections;  // by PlanUnit
    std::vector<RoutePair> routeView;  // at most 200 pairs, of the plan asked for last
    const FlightPlan* routeViewPlan = nullptr;
    std::uint32_t routeViewRevision = 0;
    RouteStatus status = RouteStatus::None;
    PerformanceChange waitingPerformance;  // of the modification, until EXEC
    std::int32_t cruiseAltitudeFt = 0;     // from the plan file or the pilot; 0 = none
    double fuelTotal = 0;                  // weight units of the simulator, 0 = none
    double reserveFuel = 0;
    double reserveFuelInUse = 0;
    std::string entryNotice;       // what the last plan read lacks; empty when all is well
    double fuelLoadRequested = 0;  // weight units for the tanks, 0 = none
};

extern FlightPlan activePlan;
extern FlightPlan modifiedPlan;
extern FlightPlan previewPlan;
extern PlanBook planBook;

// The entry that maps in plan mode are centred on; null without one: on the aircraft then.
const PlanWaypoint* MapCentre();

}  // namespace avq1
