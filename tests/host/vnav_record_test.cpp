// Whole flights under vertical guidance, compared with how they went when somebody last looked:
// flights.txt keeps, a minute at a time, the profile, the predictions and what was sent.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "base/messages.h"
#include "base/module_state.h"
#include "base/sim_folder.h"
#include "base/text.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_edit.h"
#include "guidance/activation.h"
#include "guidance/lnav.h"
#include "settings/performance_tables.h"
#include "settings/settings.h"
#include "support/kept_file.h"
#include "support/test_flight.h"
#include "support/vertical_flight.h"

namespace avq1 {
namespace {

constexpr double kFrameS = 0.5;

struct RecordedFlight {
    const char* name;
    const char* aircraft;  // its file; empty: none
    std::int32_t cruiseFt;
    double tailwindKt;
    std::int32_t minutes;
    std::vector<test::RouteFix> fixes;
    void (*atMinute)(std::int32_t minute, test::VerticalPilot& pilot);
};

const RecordedFlight kFlights[] = {
    {"restrictions up and down, the cruise altitude changed",
     "demo-jet",
     33000,
     25,
     75,
     {{"KAAA", 0, 0, 20},
      {"SPEED", 0, 0.3, 5000, 3, 230, "SID"},
      {"LEVEL", 0, 0.7, 12000, 1, 270, "SID"},
      {"CLIMB", 0, 1.5},
      {"CRUIS", 0, 3.0},
      {"HIGH", 0, 4.3, 24000, 2, 270, "STAR"},
      {"MIDDL", 0, 4.9, 11000, 1, 250, "STAR"},
      {"LOW", 0, 5.3, 5000, 2, kUnset, "APPR"},
      {"KBBB", 0, 5.6, 700}},
     [](std::int32_t minute, test::VerticalPilot&) {
         if (minute == 24) {
             SetCruiseAltitude(35000);
         } else if (minute == 30) {
             EnterCruiseWind(250, 60);
             settings.VnavOffOnManAltChg = 1;
         }
     }},
    {"west on the altitude of the tables, with a gap",
     "demo-jet",
     0,
     40,
     180,
     {{"KAAA", 0, 0, 20},
      {"AAA", 0, -1},
      {"BBB", 0, -6},
      {"DISCO", 0, 0},
      {"CCC", 0, -9, 37000, 2},
      {"DDD", 0, -13, 9000, 3, 240, "STAR"},
      {"KBBB", 0, -14, 1200}},
     [](std::int32_t minute, test::VerticalPilot& pilot) {
         if (minute == 40) {
             SetActiveWaypoint(4);
         } else if (minute == 60) {
             pilot.simRate = 4;
             settings.Lnav1xAtTod = 1;
             vnav.pauseArmed = 1;
         }
     }},
    {"a turboprop that holds in its descent",
     "demo-turboprop",
     17000,
     -30,
     95,
     {{"KAAA", 0, 0, 20},
      {"AAA", 0, 0.5, 6000, 3},
      {"BBB", 0, 2},
      {"CCC", 0, 2.8, 9000, 1, 200, "STAR"},
      {"DDD", 0, 3.2, 4000, 1, 180, "STAR"},
      {"KBBB", 0, 3.6, 300}},
     [](std::int32_t minute, test::VerticalPilot&) {
         if (minute == 45) {
             HoldPattern hold = NewHold();
             hold.fixIndex = 3;
             hold.inboundCourseMag = 90;
             hold.exitAutomatic = 1;
             AddHold(hold);
         } else if (minute == 15) {
             EditActivePlan([](FlightPlan& plan) { return SetCrossing(plan, 4, {3500, 170, 1}); });
         }
     }},
    {"the altitude of the tables, the pilot's knobs",
     "demo-turboprop",
     0,
     0,
     60,
     {{"KAAA", 0, 0, 20}, {"AAA", 0, 0.6}, {"BBB", 0, 1.9, 8000, 1, 190}, {"KBBB", 0, 2.4, 900}},
     [](std::int32_t minute, test::VerticalPilot& pilot) {
         if (minute == 5) {
             pilot.targetKt = 150;
         } else if (minute == 12) {
             SetActiveWaypoint(2);
         } else if (minute == 15) {
             EditActivePlan([](FlightPlan& plan) { return SetCrossing(plan, 2, {}); });
         } else if (minute == 20) {
             pilot.targetFt = 12000;
         } else if (minute == 25) {
             ToggleVnav();
         } else if (minute == 28) {
             ToggleVnav();
         }
     }},
    {"without an aircraft file, short and above the path",
     "",
     15000,
     0,
     40,
     {{"KAAA", 0, 0, 20},
      {"AAA", 0, 0.4},
      {"BBB", 0, 0.9, 3000, 1},
      {"CCC", 0, 1.1, 2000},
      {"KBBB", 0, 1.5, 50}},
     [](std::int32_t minute, test::VerticalPilot& pilot) {
         if (minute == 8) {
             pilot.altitudeFt += 3000;
         }
     }},
};

std::string Point(const PredictedPoint& point) {
    return point.known ? Format(" %.1fnm %.1fmin %.0fft %.0fkt %.0f %.0flb", point.distanceNm,
                                point.minutes, point.altitudeFt, point.speedKt, point.groundSpeedKt,
                                point.fuelLb)
                       : " -";
}

void Depart(const RecordedFlight& flight, test::VerticalPilot& pilot) {
    ResetModuleState();
    test::FakeSimulator::Install();
    test::HearGuidance();
    SimFolder = AVQ1_SOURCE_DIR "/demo";
    AircraftName = flight.aircraft;
    if (!AircraftName.empty()) {
        LoadAircraftFile();
    }
    test::SetActiveRoute(flight.fixes);
    planBook.cruiseAltitudeFt = flight.cruiseFt;
    const bool west = flight.fixes[1].longitude < 0;
    pilot.headingTrue = pilot.bug = west ? 270 : 90;
    pilot.tailwindKt = west ? -flight.tailwindKt : flight.tailwindKt;
    pilot.Report();
    RefreshAircraftState();
    StartActivePlan();
    pilot.Fly(kFrameS);
    EngageLnav();
    ToggleVnav();
}

void WritePlanned(std::ostream& out) {
    out << Format(
        "planned %d toc %d %.1f tod %.1f from %d %.0f climb %d rates %d %.0f ias %d %d %d\n",
        vnav.cruiseAltitude, vnav.tocIndex, vnav.tocNm, vnav.todNm, vnav.descentStartIndex,
        vnav.descentCruiseAltitude, vnav.predictedClimbDistance, performance.climbRate,
        static_cast<double>(performance.descentRate), performance.climbIas, performance.cruiseIas,
        performance.descentIas);
    for (std::int32_t i = 0; i <= activePlan.lastIndex; ++i) {
        const PlanWaypoint& entry = activePlan.entries[i];
        out << Format(" %-5s %.0f %.0f %d%s", entry.ident.c_str(), entry.altitude, entry.speed,
                      entry.altitudeConstraint,
                      vnav.targets[static_cast<std::size_t>(i)] ? "*" : "")
            << Point(ActivePredictions().entries[i]) << '\n';
    }
}

void WriteMinute(std::int32_t minute, const test::VerticalPilot& pilot, std::size_t& written,
                 std::ostream& out) {
    out << Format("%d: %.2f %.0fft %.0ffpm %.0fkt", minute, pilot.longitude, pilot.altitudeFt,
                  pilot.verticalFpm, pilot.airspeedKt);
    out << Format(" phase %d to %d target %d %.0fft %.1fnm path %.0f required %.0f since %.1f",
                  static_cast<int>(vnav.Phase()), planBook.activeIndex,
                  planBook.verticalTargetIndex, vnav.targetAltitude, vnav.distanceToTarget,
                  vnav.pathAltitude, vnav.requiredFpm, vnav.distanceSinceTod);
    out << Format(" vnav %d hold %d limits %d %d\n  toc", guidance.vnavEngaged, vnav.lowSpeedHold,
                  vnav.climbRestrictionActive, vnav.descentRestrictionDone);
    const Predictions& predicted = ActivePredictions();
    out << Point(predicted.topOfClimb) << " tod" << Point(predicted.topOfDescent) << " dest"
        << Point(predicted.destination) << "\n ";
    const auto& events = test::FakeSimulator::Get().events;
    int verticalSpeeds = 0;
    for (; written < events.size(); ++written) {
        verticalSpeeds += events[written].first == 66036 ? 1 : 0;
        if (events[written].first != 66042) {  // headings are LNAV's
            out << Format(" %d=%d", events[written].first,
                          static_cast<std::int32_t>(events[written].second));
        }
    }
    out << '\n';
    EXPECT_LE(verticalSpeeds, 12) << minute;
    for (const GuidanceReport& report : std::exchange(test::heard, {})) {
        out << Format("  told %d at %d %.0fft\n", static_cast<int>(report.event), report.entryIndex,
                      report.altitudeFt);
    }
}

TEST(RecordedFlights, GoAsTheyWentWhenLastLookedAt) {
    std::ostringstream now;
    for (const RecordedFlight& flight : kFlights) {
        test::VerticalPilot pilot;
        Depart(flight, pilot);
        now << "# " << flight.name << '\n';
        std::size_t written = 0;
        for (std::int32_t minute = 1; minute <= flight.minutes; ++minute) {
            for (double s = 0; s < 60; s += kFrameS) {
                pilot.Fly(kFrameS);
            }
            if (minute % 20 == 1) {
                WritePlanned(now);
            }
            WriteMinute(minute, pilot, written, now);
            flight.atMinute(minute, pilot);
        }
        for (std::int32_t i = 1; i <= messages.count; ++i) {
            now << "said " << messages.lines[i] << '\n';
        }
    }
    ImportTable.panel.services = nullptr;
    test::ExpectAsKept(now.str(), "host/flights.txt");
}

}  // namespace
}  // namespace avq1
