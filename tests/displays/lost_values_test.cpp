// What the displays say when the simulator stops giving a value: nothing for a second of bad
// readings, then a flag or dashes, until the value is back.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "displays/eadi/eadi.h"
#include "displays/ehsi/ehsi.h"
#include "displays/mfd/mfd.h"
#include "displays/nd/nd.h"
#include "displays/nd/nd_panel.h"
#include "guidance/guidance_state.h"
#include "navdb/boundaries.h"
#include "platform/traffic_interface.h"
#include "settings/settings.h"
#include "support/display_checks.h"
#include "support/test_flight.h"
#include "traffic/targets.h"

namespace avq1 {
namespace {

using test::kNan;
using test::Picture;

constexpr CanvasSize kEfsDesign{266, 230};
constexpr CanvasSize kNdDesign{244, 302};
constexpr CanvasSize kMfdDesign{272, 314};

struct Shown {
    const char* name;
    test::DrawDisplay draw;
    CanvasSize design;
    void (*setUp)();
};

const Shown kEadi{"EADI", DrawEadi, kEfsDesign, [] { settings.EADIHdgTape = 1; }};
const Shown kEhsiNav{"EHSI on NAV1", DrawEhsi, kEfsDesign, [] {
                         ehsi.ehsiMode = 3;
                         ehsi.bearingPointer2 = BearingSource::Adf;
                     }};
const Shown kEhsiFms{"EHSI on FMS", DrawEhsi, kEfsDesign, [] {
                         ehsi.ehsiMode = 5;
                         ehsi.navSource = NavSource::FlightManagement;
                         ehsi.bearingPointer1 = BearingSource::Fms;
                     }};
const Shown kEhsiTraffic{"EHSI traffic", DrawEhsi, kEfsDesign, [] { ehsi.ehsiMode = 8; }};
const Shown kNdVor{"ND VOR", DrawNd, kNdDesign, [] { nd.ndMode = 1; }};
const Shown kNdNav{"ND NAV", DrawNd, kNdDesign, [] {
                       nd.ndMode = 2;
                       nd.ndShowAdf = 1;
                   }};
const Shown kNdMap{"ND map", DrawNd, kNdDesign, [] { nd.ndMode = 6; }};
const Shown kMfdPath{"MFD vertical path", DrawMfd, kMfdDesign, [] {
                         guidance.blinkCounter = 30;
                         mfd.mfdPanelPresent = 1;
                         mfd.mfdMenuLevel = kMfdSettingLevel;
                         mfd.mfdValueA = 20;
                         mfd.mfdValueB = 3000;
                     }};
const Shown kMfdHeld{"MFD map held", DrawMfd, kMfdDesign, [] {
                         static TrafficBlock noTargets;
                         trafficSource.block = &noTargets;
                         nd.showTraffic = 1;
                         guidance.blinkCounter = 30;
                         mfd.mfdMapModeOn = 1;
                         mfd.storedPosition = {40, -75};
                         planBook.activeIndex = kNoWaypoint;
                     }};

struct Row {
    const Shown& display;
    std::int32_t variable;
    const char* said;
};

const Row kRows[] = {
    {kEadi, 80, "ATT"},         {kEadi, 77, "ATT"},
    {kEadi, 81, "HDG"},         {kEadi, 614, "RA ---"},
    {kEadi, 61, "IAS"},         {kEadi, 115, "IAS"},
    {kEadi, 793, "FD"},         {kEadi, 794, "FD"},
    {kEadi, 41, "GS"},          {kEhsiNav, 81, "HDG"},
    {kEhsiNav, 45, "CRS ---"},  {kEhsiNav, 45, "NAV FAIL"},
    {kEhsiNav, 40, "NAV FAIL"}, {kEhsiNav, 31, "----"},
    {kEhsiNav, 551, "---"},     {kEhsiNav, 39, "---"},
    {kEhsiFms, 71, "NO MAP"},   {kEhsiFms, 72, "NO POSITION"},
    {kEhsiFms, 72, "--.- NM"},  {kEhsiFms, 71, "--:--"},
    {kEhsiFms, 551, "--:--"},   {kEhsiFms, 82, "NO MAP"},
    {kEhsiFms, 343, "---"},     {kEhsiTraffic, 86, "HDG"},
    {kNdVor, 81, "HDG"},        {kNdVor, 40, "NAV FAIL"},
    {kNdVor, 45, "CRS ---"},    {kNdNav, 71, "NO POSITION"},
    {kNdNav, 344, "---/---"},   {kNdNav, 39, "- - -"},
    {kNdMap, 72, "NO MAP"},     {kNdMap, 86, "TRK ---"},
    {kNdMap, 71, "--.- NM"},    {kMfdHeld, 71, "NO POSITION"},
    {kMfdHeld, 86, "TCAS OFF"}, {kMfdPath, 74, "---- --"},
    {kMfdPath, 343, "----"},    {kEhsiNav, 41, "GS"},
    {kNdVor, 41, "GS"},
};

class LostValues : public test::DisplayTest {
  protected:
    // An aircraft in flight with everything received, and a waypoint 30 nm ahead.
    void StartFlight() {
        DisplayTest::SetUp();
        SetNav1(true);
        atcBoundaries.loaded = true;
        simulator_->SetPosition(40, -75);
        simulator_->SetGroundSpeedKt(250);
        const std::pair<std::int32_t, double> given[] = {
            {20, 1}, {31, 12}, {39, 30},   {46, 0xC0}, {58, 1},   {61, 250},  {81, 90}, {86, 90},
            {82, 0}, {103, 1}, {115, 255}, {343, 20},  {344, 40}, {614, 300}, {773, 1}, {792, 1},
        };
        for (const auto& [variable, value] : given) {
            simulator_->variables[variable] = value;
        }
        Read(30);  // until the airspeed has settled
        test::SetActivePlan({{"AAA", 40, -75}, {"BBB", 40, -74.5}});
        planBook.activeIndex = 1;
        guidance.distanceToGoNm = 30;
        guidance.crossTrackNm = 1;
        test::PredictArrivalIn(7);
        derived.windDirectionMag = 40;
        derived.trueAirspeedEstimateKt = 260;
    }
    static void Read(int times) {
        for (int i = 0; i < times; ++i) {
            RefreshAircraftState();
        }
    }
    static int TimesSaid(const Row& row) {
        test::DrawAt(row.display.draw, row.display.design);
        return test::CountTexts(row.said);
    }
};

TEST_F(LostValues, AreSaidAfterASecondAndUntilTheyAreBack) {
    for (const Row& row : kRows) {
        StartFlight();
        row.display.setUp();
        const std::string what =
            row.display.name + std::string(" without ") + std::to_string(row.variable);
        const int before = TimesSaid(row);
        const double good = std::exchange(simulator_->variables[row.variable], kNan);
        Read(18);
        EXPECT_EQ(TimesSaid(row), before) << what << " for a moment";
        Read(1);
        EXPECT_GT(TimesSaid(row), before) << what << ": " << row.said;
        test::ExpectNoNonsenseTexts();
        test::ExpectTextsApart(row.display.design, true, what);
        simulator_->variables[row.variable] = good;
        Read(1);
        EXPECT_EQ(TimesSaid(row), before) << what << " and again";
    }
}

}  // namespace
}  // namespace avq1
