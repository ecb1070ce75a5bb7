#include "flightplan/plan_airports.h"

#include <array>

#include "base/messages.h"
#include "base/module_state.h"
#include "base/sim_folder.h"
#include "base/text.h"
#include "flightplan/flight_plan.h"
#include "platform/files.h"

namespace avq1 {

PlanAirports planAirports;

namespace {

constexpr std::size_t kLineLimit = 1499;
constexpr std::size_t kMaxWords = 24;
constexpr std::size_t kFirstRunwayWord = 4;

const StateReset resetPlanAirports([] { planAirports = PlanAirports{}; });

struct AirportLine {
    std::array<std::string_view, kMaxWords> words;  // after the identifier: name, elevation ...
    std::size_t count = 0;

    std::string_view Elevation() const { return words[1]; }
};

// The first line of the airport file that begins with the identifier.
bool FindAirportLine(std::string_view file, std::string_view ident, AirportLine& airport) {
    LineReader reader(file, kLineLimit);
    std::string_view line;
    while (reader.Next(line)) {
        if (const std::string_view first = NextWord(line); EqualsIgnoreCase(first, ident)) {
            airport.count = SplitWords(line, airport.words);
            return true;
        }
    }
    return false;
}

void ReadRunways(const AirportLine& airport) {
    planAirports.runways.clear();
    for (std::size_t i = kFirstRunwayWord; i < airport.count; ++i) {
        if (planAirports.runways.size() >= static_cast<std::size_t>(kRunwayCapacity)) {
            return;
        }
        PlanRunway runway;
        static_cast<Runway&>(runway) = ParseRunwayToken(ToUpper(airport.words[i]));
        if (runway.field8 == 0) {
            runway.field8 = runway.heading;
        }
        planAirports.runways.push_back(runway);
    }
}

// A word "RWY27R=RIGHTPATTERN". The file may leave out a designator's leading zero.
void ApplyRunwaySetting(std::string_view word) {
    constexpr std::string_view kKey = "RWY";
    const std::size_t equals = word.find('=');
    if (!word.starts_with(kKey) || equals == std::string_view::npos ||
        word.substr(equals + 1) != "RIGHTPATTERN") {
        return;
    }
    const std::string designator(word.substr(kKey.size(), equals - kKey.size()));
    for (PlanRunway& runway : planAirports.runways) {
        if (runway.ident == designator || runway.ident == "0" + designator) {
            runway.rightPattern = 1;
        }
    }
}

void ReadPatternSides(std::string_view ident) {
    constexpr std::size_t kHeadingLength = 6;
    std::string file;
    if (!ReadWholeFile(SimPath("\\avq\\Navdata\\apt_additional_info.txt"), file)) {
        return;
    }
    const std::string heading = Format("[%s]", ToUpper(ident).c_str());
    LineReader reader(file, kLineLimit);
    std::string_view line;
    bool inSection = false;
    while (reader.Next(line)) {
        const std::string word = ToUpper(NextWord(line));
        if (!inSection) {
            inSection = word.substr(0, kHeadingLength) == heading;
        } else if (word.starts_with('[')) {
            return;
        } else {
            ApplyRunwaySetting(word);
        }
    }
}

// The active plan's last entry when it is this airport.
PlanWaypoint* ArrivalEntry(std::string_view ident) {
    if (activePlan.lastIndex < 0) {
        return nullptr;
    }
    PlanWaypoint& last = activePlan.entries[activePlan.lastIndex];
    return last.type == "APT" && last.ident == ident ? &last : nullptr;
}

void ApplyActiveDestination(std::string_view ident, std::string_view elevation) {
    planAirports.destinationIdent = ident;
    planAirports.destinationElevationText = elevation;
    if (PlanWaypoint* arrival = ArrivalEntry(ident)) {
        arrival->altitude = ToNumber(elevation);
        arrival->altitudeConstraint = 0;
    }
}

void ApplyLoadedDestination(std::string_view ident, std::string_view elevation) {
    planAirports.destinationIdent = ident;
    planAirports.destinationElevationText = elevation;
    planAirports.destinationElevation = ToNumber(elevation);
    if (PlanWaypoint* arrival = ArrivalEntry(ident)) {
        arrival->altitude = planAirports.destinationElevation;
        arrival->speed = kUnset;
    }
}

}  // namespace

bool LoadPlanAirportDetail(std::string_view ident, std::int32_t slot) {
    if (!LoadAirportDetail(ident, slot)) {
        return false;
    }
    // A departure loaded for a plan not yet active must not touch the one being flown.
    if (slot == kDepartureSlot && activePlan.lastIndex >= 0 &&
        activePlan.entries[0].ident == ident) {
        activePlan.entries[0].altitude = airportSlots[kDepartureSlot].elevationFt;
    }
    return true;
}

void SetPlanAirport(std::string_view ident, PlanAirportMode mode) {
    constexpr std::size_t kWordsForImmediateEffect = 4;
    std::string file;
    AirportLine airport;
    if (ident.empty() || !ReadWholeFile(SimPath("\\avq\\Navdata\\avq_apts.txt"), file) ||
        !FindAirportLine(file, ident, airport)) {
        return;
    }
    if (mode == PlanAirportMode::LoadedDestination && airport.count >= kWordsForImmediateEffect) {
        ApplyLoadedDestination(ident, airport.Elevation());
    }
    ReadRunways(airport);
    ReadPatternSides(ident);
    planAirports.lastAirportIdent = ident;
    lastAirportElevationText = airport.Elevation();
    if (mode == PlanAirportMode::ActiveDestination) {
        ApplyActiveDestination(ident, airport.Elevation());
    }
    planAirports.selectedRunway = 1;
    AppendMessage(Format("APT '%s' Set", std::string(ident).c_str()));
}

}  // namespace avq1
