#include "panelhost/flightgear/state_table.h"

#include <vector>

#include "panelhost/base/text.h"

namespace panelhost {
namespace {

constexpr const char* kDegrees = "degrees";
constexpr const char* kFeet = "ft";
constexpr const char* kKnots = "kt";
constexpr const char* kFlag = "0 or 1";
constexpr const char* kNeedle = "-1 to 1, full scale";

// clang-format off
std::vector<StateRow> FlightRows() {
    using enum Told;
    return {
        {Latitude, "/position/latitude-deg", kDegrees, "north positive", "%.9f", Between::Line, {71}},
        {Longitude, "/position/longitude-deg", kDegrees, "east positive", "%.9f", Between::Turn, {72}},
        {Altitude, "/position/altitude-ft", kFeet, "above sea level: what the autopilots there hold; 800 is the standard temperature at that height, not that of the weather", "%.3f", Between::Line, {74, 800}},
        {Height, "/position/altitude-agl-ft", kFeet, "above the ground", "", Between::Line, {614}},
        {Heading, "/orientation/heading-deg", kDegrees, "true", "%.5f", Between::Turn, {86, 81}},
        {Track, "/orientation/track-deg", kDegrees, "true; for DME speed and the page", "", Between::Turn, {}},
        {Pitch, "/orientation/pitch-deg", kDegrees, "up positive; AVQ1: down positive", "%.5f", Between::Line, {77}},
        {Roll, "/orientation/roll-deg", kDegrees, "right positive; AVQ1: left positive", "%.5f", Between::Line, {80}},
        {Airspeed, "/velocities/airspeed-kt", kKnots, "", "%.4f", Between::Line, {61}},
        {GroundSpeed, "/velocities/groundspeed-kt", kKnots, "", "%.4f", Between::Line, {551}},
        {VerticalSpeed, "/velocities/vertical-speed-fps", "ft/s", "up positive", "%.4f", Between::Line, {65}},
        {Variation, "/environment/magnetic-variation-deg", kDegrees, "east positive", "", Between::Newest, {82, 81}},
        {WindDirection, "/environment/wind-from-heading-deg", kDegrees, "true, where it comes from", "", Between::Turn, {344}},
        {WindSpeed, "/environment/wind-speed-kt", kKnots, "", "", Between::Line, {343}},
        {SeaLevelPressure, "/environment/pressure-sea-level-inhg", "inHg", "what the altimeter is set to by event 65584", "", Between::Newest, {}},
        {Elapsed, "/sim/time/elapsed-sec", "s", "flight time", "%.4f", Between::Newest, {}},
        {DaySeconds, "/sim/time/utc/day-seconds", "s", "UTC", "", Between::Newest, {6, 7, 3, 4}},
        {Year, "/sim/time/utc/year", "year", "UTC", "", Between::Newest, {9}},
        {Month, "/sim/time/utc/month", "month", "UTC", "", Between::Newest, {8}},
        {Day, "/sim/time/utc/day", "day", "UTC", "", Between::Newest, {8}},
        {LocalOffset, "/sim/time/local-offset", "s", "east positive", "", Between::Newest, {3, 4, 5}},
        {OnGroundLeft, "/gear/gear[1]/wow", kFlag, "for the page", "", Between::Newest, {}},
        {OnGroundRight, "/gear/gear[2]/wow", kFlag, "for the page", "", Between::Newest, {}},
    };
}

std::vector<StateRow> LaterRows() {
    using enum Told;
    return {
        {FuelDensity, "/consumables/fuel/tank[0]/density-ppg", "lb/gallon", "", "", Between::Newest, {306}},
        {GrossWeightYasim, "/yasim/gross-weight-lbs", "lb", "zero fuel weight of the data service, less fuel", "", Between::Newest, {}},
        {GrossWeightJsbsim, "/fdm/jsbsim/inertia/weight-lbs", "lb", "the other flight model's", "", Between::Newest, {}},
    };
}

std::vector<StateRow> OtherRadioRows() {
    using enum Told;
    return {
        {Dme1InRange, "/instrumentation/dme[0]/in-range", kFlag, "", "", Between::Newest, {31, 32}},
        {Dme1Distance, "/instrumentation/dme[0]/indicated-distance-nm", "nm", "", "", Between::Newest, {31}},
        {Dme1Speed, "/instrumentation/dme[0]/indicated-ground-speed-kt", kKnots, "", "", Between::Newest, {32}},
        {Dme2InRange, "/instrumentation/dme[1]/in-range", kFlag, "", "", Between::Newest, {35}},
        {Dme2Distance, "/instrumentation/dme[1]/indicated-distance-nm", "nm", "", "", Between::Newest, {35}},
        {Dme2Speed, "/instrumentation/dme[1]/indicated-ground-speed-kt", kKnots, "", "", Between::Newest, {}},
        {AdfInRange, "/instrumentation/adf[0]/in-range", kFlag, "", "", Between::Newest, {20, 39}},
        {AdfBearing, "/instrumentation/adf[0]/indicated-bearing-deg", kDegrees, "from the nose", "", Between::Newest, {39}},
        {MarkerOuter, "/instrumentation/marker-beacon/outer", kFlag, "", "", Between::Newest, {354}},
        {MarkerMiddle, "/instrumentation/marker-beacon/middle", kFlag, "", "", Between::Newest, {}},
        {MarkerInner, "/instrumentation/marker-beacon/inner", kFlag, "", "", Between::Newest, {}},
        {DirectorBank, "/autopilot/internal/target-roll-deg", kDegrees, "right positive; AVQ1: left positive", "", Between::Newest, {794}},
        {DirectorPitch, "/autopilot/internal/target-pitch-deg", kDegrees, "up positive; AVQ1: down positive", "", Between::Newest, {793}},
    };
}
// clang-format on

void AddTanksAndEngines(std::vector<StateRow>& rows) {
    constexpr std::array<int, kToldEngines> kFlows = {638, 657, 676, 695};
    for (int i = 0; i < kToldEngines; ++i) {
        rows.push_back({static_cast<Told>(At(Told::EngineFlow, i)),
                        Format("/engines/engine[%d]/fuel-flow-gph", i),
                        "US gallons/h",
                        "",
                        "",
                        Between::Newest,
                        {kFlows[static_cast<std::size_t>(i)]}});
    }
    for (int i = 0; i < kToldTanks; ++i) {
        rows.push_back({static_cast<Told>(At(Told::TankShare, i)),
                        Format("/consumables/fuel/tank[%d]/level-norm", i),
                        "0 to 1",
                        "with the level it gives the capacity; tanks as the mapping file has them",
                        "",
                        Between::Newest,
                        {}});
    }
}

struct NavRow {
    const char* property;
    const char* unit;
    const char* note;
    std::array<int, kMostVariablesOfRow> first;   // variables of NAV1
    std::array<int, kMostVariablesOfRow> second;  // of NAV2
};

// Without a receiver its signal is absent, and with it whatever depends on it.
constexpr NavRow kNavRows[] = {
    {"in-range", kFlag, "", {46, 49, 852}, {58}},
    {"nav-loc", kFlag, "", {}, {}},
    {"gs-in-range", kFlag, "", {}, {}},
    {"heading-deg", kDegrees, "true bearing of the station; AVQ1: from the nose", {550}, {59}},
    {"heading-needle-deflection-norm", kNeedle, "positive: the course lies to the right", {40}, {}},
    {"gs-needle-deflection-norm",
     kNeedle,
     "positive: the path lies above; AVQ1: positive below",
     {41},
     {}},
    {"to-flag", kFlag, "", {}, {}},
    {"from-flag", kFlag, "", {}, {}},
};

void AddNavs(std::vector<StateRow>& rows) {
    for (int nav = 0; nav < 2; ++nav) {
        int field = 0;
        for (const NavRow& row : kNavRows) {
            const Told first = nav == 0 ? Told::Nav1InRange : Told::Nav2InRange;
            rows.push_back({static_cast<Told>(At(first, field++)),
                            Format("/instrumentation/nav[%d]/%s", nav, row.property), row.unit,
                            row.note, "", Between::Newest, nav == 0 ? row.first : row.second});
        }
    }
}

void Append(std::vector<StateRow>& rows, const std::vector<StateRow>& more) {
    rows.insert(rows.end(), more.begin(), more.end());
}

std::vector<StateRow> MakeTable() {
    std::vector<StateRow> rows = FlightRows();
    AddTanksAndEngines(rows);
    Append(rows, LaterRows());
    AddNavs(rows);
    Append(rows, OtherRadioRows());
    return rows;
}

}  // namespace

std::span<const StateRow> StateTable() {
    static const std::vector<StateRow> kTable = MakeTable();
    return kTable;
}

}  // namespace panelhost
