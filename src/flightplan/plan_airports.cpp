#include "flightplan/plan_airports.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <span>

#include "base/messages.h"
#include "base/module_state.h"
#include "base/sim_folder.h"
#include "base/text.h"
#include "flightplan/plan_moves.h"
#include "geometry/geometry.h"
#include "platform/files.h"
#include "settings/parking.h"

namespace avq1 {

PlanAirports planAirports;

namespace {

constexpr std::size_t kLineLimit = 1499;
constexpr std::size_t kMaxWords = 24;
constexpr std::size_t kFirstRunwayWord = 4;

// What the files say of an airport: its line of the airport file, the pattern sides of its runways,
// the parking position.
struct AirportLine {
    std::string ident;
    bool found = false;
    bool complete = false;  // the line has all words up to the position
    std::string elevation;
    LatLon position;
    std::vector<PlanRunway> runways;
    ParkingPosition parking;

    std::string_view Elevation() const { return elevation; }
    LatLon Position() const { return position; }
};

AirportLine destinationAhead;

const StateReset resetPlanAirports([] {
    planAirports = PlanAirports{};
    destinationAhead = {};
});

void ReadRunways(std::span<const std::string_view> tokens, AirportLine& airport) {
    for (const std::string_view token :
         tokens.first(std::min(tokens.size(), static_cast<std::size_t>(kRunwayCapacity)))) {
        PlanRunway runway;
        static_cast<Runway&>(runway) = ParseRunwayToken(ToUpper(token));
        if (runway.field8 == 0) {
            runway.field8 = runway.heading;
        }
        airport.runways.push_back(runway);
    }
}

// The first line of the airport file that begins with the identifier; false without one.
bool ReadAirportLine(AirportLine& airport) {
    std::string file;
    if (!ReadWholeFile(SimPath("\\avq\\Navdata\\avq_apts.txt"), file)) {
        return false;
    }
    LineReader reader(file, kLineLimit);
    std::string_view line;
    while (reader.Next(line)) {
        if (const std::string_view first = NextWord(line);
            !EqualsIgnoreCase(first, airport.ident)) {
            continue;
        }
        std::array<std::string_view, kMaxWords> words;  // name, elevation, position, runways
        const std::size_t count = SplitWords(line, words);
        airport.complete = count >= kFirstRunwayWord;
        airport.elevation = words[1];
        airport.position = {ToNumber(words[2]), ToNumber(words[3])};
        if (airport.complete) {
            ReadRunways(std::span(words).first(count).subspan(kFirstRunwayWord), airport);
        }
        return true;
    }
    return false;
}

// A word "RWY27R=RIGHTPATTERN". The file may leave out a designator's leading zero.
void ApplyRunwaySetting(std::string_view word, AirportLine& airport) {
    constexpr std::string_view kKey = "RWY";
    const std::size_t equals = word.find('=');
    if (!word.starts_with(kKey) || equals == std::string_view::npos ||
        word.substr(equals + 1) != "RIGHTPATTERN") {
        return;
    }
    const std::string designator(word.substr(kKey.size(), equals - kKey.size()));
    for (PlanRunway& runway : airport.runways) {
        if (runway.ident == designator || runway.ident == "0" + designator) {
            runway.rightPattern = 1;
        }
    }
}

void ReadPatternSides(AirportLine& airport) {
    constexpr std::size_t kHeadingLength = 6;
    std::string file;
    if (!ReadWholeFile(SimPath("\\avq\\Navdata\\apt_additional_info.txt"), file)) {
        return;
    }
    const std::string heading = Format("[%s]", ToUpper(airport.ident).c_str());
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
            ApplyRunwaySetting(word, airport);
        }
    }
}

AirportLine ReadAirport(std::string_view ident) {
    AirportLine airport;
    airport.ident = ident;
    airport.found = ReadAirportLine(airport);
    if (airport.found) {
        ReadPatternSides(airport);
        airport.parking = FindParkingPosition(ident);
    }
    return airport;
}

// The active plan's last entry when it is this airport.
PlanWaypoint* ArrivalEntry(std::string_view ident) {
    if (activePlan.lastIndex < 0) {
        return nullptr;
    }
    const PlanWaypoint& last = activePlan.entries[activePlan.lastIndex];
    return last.type == kAirportType && last.ident == ident ? &activePlan.Edit(activePlan.lastIndex)
                                                            : nullptr;
}

void SetDestinationTexts(std::string_view ident, const AirportLine& airport) {
    planAirports.destinationIdent = ident;
    planAirports.destinationElevationText = airport.Elevation();
}

// The traffic pattern's altitudes are those of the airport whose runways are shown.
void ShowElevation(std::string_view, const AirportLine& airport) {
    planAirports.destinationElevationText = airport.Elevation();
}

void ApplyDepartureElevation(std::string_view, const AirportLine& airport) {
    if (activePlan.lastIndex >= 0) {
        activePlan.Edit(0).altitude = ToNumber(airport.Elevation());
    }
}

void ApplyActiveDestination(std::string_view ident, const AirportLine& airport) {
    SetDestinationTexts(ident, airport);
    if (PlanWaypoint* arrival = ArrivalEntry(ident)) {
        arrival->altitude = ToNumber(airport.Elevation());
        arrival->altitudeConstraint = 0;
    }
}

void ApplyLoadedDestination(std::string_view ident, const AirportLine& airport) {
    SetDestinationTexts(ident, airport);
    planAirports.destinationElevation = ToNumber(airport.Elevation());
    if (PlanWaypoint* arrival = ArrivalEntry(ident)) {
        arrival->altitude = planAirports.destinationElevation;
        arrival->speed = kUnset;
    }
}

