#include "flightplan/tower_view.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <string>

#include "base/messages.h"
#include "base/sim_folder.h"
#include "base/text.h"
#include "flightplan/flight_plan.h"
#include "flightplan/plan_airports.h"
#include "geometry/geometry.h"
#include "platform/files.h"
#include "simlink/aircraft_state.h"
#include "simlink/data_service.h"

namespace avq1 {
namespace {

constexpr std::size_t kLineLimit = 4096;
constexpr double kLatitudeScale = 477302101697422.25;      // 10001750 / 90 x 2^32
constexpr double kLongitudeScale = 5.124095576030431e+16;  // 2^64 / 360

struct TowerView {
    double latitude = 0;
    double longitude = 0;
    double altitude = 0;
};

// The airport's section of the additional information; it ends at the first empty line.
bool ReadGivenPosition(const std::string& ident, TowerView& view) {
    std::string file;
    if (!ReadWholeFile(SimPath("\\avq\\Navdata\\apt_additional_info.txt"), file)) {
        return false;
    }
    LineReader reader(file, kLineLimit);
    std::string_view line;
    bool inSection = false;
    bool hasLatitude = false;
    bool hasLongitude = false;
    while (reader.Next(line)) {
        std::string_view rest = line;
        const std::string_view first = NextWord(rest);
        if (!inSection) {
            inSection = EqualsIgnoreCase(first, "[" + ident + "]");
            continue;
        }
        const std::size_t equals = line.find('=');
        if (first.empty() || first.front() == '[') {
            break;
        }
        if (equals == std::string_view::npos) {
            continue;
        }
        std::string_view key = line.substr(0, equals);
        key = NextWord(key);
        const double value = ToNumber(line.substr(equals + 1));
        if (EqualsIgnoreCase(key, "TowerViewLat")) {
            view.latitude = value;
            hasLatitude = true;
        } else if (EqualsIgnoreCase(key, "TowerViewLon")) {
            view.longitude = value;
            hasLongitude = true;
        } else if (EqualsIgnoreCase(key, "TowerViewAlt")) {
            view.altitude = value;
        }
    }
    return hasLatitude && hasLongitude;
}

const PlanRunway* SelectedRunway(const std::string& ident) {
    const std::int64_t index =
        std::int64_t{planAirports.patternRunwayOffset} + planAirports.selectedRunway;
    const auto count = static_cast<std::int64_t>(planAirports.runways.size());
    const bool selected = planAirports.patternRunwayOffset != kNoPatternRunway &&
                          planAirports.lastAirportIdent == ident && index >= 0 && index < count;
    return selected ? &planAirports.runways[static_cast<std::size_t>(index)] : nullptr;
}

double AirportElevation(const std::string& ident) {
    std::string file;
    if (!ReadWholeFile(SimPath("\\avq\\Navdata\\avq_apts.txt"), file)) {
        return 0;
    }
    LineReader reader(file, kLineLimit);
    std::string_view line;
    while (reader.Next(line)) {
        std::array<std::string_view, 3> words;
        SplitWords(line, words);
        if (EqualsIgnoreCase(words[0], ident)) {
            return ToNumber(words[2]);
        }
    }
    return 0;
}

TowerView BesideRunway(const PlanRunway& runway) {
    constexpr double kDistanceNm = 0.21;
    constexpr double kAsideDeg = 15;
    double course = runway.heading + aircraft.magneticVariation + kAsideDeg;
    if (course > 360) {
        course -= 360;
    }
    TowerView view;
    PointAtDistance(runway.latitude, runway.longitude, course, kDistanceNm, view.latitude,
                    view.longitude);
    return view;
}

TowerView DestinationView(const PlanWaypoint& destination) {
    constexpr double kAboveAirportFt = 100;
    TowerView view;
    if (ReadGivenPosition(destination.ident, view)) {
        return view;
    }
    if (const PlanRunway* const runway = SelectedRunway(destination.ident)) {
        return BesideRunway(*runway);
    }
    return {destination.latitude, destination.longitude,
            AirportElevation(destination.ident) + kAboveAirportFt};
}

// A value on a circle of 2^64 steps; 180 degrees east is 180 degrees west.
std::int64_t Steps(double value) {
    constexpr double kHalfCircle = 9223372036854775808.0;
    return std::abs(value) < kHalfCircle ? static_cast<std::int64_t>(value) : INT64_MIN;
}

}  // namespace

bool SendTowerView() {
    if (activePlan.lastIndex < 0 ||
        DsOpen(kAnySimulator, dsBuffer.data(), dsBuffer.size()) != DsError::None) {
        return false;
    }
    const PlanWaypoint& destination = activePlan.entries[activePlan.lastIndex];
    const TowerView view = DestinationView(destination);
    const std::int64_t latitude = Steps(view.latitude * kLatitudeScale);
    const std::int64_t longitude = Steps(view.longitude * kLongitudeScale);
    const std::int64_t altitude = std::int64_t{TruncateToInteger(view.altitude)} * (1LL << 32);
    DsWrite(0x0D50, sizeof latitude, &latitude);
    DsWrite(0x0D58, sizeof longitude, &longitude);
    DsWrite(0x0D60, sizeof altitude, &altitude);
    const bool sent = DsProcess() == DsError::None;
    DsClose();
    if (sent) {
        AppendMessage(Format("TWR Pos '%s' set", destination.ident.c_str()));
    }
    return sent;
}

}  // namespace avq1
