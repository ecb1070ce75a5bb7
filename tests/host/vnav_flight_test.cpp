// Whole flights under vertical guidance: climb, cruise and descent through restrictions.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "base/messages.h"
#include "base/module_state.h"
#include "guidance/activation.h"
#include "guidance/lnav.h"
#include "support/vertical_flight.h"

namespace avq1 {
namespace {

using test::VerticalPilot;

constexpr double kFrameS = 0.5;

struct Fix {
    const char* ident;
    double degrees;  // east
    double altitudeFt = kUnset;
    double speedKt = kUnset;
    const char* procedure = "";
};

// What a flight is judged by.
struct Flown {
    double topOfClimbNm = -1;
    double topOfClimbS = 0;
    double topOfDescentNm = -1;
    double arrivalS = -1;
    double arrivalLb = 0;
    PredictedPoint arrivalAtTop;  // as predicted at the top of climb
    double worstPathFt = 0;
    double worstMinute = 0;  // vertical speed events in any one
    double worstSettledMinute = 0;
};

class VnavFlight : public ::testing::Test {
  protected:
    VnavFlight() { ResetModuleState(); }
    ~VnavFlight() override { ImportTable.panel.services = nullptr; }

    void Depart(const std::vector<Fix>& fixes, std::int32_t cruiseFt, double tailwindKt) {
        test::FakeSimulator::Install();
        performance = test::JetPerformance();
        activePlan.CutTo(-1);
        for (const Fix& fix : fixes) {
            PlanWaypoint entry;
            entry.ident = fix.ident;
            entry.longitude = fix.degrees;
            entry.altitude = fix.altitudeFt;
            entry.altitudeConstraint = fix.altitudeFt > 100 ? 1 : 0;
            entry.speed = fix.speedKt;
            entry.procedure = fix.procedure;
            entry.type = fix.ident[0] == 'K' ? "APT" : "INT";
            activePlan.Append(std::move(entry));
        }
        planBook.cruiseAltitudeFt = cruiseFt;
        pilot = {};
        pilot.tailwindKt = tailwindKt;
        pilot.Report();
        RefreshAircraftState();
        StartActivePlan();
        pilot.Fly(kFrameS);
        EngageLnav();
        ToggleVnav();
        atFixes.assign(fixes.size(), {});
    }

    double AlongNm() const { return pilot.longitude * 60; }

    void Watch(const std::vector<Fix>& fixes) {
        if (vnav.topOfClimbReached != 0 && flown.topOfClimbNm < 0) {
            flown.topOfClimbNm = AlongNm();
            flown.arrivalAtTop = ActivePredictions().destination;
            flown.topOfClimbS = pilot.seconds;
        }
        if (vnav.descentActive != 0 && flown.topOfDescentNm < 0) {
            flown.topOfDescentNm = AlongNm();
        }
        if (vnav.descentActive != 0 && vnav.distanceSinceTod > 3) {
            const double offFt = std::fabs(pilot.altitudeFt - vnav.pathAltitude);
            if (offFt > flown.worstPathFt) {
                flown.worstPathFt = offFt;
            }
        }
        for (std::size_t i = 0; i < fixes.size(); ++i) {
            const double climbSide = fixes[i].degrees < fixes.back().degrees / 2 ? 3.0 : 0.0;
            if (AlongNm() <= fixes[i].degrees * 60 - climbSide) {
                atFixes[i] = pilot;
            }
        }
    }

    void Arrive(const std::vector<Fix>& fixes) {
        const double lastNm = fixes.back().degrees * 60;
        while (AlongNm() < lastNm - 3 && pilot.seconds < 4 * 3600) {
            pilot.Fly(kFrameS);
            Watch(fixes);
            if (std::getenv("VNAV_TRACE") != nullptr && std::fmod(pilot.seconds, 20) < kFrameS) {
                std::printf(
                    "%6.0f %7.2f %7.0f fpm %6.0f (%5.0f) ias %4.0f (%3.0f) -> %6.0f phase %d "
                    "target %d path %7.0f req %5.0f toTgt %5.1f\n",
                    pilot.seconds, AlongNm(), pilot.altitudeFt, pilot.verticalFpm, pilot.targetFpm,
                    pilot.airspeedKt, pilot.targetKt, pilot.targetFt,
                    static_cast<int>(vnav.Phase()), planBook.verticalTargetIndex, vnav.pathAltitude,
                    vnav.requiredFpm, vnav.distanceToTarget);
            }
        }
        flown.arrivalS = pilot.seconds;
        flown.arrivalLb = pilot.fuelLb;
        const auto& sent = pilot.verticalEvents;
        for (std::size_t i = 0; i < sent.size(); ++i) {
            const auto later =
                std::find_if(sent.begin() + static_cast<std::ptrdiff_t>(i), sent.end(),
                             [&](double at) { return at >= sent[i] + 60; });
            flown.worstMinute =
                std::max<double>(flown.worstMinute, static_cast<double>(later - sent.begin()) -
                                                        static_cast<double>(i));
        }
    }

    VerticalPilot pilot;
    Flown flown;
    std::vector<VerticalPilot> atFixes;  // as each was judged
};

TEST_F(VnavFlight, KeepsEveryRestrictionInAnyWind) {
    const std::vector<Fix> fixes = {{"KAAA", 0, 20},
                                    {"SPEED", 0.3, 5000, 230},
                                    {"LEVEL", 0.7, 12000, 270},
                                    {"CLIMB", 1.5},
                                    {"CRUIS", 3.0},
                                    {"HIGH", 4.3, 24000, 270},
                                    {"MIDDL", 4.9, 11000, 250},
                                    {"LOW", 5.3, 5000, 230},
                                    {"KBBB", 5.6, 700}};
    for (const double tailwindKt : {0.0, 40.0, -40.0}) {
        SCOPED_TRACE(tailwindKt);
        ResetModuleState();
        flown = {};
        Depart(fixes, 33000, tailwindKt);
        RefreshPredictions();
        const Predictions before = ActivePredictions();
        Arrive(fixes);
        for (std::size_t i = 1; i + 1 < fixes.size(); ++i) {
            if (fixes[i].altitudeFt != kUnset) {
                EXPECT_NEAR(atFixes[i].altitudeFt, fixes[i].altitudeFt, 200) << fixes[i].ident;
                EXPECT_NEAR(atFixes[i].airspeedKt, fixes[i].speedKt, 10) << fixes[i].ident;
            }
        }
        EXPECT_LE(flown.worstPathFt, 300);
        EXPECT_LE(flown.worstMinute, 12);
        EXPECT_NEAR(before.topOfClimb.distanceNm, flown.topOfClimbNm, 5);
        EXPECT_NEAR(before.topOfDescent.distanceNm, flown.topOfDescentNm, 3);
        EXPECT_NEAR(flown.topOfClimbS + flown.arrivalAtTop.minutes * 60, flown.arrivalS,
                    0.02 * (flown.arrivalS - flown.topOfClimbS));
        EXPECT_NEAR(flown.arrivalAtTop.fuelLb, flown.arrivalLb, 0.03 * flown.arrivalLb);
        EXPECT_LT(pilot.altitudeFt, 2200);
    }
}

}  // namespace
}  // namespace avq1
