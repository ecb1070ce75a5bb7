// avqdata/plan_exchange.h - flight plans of several programs: one record, one row a format.
//
// Positions are decimal degrees, altitudes feet, speeds knots, fuel weight units. A reader takes
// what it can and reports the rest by file and line: a fault is a waypoint left out or changed, a
// warning what may be meant otherwise. A writer gets only plans that CheckWritable passed, so what
// it writes is what programs of that format read. A new format is one file and one row.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "avqdata/report.h"
#include "flightplan/flight_plan.h"
#include "geometry/geometry.h"

namespace avqdata {

// The departure's or arrival's side of a plan: runway and procedures by name, whether their points
// are among the entries or not.
struct TerminalChoice {
    std::string runway;  // "RW09L"
    std::string procedure;
    std::string transition;
    std::string approach;  // type letter, runway and variant of coded procedures: "I05L", "R23-Z"
    std::string approachTransition;

    bool operator==(const TerminalChoice&) const = default;
};

struct ExchangePlan {
    std::vector<avq1::PlanWaypoint> entries;  // gaps as the module has them, without a position
    std::int32_t cruiseAltitudeFt = 0;        // 0 = none
    double fuelTotal = 0;
    double reserveFuel = 0;
    std::string cycle;  // four digits or empty
    TerminalChoice departure;
    TerminalChoice arrival;
};

// What a format has room for beside identifiers, types and positions.
enum PlanFeature : unsigned {
    kCarriesAirways = 1U << 0U,
    kCarriesProcedures = 1U << 1U,      // the tag, with the procedure's name in the airway's place
    kCarriesLoneProcedures = 1U << 2U,  // the tag where there is no name
    kCarriesAltitudes = 1U << 3U,
    kCarriesSpeeds = 1U << 4U,
    kCarriesFrequencies = 1U << 5U,
    kCarriesGaps = 1U << 6U,
    kCarriesCruise = 1U << 7U,
    kCarriesFuel = 1U << 8U,
    kCarriesTerminal = 1U << 9U,
    kCarriesEndAirways = 1U << 10U,  // to the airports at the ends
    kCarriesPositions = 1U << 11U,   // of what has a name in the data
    kCarriesPointNames = 1U << 12U,  // of the pilot's own points
    kCarriesApproaches = 1U << 13U,  // by name
    kCarriesAll = (1U << 14U) - 1U,
    kCarriesPlaces = kCarriesPositions | kCarriesPointNames,
};

inline constexpr std::array<std::string_view, 5> kPlanTypes{"APT", "VOR", "NDB", "INT", "WPT"};

struct PlanData;
struct PlanFormat;

struct PlanSource {
    std::string_view text;
    std::string_view name;  // of the file, for messages
    const PlanFormat& format;
    Report& report;
    const PlanData* data = nullptr;  // the module's, when it was given
};

struct PlanFormat {
    const char* name;  // as --as takes it
    const char* title;
    const char* extensions;  // lower case; the first row that has one is the extension's format
    bool (*sniff)(std::string_view text);
    void (*read)(const PlanSource& source, ExchangePlan& plan);  // null: written only
    // Null: read only.
    bool (*write)(const PlanFormat& format, const ExchangePlan& plan, std::string& text,
                  std::string& error);
    unsigned carries;
    std::array<std::string_view, kPlanTypes.size()> typeNames;  // in the order of kPlanTypes
    std::size_t longestIdent;
    std::size_t longestPointIdent;  // of a pilot's own point
    bool endsAreAirports;
    std::size_t mostEntries;
};

extern const std::array<const PlanFormat*, 15> kPlanFormats;

const PlanFormat* FormatNamed(std::string_view name);
const PlanFormat* FormatOfText(std::string_view text);  // among those that can be read
const PlanFormat* FormatOfFileName(std::string_view path);
bool HasExtension(const PlanFormat& format, std::string_view path);

// Reads any format. Names without a position are looked up in `data`, which also adds what the file
// leaves out; null for none. False, with `error`, when the text is no known plan or holds no
// waypoint.
bool ReadExchangePlan(std::string_view text, std::string_view name, const PlanData* data,
                      ExchangePlan& plan, const PlanFormat*& format, Report& report,
                      std::string& error);

// Why a format's programs would not take the plan; empty when they would.
std::string CheckWritable(const PlanFormat& format, const ExchangePlan& plan);
bool WriteExchangePlan(const PlanFormat& format, const ExchangePlan& plan, std::string& text,
                       std::string& error);

// The plan as a format that only names procedures has it: without the points of procedures that are
// named with their runway, but those where the route on the way begins and ends; without the names
// of others whose points are there. Other formats get the plan as it is.
ExchangePlan AsFormatHolds(const PlanFormat& format, const ExchangePlan& plan);

// "airways (5), gaps (1)": what gets lost in a format; empty when nothing does.
std::string NotCarried(const PlanFormat& format, const ExchangePlan& plan);

// ---- for the formats' own files ----

// The planner's XML with the newest generation's fields, or without any position.
bool IsEfbText(std::string_view text);

// Readers. A name that would stand for a gap or a placeholder here gets an X behind it.
std::string_view TypeFromName(const PlanFormat& format, std::string_view name);  // empty: unknown
void AddWaypoint(avq1::PlanWaypoint entry, ExchangePlan& plan);
std::size_t LineAt(std::string_view text, std::size_t offset);
std::string CleanWord(std::string_view text);  // what of it can be one word of a plan
void SayIfCut(const PlanSource& source, bool isCut);
// Gives the entry a position and marks it so. False, with nothing changed, for no position.
bool PutPosition(std::string_view latitude, std::string_view longitude, avq1::PlanWaypoint& entry);
double HeightOrUnset(std::string_view feet);  // 0 and what is no possible height are none

std::string RunwayFix(std::string_view runway);  // "RW09L" of "9L", "09L", "RW09L"; else empty
// "I05L-Z" of "ILS", "05L" and "Z"; empty without a known type or a runway.
std::string ApproachName(std::string_view type, std::string_view runway, std::string_view suffix);

// The parts of such a name, all empty where it is none: "ILS", the planner's word for it, "05L",
// "Z".
struct ApproachParts {
    std::string type;
    std::string simType;
    std::string runway;
    std::string suffix;
};
ApproachParts PartsOfApproach(std::string_view name);

// Writers. An airway is no airway when it is the name of a procedure.
std::string_view TypeName(const PlanFormat& format, const avq1::PlanWaypoint& entry);
std::string_view AirwayOf(const avq1::PlanWaypoint& entry);
std::string_view IdentOfFirst(const ExchangePlan& plan);  // of the entries with a position
std::string_view IdentOfLast(const ExchangePlan& plan);
std::string EscapedXml(std::string_view text);
std::string XmlLine(int indent, std::string_view name, std::string_view value);
std::string SimPositionText(const avq1::PlanWaypoint& entry);  // as the planner's XML form has it
// The cruise altitude, else the highest altitude of an entry, else 0.
double PlannedCruiseFt(const ExchangePlan& plan);
double AltitudeOrZero(const avq1::PlanWaypoint& entry);

// One row for each format's file; the table is made of them.
extern const PlanFormat kRtePlanFormat;
extern const PlanFormat kEfbPlanFormat;
extern const PlanFormat kGarminFplPlanFormat;
extern const PlanFormat kGarminGfpPlanFormat;
extern const PlanFormat kFlightGearPlanFormat;
extern const PlanFormat kNavmapPlanFormat;
extern const PlanFormat kSimbriefXmlPlanFormat;
extern const PlanFormat kSimbriefJsonPlanFormat;
extern const PlanFormat kRouteTextPlanFormat;
extern const PlanFormat kSimXmlPlanFormat;
extern const PlanFormat kSimKeyPlanFormat;
extern const PlanFormat kFms1100PlanFormat;
extern const PlanFormat kFms3PlanFormat;
extern const PlanFormat kGeoJsonPlanFormat;
extern const PlanFormat kKmlPlanFormat;

}  // namespace avqdata
