#include "avqdata/plan_data.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "avqdata/folder.h"
#include "avqdata/text_tools.h"
#include "base/text.h"
#include "flightplan/procedures.h"
#include "navdb/airport_detail.h"

namespace avqdata {
namespace {

using avq1::PlanWaypoint;
using avq1::Procedure;

constexpr double kSamePlaceNm = 1;
constexpr double kSameStationNm = 0.2;  // a fix of an airway that is a station

struct ByIdent {
    bool operator()(const PlanPoint& a, const PlanPoint& b) const { return a.ident < b.ident; }
    bool operator()(const PlanPoint& a, std::string_view b) const { return a.ident < b; }
    bool operator()(std::string_view a, const PlanPoint& b) const { return a < b.ident; }
    bool operator()(const Airway& a, const Airway& b) const { return a.name < b.name; }
    bool operator()(const Airway& a, std::string_view b) const { return a.name < b; }
    bool operator()(std::string_view a, const Airway& b) const { return a < b.name; }
};

constexpr std::array<FileRole, kProcedureKinds> kProcedureFiles{kSidFile, kStarFile, kApproachFile};

// Places of a fix on a piece, within a mile of a position.
std::optional<std::size_t> PlaceOn(const Airway& piece, std::string_view ident, const LatLon& at) {
    for (std::size_t i = 0; i < piece.points.size(); ++i) {
        if (piece.points[i].ident == ident && DistanceNm(piece.points[i].at, at) <= kSamePlaceNm) {
            return i;
        }
    }
    return std::nullopt;
}

LatLon PlaceOf(const PlanWaypoint& entry) {
    return {entry.latitude, entry.longitude};
}

}  // namespace

// ---- points ----

std::span<const PlanPoint> PlanData::Named(std::string_view ident) const {
    const auto [first, last] = std::equal_range(points.begin(), points.end(), ident, ByIdent{});
    return {first, last};
}

std::span<const Airway> PlanData::AirwayPieces(std::string_view name) const {
    const auto [first, last] = std::equal_range(airways.begin(), airways.end(), name, ByIdent{});
    return {first, last};
}

const PlanPoint* PlanData::Nearest(std::string_view ident, const LatLon& at,
                                   double withinNm) const {
    const PlanPoint* nearest = nullptr;
    double leastNm = withinNm;
    for (const PlanPoint& point : Named(ident)) {
        const double distanceNm = DistanceNm(point.at, at);
        if (distanceNm <= leastNm) {
            nearest = &point;
            leastNm = distanceNm;
        }
    }
    return nearest;
}

PlanData PlanDataOf(Dataset data) {
    PlanData result;
    for (Station& station : data.stations) {
        result.points.push_back({std::move(station.ident), station.at,
                                 station.isVor ? "VOR" : "NDB", std::move(station.frequency)});
    }
    for (Airport& airport : data.airports) {
        result.points.push_back({std::move(airport.ident), airport.at, avq1::kAirportType, {}});
    }
    for (Fix& fix : data.fixes) {
        result.points.push_back({std::move(fix.ident), fix.at, "INT", {}});
    }
    std::stable_sort(result.points.begin(), result.points.end(), ByIdent{});
    // What only an airway has is a fix too, as the module has it.
    std::vector<PlanPoint> onAirways;
    for (const Airway& airway : data.airways) {
        for (const Fix& fix : airway.points) {
            if (result.Nearest(fix.ident, fix.at, kSameStationNm) == nullptr) {
                onAirways.push_back({fix.ident, fix.at, "INT", {}});
            }
        }
    }
    result.points.insert(result.points.end(), onAirways.begin(), onAirways.end());
    std::stable_sort(result.points.begin(), result.points.end(), ByIdent{});
    result.airways = std::move(data.airways);
    std::stable_sort(result.airways.begin(), result.airways.end(), ByIdent{});
    const std::vector<std::string_view> words = Words(data.cycleLine);  // ";AIRAC cycle : 2309 ..."
    if (words.size() > 3 && words[3].size() == 4 && WholeNumber(words[3])) {
        result.cycle = words[3];
    }
    return result;
}

bool LoadPlanData(const std::string& folder, PlanData& data, std::string& error) {
    FolderTexts texts;
    if (!ReadFolder(folder, texts, error)) {
        return false;
    }
    if (std::all_of(texts.begin(), texts.end(), [](const auto& text) { return text.empty(); })) {
        error = folder + ": holds none of the navigation files (avq_navs.txt, ...)";
        return false;
    }
    std::array<std::string, kProcedureKinds> procedureTexts;
    for (std::size_t kind = 0; kind < kProcedureKinds; ++kind) {
        procedureTexts[kind] = std::exchange(texts[kProcedureFiles[kind]], {});
    }
    texts[kBoundaryFile].clear();
    texts[kLocalizerFile].clear();
    Report ignored;  // what is wrong with the data, `check` says
    data = PlanDataOf(ParseFolder(texts, ignored));
    data.procedureTexts = std::move(procedureTexts);
    return true;
}

// ---- airways ----

bool IsOnAirway(const PlanData& data, std::string_view airway, std::string_view ident,
                const LatLon& at) {
    const std::span<const Airway> pieces = data.AirwayPieces(airway);
    return std::any_of(pieces.begin(), pieces.end(),
                       [&](const Airway& piece) { return PlaceOn(piece, ident, at).has_value(); });
}

bool AirwayBetween(const PlanData& data, std::string_view airway, const PlanWaypoint& from,
                   const PlanWaypoint& to, std::vector<Fix>& between) {
    for (const Airway& piece : data.AirwayPieces(airway)) {
        const std::optional<std::size_t> first = PlaceOn(piece, from.ident, PlaceOf(from));
        const std::optional<std::size_t> last = PlaceOn(piece, to.ident, PlaceOf(to));
        if (!first || !last) {
            continue;
        }
        between.clear();
        if (*first < *last) {
            const auto begin = piece.points.begin() + static_cast<std::ptrdiff_t>(*first) + 1;
            between.assign(begin, piece.points.begin() + static_cast<std::ptrdiff_t>(*last));
        } else if (*first > *last) {
            const auto begin = piece.points.begin() + static_cast<std::ptrdiff_t>(*last) + 1;
            between.assign(begin, piece.points.begin() + static_cast<std::ptrdiff_t>(*first));
            std::reverse(between.begin(), between.end());
        }
        return true;
    }
    return false;
}

// ---- procedures ----

namespace {

// The module builds a procedure from its airport's slot and what is chosen on its pages; both are
// as they were afterwards.
struct ModuleChoice {
    avq1::AirportDetail& slot;
    ModuleChoice(std::size_t number, std::string_view airport) : slot(avq1::airportSlots[number]) {
        slot = {};
        slot.ident = airport;
        avq1::procedureChoice = {};
    }
    ~ModuleChoice() {
        slot = {};
        avq1::procedureChoice = {};
        avq1::procedureLists = {};
    }
    ModuleChoice(const ModuleChoice&) = delete;
    ModuleChoice& operator=(const ModuleChoice&) = delete;
};

std::string RunwayOf(const TerminalChoice& choice) {
    return choice.runway.empty() ? std::string(avq1::kNoChoice) : choice.runway.substr(2);
}

std::vector<PlanWaypoint> EntriesOf(const PlanData& data,
                                    const std::vector<avq1::ProcedureWaypoint>& list,
                                    std::string_view tag, std::string_view via) {
    std::vector<PlanWaypoint> entries;
    for (const avq1::ProcedureWaypoint& waypoint : list) {
        if (waypoint.roleText == "MAF" && tag == "APPR") {
            continue;  // the missed approach is not flown to
        }
        PlanWaypoint entry;
        entry.ident = waypoint.ident;
        entry.latitude = waypoint.latitude;
        entry.longitude = waypoint.longitude;
        entry.type = "INT";
        entry.procedure = tag;
        entry.via = via;
        if (const PlanPoint* const point =
                data.Nearest(entry.ident, PlaceOf(entry), kSameStationNm)) {
            entry.type = point->type == avq1::kAirportType ? "INT" : point->type;
            entry.frequency = point->frequency;
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

// The transition that is named, else the one that begins or ends where the route does. False for a
// name that the procedure does not have.
bool ChooseTransition(const std::vector<std::string>& known, std::string_view joint,
                      std::string& transition) {
    const auto has = [&](std::string_view name) {
        return std::find(known.begin(), known.end(), name) != known.end();
    };
    if (transition.empty() && has(joint)) {
        transition = joint;
    }
    return transition.empty() || has(transition);
}

std::string OrNone(const std::string& name) {
    return name.empty() ? std::string(avq1::kNoChoice) : name;
}

// A departure or an arrival.
struct RouteProcedure {
    std::size_t slot;
    ProcedureKind kind;
    std::string_view tag;
    void (*read)(std::string_view text, std::string_view airport, std::vector<Procedure>& table);
    std::vector<Procedure> avq1::AirportProcedures::*table;
    std::int32_t avq1::ProcedureChoice::*number;
    std::string avq1::ProcedureChoice::*name;
    std::string avq1::ProcedureChoice::*transition;
    std::string avq1::ProcedureChoice::*runway;
    void (*build)();
    std::vector<avq1::ProcedureWaypoint> avq1::ProcedureLists::*list;
};

const RouteProcedure kDeparture{avq1::kDepartureSlot,
                                kSids,
                                "SID",
                                avq1::ReadSids,
                                &avq1::AirportProcedures::sids,
                                &avq1::ProcedureChoice::sidNumber,
                                &avq1::ProcedureChoice::sidName,
                                &avq1::ProcedureChoice::sidTransition,
                                &avq1::ProcedureChoice::departureRunway,
                                avq1::BuildSidWaypoints,
                                &avq1::ProcedureLists::sid};
const RouteProcedure kArrival{avq1::kArrivalSlot,
                              kStars,
                              "STAR",
                              avq1::ReadStars,
                              &avq1::AirportProcedures::stars,
                              &avq1::ProcedureChoice::starNumber,
                              &avq1::ProcedureChoice::starName,
                              &avq1::ProcedureChoice::starTransition,
                              &avq1::ProcedureChoice::arrivalRunway,
                              avq1::BuildStarWaypoints,
                              &avq1::ProcedureLists::star};

std::vector<PlanWaypoint> RoutePoints(const RouteProcedure& row, const PlanData& data,
                                      std::string_view airport, std::string_view joint,
                                      TerminalChoice& choice, std::string& why) {
    ModuleChoice module(row.slot, airport);
    std::vector<Procedure>& table = module.slot.procedures.*row.table;
    row.read(data.procedureTexts[row.kind], airport, table);
    const Procedure* const found = avq1::FindProcedure(table, choice.procedure);
    if (found == nullptr) {
        why = "is not in the data";
        return {};
    }
    if (!ChooseTransition(avq1::ListTransitions(*found, false), joint, choice.transition)) {
        why = "has no transition " + choice.transition + " in the data";
        return {};
    }
    avq1::ProcedureChoice& chosen = avq1::procedureChoice;
    chosen.*row.number = static_cast<std::int32_t>(found - table.data()) + 1;
    chosen.*row.name = choice.procedure;
    chosen.*row.transition = OrNone(choice.transition);
    chosen.*row.runway = RunwayOf(choice);
    row.build();
    const std::string via =
        choice.procedure + (choice.transition.empty() ? "" : "." + choice.transition);
    std::vector<PlanWaypoint> entries =
        EntriesOf(data, avq1::procedureLists.*row.list, row.tag, via);
    why = entries.empty() ? "has no points for this runway and transition in the data" : "";
    return entries;
}

bool HasProcedure(const RouteProcedure& row, const PlanData& data, std::string_view airport,
                  std::string_view name) {
    std::vector<Procedure> table;
    row.read(data.procedureTexts[row.kind], airport, table);
    return avq1::FindProcedure(table, name) != nullptr;
}

}  // namespace

std::vector<PlanWaypoint> DeparturePoints(const PlanData& data, std::string_view airport,
                                          std::string_view nextIdent, TerminalChoice& choice,
                                          std::string& why) {
    return RoutePoints(kDeparture, data, airport, nextIdent, choice, why);
}

std::vector<PlanWaypoint> ArrivalPoints(const PlanData& data, std::string_view airport,
                                        std::string_view previousIdent, TerminalChoice& choice,
                                        std::string& why) {
    return RoutePoints(kArrival, data, airport, previousIdent, choice, why);
}

std::vector<PlanWaypoint> ApproachPoints(const PlanData& data, std::string_view airport,
                                         std::string_view previousIdent, TerminalChoice& choice,
                                         std::string& why) {
    const ApproachParts parts = PartsOfApproach(choice.approach);
    ModuleChoice module(avq1::kArrivalSlot, airport);
    avq1::ReadApproaches(data.procedureTexts[kApproaches], airport, module.slot.procedures);
    const avq1::ApproachChoice wanted{parts.type + parts.suffix, parts.runway};
    const std::vector<avq1::ApproachChoice> known =
        avq1::ListApproaches(module.slot.procedures, parts.runway);
    if (parts.type.empty() || std::find(known.begin(), known.end(), wanted) == known.end()) {
        why = "is not in the data";
        return {};
    }
    if (!ChooseTransition(avq1::ListApproachTransitions(wanted.type, parts.runway), previousIdent,
                          choice.approachTransition)) {
        why = "has no transition " + choice.approachTransition + " in the data";
        return {};
    }
    avq1::procedureChoice.approachType = wanted.type;
    avq1::procedureChoice.approachTransition = choice.approachTransition;
    avq1::procedureChoice.arrivalRunway = parts.runway;
    avq1::BuildApproachWaypoints();
    std::vector<PlanWaypoint> entries =
        EntriesOf(data, avq1::procedureLists.approach, "APPR", choice.approach);
    why = entries.empty() ? "has no points for this transition in the data" : "";
    return entries;
}

bool HasDeparture(const PlanData& data, std::string_view airport, std::string_view name) {
    return HasProcedure(kDeparture, data, airport, name);
}

bool HasArrival(const PlanData& data, std::string_view airport, std::string_view name) {
    return HasProcedure(kArrival, data, airport, name);
}

}  // namespace avqdata
