// The widest values on every page of the Smiths-style unit: texts keep clear of each other and of
// the edges.
#include <gtest/gtest.h>

#include "base/messages.h"
#include "base/redraw.h"
#include "cdu/pilot_entries.h"
#include "cdu_smiths/fake_smiths.h"
#include "cdu_smiths/smiths_views.h"
#include "displays/nd/nd_panel.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_files.h"
#include "flightplan/procedures.h"
#include "guidance/performance_entries.h"
#include "guidance/vnav.h"
#include "settings/aircraft_performance.h"
#include "settings/settings.h"

namespace avq1::test {
namespace {

class SmithsLooks : public SmithsTest {
  protected:
    // Names of the widest letters in the place of those the pages are opened with.
    static std::string Widest(std::string text) {
        const std::pair<const char*, const char*> kNames[] = {{"KAAA", "WWWW"},
                                                              {"KBBB", "MWMW"},
                                                              {"NEWPT", "WMWMW"},
                                                              {"TWICE", "MMMMM"},
                                                              {"FLY", "WWWWW"}};
        for (const auto& [name, widest] : kNames) {
            for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name)) {
                text.replace(at, std::string_view(name).size(), widest);
            }
        }
        return text;
    }

    void WriteFiles() {
        folder.Write("avq/Navdata/avq_navs.txt",
                     "WWW ONE -33.7 -122.3 VOR 117.95\n"
                     "MMMMM TWO 10.0 20.0 NDB 1385\n"
                     "MMMMM TWO -33.7 -122.4 VOR 117.95\n");
        folder.Write("avq/Navdata/avq_ints.txt", "WMWMW W -33.5 -122.5\nWWWWW W -33.7 -122.4\n");
        folder.Write("avq/Navdata/avq_apts.txt",
                     "WWWW First 14219 -34.0 -120.0 27R_16400_-34.0_-120.0_88_x_y_90 "
                     "09L_16400_-34.0_-120.0_88_x_y_90\n"
                     "MWMW Last 14219 -33.0 -150.0 27R_16400_-33.0_-150.0_88_x_y_90\n");
        folder.Write("avq/Navdata/avq_sids.txt",
                     "[WWWW]\nT WWWWW1 --- 27R\nWWWWW1 WAAA --- --- -33.9 -120.3 ---\n"
                     "WWWWW1.WMWMW WMWMW --- --- -33.5 -122.5 ---\n;\n");
        folder.Write("avq/Navdata/avq_stars.txt",
                     "[MWMW]\nT WWWWW2 ---\nWWWWW2.WMWMW WMWMW --- --- -33.2 -148 ---\n"
                     "WWWWW2 WAAA --- --- -33.1 -149 ---\n;\n");
        folder.Write("avq/Navdata/avq_apps.txt",
                     "[MWMW]\n27R RNAV WMWMW IAF --- -33.1 -149.5 0 0 ---\n"
                     "27R RNAV FAAA FAF 1500A -33.0 -149.8 0 0 ---\n");
        for (int i = 0; i < 13; ++i) {
            folder.Write("avq/flightplans/WWWWWWWWWWWWWWWW" + std::to_string(i) + ".RTE",
                         "[FlightPlan]\nWWWW  0.0  0.0  APT  ---\nMWMW  0.0  7.0  APT  ---\n");
        }
    }

    static void FillPlan() {
        for (int i = 0; i <= 150; ++i) {
            PlanWaypoint entry;
            entry.ident = i == 0 ? "WWWW" : i == 150 ? "MWMW" : "WWWWW";
            entry.type = i % 150 == 0 ? "APT" : "INT";
            entry.via = i % 3 == 1 ? "" : "UWW999W";
            entry.latitude = -33.7;
            entry.longitude = -120 - 0.2 * i;
            activePlan.Append(entry);
        }
        activePlan.Edit(141) = Discontinuity();
        planBook.originIdent = "WWWW";
        planBook.destinationIdent = "MWMW";
        planBook.status = RouteStatus::Active;
        for (const std::int32_t i : {138, 139, 140, 143}) {
            SetCrossing(activePlan, i, {.altitudeFt = 41000, .speedKt = 300, .constraint = 2});
            HoldPattern hold;
            hold.turnDirection = HoldTurn::Left;
            hold.legDistanceNm = hold.legMinutes = 88.8;
            hold.inboundCourseMag = 135;
            hold.clearanceMinutes = 1368;
            HoldAt(activePlan, i, hold);
        }
        SetActiveWaypoint(137);
    }

