#include "panelhost/world/traffic.h"

#include <algorithm>
#include <cmath>

#include "panelhost/world/traffic_threat.h"

namespace panelhost {
namespace {

constexpr double kUpdateS = 1;
constexpr double kHeardNm = 60;
constexpr double kTrendFpm = 500;  // shown as climbing or descending from here on

// ---- flying ----
OtherAircraft BeginEncounter(const Aircraft& own, const TrafficPlan& plan) {
    const double hours = plan.secondsAhead / 3600;
    const GeoPoint meeting = Destination(own.position, own.trackTrue, own.groundSpeedKt * hours);
    OtherAircraft other;
    other.trackTrue = Normalise360(own.trackTrue + plan.turnDeg);
    other.groundSpeedKt = std::max(own.groundSpeedKt + plan.speedKt, 0.0);
    other.climbFpm = plan.climbFpm;
    other.position = Destination(meeting, other.trackTrue + 180, other.groundSpeedKt * hours);
    other.trackTrue = other.groundSpeedKt * hours > 0.01 ? InitialCourse(other.position, meeting)
                                                         : other.trackTrue;
    other.altitudeFt = own.altitudeFt + own.verticalSpeedFpm * plan.secondsAhead / 60 +
                       plan.aboveFt - plan.climbFpm * plan.secondsAhead / 60;
    return other;
}

void FlyStraight(OtherAircraft& other, double dtS) {
    const GeoPoint from = other.position;
    const double distanceNm = other.groundSpeedKt * dtS / 3600;
    other.position = Destination(from, other.trackTrue, distanceNm);
    if (distanceNm > 1e-6) {
        other.trackTrue = Normalise360(InitialCourse(other.position, from) + 180);
    }
    other.altitudeFt = std::max(other.altitudeFt + other.climbFpm * dtS / 60, 0.0);
}

void AimAtNextPoint(OtherAircraft& other) {
    const RoutePoint& to = other.route[other.nextPoint];
    const double minutes = DistanceNm(other.position, to.position) / other.groundSpeedKt * 60;
    other.trackTrue = InitialCourse(other.position, to.position);
    other.climbFpm = minutes > 0 ? (to.altitudeFt - other.altitudeFt) / minutes : 0;
}

void StartAgain(OtherAircraft& other) {
    other.position = other.route.front().position;
    other.altitudeFt = other.route.front().altitudeFt;
    other.nextPoint = 1;
    AimAtNextPoint(other);
}

// A route so short that it is flown over and over in one step is left after so many points.
void FlyRoute(OtherAircraft& other, double dtS) {
    for (std::size_t legs = 0; legs < 10 * kMostRoutePoints; ++legs) {
        const double legS = DistanceNm(other.position, other.route[other.nextPoint].position) /
                            other.groundSpeedKt * 3600;
        if (dtS < legS) {
            FlyStraight(other, dtS);
            return;
        }
        dtS -= legS;
        other.position = other.route[other.nextPoint].position;
        other.altitudeFt = other.route[other.nextPoint].altitudeFt;
        if (++other.nextPoint == other.route.size()) {
            StartAgain(other);
        } else {
            AimAtNextPoint(other);
        }
    }
}

OtherAircraft BeginRoute(const TrafficPlan& plan) {
    OtherAircraft other;
    other.groundSpeedKt = plan.speedKt;
    other.route = plan.route;
    StartAgain(other);
    FlyRoute(other, plan.secondsAhead);
    return other;
}

// ---- telling ----
struct Velocity {
    double eastKt;
    double northKt;
};

Velocity VelocityOf(double trackTrue, double groundSpeedKt) {
    const double turn = trackTrue / kDegreesPerRadian;
    return {groundSpeedKt * std::sin(turn), groundSpeedKt * std::cos(turn)};
}

struct Heard {
    Threat threat = Threat::Other;
    avq1::TrafficRecord record;
};

std::uint32_t FourBits(int value, int firstBit) {
    return (static_cast<std::uint32_t>(value) & 0xFU) << static_cast<unsigned>(firstBit);
}

Heard Hear(const World& world, const OtherAircraft& other) {
    const Aircraft& own = world.aircraft;
    const double bearingTrue = InitialCourse(own.position, other.position);
    const Velocity mine = VelocityOf(own.trackTrue - bearingTrue, own.groundSpeedKt);
    const Velocity theirs = VelocityOf(other.trackTrue - bearingTrue, other.groundSpeedKt);
    Encounter encounter;
    encounter.rangeNm = DistanceNm(own.position, other.position);
    encounter.rangeRateKt = theirs.northKt - mine.northKt;  // along the line between them
    encounter.relativeAltitudeFt = other.altitudeFt - own.altitudeFt;
    encounter.relativeClimbFpm = other.climbFpm - own.verticalSpeedFpm;
    Heard heard;
    heard.threat = ThreatOf(encounter, own.altitudeFt, own.altitudeFt - world.groundElevationFt);
    const int trend = other.climbFpm >= kTrendFpm ? 1 : other.climbFpm <= -kTrendFpm ? -1 : 0;
    heard.record.relativeAltitudeFt = static_cast<float>(encounter.relativeAltitudeFt);
    heard.record.flags = FourBits(trend, avq1::kTrafficTrendBit) |
                         FourBits(static_cast<int>(heard.threat), avq1::kTrafficThreatBit);
    heard.record.valid = 1;
    heard.record.rangeNm = static_cast<float>(encounter.rangeNm);
    heard.record.relativeBearingRad =
        static_cast<float>(Normalise360(bearingTrue - own.headingTrue) / kDegreesPerRadian);
    return heard;
}

void Publish(const World& world, Traffic& traffic) {
    std::vector<Heard> heard;
    for (const OtherAircraft& other : traffic.aircraft) {
        const Heard one = Hear(world, other);
        if (one.record.rangeNm <= kHeardNm) {
            heard.push_back(one);
        }
    }
    const auto lessImportant = [](const Heard& a, const Heard& b) {
        return a.threat != b.threat ? a.threat < b.threat : a.record.rangeNm > b.record.rangeNm;
    };
    std::stable_sort(heard.begin(), heard.end(), lessImportant);
    for (std::size_t i = 0; i < heard.size(); ++i) {
        traffic.records[i] = heard[i].record;
        traffic.block.records[i] = &traffic.records[i];
    }
    traffic.block.count = static_cast<std::uint8_t>(heard.size());
    traffic.block.taken = 1;
    ++traffic.block.updateCounter;
}

void Begin(const World& world, Traffic& traffic) {
    traffic.aircraft.clear();
    for (const TrafficPlan& plan : traffic.starting->plans) {
        traffic.aircraft.push_back(plan.route.empty() ? BeginEncounter(world.aircraft, plan)
                                                      : BeginRoute(plan));
    }
    traffic.starting = nullptr;
    traffic.secondsToUpdate = 0;
}

}  // namespace

void StartTraffic(Traffic& traffic, const TrafficScene* scene) {
    traffic.starting = scene;
    traffic.aircraft.clear();
    traffic.secondsToUpdate = 0;
}

void StepTraffic(const World& world, Traffic& traffic, double dtS) {
    if (traffic.starting != nullptr) {
        Begin(world, traffic);
    } else {
        for (OtherAircraft& other : traffic.aircraft) {
            if (other.route.empty()) {
                FlyStraight(other, dtS);
            } else {
                FlyRoute(other, dtS);
            }
        }
    }
    traffic.secondsToUpdate -= dtS;
    if (traffic.secondsToUpdate <= 0) {
        traffic.secondsToUpdate = kUpdateS;
        Publish(world, traffic);
    }
}

}  // namespace panelhost
