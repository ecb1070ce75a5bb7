#include "panelhost/world/variables.h"

#include <algorithm>
#include <cmath>

#include "panelhost/world/flight_model.h"

namespace panelhost {
namespace {

using W = const World&;

constexpr double kMetresPerDegree = 10001750.0 / 90.0;
constexpr double kTurn48 = 281474976710656.0;  // 2 to the power 48
constexpr double kFeetPerMetre = 3.2808399;
constexpr double kFpmPerUnit = 0.7689468503937007;  // 1/256 m/s
constexpr double kKtPerFps = 0.5924837511331251;
constexpr double kFullTank = 8388608;
constexpr double kVorFullScaleDeg = 10;
constexpr double kLocalizerFullScaleDeg = 2.5;
constexpr double kGlideslopeFullScaleDeg = 0.7;

double Flag(bool on) {
    return on ? 1 : 0;
}

struct TimeOfDay {
    int hour = 0;
    int minute = 0;
    int second = 0;
    int day = 0;  // whole days since the start of the start day
};

TimeOfDay TimeAt(double secondOfStartDay) {
    const double days = std::floor(secondOfStartDay / 86400);
    const int seconds = static_cast<int>(secondOfStartDay - days * 86400);
    return {seconds / 3600, seconds / 60 % 60, seconds % 60, static_cast<int>(days)};
}

TimeOfDay Utc(W w) {
    return TimeAt(w.clock.startSecondUtc + w.clock.flightTimeS);
}

// The zone's clock.
TimeOfDay Local(W w) {
    const double zoneS = std::round(w.aircraft.position.longitude / 15) * 3600;
    return TimeAt(w.clock.startSecondUtc + w.clock.flightTimeS +
                  w.clock.localOffsetS.value_or(zoneS));
}

int DaysInYear(int year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0) ? 366 : 365;
}

struct Date {
    int dayOfYear = 0;
    int year = 0;
};

Date UtcDate(W w) {
    Date date{w.clock.startDayOfYear + Utc(w).day, w.clock.year};
    while (date.dayOfYear > DaysInYear(date.year)) {
        date.dayOfYear -= DaysInYear(date.year);
        ++date.year;
    }
    return date;
}

double CourseNeedle(const Receiver& nav) {
    const double fullScale = nav.isLocalizer ? kLocalizerFullScaleDeg : kVorFullScaleDeg;
    return nav.signal > 0 ? std::clamp(nav.deviationDeg / fullScale * 127, -127.0, 127.0) : 0;
}

double RelativeBearing(W w, const Receiver& radio) {
    return radio.signal > 0 ? Normalise360(radio.bearingTrue - w.aircraft.headingTrue) : 0;
}

double NavCode(const Receiver& nav) {
    return nav.signal > 0 ? (nav.isLocalizer ? 0x80 : 0) + (nav.hasGlideslope ? 0x40 : 0) +
                                (nav.hasDme ? 1 : 0)
                          : 0;
}

double EastOfGreenwich(double longitude) {
    return longitude < 0 ? longitude + 360 : longitude;
}

template <int kTank>
double TankLevel(W w) {
    const double capacity = w.aircraft.tankCapacityGallons[kTank];
    return capacity > 0 ? w.aircraft.fuelGallons[kTank] / capacity * kFullTank : 0;
}

template <int kTank>
double TankCapacity(W w) {
    return w.aircraft.tankCapacityGallons[kTank];
}

template <int kEngine>
double EngineFlow(W w) {
    return kEngine < w.aircraft.engineCount ? w.aircraft.fuelFlowPph / w.aircraft.engineCount : 0;
}

double None(W) {
    return 0;
}

constexpr VariableRow kTable[] = {
    {1, "tick", [](W w) { return static_cast<double>(w.clock.tick); }},
    {3, "local hour", [](W w) { return static_cast<double>(Local(w).hour); }},
    {4, "local minute", [](W w) { return static_cast<double>(Local(w).minute); }},
    {5, "local second", [](W w) { return static_cast<double>(Local(w).second); }},
    {6, "UTC hour", [](W w) { return static_cast<double>(Utc(w).hour); }},
    {7, "UTC minute", [](W w) { return static_cast<double>(Utc(w).minute); }},
    {8, "UTC day of the year", [](W w) { return static_cast<double>(UtcDate(w).dayOfYear); }},
    {9, "UTC year", [](W w) { return static_cast<double>(UtcDate(w).year); }},
    {20, "ADF signal", [](W w) { return static_cast<double>(w.adf.signal); }},
    {31, "DME 1 distance", [](W w) { return w.nav1.hasDme ? w.nav1.dmeNm : 0; }},
    {32, "DME 1 speed", [](W w) { return w.nav1.hasDme ? w.nav1.dmeSpeedKt : 0; }},
    {35, "DME 2 distance", [](W w) { return w.nav2.hasDme ? w.nav2.dmeNm : 0; }},
    {39, "ADF needle", [](W w) { return RelativeBearing(w, w.adf); }},
    {40, "NAV1 course needle", [](W w) { return CourseNeedle(w.nav1); }},
    {41, "NAV1 glideslope needle",
     [](W w) {
         const double units = w.nav1.glideslopeDeg / kGlideslopeFullScaleDeg * 120;
         return w.nav1.hasGlideslope ? std::clamp(units, -120.0, 120.0) : 0;
     }},
    {45, "NAV1 course", [](W w) { return static_cast<double>(w.nav1.courseMag); }},
    {46, "NAV1 code", [](W w) { return NavCode(w.nav1); }},
    {49, "NAV1 signal", [](W w) { return static_cast<double>(w.nav1.signal); }},
    {58, "NAV2 signal", [](W w) { return static_cast<double>(w.nav2.signal); }},
    {59, "NAV2 relative bearing", [](W w) { return RelativeBearing(w, w.nav2); }},
    {61, "airspeed", [](W w) { return w.aircraft.indicatedAirspeedKt; }},
    {65, "vertical speed", [](W w) { return w.aircraft.verticalSpeedFpm / kFpmPerUnit; }},
    {71, "latitude", [](W w) { return w.aircraft.position.latitude * kMetresPerDegree; }},
    {72, "longitude",
     [](W w) { return EastOfGreenwich(w.aircraft.position.longitude) / 360 * kTurn48; }},
    {74, "altimeter", [](W w) { return w.aircraft.altitudeFt; }},
    {77, "pitch", [](W w) { return -w.aircraft.pitchUpDeg; }},
    {80, "bank", [](W w) { return -w.aircraft.bankRightDeg; }},
    {81, "magnetic heading", [](W w) { return HeadingMag(w); }},
    {82, "magnetic variation", [](W w) { return w.magneticVariation; }},
    {86, "true heading", [](W w) { return w.aircraft.headingTrue; }},
    {103, "autopilot master", [](W w) { return Flag(w.autopilot.master); }},
    {105, "NAV hold", [](W w) { return Flag(w.autopilot.navHold); }},
    {106, "heading hold", [](W w) { return Flag(w.autopilot.headingHold); }},
    {107, "heading bug", [](W w) { return static_cast<double>(w.autopilot.headingBugMag); }},
    {108, "altitude hold", [](W w) { return Flag(w.autopilot.altitudeHold); }},
    {109, "altitude target", [](W w) { return static_cast<double>(w.autopilot.altitudeTargetFt); }},
    {112, "approach hold", [](W w) { return Flag(w.autopilot.approachHold); }},
    {114, "yaw damper", [](W w) { return Flag(w.autopilot.yawDamper); }},
    {115, "airspeed hold", [](W w) { return Flag(w.autopilot.airspeedHold); }},
    {116, "airspeed target", [](W w) { return static_cast<double>(w.autopilot.airspeedTargetKt); }},
    {289, "centre tank level", TankLevel<0>},
    {290, "centre tank capacity", TankCapacity<0>},
    {291, "left main tank level", TankLevel<1>},
    {292, "left main tank capacity", TankCapacity<1>},
    {293, "left auxiliary tank level", TankLevel<2>},
    {294, "left auxiliary tank capacity", TankCapacity<2>},
    {295, "left tip tank level", TankLevel<3>},
    {296, "left tip tank capacity", TankCapacity<3>},
    {297, "right main tank level", TankLevel<4>},
    {298, "right main tank capacity", TankCapacity<4>},
    {299, "right auxiliary tank level", TankLevel<5>},
    {300, "right auxiliary tank capacity", TankCapacity<5>},
    {301, "right tip tank level", TankLevel<6>},
    {302, "right tip tank capacity", TankCapacity<6>},
    {306, "fuel weight per gallon", [](W w) { return w.aircraft.fuelPoundsPerGallon; }},
    {323, "parking brake", [](W w) { return Flag(w.aircraft.parkingBrake); }},
    {336, "simulation rate", [](W w) { return w.simulationRate * (w.laterSimulator ? 256 : 1); }},
    {343, "wind speed", [](W w) { return w.air.windSpeedKt; }},
    {344, "wind direction", [](W w) { return w.air.windDirectionTrue; }},
    {354, "marker beacon", [](W w) { return static_cast<double>(w.markerBeacon); }},
    {421, "piston engine 1 fuel flow", None},
    {460, "piston engine 2 fuel flow", None},
    {499, "piston engine 3 fuel flow", None},
    {538, "piston engine 4 fuel flow", None},
    {550, "NAV1 relative bearing", [](W w) { return RelativeBearing(w, w.nav1); }},
    {551, "forward ground speed", [](W w) { return w.aircraft.groundSpeedKt / kKtPerFps; }},
    {614, "radio height",
     [](W w) { return (w.aircraft.altitudeFt - w.groundElevationFt) / kFeetPerMetre; }},
    {638, "turbine engine 1 fuel flow", EngineFlow<0>},
    {657, "turbine engine 2 fuel flow", EngineFlow<1>},
    {676, "turbine engine 3 fuel flow", EngineFlow<2>},
    {695, "turbine engine 4 fuel flow", EngineFlow<3>},
    {773, "avionics power", [](W w) { return Flag(w.avionicsPower); }},
    {792, "flight director on", [](W w) { return Flag(w.autopilot.flightDirector); }},
    {793, "flight director pitch", [](W w) { return -w.aircraft.commandedPitchUpDeg; }},
    {794, "flight director bank", [](W w) { return -w.aircraft.commandedBankRightDeg; }},
    {800, "standard temperature", [](W w) { return StandardTemperatureC(w.aircraft.altitudeFt); }},
    {852, "course deviation valid", [](W w) { return Flag(w.nav1.signal > 0); }},
};

constexpr bool IsSorted() {
    for (std::size_t i = 1; i < std::size(kTable); ++i) {
        if (kTable[i - 1].number >= kTable[i].number) {
            return false;
        }
    }
    return true;
}
static_assert(IsSorted(), "the table is searched by halves");

// The panel's own, and what a module reads only where it uses it: without the simulator they stay
// as they were.
constexpr int kKeptWithoutLink[] = {1,   8,   9,   46,  49,  58,  289, 290, 291, 292, 293,
                                    294, 295, 296, 297, 298, 299, 300, 301, 302, 306, 323,
                                    421, 460, 499, 538, 638, 657, 676, 695, 773, 792, 852};

bool IsUnknown(const Unknown& unknown, int number) {
    return (unknown.linkLost && !std::ranges::binary_search(kKeptWithoutLink, number)) ||
           std::ranges::binary_search(unknown.variables, number);
}

}  // namespace

std::optional<double> ReadVariable(const World& world, int number) {
    const auto* const row =
        std::lower_bound(std::begin(kTable), std::end(kTable), number,
                         [](const VariableRow& r, int wanted) { return r.number < wanted; });
    if (row == std::end(kTable) || row->number != number) {
        return std::nullopt;
    }
    return IsUnknown(world.unknown, number) ? std::nan("") : row->read(world);
}

const VariableRow* VariableTable(int& count) {
    count = static_cast<int>(std::size(kTable));
    return kTable;
}

}  // namespace panelhost
