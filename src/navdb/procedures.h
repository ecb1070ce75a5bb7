// navdb/procedures.h - departures, arrivals and approaches of one airport, from three text files
// with a section per airport.
//
// Loading an airport into slot 1 reads its departures, into any other slot its arrivals and then
// its approaches. A missing file or an airport without a section leaves its table empty; legs and
// procedures beyond a capacity are dropped. Positions are decimal degrees. Tables and legs are
// indexed from 0 here; the number of a procedure on the pages is its index plus 1.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace avq1 {

struct ProcedureLeg {
    std::string qualifier;  // the transition the leg belongs to
    std::string fix;
    std::string role;   // approaches: "IAF", "FAF", "MAF" (missed approach) or empty
    std::string text1;  // restrictions as written
    std::string text2;  // runways the leg applies to; "---" or empty for all
    double latitude = 0;
    double longitude = 0;
    std::string text3;  // approaches: a character given by its code
    std::string text4;
    std::string group;  // approaches: the type, "ILS"
    std::string mark;   // "*": common to every transition
    std::int32_t flyover = 0;
};

struct Procedure {
    std::string name;  // approaches: the runway
    std::string headerText;
    std::string runways;  // comma-separated designators; empty = all
    std::vector<ProcedureLeg> legs;
};

inline constexpr std::size_t kProcedureLegCapacity = 200;
inline constexpr std::size_t kSidCapacity = 140;
inline constexpr std::size_t kStarCapacity = 90;
inline constexpr std::size_t kApproachCapacity = 50;
inline constexpr std::size_t kApproachGroupCapacity = 10;
inline constexpr std::string_view kNoChoice = "------";  // nothing chosen, nothing filtered
inline constexpr std::string_view kCommonMark = "*";

struct AirportProcedures {
    std::vector<Procedure> sids;
    std::vector<Procedure> stars;
    std::vector<Procedure> approaches;
    std::vector<std::string> approachGroups;
};

// ---- loading ----
void LoadSids(std::string_view airportIdent, AirportProcedures& target);
void LoadStars(std::string_view airportIdent, AirportProcedures& target);
void LoadApproaches(std::string_view airportIdent, AirportProcedures& target);
// Finds the airports' sections in the three files, so that a later load reads only its own.
void IndexProcedureFiles();

// The formats: the first section of `airportIdent` in a file's text.
void ReadSids(std::string_view text, std::string_view airportIdent, std::vector<Procedure>& table);
void ReadStars(std::string_view text, std::string_view airportIdent, std::vector<Procedure>& table);
void ReadApproaches(std::string_view text, std::string_view airportIdent,
                    AirportProcedures& target);

// ---- what the pages offer ----
// Null when the table has no procedure of this name.
const Procedure* FindProcedure(const std::vector<Procedure>& table, std::string_view name);
bool ServesRunway(const Procedure& procedure, std::string_view runway);

// Runways of the departure airport that the SID serves, of the arrival airport that the STAR
// serves; empty for an unknown name.
std::vector<std::string> ListSidRunways(std::string_view sidName);
std::vector<std::string> ListStarRunways(std::string_view starName);

// Distinct transitions in ascending order; with `commonOnly` those of legs common to every
// transition.
std::vector<std::string> ListTransitions(const Procedure& procedure, bool commonOnly);

// Rebuilds the arrival airport's approach groups: the types with an initial approach fix for the
// runway at the fix; kNoChoice stands for any runway or fix.
void ListApproachTypes(std::string_view runway, std::string_view fix);

struct ApproachChoice {
    std::string type;
    std::string name;
    bool operator==(const ApproachChoice&) const = default;
};
// Approaches to the runway, kNoChoice for all: of an airport, or of the arrival airport.
std::vector<ApproachChoice> ListApproaches(const AirportProcedures& procedures,
                                           std::string_view runway);
std::vector<ApproachChoice> ListApproaches(std::string_view runway);

// Transitions of one approach type to a runway, ascending: its initial approach fixes and named
// transitions.
std::vector<std::string> ListApproachTransitions(std::string_view type, std::string_view runway);

}  // namespace avq1
