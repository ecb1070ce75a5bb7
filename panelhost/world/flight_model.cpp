#include "panelhost/world/flight_model.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace panelhost {
namespace {

constexpr double kGravityKtPerS = 9.80665 * 3600 / 1852;
constexpr double kStandardTurnDegPerS = 3;
constexpr double kRollRateDegPerS = 6;
constexpr double kRollTimeS = 0.8;        // bank error is taken out in about this time
constexpr double kHeadingTimeS = 6;       // heading error is flown out in about this time
constexpr double kVerticalFpmPerS = 150;  // about 0.08 g
constexpr double kAltitudeTimeS = 15;
constexpr double kClimbFpm = 1800;  // when no vertical speed was ever set
constexpr double kMaxVerticalFpm = 6000;
constexpr double kSpeedUpKtPerS = 1.5;
constexpr double kSlowDownKtPerS = 1.2;
constexpr double kSpeedTimeS = 3;
constexpr double kBrakeKtPerS = 4;
constexpr double kTakeoffKtPerS = 3;
constexpr double kRotateKt = 145;
constexpr double kLowestKt = 115;
constexpr double kHighestKt = 340;
constexpr double kHighestMach = 0.82;
constexpr double kCeilingFt = 41000;
constexpr double kGlideFpm = -1500;  // without fuel
constexpr double kFlareFt = 40;      // above the ground
constexpr double kFlareFpm = -250;
constexpr double kCommittedFt = 250;  // below it an approach goes on without its glideslope
constexpr double kShortFinalFpm = -700;

double Radians(double degrees) {
    return degrees / kDegreesPerRadian;
}

double Limit(double value, double bound) {
    return std::clamp(value, -bound, bound);
}

// A uniform number in [-1, 1): our own generator, so that every machine draws the same.
double Random(Air& air) {
    air.randomState ^= air.randomState << 13U;
    air.randomState ^= air.randomState >> 7U;
    air.randomState ^= air.randomState << 17U;
    return static_cast<double>(air.randomState >> 11U) / static_cast<double>(1ULL << 52U) - 1.0;
}

void StepGusts(Air& air, double dtS) {
    if (air.turbulenceKt <= 0) {
        air.gustEastKt = 0;
        air.gustNorthKt = 0;
        return;
    }
    constexpr double kCorrelationS = 5;
    const double fade = std::exp(-dtS / kCorrelationS);
    const double kick = air.turbulenceKt * std::sqrt(3 * (1 - fade * fade));
    air.gustEastKt = air.gustEastKt * fade + kick * Random(air);
    air.gustNorthKt = air.gustNorthKt * fade + kick * Random(air);
}

// Heading that makes good a true track in the present wind.
double HeadingForTrack(const World& world, double trackTrue) {
    const double across =
        std::sin(Radians(world.air.windDirectionTrue - trackTrue)) * world.air.windSpeedKt;
    const double speed = std::max(world.aircraft.trueAirspeedKt, 50.0);
    return trackTrue + std::asin(Limit(across / speed, 0.7)) * kDegreesPerRadian;
}

// NAV and approach modes: close on the course at an angle that shrinks with the deviation.
double CourseHeadingTrue(const World& world) {
    const Receiver& nav = world.nav1;
    const double gain = nav.isLocalizer ? 12.0 : 4.0;
    const double bound = nav.isLocalizer ? 30.0 : 45.0;
    return HeadingForTrack(world, nav.courseTrue + Limit(gain * nav.deviationDeg, bound));
}

double BankForHeading(const World& world, double headingTrue) {
    const Aircraft& aircraft = world.aircraft;
    const double speedKt = std::max(aircraft.trueAirspeedKt, 60.0);
    const double errorDeg = AngleDifference(aircraft.headingTrue, Normalise360(headingTrue));
    const double rate = Limit(errorDeg / kHeadingTimeS, kStandardTurnDegPerS);
    const double bank = std::atan(Radians(rate) * speedKt / kGravityKtPerS) * kDegreesPerRadian;
    return Limit(bank, kMaxBankDeg);
}

double CommandedBank(const World& world) {
    const Autopilot& autopilot = world.autopilot;
    if (!autopilot.master && !autopilot.flightDirector) {
        return 0;
    }
    const bool follow = (autopilot.navHold || autopilot.approachHold) && world.nav1.signal > 0;
    if (follow) {
        return BankForHeading(world, CourseHeadingTrue(world));
    }
    if (autopilot.headingHold) {
        return BankForHeading(world, autopilot.headingBugMag + world.magneticVariation);
    }
    return 0;
}

double HeightFt(const World& world) {
    return world.aircraft.altitudeFt - world.groundElevationFt;
}

double GlideslopeFpm(const World& world) {
    if (HeightFt(world) < kFlareFt) {
        return kFlareFpm;
    }
    if (!world.nav1.hasGlideslope) {
        return kShortFinalFpm;
    }
    const double speedFpm = world.aircraft.groundSpeedKt * kFeetPerNm / 60;
    // A degree above the path adds about two thirds of the normal descent.
    const double angle = world.nav1.glidePathDeg + Limit(2.0 * world.nav1.glideslopeDeg, 2.0);
    return -speedFpm * std::tan(Radians(angle));
}

double AltitudeFpm(const Aircraft& aircraft, const Autopilot& autopilot) {
    const double errorFt =
        std::min<double>(autopilot.altitudeTargetFt, kCeilingFt) - aircraft.altitudeFt;
    const double wanted = std::abs(autopilot.verticalSpeedTargetFpm);
    const double bound = wanted > 0 ? std::min(wanted, kMaxVerticalFpm) : kClimbFpm;
    return Limit(errorFt * 60 / kAltitudeTimeS, bound);
}

double CommandedVerticalFpm(World& world) {
    Autopilot& autopilot = world.autopilot;
    if (FuelPounds(world.aircraft) <= 0) {
        return kGlideFpm;
    }
    if (!autopilot.master) {
        return 0;
    }
    CaptureGlideslope(world, autopilot);
    CaptureAltitude(world.aircraft, autopilot);
    if (autopilot.glideslopeCaptured) {
        return GlideslopeFpm(world);
    }
    if (autopilot.verticalSpeedHold) {
        return Limit(autopilot.verticalSpeedTargetFpm, kMaxVerticalFpm);
    }
    return autopilot.altitudeHold ? AltitudeFpm(world.aircraft, autopilot) : 0;
}

double CommandedAirspeedKt(const World& world) {
    const Aircraft& aircraft = world.aircraft;
    const double wanted =
        world.autopilot.airspeedHold ? world.autopilot.airspeedTargetKt : aircraft.heldAirspeedKt;
    const double kelvin = StandardTemperatureC(aircraft.altitudeFt) + 273.15;
    const double soundKt = 38.967854 * std::sqrt(kelvin);
    const double machLimit = IndicatedAirspeedKt(kHighestMach * soundKt, aircraft.altitudeFt);
    return std::clamp(wanted, kLowestKt, std::max(kLowestKt, std::min(kHighestKt, machLimit)));
}

void StepFuel(Aircraft& aircraft, double dtS) {
    const double kt = aircraft.indicatedAirspeedKt;
    double flow = aircraft.onGround && kt < 30 ? 1400 : 1800 + 0.028 * kt * kt;
    flow += std::max(-0.9 * (flow - 1200), 1.2 * aircraft.verticalSpeedFpm);
    aircraft.fuelFlowPph = std::max(flow, 1200.0);
    double burnGallons = aircraft.fuelFlowPph / 3600 * dtS / aircraft.fuelPoundsPerGallon;
    const double centre = std::min(burnGallons, aircraft.fuelGallons[0]);
    aircraft.fuelGallons[0] -= centre;
    burnGallons -= centre;
    double wings = 0;
    for (int i = 1; i < kTankCount; ++i) {
        wings += aircraft.fuelGallons[static_cast<std::size_t>(i)];
    }
    const double keep = wings > 0 ? std::max(0.0, 1 - burnGallons / wings) : 0;
    for (int i = 1; i < kTankCount; ++i) {
        aircraft.fuelGallons[static_cast<std::size_t>(i)] *= keep;
    }
    if (FuelPounds(aircraft) <= 0) {
        aircraft.fuelFlowPph = 0;
    }
}

void StepAttitude(World& world, double dtS) {
    Aircraft& aircraft = world.aircraft;
    aircraft.commandedBankRightDeg = CommandedBank(world);
    const double bankTarget = world.autopilot.master ? aircraft.commandedBankRightDeg : 0;
    const double roll = Limit((bankTarget - aircraft.bankRightDeg) / kRollTimeS, kRollRateDegPerS);
    aircraft.bankRightDeg += roll * dtS;
    const double turnDegPerS = kGravityKtPerS * std::tan(Radians(aircraft.bankRightDeg)) /
                               std::max(aircraft.trueAirspeedKt, 60.0) * kDegreesPerRadian;
    aircraft.headingTrue = Normalise360(aircraft.headingTrue + turnDegPerS * dtS);
}

double AngleOfAttackDeg(double indicatedKt) {
    return std::clamp(2.0 + (250 - indicatedKt) * 0.03, 0.0, 8.0);
}

double PathDeg(const Aircraft& aircraft, double verticalFpm) {
    const double speedFpm = std::max(aircraft.trueAirspeedKt, 60.0) * kFeetPerNm / 60;
    return std::atan(verticalFpm / speedFpm) * kDegreesPerRadian;
}

void StepClimb(World& world, double dtS) {
    Aircraft& aircraft = world.aircraft;
    const double wanted = CommandedVerticalFpm(world);
    aircraft.verticalSpeedFpm += Limit(wanted - aircraft.verticalSpeedFpm, kVerticalFpmPerS * dtS);
    aircraft.altitudeFt += aircraft.verticalSpeedFpm / 60 * dtS;
    const double attack = AngleOfAttackDeg(aircraft.indicatedAirspeedKt);
    aircraft.pitchUpDeg = PathDeg(aircraft, aircraft.verticalSpeedFpm) + attack;
    aircraft.commandedPitchUpDeg = PathDeg(aircraft, wanted) + attack;
    if (aircraft.altitudeFt <= world.groundElevationFt && aircraft.verticalSpeedFpm <= 0) {
        aircraft.onGround = true;
        aircraft.heldAirspeedKt = 0;
        world.autopilot.master = false;
        world.autopilot.approachHold = false;
        world.autopilot.glideslopeCaptured = false;
        world.autopilot.airspeedHold = false;
    }
}

void StepSpeed(World& world, double dtS) {
    Aircraft& aircraft = world.aircraft;
    const double error = CommandedAirspeedKt(world) - aircraft.indicatedAirspeedKt;
    aircraft.indicatedAirspeedKt +=
        std::clamp(error / kSpeedTimeS, -kSlowDownKtPerS, kSpeedUpKtPerS) * dtS;
}

void StepOnGround(World& world, double dtS) {
    Aircraft& aircraft = world.aircraft;
    const Autopilot& autopilot = world.autopilot;
    const bool rolling = autopilot.airspeedHold && autopilot.airspeedTargetKt >= kLowestKt &&
                         !aircraft.parkingBrake && FuelPounds(aircraft) > 0;
    const double wanted = rolling ? CommandedAirspeedKt(world) : 0;
    const double error = wanted - aircraft.indicatedAirspeedKt;
    aircraft.indicatedAirspeedKt += std::clamp(error, -kBrakeKtPerS * dtS, kTakeoffKtPerS * dtS);
    aircraft.altitudeFt = world.groundElevationFt;
    aircraft.verticalSpeedFpm = 0;
    aircraft.bankRightDeg = 0;
    aircraft.pitchUpDeg = 0;
    aircraft.commandedBankRightDeg = 0;
    aircraft.commandedPitchUpDeg = 0;
    const bool wantsUp = autopilot.altitudeTargetFt > world.groundElevationFt + 100;
    if (rolling && wantsUp && aircraft.indicatedAirspeedKt >= kRotateKt) {
        aircraft.onGround = false;
        aircraft.altitudeFt += 1;
        aircraft.verticalSpeedFpm = 100;
        aircraft.heldAirspeedKt = autopilot.airspeedTargetKt;
        world.autopilot.master = true;
        world.autopilot.altitudeHold = true;
    }
}

void StepPosition(World& world, double dtS) {
    Aircraft& aircraft = world.aircraft;
    aircraft.trueAirspeedKt = TrueAirspeedKt(aircraft.indicatedAirspeedKt, aircraft.altitudeFt);
    const double heading = Radians(aircraft.headingTrue);
    double east = aircraft.trueAirspeedKt * std::sin(heading);
    double north = aircraft.trueAirspeedKt * std::cos(heading);
    if (!aircraft.onGround) {
        const double path = std::cos(Radians(PathDeg(aircraft, aircraft.verticalSpeedFpm)));
        const double wind = Radians(world.air.windDirectionTrue);
        east = east * path - world.air.windSpeedKt * std::sin(wind) + world.air.gustEastKt;
        north = north * path - world.air.windSpeedKt * std::cos(wind) + world.air.gustNorthKt;
    }
    aircraft.groundSpeedKt = std::hypot(east, north);
    if (aircraft.groundSpeedKt > 0.01) {
        aircraft.trackTrue = Normalise360(std::atan2(east, north) * kDegreesPerRadian);
    }
    const GeoPoint before = aircraft.position;
    aircraft.position =
        Destination(before, aircraft.trackTrue, aircraft.groundSpeedKt * dtS / 3600);
    // Meridians converge: the same straight flight meets the next meridian at another angle.
    const double midLatitude = Radians((before.latitude + aircraft.position.latitude) / 2);
    const double eastwards = AngleDifference(before.longitude, aircraft.position.longitude);
    aircraft.headingTrue = Normalise360(aircraft.headingTrue + eastwards * std::sin(midLatitude));
}

}  // namespace