void PlaceAirport(PlanWaypoint& entry, std::string_view ident, const AirportLine& airport) {
    entry.ident = ident;
    entry.latitude = airport.Position().latitude;
    entry.longitude = airport.Position().longitude;
    entry.type = kAirportType;
    entry.frequency.clear();
}

void PlaceOrigin(FlightPlan& plan, std::string_view ident, const AirportLine& airport) {
    if (plan.lastIndex < 0) {
        plan.Append(PlanWaypoint{});
    }
    PlaceAirport(plan.Edit(0), ident, airport);
}

// Null when the plan is full.
PlanWaypoint* AppendAirport(FlightPlan& plan, std::string_view ident, const AirportLine& airport) {
    if (plan.IsFull()) {
        AppendMessage(kPlanFullMessage);
        return nullptr;
    }
    plan.Append(PlanWaypoint{});
    PlanWaypoint& entry = plan.Edit(plan.lastIndex);
    PlaceAirport(entry, ident, airport);
    return &entry;
}

void PlaceActiveOrigin(std::string_view ident, const AirportLine& airport) {
    PlaceOrigin(activePlan, ident, airport);
}

void PlaceModifiedOrigin(std::string_view ident, const AirportLine& airport) {
    PlaceOrigin(modifiedPlan, ident, airport);
}

void AppendToActive(std::string_view ident, const AirportLine& airport) {
    PlanWaypoint* const entry = AppendAirport(activePlan, ident, airport);
    if (entry == nullptr) {
        return;
    }
    SetDestinationTexts(ident, airport);
    entry->altitude = ToNumber(airport.Elevation());
    planAirports.destinationElevation = entry->altitude;
    planAirports.destinationLatitude = entry->latitude;
    planAirports.destinationLongitude = entry->longitude;
    planBook.verticalTargetIndex = activePlan.lastIndex;
}

void AppendToModified(std::string_view ident, const AirportLine& airport) {
    if (AppendAirport(modifiedPlan, ident, airport) != nullptr) {
        planBook.editIndex = NextEntryPlace(modifiedPlan);
    }
}

using ApplyMode = void (*)(std::string_view ident, const AirportLine& airport);

struct ModeRow {
    PlanAirportMode mode;
    bool looksUpParking;
    ApplyMode atOnce;  // before the runways are read; needs a whole airport line
    ApplyMode afterLookup;
};

const ModeRow kModes[] = {
    {PlanAirportMode::DepartureElevation, true, nullptr, ApplyDepartureElevation},
    {PlanAirportMode::ActiveDestination, true, nullptr, ApplyActiveDestination},
    {PlanAirportMode::LoadedDestination, false, ApplyLoadedDestination, nullptr},
    {PlanAirportMode::ActiveOrigin, true, PlaceActiveOrigin, nullptr},
    {PlanAirportMode::AppendToActive, true, AppendToActive, nullptr},
    {PlanAirportMode::ModifiedOrigin, true, PlaceModifiedOrigin, nullptr},
    {PlanAirportMode::AppendToModified, true, AppendToModified, nullptr},
    {PlanAirportMode::RunwaysOnly, true, nullptr, ShowElevation},
};

const ModeRow& RowOf(PlanAirportMode mode) {
    const auto* const row = std::find_if(std::begin(kModes), std::end(kModes),
                                         [&](const ModeRow& r) { return r.mode == mode; });
    return row != std::end(kModes) ? *row : *std::prev(std::end(kModes));
}

}  // namespace

bool LoadPlanAirportDetail(std::string_view ident, std::int32_t slot) {
    if (!LoadAirportDetail(ident, slot)) {
        return false;
    }
    // A departure loaded for a plan not yet active must not touch the one being flown.
    if (slot == kDepartureSlot && activePlan.lastIndex >= 0 &&
        activePlan.entries[0].ident == ident) {
        activePlan.Edit(0).altitude = airportSlots[kDepartureSlot].elevationFt;
    }
    return true;
}

void SetPlanAirport(std::string_view ident, PlanAirportMode mode) {
    if (ident.empty()) {
        return;
    }
    const bool isAhead =
        mode == PlanAirportMode::ActiveDestination && destinationAhead.ident == ident;
    const AirportLine airport = isAhead ? destinationAhead : ReadAirport(ident);
    if (!airport.found) {
        return;
    }
    const ModeRow& row = RowOf(mode);
    if (row.looksUpParking) {
        parkingPosition = airport.parking;
    }
    if (row.atOnce != nullptr && airport.complete) {
        row.atOnce(ident, airport);
    }
    planAirports.runways = airport.runways;
    planAirports.lastAirportIdent = ident;
    lastAirportElevationText = airport.Elevation();
    if (row.afterLookup != nullptr) {
        row.afterLookup(ident, airport);
    }
    planAirports.selectedRunway = 1;
    AppendMessage(Format("APT '%s' Set", std::string(ident).c_str()));
    if (ArrivalEntry(ident) != nullptr) {
        destinationAhead = airport;
    }
}

void ReadDestinationAhead() {
    if (activePlan.lastIndex < 0 || planAirports.destinationAirportState != kAirportStillToLoad) {
        return;
    }
    const PlanWaypoint& destination = activePlan.entries[activePlan.lastIndex];
    if (destination.type == kAirportType && destination.ident != destinationAhead.ident) {
        destinationAhead = ReadAirport(destination.ident);
    }
}

}  // namespace avq1