    void FlyIt() {
        aircraft.latitude = -33.758333;
        aircraft.longitude = -122.758333;
        aircraft.groundSpeedKt = 488;
        aircraft.headingMag = 288;
        aircraft.altitudeFt = 38888;
        aircraft.indicatedAirspeedKt = 288;
        aircraft.verticalSpeedFpm = -8888;
        aircraft.magneticVariation = -28;
        aircraft.windSpeedKt = 188;
        aircraft.zuluHour = aircraft.clockHour = 22;
        aircraft.zuluMinute = 48;
        aircraft.value800 = -88;
        aircraft.nav1DmeNm = 28.8;
        derived.windDirectionMag = 288;
        derived.headwindKt = -188;
        derived.crosswindKt = -188;
        derived.trueAirspeedEstimateKt = 488;
        guidance.crossTrackNm = 188.88;
        guidance.passedIdent = "WWWWW";
        guidance.passedTimeZulu = "2248Z";
        guidance.passedAltitude = 38888;
        guidance.passedFuel = 388800;
        simulator.variables[306] = 6.7;
        simulator.variables[291] = simulator.variables[297] = 8388608;
        simulator.variables[292] = simulator.variables[298] = 28000;
        simulator.variables[49] = 1;
    }

    void EnterWidest() {
        pilotEntries.zeroFuelLb = 488800;
        pilotEntries.isaDeviationC = -88;
        pilotEntries.antiIceOnFt = 38800;
        pilotEntries.antiIceOffFt = 28800;
        pilotEntries.cabinRateFpm = 8888;
        pilotEntries.descentDeviationC = -88;
        pilotEntries.descentQnh = 1088;
        pilotEntries.transitionAltitudeFt = 18000;
        planBook.reserveFuelInUse = 88800;
        EnterCruiseWind(288, 188);
        EnterDescentWindAltitude(0, 38800);
        EnterDescentWind(0, 288, 188);
        performance.modelId = performance.performanceData = "WWWWWW-WWW-WWWWWWWW";
        performance.engineThrust = 88;
        performance.v1 = performance.vr = performance.v2 = 188;
        performance.takeoffFlaps = 25;
        performance.landingFlaps = 40;
        performance.vref = 188;
        performance.approachFlapsMin = performance.approachFlapsMid = "15";
        performance.approachFlapsMax = "40";
        performance.holdIas = 288;
        performance.climbIas = performance.cruiseIas = performance.descentIas = 288;
        performance.climbIasMax = performance.cruiseIasMax = performance.descentIasMax = 340;
        performance.climbSpeedRestriction = performance.descentSpeedRestriction = 250;
        performance.climbRestrictionAltitude = performance.descentRestrictionAltitude = 10000;
        DeriveMachLimits(performance);
        DeriveSpeeds(performance);
        DatabaseCycle = "AIRAC 1408";
        DatabaseValidity = "DEC17DEC14/08";
        settings.ArmPauseAtTod = 1;
        settings.DispETALocalTime = 1;
        for (int i = 0; i < 30; ++i) {
            AppendMessage("FPL 'WWWWWWWWWWWWW.RTE' not saved, no room on the disk");
        }
    }

    void Begin(const std::string& keys) {
        ResetModuleState();
        SimFolder = folder.root().string();
        avionicsPower = 1;
        LoadNavDatabase();
        ListStoredPlans();
        FlyIt();
        FillPlan();
        EnterWidest();
        SetCruiseAltitude(38000);
        RunVerticalGuidance();
        RefreshPredictions();
        InstallSmiths();
        cdu.Press(Widest(keys));
    }

    // What of the painted texts touches another one or runs off the screen of 282 x 245.
    static std::string Touching() {
        struct Ink {
            double left, right, top, bottom;
        };
        Canvas measure(nullptr, 0, 0);
        const auto inkOf = [&](const DrawnText& text) {
            const std::size_t first = text.text.find_first_not_of(' ');
            const std::size_t last = text.text.find_last_not_of(' ');
            const CanvasFont font{"Arial", text.pixelSize};
            const double left =
                text.x + measure.MeasureText(text.text.substr(0, first), font).width;
            const std::string shown = text.text.substr(first, last + 1 - first);
            return Ink{left, left + measure.MeasureText(shown, font).width,
                       text.y + 0.25 * text.pixelSize, text.y + 0.92 * text.pixelSize};
        };
        std::string found;
        const std::vector<DrawnText>& texts = Picture::Texts();
        for (std::size_t i = 0; i < texts.size(); ++i) {
            const Ink a = inkOf(texts[i]);
            if (a.left < 0 || a.right > 282.5 || a.bottom > 245) {
                found += texts[i].text + " runs off; ";
            }
            for (std::size_t k = i + 1; k < texts.size(); ++k) {
                const Ink b = inkOf(texts[k]);
                if (a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom) {
                    found += texts[i].text + " on " + texts[k].text + "; ";
                }
            }
        }
        return found;
    }

