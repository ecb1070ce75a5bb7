#include "panelhost/flightgear/live_state.h"

#include <algorithm>
#include <cmath>

#include "panelhost/flightgear/packet.h"
#include "panelhost/world/flight_model.h"

namespace panelhost {
namespace {

constexpr double kFpsPerFpm = 1.0 / 60;
constexpr double kVorFullScaleDeg = 10;
constexpr double kLocalizerFullScaleDeg = 2.5;
constexpr double kGlideslopeFullScaleDeg = 0.7;
constexpr double kSlowestGapS = 0.2;
constexpr double kGapWeight = 0.1;
constexpr double kLeastShare = 1e-4;   // an empty tank keeps the capacity it had
constexpr double kLongestStepS = 600;  // of flight time between two packets

double ValueBetween(const StateRow& row, double from, double to, double share) {
    if (row.between == Between::Newest || !std::isfinite(from) || !std::isfinite(to)) {
        return to;
    }
    if (row.between == Between::Line) {
        return from + (to - from) * share;
    }
    const double turned = from + AngleDifference(from, to) * share;
    return row.told == Told::Longitude ? AngleDifference(0, turned) : Normalise360(turned);
}

double OrZero(double value) {
    return std::isfinite(value) ? value : 0;
}

class Values {
  public:
    explicit Values(const ToldValues& values) : values_(values) {}
    double operator()(Told told, int number = 0) const { return values_[At(told, number)]; }
    bool Is(Told told, int number = 0) const { return values_[At(told, number)] > 0; }

