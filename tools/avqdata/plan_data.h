// avqdata/plan_data.h - the module's navigation data as plans need it: where a name lies, which
// fixes an airway has, the points of an airport's procedures.
//
// Positions are decimal degrees. Nothing here changes after loading.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "avqdata/dataset.h"
#include "avqdata/plan_exchange.h"

namespace avqdata {

struct PlanPoint {
    std::string ident;
    LatLon at;
    std::string_view type;  // "APT", "VOR", "NDB" or "INT"
    std::string frequency;  // of a station, as the data writes it
};

struct PlanData {
    std::vector<PlanPoint> points;  // by identifier
    std::vector<Airway> airways;    // by name; several pieces may have one
    std::array<std::string, kProcedureKinds> procedureTexts;
    std::string cycle;  // four digits or empty

    std::span<const PlanPoint> Named(std::string_view ident) const;
    std::span<const Airway> AirwayPieces(std::string_view name) const;
    // The nearest point of this name within `withinNm`; null without one.
    const PlanPoint* Nearest(std::string_view ident, const LatLon& at, double withinNm) const;
};

// A Navdata folder. False, with `error`, when it cannot be read or holds none of the files.
bool LoadPlanData(const std::string& folder, PlanData& data, std::string& error);
PlanData PlanDataOf(Dataset data);

// The way along an airway from a fix to another: the fixes between them, neither included. False
// where no piece has both.
bool AirwayBetween(const PlanData& data, std::string_view airway, const avq1::PlanWaypoint& from,
                   const avq1::PlanWaypoint& to, std::vector<Fix>& between);

// Whether a piece of the airway has this fix, within a mile of the place.
bool IsOnAirway(const PlanData& data, std::string_view airway, std::string_view ident,
                const LatLon& at);

// The points of the departure, the arrival or the approach that a plan names, as the module would
// put them in; empty, with `why`, when the data does not have it. A transition that is not named is
// that of the fix where the route meets the procedure, and named in the choice then.
std::vector<avq1::PlanWaypoint> DeparturePoints(const PlanData& data, std::string_view airport,
                                                std::string_view nextIdent, TerminalChoice& choice,
                                                std::string& why);
std::vector<avq1::PlanWaypoint> ArrivalPoints(const PlanData& data, std::string_view airport,
                                              std::string_view previousIdent,
                                              TerminalChoice& choice, std::string& why);
std::vector<avq1::PlanWaypoint> ApproachPoints(const PlanData& data, std::string_view airport,
                                               std::string_view previousIdent,
                                               TerminalChoice& choice, std::string& why);

// Whether the airport has a departure or an arrival of this name.
bool HasDeparture(const PlanData& data, std::string_view airport, std::string_view name);
bool HasArrival(const PlanData& data, std::string_view airport, std::string_view name);

}  // namespace avqdata
