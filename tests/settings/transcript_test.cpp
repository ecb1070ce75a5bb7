// What the settings file and the aircraft's files say, as the readers take them (transcript.txt).
#include <gtest/gtest.h>

#include <string>

#include "base/module_state.h"
#include "base/text.h"
#include "settings/aircraft_performance.h"
#include "settings/performance_tables.h"
#include "settings/settings.h"
#include "support/transcript.h"

namespace avq1 {
namespace {

std::string SettingsOf(const std::string& text) {
    Settings s;
    ApplySettingsText(text, s);
    return Format(
               "change at %g, procedures %g, traffic %g, speed %d, tower %d, off at last %d, "
               "indicators %d, ",
               s.WptChgDist, s.WptProcChgDist, double(s.TcasVertRange), s.VnavSetSpd,
               s.SetDestLoadTowerViewDist, s.LnavOffAtLastWpt, s.ShowTodBodIndicators) +
           "'" + s.FlightPlansFolder + "' '" + s.ParkingFile + "' '" + s.WeightUnit + "'";
}

template <bool derives>
std::string AircraftOf(const std::string& text) {
    AircraftPerformance p;
    ApplyAircraftText(text, p);
    if (derives) {
        DeriveSpeeds(p);
    }
    std::string now =
        Format("ias %d %d %d hold %d for %g min, thrust %d, speed at %g nm, path %g; ", p.climbIas,
               p.cruiseIas, p.descentIas, p.holdIas, p.holdLegMinutes, p.engineThrust,
               double(p.vnavSpeedDistanceNm), p.flightPathAngleDeg) +
        "'" + p.modelId + "' '" + p.takeoffFlapsRange + "' '" + p.approachFlapsMid + "' '" +
        p.performanceData + "'";
    return derives ? now + Format(
                               "\ntas %.3f %.3f mach %.5f %.5f %.5f, limits %.5f %.5f %.5f %.5f "
                               "%.5f %.5f",
                               double(p.climbTas), double(p.descentTas), p.climbMach, p.cruiseMach,
                               p.descentMach, p.climbMachMin, p.climbMachMax, p.cruiseMachMin,
                               p.cruiseMachMax, p.descentMachMin, p.descentMachMax)
                   : now;
}

template <class Flows>
std::string FlowsText(const Flows& flows, std::int32_t count) {
    std::string text = Format(" %d:", count);
    for (std::int32_t i = 0; i < count; ++i) {
        text += Format(" %g", double(flows[static_cast<std::size_t>(i)]));
    }
    return text;
}

std::string TablesOf(const std::string& text) {
    PerformanceTables tables;
    ReadPerformanceTables(text, tables);
    std::string now = "weights";
    for (const double weight : tables.grossWeights) {
        now += Format(" %g", weight);
    }
    for (const ClimbRow& row : tables.climb) {
        now += Format("\nclimb %g %g %g", row.altitudeFt, row.speedTas, row.climbRate) +
               FlowsText(row.fuelFlow, row.fuelFlowCount);
    }
    for (const CruiseRow& row : tables.cruise) {
        now += Format("\ncruise %g %g", row.altitudeFt, row.speedTas) +
               FlowsText(row.fuelFlow, row.fuelFlowCount);
    }
    for (const DescentRow& row : tables.descent) {
        now += Format("\ndescent %g %g %g %g", row.altitudeFt, row.speedTas, row.descentRate,
                      row.fuelFlow);
    }
    return now + Format("\naltitudes %zu", tables.altitudes.size());
}

struct Reader {
    const char* name;
    std::string (*read)(const std::string& text);
};

const Reader kReaders[] = {
    {"settings ", SettingsOf},
    {"aircraft ", AircraftOf<false>},
    {"derived ", AircraftOf<true>},
    {"tables ", TablesOf},
};

TEST(SettingsTranscript, ReadsAsItDidWhenLastLookedAt) {
    test::ExpectTranscript("settings/transcript.txt", [](const std::string& command) {
        ResetModuleState();
        for (const Reader& reader : kReaders) {
            if (const std::string_view name = reader.name; command.starts_with(name)) {
                return reader.read(test::Unescaped(command.substr(name.size())));
            }
        }
        return "unknown: " + command;
    });
}

}  // namespace
}  // namespace avq1