    FakeSmiths cdu;
};

TEST_F(SmithsLooks, TheWidestTextsTouchNothing) {
    WriteFiles();
    Picture large(282, 245);
    std::vector<SmithsView> views(std::begin(kSmithsViews), std::end(kSmithsViews));
    views.push_back({"LEGS, map centre", "LEGS"});
    views.push_back({"LEGS, restrictions", "LEGS DEL L1 NEXT_PAGE"});
    views.push_back({"RTE DATA, restrictions", "LEGS R6 NEXT_PAGE"});
    views.push_back({"RTA, late", "PROG PREV_PAGE =FLY L1 =1048 R1"});
    views.push_back({"FIX, lines", "FIX =NEWPT L1 =288/888.8 L2 =288 L3 =/888.8 L4"});
    views.push_back({"DEPARTURES, chosen", "DEP_ARR L1 R1 L1 L2"});
    views.push_back({"ARRIVALS, chosen", "DEP_ARR R1 L1 L2 R1 R2"});
    views.push_back({"CLB, changed", "CLB =380 L1 =300 L2"});
    views.push_back({"NAV OPTIONS, typed", "PROG R6 NEXT_PAGE =TWICE L1 =TWICE R1 =TWICE L2"});
    for (const SmithsView& view : views) {
        Begin(view.keys);
        if (std::string_view(view.name).ends_with("centre")) {
            nd.ndMode = 7;
            cdu.Press("R6 R6");
        }
        for (const char* bottom : {"", "WWWWWWWWWWWWWWWWWWWWWWWW"}) {
            smiths.scratchpad = bottom;
            RequestUnitRedraw();
            Picture::Forget();
            DrawSmiths(large.Target());
            EXPECT_EQ(Touching(), "") << view.name;
        }
    }
}

// Nothing that the simulator says is a number any more.
TEST_F(SmithsLooks, WhatIsLostIsShownAsDashes) {
    const struct {
        const char* keys;
        std::vector<const char*> data;  // of rows 1 to 5, as far as they matter
    } kCases[] = {
        {"PROG NEXT_PAGE",
         {"- - KT|- - - KT", "- - - / - - -|- - / - -", "R 188.88 NM|- - - -", "---|--- KT"}},
        {"INIT_REF L6 L2",
         {"- - - - - - - -", "- - - - -|- - - - - - - -", "- - - - -|- - - - - - - -",
          "- - - - - - - -", "- - - - . - z  - - / - -"}},
        {"CRZ", {"FL380|- - - - - / FL350", "288 / 0.80", "- - . -|- - - / - - -"}},
    };
    WriteFiles();
    const auto lose = [this] {
        for (std::int32_t id = 1; id < 900; ++id) {
            simulator.variables[id] = std::numeric_limits<double>::quiet_NaN();
        }
        for (int i = 0; i < 2 * kReadingsUntilLost; ++i) {
            RefreshAircraftState();
        }
        avionicsPower = 1;
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.keys);
        Begin("INIT_REF");
        lose();
        cdu.Press(row.keys);
        for (std::size_t i = 0; i < row.data.size(); ++i) {
            EXPECT_EQ(cdu.Data(static_cast<int>(i) + 1), row.data[i]);
        }
    }
    for (const SmithsView& view : kSmithsViews) {
        Begin(view.keys);
        lose();
        RequestUnitRedraw();
        cdu.Draw();
        for (const DrawnText& text : cdu.Texts()) {
            EXPECT_EQ(text.text.find("nan"), std::string::npos) << view.name << ' ' << text.text;
            EXPECT_EQ(text.text.find("inf"), std::string::npos) << view.name << ' ' << text.text;
        }
    }
}

}  // namespace
}  // namespace avq1::test