void CaptureAltitude(const Aircraft& aircraft, Autopilot& autopilot) {
    const double errorFt = autopilot.altitudeTargetFt - aircraft.altitudeFt;
    const double leadFt = std::fabs(aircraft.verticalSpeedFpm) * kAltitudeTimeS / 60;
    if (autopilot.verticalSpeedHold && errorFt * aircraft.verticalSpeedFpm > 0 &&
        std::fabs(errorFt) < leadFt) {
        autopilot.verticalSpeedHold = false;
        autopilot.altitudeHold = true;
    }
}

void CaptureGlideslope(const World& world, Autopilot& autopilot) {
    constexpr double kCaptureDeg = 0.1;
    const bool committed = autopilot.glideslopeCaptured && HeightFt(world) < kCommittedFt;
    if (!autopilot.approachHold || (!world.nav1.hasGlideslope && !committed)) {
        autopilot.glideslopeCaptured = false;
    } else if (!autopilot.glideslopeCaptured && std::fabs(world.nav1.glideslopeDeg) < kCaptureDeg &&
               std::fabs(world.nav1.deviationDeg) < 1.0) {
        autopilot.glideslopeCaptured = true;
        autopilot.altitudeHold = false;
        autopilot.verticalSpeedHold = false;
    }
}

double StandardTemperatureC(double altitudeFt) {
    constexpr double kTropopauseFt = 36089.24;
    return 15.0 - 0.0019812 * std::min(altitudeFt, kTropopauseFt);
}

