#include "guidance/radio_position.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "base/module_state.h"
#include "simlink/aircraft_state.h"
#include "simlink/sim_variables.h"

namespace avq1 {

NavOptions navOptions;

namespace {

constexpr double kLeastMissNm = 3;     // the station may lie so far from where it seems to be,
constexpr double kMissPerNm = 0.05;    // and this much farther per nm of its distance
constexpr double kSameEstimateNm = 1;  // not searched again as long as it seems to lie here
constexpr double kNmPerDegree = 60;
constexpr double kFeetPerNm = 6076.12;
constexpr std::size_t kReceivers = 2;

// The last search of a receiver.
struct Search {
    std::optional<LatLon> estimate;  // none before the first
    std::int32_t navaid = 0;         // 0 = none found
};

std::array<Search, kReceivers> searches;
const StateReset radioReset([] {
    navOptions = {};
    searches = {};
});

double NmBetween(const LatLon& a, const LatLon& b) {
    return GreatCircleDistanceNm(a.latitude, a.longitude, b.latitude, b.longitude);
}

std::int32_t NearestVor(const LatLon& estimate, double withinNm) {
    std::int32_t nearest = 0;
    double nearestNm = withinNm;
    const std::vector<LatLon>& positions = navDatabase.navaids.Positions();
    for (std::int32_t i = 1; i <= navDatabase.navaids.count; ++i) {
        if (std::abs(positions[i].latitude - estimate.latitude) * kNmPerDegree > nearestNm ||
            navDatabase.navaids[i].kind != PointKind::Vor) {
            continue;
        }
        if (const double nm = NmBetween(positions[i], estimate); nm <= nearestNm) {
            nearestNm = nm;
            nearest = i;
        }
    }
    return nearest;
}

// DME measures the slant: what is left of it on the ground.
double GroundNm(double dmeNm) {
    const double heightNm = aircraft.radioAltitudeFt / kFeetPerNm;
    return std::sqrt(std::max(dmeNm * dmeNm - heightNm * heightNm, 0.0));
}

bool IsInhibited(const std::array<std::string, 2>& idents, std::string_view ident) {
    return std::ranges::find(idents, ident) != idents.end();
}

}  // namespace

ReceivedStation StationReceived(NavReceiver receiver) {
    const AircraftState& shown = ShownAircraft();
    const bool left = receiver == NavReceiver::Left;
    const bool heard =
        left ? Nav1HasSignal() && (ReadNavFlagWord() & kNavFlagLocalizer) == 0 : Nav2HasSignal();
    ReceivedStation station;
    station.distanceNm = left ? shown.nav1DmeNm : shown.nav2DmeNm;
    station.bearingTrue =
        PositiveModulo(shown.headingMag + shown.magneticVariation +
                           (left ? shown.nav1RelativeBearing : shown.nav2RelativeBearing),
                       360);
    if (!heard || !(station.distanceNm > 0) || !std::isfinite(station.bearingTrue)) {
        return {};
    }
    LatLon estimate;
    PointAtDistance(aircraft.latitude, aircraft.longitude, station.bearingTrue,
                    GroundNm(station.distanceNm), estimate.latitude, estimate.longitude);
    Search& last = searches[static_cast<std::size_t>(receiver)];
    if (!last.estimate || NmBetween(*last.estimate, estimate) > kSameEstimateNm ||
        last.navaid > navDatabase.navaids.count) {
        last = {estimate, NearestVor(estimate, kLeastMissNm + kMissPerNm * station.distanceNm)};
    }
    if (last.navaid == 0) {
        return {};
    }
    station.navaid = last.navaid;
    return station;
}

bool RadioPosition(LatLon& position) {
    if (!navOptions.dmeUpdate || !navOptions.vorUpdate) {
        return false;
    }
    for (const NavReceiver receiver : {NavReceiver::Left, NavReceiver::Right}) {
        const ReceivedStation station = StationReceived(receiver);
        const std::string_view ident = navDatabase.navaids.Ident(station.navaid);
        if (station.navaid == 0 || IsInhibited(navOptions.inhibitedDme, ident) ||
            IsInhibited(navOptions.inhibitedVor, ident)) {
            continue;
        }
        const LatLon& from = navDatabase.navaids.Positions()[station.navaid];
        PointAtDistance(from.latitude, from.longitude,
                        PositiveModulo(station.bearingTrue + 180, 360),
                        GroundNm(station.distanceNm), position.latitude, position.longitude);
        return true;
    }
    return false;
}

}  // namespace avq1
