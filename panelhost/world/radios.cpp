#include "panelhost/world/radios.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <optional>

#include "panelhost/base/text.h"
#include "panelhost/world/variables.h"

namespace panelhost {
namespace {

constexpr std::size_t kMaxFileBytes = 64U << 20U;
constexpr double kAirportReachNm = 40;
constexpr double kFullElevationNm = 10;
constexpr double kNearbySlackNm = 5;
constexpr double kLocalizerReachNm = 27;
constexpr double kLocalizerSectorDeg = 35;
constexpr double kGlideslopeSectorDeg = 8;
constexpr double kNdbReachNm = 100;
constexpr double kAntennaBehindThresholdNm = 1.65;  // some 10000 ft: beyond the far end
constexpr double kTouchdownNm = 1000 / kFeetPerNm;

double Radians(double degrees) {
    return degrees / kDegreesPerRadian;
}

// "113.90" gives 11390, "385" gives 385; 0 for anything else.
int Frequency(std::string_view text) {
    const std::optional<double> value = ToNumber(text);
    if (!value || *value < 1 || *value > 2000) {
        return 0;
    }
    return *value >= 108 && *value < 118 ? static_cast<int>(std::lround(*value * 100))
                                         : static_cast<int>(std::lround(*value));
}

std::optional<GeoPoint> Position(std::string_view latitude, std::string_view longitude) {
    const std::optional<double> lat = ToNumber(latitude);
    const std::optional<double> lon = ToNumber(longitude);
    if (!lat || !lon || std::fabs(*lat) > 90 || std::fabs(*lon) > 180) {
        return std::nullopt;
    }
    return GeoPoint{*lat, *lon};
}

double LineOfSightNm(double heightFt) {
    return std::clamp(1.23 * std::sqrt(std::max(heightFt, 0.0)) + 20, 40.0, 200.0);
}

void Silence(Receiver& receiver) {
    Receiver silent;
    silent.frequency = receiver.frequency;
    silent.courseMag = receiver.courseMag;
    receiver = silent;
}

template <typename Record, typename Reach>
const Record* Nearest(const std::unordered_map<int, std::vector<Record>>& records, int frequency,
                      const Reach& distanceOrNegative) {
    const auto found = records.find(frequency);
    if (found == records.end()) {
        return nullptr;
    }
    const Record* best = nullptr;
    double bestNm = 0;
    for (const Record& record : found->second) {
        const double nm = distanceOrNegative(record);
        if (nm >= 0 && (best == nullptr || nm < bestNm)) {
            best = &record;
            bestNm = nm;
        }
    }
    return best;
}

void HearVor(const World& world, const Station& station, double variationAtStation,
             Receiver& receiver) {
    const GeoPoint here = world.aircraft.position;
    receiver.ident = station.ident;
    receiver.signal = 256;
    receiver.hasDme = true;
    receiver.bearingTrue = InitialCourse(here, station.position);
    const double groundNm = DistanceNm(here, station.position);
    const double heightNm =
        std::max(0.0, world.aircraft.altitudeFt - world.groundElevationFt) / kFeetPerNm;
    receiver.dmeNm = std::hypot(groundNm, heightNm);
    receiver.dmeSpeedKt =
        std::fabs(world.aircraft.groundSpeedKt *
                  std::cos(Radians(receiver.bearingTrue - world.aircraft.trackTrue)));
    // The radial lies at the station: its own north, its own end of the great circle.
    const double radialTrue = InitialCourse(station.position, here);
    const double inboundMag = Normalise360(radialTrue + 180 - variationAtStation);
    const double offCourse = AngleDifference(receiver.courseMag, inboundMag);
    receiver.toFrom = std::fabs(offCourse) < 90 ? 1 : 2;
    receiver.deviationDeg =
        receiver.toFrom == 1 ? offCourse
                             : AngleDifference(Normalise360(inboundMag + 180), receiver.courseMag);
    receiver.courseTrue =
        Normalise360(receiver.courseMag + variationAtStation +
                     AngleDifference(Normalise360(radialTrue + 180), receiver.bearingTrue));
}

void HearLocalizer(const World& world, const Localizer& localizer, Receiver& receiver) {
    const GeoPoint here = world.aircraft.position;
    receiver.ident = localizer.ident;
    receiver.signal = 256;
    receiver.isLocalizer = true;
    receiver.toFrom = 1;
    receiver.bearingTrue = InitialCourse(here, localizer.antenna);
    const double inbound = Normalise360(InitialCourse(localizer.antenna, here) + 180);
    receiver.deviationDeg = AngleDifference(localizer.courseTrue, inbound);
    receiver.courseTrue = localizer.courseTrue;
    const GeoPoint touchdown = Destination(localizer.threshold, localizer.courseTrue, kTouchdownNm);
    const double toTouchdownNm = DistanceNm(here, touchdown);
    const bool before =
        std::fabs(AngleDifference(localizer.courseTrue, InitialCourse(here, touchdown))) < 90;
    if (localizer.glideDeg > 0 && before && toTouchdownNm < kLocalizerReachNm &&
        std::fabs(receiver.deviationDeg) < kGlideslopeSectorDeg) {
        receiver.hasGlideslope = true;
        receiver.glidePathDeg = localizer.glideDeg;
        const double heightNm = (world.aircraft.altitudeFt - localizer.elevationFt) / kFeetPerNm;
        receiver.glideslopeDeg =
            std::atan2(heightNm, std::max(toTouchdownNm, 0.001)) * kDegreesPerRadian -
            localizer.glideDeg;
    }
}

int MarkerOver(const World& world, const Localizer& localizer) {
    struct Marker {
        int value;
        double fromThresholdNm;
        double reachNm;
    };
    constexpr Marker kMarkers[] = {{1, 4.5, 0.35}, {2, 0.55, 0.12}, {3, 0.1, 0.05}};
    for (const Marker& marker : kMarkers) {
        const GeoPoint place =
            Destination(localizer.threshold, localizer.courseTrue + 180, marker.fromThresholdNm);
        if (DistanceNm(world.aircraft.position, place) < marker.reachNm) {
            return marker.value;
        }
    }
    return 0;
}

// Opposite ends of a runway may share a frequency: the one already heard stays while in reach.
const Localizer* LocalizerInReach(const Ground& ground, const World& world, int frequency,
                                  const std::string& heard) {
    const GeoPoint here = world.aircraft.position;
    return Nearest(ground.localizers, frequency, [&](const Localizer& localizer) {
        const double nm = DistanceNm(here, localizer.antenna);
        const double inbound = Normalise360(InitialCourse(localizer.antenna, here) + 180);
        const bool inSector =
            std::fabs(AngleDifference(localizer.courseTrue, inbound)) < kLocalizerSectorDeg;
        const double order = localizer.ident == heard ? 0 : nm;
        return nm <= kLocalizerReachNm && inSector ? order : -1.0;
    });
}

void TuneNav(const Ground& ground, double (*variation)(const World&, const GeoPoint&),
             const World& world, Receiver& receiver) {
    const std::string heard = receiver.ident;
    Silence(receiver);
    const GeoPoint here = world.aircraft.position;
    if (const Localizer* localizer = LocalizerInReach(ground, world, receiver.frequency, heard)) {
        HearLocalizer(world, *localizer, receiver);
        return;
    }
    const double reachNm = LineOfSightNm(world.aircraft.altitudeFt - world.groundElevationFt);
    const Station* station =
        Nearest(ground.stations, receiver.frequency, [&](const Station& candidate) {
            const double nm = DistanceNm(here, candidate.position);
            return candidate.isVor && nm <= reachNm ? nm : -1.0;
        });
    if (station != nullptr) {
        HearVor(world, *station, variation(world, station->position), receiver);
    }
}

DataCycle CycleOfLine(std::string_view line) {
    const std::vector<std::string_view> words = Words(line);
    if (words.size() < 7 || words[4].size() < 2) {
        return {};
    }
    return {std::string(words[3]), std::string(words[4].substr(1)),
            std::string(words[6].substr(0, words[6].find(')')))};
}

}  // namespace

bool IsOver(const DataCycle& cycle, const World& world) {
    namespace chrono = std::chrono;
    constexpr int kUtcDayOfYear = 8;
    constexpr int kUtcYear = 9;
    constexpr std::string_view kMonths = "JANFEBMARAPRMAYJUNJULAUGSEPOCTNOVDEC";
    const std::vector<std::string_view> parts = SplitOn(cycle.end, '-');
    const std::size_t month =
        parts.size() == 3 && parts[1].size() == 3 ? kMonths.find(parts[1]) : std::string_view::npos;
    if (month == std::string_view::npos || month % 3 != 0) {
        return false;
    }
    const auto number = [](std::string_view text) {
        return static_cast<int>(std::clamp<std::int64_t>(ToInteger(text).value_or(0), 0, 9999));
    };
    const chrono::year_month_day end{chrono::year(number(parts[2])),
                                     chrono::month(static_cast<unsigned>(month / 3 + 1)),
                                     chrono::day(static_cast<unsigned>(number(parts[0])))};
    const chrono::sys_days newYear{
        chrono::year(static_cast<int>(ReadVariable(world, kUtcYear).value_or(0))) / 1 / 1};
    const int dayOfYear = static_cast<int>(ReadVariable(world, kUtcDayOfYear).value_or(0));
    return end.ok() && newYear + chrono::days(dayOfYear - 1) > chrono::sys_days(end);
}

void ParseStations(std::string_view text, Ground& ground) {
    for (const std::string_view line : Lines(text)) {
        if (line.starts_with(";AIRAC") && ground.cycle.number.empty()) {
            ground.cycle = CycleOfLine(line.substr(0, 300));
        }
        if (line.empty() || line.front() == ';') {
            continue;
        }
        const std::vector<std::string_view> words = Words(line.substr(0, 1000));
        if (words.size() < 6) {
            continue;
        }
        const std::optional<GeoPoint> position = Position(words[2], words[3]);
        const int frequency = Frequency(words[5]);
        if (position && frequency > 0) {
            ground.stations[frequency].push_back(
                {std::string(words[0]), *position, frequency >= 10800});
        }
    }
}

void ParseLocalizers(std::string_view text, Ground& ground, std::vector<std::string>& warnings) {
    int number = 0;
    for (const std::string_view raw : Lines(text)) {
        ++number;
        const std::string_view line = Trim(raw.substr(0, 1000));
        if (line.empty() || line.front() == ';') {
            continue;
        }
        const std::vector<std::string_view> words = Words(line);
        const std::optional<GeoPoint> position =
            words.size() >= 7 ? Position(words[2], words[3]) : std::nullopt;
        const int frequency = words.size() >= 7 ? Frequency(words[1]) : 0;
        const std::optional<double> course = words.size() >= 7 ? ToNumber(words[4]) : std::nullopt;
        const std::optional<double> glide = words.size() >= 7 ? ToNumber(words[5]) : std::nullopt;
        const std::optional<double> elevation =
            words.size() >= 7 ? ToNumber(words[6]) : std::nullopt;
        if (!position || frequency < 10800 || !course || !glide || *glide < 0 || *glide > 10 ||
            !elevation) {
            warnings.push_back(Format("ils.txt line %d is not a localizer", number));
            continue;
        }
        const double courseTrue = Normalise360(*course);
        const std::optional<GeoPoint> antenna =
            words.size() >= 11 ? Position(words[9], words[10]) : std::nullopt;
        ground.localizers[frequency].push_back(
            {std::string(words[0]), *position,
             antenna.value_or(Destination(*position, courseTrue, kAntennaBehindThresholdNm)),
             courseTrue, *glide, *elevation});
    }
}

void ParseAirports(std::string_view text, Ground& ground) {
    ground.nearbyValid = false;
    for (const std::string_view line : Lines(text)) {
        const std::vector<std::string_view> words = Words(line.substr(0, 400));
        if (words.size() < 5) {
            continue;
        }
        const std::optional<GeoPoint> position = Position(words[3], words[4]);
        const std::optional<double> elevation = ToNumber(words[2]);
        if (position && elevation) {
            ground.airports.push_back({*position, *elevation});
        }
    }
}

void LoadGround(const std::string& simFolder, Ground& ground, std::vector<std::string>& warnings) {
    const auto read = [&simFolder](const char* name) {
        const std::string path = FindFileNoCase(simFolder, name);
        return path.empty() ? std::string() : ReadWholeFile(path, kMaxFileBytes).value_or("");
    };
    if (FindFileNoCase(simFolder, "avq/navdata").empty()) {
        warnings.push_back(
            "no navigation data: the simulator folder has no avq/Navdata, so nothing can be found "
            "by name and no radio receives");
    }
    ParseStations(read("avq/navdata/avq_navs.txt"), ground);
    ParseAirports(read("avq/navdata/avq_apts.txt"), ground);
    ParseLocalizers(read("avq/navdata/ils.txt"), ground, warnings);
}

double GroundElevationFt(Ground& ground, const GeoPoint& at) {
    if (!ground.nearbyValid || DistanceNm(at, ground.nearbyCentre) > kNearbySlackNm) {
        ground.nearby.clear();
        for (const GroundPoint& airport : ground.airports) {
            if (DistanceNm(at, airport.position) < kAirportReachNm + kNearbySlackNm) {
                ground.nearby.push_back(airport);
            }
        }
        ground.nearbyCentre = at;
        ground.nearbyValid = true;
    }
    double weights = 0;
    double weighted = 0;
    double nearestNm = kAirportReachNm;
    for (const GroundPoint& airport : ground.nearby) {
        const double nm = DistanceNm(at, airport.position);
        if (nm >= kAirportReachNm) {
            continue;
        }
        // The weight ends at the reach, so an airport coming into it makes no step.
        const double weight = (1 - nm / kAirportReachNm) / (nm * nm * nm * nm + 1e-6);
        weights += weight;
        weighted += weight * airport.elevationFt;
        nearestNm = std::min(nearestNm, nm);
    }
    if (weights <= 0) {
        return 0;
    }
    const double fade =
        std::clamp((kAirportReachNm - nearestNm) / (kAirportReachNm - kFullElevationNm), 0.0, 1.0);
    return weighted / weights * fade;
}

void UpdateReceivers(const Ground& ground, double (*variation)(const World&, const GeoPoint&),
                     World& world) {
    TuneNav(ground, variation, world, world.nav1);
    TuneNav(ground, variation, world, world.nav2);
    Silence(world.adf);
    const GeoPoint here = world.aircraft.position;
    const Station* beacon =
        Nearest(ground.stations, world.adf.frequency, [&](const Station& candidate) {
            const double nm = DistanceNm(here, candidate.position);
            return !candidate.isVor && nm <= kNdbReachNm ? nm : -1.0;
        });
    if (beacon != nullptr) {
        world.adf.ident = beacon->ident;
        world.adf.signal = 256;
        world.adf.bearingTrue = InitialCourse(here, beacon->position);
    }
    const Localizer* localizer =
        world.nav1.isLocalizer
            ? LocalizerInReach(ground, world, world.nav1.frequency, world.nav1.ident)
            : nullptr;
    world.markerBeacon = localizer != nullptr ? MarkerOver(world, *localizer) : 0;
}

}  // namespace panelhost