  private:
    const ToldValues& values_;
};

void TakeAircraft(const Values& told, World& world) {
    Aircraft& aircraft = world.aircraft;
    aircraft.position = {told(Told::Latitude), told(Told::Longitude)};
    aircraft.altitudeFt = told(Told::Altitude);
    aircraft.headingTrue = told(Told::Heading);
    aircraft.bankRightDeg = told(Told::Roll);
    aircraft.pitchUpDeg = told(Told::Pitch);
    aircraft.indicatedAirspeedKt = told(Told::Airspeed);
    aircraft.verticalSpeedFpm = told(Told::VerticalSpeed) / kFpsPerFpm;
    aircraft.onGround = told.Is(Told::OnGroundLeft) || told.Is(Told::OnGroundRight);
    aircraft.trueAirspeedKt = TrueAirspeedKt(aircraft.indicatedAirspeedKt, aircraft.altitudeFt);
    aircraft.groundSpeedKt = told(Told::GroundSpeed);
    aircraft.trackTrue =
        std::isfinite(told(Told::Track)) ? told(Told::Track) : aircraft.headingTrue;
    aircraft.commandedBankRightDeg = told(Told::DirectorBank);
    aircraft.commandedPitchUpDeg = told(Told::DirectorPitch);
    world.groundElevationFt = aircraft.altitudeFt - told(Told::Height);
    world.magneticVariation = told(Told::Variation);
    world.air.windDirectionTrue = told(Told::WindDirection);
    world.air.windSpeedKt = told(Told::WindSpeed);
}

void TakeFuel(const Values& told, const AutopilotMapping& mapping, Aircraft& aircraft) {
    aircraft.fuelPoundsPerGallon =
        told.Is(Told::FuelDensity) ? told(Told::FuelDensity) : kFuelPoundsPerGallon;
    for (std::size_t i = 0; i < mapping.tanks.size(); ++i) {
        const int tank = mapping.tanks[i];
        double& capacity = aircraft.tankCapacityGallons[i];
        if (tank < 0 || !std::isfinite(told(Told::TankShare, tank))) {
            capacity = 0;
        } else if (told(Told::TankShare, tank) > kLeastShare) {
            capacity = aircraft.fuelGallons[i] / told(Told::TankShare, tank);
        }
    }
    aircraft.engineCount = 0;
    double gallonsPerHour = 0;
    for (int i = 0; i < kToldEngines; ++i) {
        const double flow = told(Told::EngineFlow, i);
        aircraft.engineCount += std::isfinite(flow) ? 1 : 0;
        gallonsPerHour += OrZero(flow);
    }
    aircraft.fuelFlowPph = gallonsPerHour * aircraft.fuelPoundsPerGallon;
    const double gross = std::isfinite(told(Told::GrossWeightYasim))
                             ? told(Told::GrossWeightYasim)
                             : OrZero(told(Told::GrossWeightJsbsim));
    aircraft.payloadLb.clear();
    aircraft.emptyWeightLb = std::max(gross - FuelPounds(aircraft), 0.0);
}

struct NavFields {
    Told inRange, localizer, glideslopeInRange, bearing, needle, glideslope, to, from;
    Told dmeInRange, dmeDistance, dmeSpeed;
};

constexpr NavFields kNav1{Told::Nav1InRange,  Told::Nav1Localizer, Told::Nav1GlideslopeInRange,
                          Told::Nav1Bearing,  Told::Nav1Needle,    Told::Nav1Glideslope,
                          Told::Nav1To,       Told::Nav1From,      Told::Dme1InRange,
                          Told::Dme1Distance, Told::Dme1Speed};
constexpr NavFields kNav2{Told::Nav2InRange,  Told::Nav2Localizer, Told::Nav2GlideslopeInRange,
                          Told::Nav2Bearing,  Told::Nav2Needle,    Told::Nav2Glideslope,
                          Told::Nav2To,       Told::Nav2From,      Told::Dme2InRange,
                          Told::Dme2Distance, Told::Dme2Speed};

void TakeNav(const Values& told, const NavFields& fields, const std::string& ident,
             const World& world, Receiver& nav) {
    nav.signal = told.Is(fields.inRange) ? 256 : 0;
    nav.ident = nav.signal > 0 ? ident : std::string();
    nav.isLocalizer = told.Is(fields.localizer);
    nav.hasGlideslope = nav.signal > 0 && told.Is(fields.glideslopeInRange);
    nav.bearingTrue = told(fields.bearing);
    nav.deviationDeg =
        told(fields.needle) * (nav.isLocalizer ? kLocalizerFullScaleDeg : kVorFullScaleDeg);
    nav.glideslopeDeg = -told(fields.glideslope) * kGlideslopeFullScaleDeg;
    nav.courseTrue = Normalise360(nav.courseMag + OrZero(world.magneticVariation));
    nav.toFrom = told.Is(fields.to) ? 1 : told.Is(fields.from) ? 2 : 0;
    nav.hasDme = told.Is(fields.dmeInRange);
    nav.dmeNm = OrZero(told(fields.dmeDistance));
    nav.dmeSpeedKt = OrZero(told(fields.dmeSpeed));
}

void TakeRadios(const Values& told, const ToldIdents& idents, World& world) {
    TakeNav(told, kNav1, idents[0], world, world.nav1);
    TakeNav(told, kNav2, idents[1], world, world.nav2);
    world.adf.signal = told.Is(Told::AdfInRange) ? 256 : 0;
    world.adf.ident = world.adf.signal > 0 ? idents[2] : std::string();
    world.adf.bearingTrue = Normalise360(world.aircraft.headingTrue + told(Told::AdfBearing));
    world.markerBeacon = told.Is(Told::MarkerOuter)    ? 1
                         : told.Is(Told::MarkerMiddle) ? 2
                         : told.Is(Told::MarkerInner)  ? 3
                                                       : 0;
}

void NoteAbsent(const std::array<int, kMostVariablesOfRow>& variables, std::vector<int>& absent) {
    for (const int number : variables) {
        if (number != 0) {
            absent.push_back(number);
        }
    }
}

void NoteAbsentTanks(const Aircraft& aircraft, std::vector<int>& absent) {
    constexpr std::array<int, kTankCount> kLevels = {289, 291, 293, 295, 297, 299, 301};
    for (std::size_t i = 0; i < kLevels.size(); ++i) {
        if (!(aircraft.tankCapacityGallons[i] > 0)) {
            absent.push_back(kLevels[i]);
            absent.push_back(kLevels[i] + 1);
        }
    }
}

void NoteUnknown(const ToldValues& values, const Controls& controls, World& world) {
    std::vector<int>& absent = world.unknown.variables;
    absent.clear();
    for (const StateRow& row : StateTable()) {
        if (std::isnan(values[At(row.told)])) {
            NoteAbsent(row.variables, absent);
        }
    }
    for (const ControlRow& row : ControlTable()) {
        const std::size_t index = static_cast<std::size_t>(row.control);
        if (std::isnan(NumberIn(controls.states[index].known))) {
            NoteAbsent(row.variables, absent);
        }
    }
    NoteAbsentTanks(world.aircraft, absent);
    std::ranges::sort(absent);
}

constexpr std::array<int, 13> kDaysBefore = {0,   0,   31,  59,  90,  120, 151,
                                             181, 212, 243, 273, 304, 334};

int DayOfYear(int year, int month, int day) {
    const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return kDaysBefore[static_cast<std::size_t>(std::clamp(month, 1, 12))] + day +
           (leap && month > 2 ? 1 : 0);
}

}  // namespace

void Remember(StateHistory& history, const HeardState& state) {
    if (history.count > 0) {
        const double gapS = state.arrivalS - history.states[history.count - 1].arrivalS;
        if (gapS >= kStaleAfterS) {
            history.count = 0;  // nothing lies between what was before and what is now
        } else {
            history.gapS += (std::clamp(gapS, 0.0, kSlowestGapS) - history.gapS) * kGapWeight;
        }
    }
    if (history.count == kKeptStates) {
        std::move(history.states.begin() + 1, history.states.end(), history.states.begin());
        --history.count;
    }
    history.states[history.count++] = state;
}

ToldValues ValuesAt(const StateHistory& history, double nowS) {
    ToldValues values;
    values.fill(std::nan(""));
    if (history.count == 0) {
        return values;
    }
    const double shownS = nowS - std::min(history.gapS, kLongestDelayS);
    std::size_t later = history.count - 1;
    while (later > 0 && history.states[later - 1].arrivalS >= shownS) {
        --later;
    }
    const HeardState& to = history.states[later];
    const HeardState& from = history.states[later > 0 ? later - 1 : 0];
    const double gapS = to.arrivalS - from.arrivalS;
    const double share = gapS > 0 ? std::clamp((shownS - from.arrivalS) / gapS, 0.0, 1.0) : 1.0;
    for (const StateRow& row : StateTable()) {
        const std::size_t at = At(row.told);
        values[at] = row.between == Between::Newest
                         ? history.states[history.count - 1].values[at]
                         : ValueBetween(row, from.values[at], to.values[at], share);
    }
    return values;
}

void TakeState(const ToldValues& values, const ToldIdents& idents, const Controls& controls,
               World& world) {
    const Values told(values);
    TakeAircraft(told, world);
    TakeFuel(told, controls.mapping, world.aircraft);
    TakeRadios(told, idents, world);
    NoteUnknown(values, controls, world);
}

void TakeClock(const ToldValues& newest, double& lastElapsedS, World& world) {
    const Values told(newest);
    Clock& clock = world.clock;
    const double elapsedS = OrZero(told(Told::Elapsed));
    if (lastElapsedS >= 0) {
        clock.flightTimeS += std::clamp(elapsedS - lastElapsedS, 0.0, kLongestStepS);
    }
    lastElapsedS = elapsedS;
    if (std::isfinite(told(Told::DaySeconds))) {
        clock.startSecondUtc = told(Told::DaySeconds) - clock.flightTimeS;
    }
    if (std::isfinite(told(Told::Year) + told(Told::Month) + told(Told::Day))) {
        const int year = static_cast<int>(std::clamp(told(Told::Year), 1.0, 9999.0));
        const int month = static_cast<int>(std::clamp(told(Told::Month), 1.0, 12.0));
        const int day = static_cast<int>(std::clamp(told(Told::Day), 1.0, 31.0));
        clock.year = year;
        clock.startDayOfYear = DayOfYear(year, month, day);
    }
    clock.localOffsetS.reset();
    if (std::isfinite(told(Told::LocalOffset))) {
        clock.localOffsetS = told(Told::LocalOffset);
    }
}

}  // namespace panelhost