static double DensityRatio(double altitudeFt) {
    constexpr double kTropopauseFt = 36089.24;
    const double theta = (StandardTemperatureC(altitudeFt) + 273.15) / 288.15;
    const double below = std::pow(theta, 4.2558797);
    return altitudeFt <= kTropopauseFt ? below
                                       : below * std::exp((kTropopauseFt - altitudeFt) / 20805.8);
}

double TrueAirspeedKt(double indicatedKt, double altitudeFt) {
    return indicatedKt / std::sqrt(DensityRatio(altitudeFt));
}

double IndicatedAirspeedKt(double trueKt, double altitudeFt) {
    return trueKt * std::sqrt(DensityRatio(altitudeFt));
}

double FuelPounds(const Aircraft& aircraft) {
    double gallons = 0;
    for (const double tank : aircraft.fuelGallons) {
        gallons += tank;
    }
    return gallons * aircraft.fuelPoundsPerGallon;
}

double PayloadPounds(const Aircraft& aircraft) {
    return std::accumulate(aircraft.payloadLb.begin(), aircraft.payloadLb.end(), 0.0);
}

double HeadingMag(const World& world) {
    return Normalise360(world.aircraft.headingTrue - world.magneticVariation);
}

void FillTanks(Aircraft& aircraft, double pounds) {
    double capacity = 0;
    for (const double tank : aircraft.tankCapacityGallons) {
        capacity += tank;
    }
    const double share =
        capacity > 0 ? std::clamp(pounds / aircraft.fuelPoundsPerGallon / capacity, 0.0, 1.0) : 0;
    for (std::size_t i = 0; i < aircraft.tankCapacityGallons.size(); ++i) {
        aircraft.fuelGallons[i] = aircraft.tankCapacityGallons[i] * share;
    }
}

void StepFlight(World& world, double dtS) {
    const int parts = std::max(1, static_cast<int>(std::ceil(dtS / kMaxStepS - 1e-9)));
    const double partS = dtS / parts;
    for (int i = 0; i < parts; ++i) {
        StepGusts(world.air, partS);
        if (world.aircraft.onGround) {
            StepOnGround(world, partS);
        } else {
            StepAttitude(world, partS);
            StepClimb(world, partS);
            StepSpeed(world, partS);
        }
        StepPosition(world, partS);
        StepFuel(world.aircraft, partS);
    }
    world.clock.flightTimeS += dtS;
}

}  // namespace panelhost
