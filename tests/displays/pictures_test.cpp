// Every display in every mode on one busy flight, compared with how it looked when it was last
// looked at: pictures.txt keeps one letter of brightness for every 4 x 4 pixels at
// nominal size. After a change
// that is meant, AVQ1_RENEW_PICTURES=1 build/asan/test_displays writes the file anew; look at the
// difference.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "displays/eadi/eadi.h"
#include "displays/ehsi/ehsi.h"
#include "displays/mfd/mfd.h"
#include "displays/nd/nd.h"
#include "displays/nd/nd_panel.h"
#include "displays/traffic/tcas.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_airports.h"
#include "guidance/guidance_state.h"
#include "guidance/vnav.h"
#include "navdb/boundaries.h"
#include "navdb/nav_database.h"
#include "settings/aircraft_performance.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "support/display_checks.h"
#include "support/fake_traffic.h"
#include "support/test_flight.h"
#include "traffic/targets.h"

namespace avq1 {
namespace {

using test::Picture;
using Rows = std::vector<std::string>;

const char* const kFile = AVQ1_SOURCE_DIR "/tests/displays/pictures.txt";
constexpr int kCellPx = 4;  // at nominal size
constexpr double kLevels = 64;
constexpr char kLetters[] = ".0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz+";

// The colours weigh differently, so that one is not taken for another; the root lets a thin line
// count. Cells at the right and lower edges are cut.
double CellLevel(const Picture& picture, int cellPx, int column, int row) {
    const int right = std::min((column + 1) * cellPx, picture.width());
    const int bottom = std::min((row + 1) * cellPx, picture.height());
    double sum = 0;
    for (int y = row * cellPx; y < bottom; ++y) {
        for (int x = column * cellPx; x < right; ++x) {
            const std::uint32_t pixel = picture.At(x, y);
            sum += 0.5 * (pixel >> 16 & 0xFF) + 0.3 * (pixel >> 8 & 0xFF) + 0.2 * (pixel & 0xFF);
        }
    }
    return std::sqrt(sum / (cellPx * cellPx) / 256) * kLevels;
}

// The levels of all cells, row by row.
std::vector<std::vector<double>> Levels(const Picture& picture, int scale) {
    const int cellPx = kCellPx * scale;
    std::vector<std::vector<double>> levels;
    for (int row = 0; row * cellPx < picture.height(); ++row) {
        levels.emplace_back();
        for (int column = 0; column * cellPx < picture.width(); ++column) {
            levels.back().push_back(CellLevel(picture, cellPx, column, row));
        }
    }
    return levels;
}

std::map<std::string, Rows> ReadPictures() {
    std::map<std::string, Rows> pictures;
    std::ifstream file(kFile);
    Rows* rows = nullptr;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with('#')) {
            rows = &pictures[line.substr(2)];
        } else if (rows != nullptr) {
            rows->push_back(line);
        }
    }
    return pictures;
}

std::string Brightness(const std::vector<std::vector<double>>& levels) {
    std::string text;
    for (const auto& row : levels) {
        for (const double level : row) {
            text += kLetters[static_cast<int>(level)];
        }
        text += '\n';
    }
    return text;
}

// The cells that are brighter or darker than they were by more than a level.
int CellsThatDiffer(const std::vector<std::vector<double>>& levels, const Rows& rows) {
    int differing = 0;
    for (std::size_t row = 0; row < levels.size(); ++row) {
        for (std::size_t column = 0; column < levels[row].size(); ++column) {
            const std::size_t letter = std::string_view(kLetters).find(rows.at(row).at(column));
            const double was = static_cast<double>(letter) + 0.5;
            differing += std::abs(levels[row][column] - was) > 1 ? 1 : 0;
        }
    }
    return differing;
}

class Pictures : public test::DisplayTest {
  protected:
    void SetUp() override {
        DisplayTest::SetUp();
        source_ = std::make_unique<test::FakeTraffic>();
        FlyBusily();
        LookAround();
    }

    void FlyBusily() {
        SetNav1(true);
        simulator_->variables[58] = simulator_->variables[792] = 1;
        aircraft.latitude = aircraft.longitude = 0;
        aircraft.headingMag = aircraft.trueHeading = 340;
        aircraft.pitch = -4;
        aircraft.bank = 12;
        aircraft.altitudeFt = 5000;
        aircraft.apAltitudeTargetFt = 4000;
        aircraft.verticalSpeedFpm = -800;
        aircraft.indicatedAirspeedKt = 210;
        aircraft.groundSpeedKt = derived.trueAirspeedEstimateKt = 300;
        aircraft.radioAltitudeFt = 190;
        aircraft.autopilotOn = aircraft.apAltitudeLockOn = aircraft.adfActive = 1;
        aircraft.yawDamperOn = aircraft.headingHoldOn = aircraft.approachHoldOn = 1;
        aircraft.apSpeed115 = 218;
        aircraft.adfRelativeBearing = 75;
        aircraft.nav1Course = 300;
        aircraft.nav1RelativeBearing = 310;
        aircraft.nav2RelativeBearing = 200;
        aircraft.nav1DmeNm = 6;
        aircraft.nav1CdiNeedle = 60;
        aircraft.nav1GlideslopeNeedle = -40;
        aircraft.apHeadingBug = 20;
        aircraft.markerBeacon = 2;
        aircraft.flightDirectorPitch = 3;
        aircraft.flightDirectorBank = -8;
        aircraft.windSpeedKt = 34;
        derived.driftDeg = 6;
        derived.windDirectionMag = 250;
        test::SetActivePlan(
            {{"WP0", -5.0 / 60, 0}, {"WP1", 6.0 / 60, -0.03}, {"WP2", 7.0 / 60, 0.06}});
        planBook.activeIndex = 1;
        modifiedPlan = activePlan;
        modifiedPlan.CutTo(1);
        PlanWaypoint detour;
        detour.ident = "DET";
        detour.latitude = 3.0 / 60;
        detour.longitude = 0.06;
        modifiedPlan.Append(std::move(detour));
        planBook.status = RouteStatus::Modified;
        guidance.distanceToGoNm = 7;
        guidance.desiredTrackMag = 350;
        guidance.bearingToWaypointMag = 345;
        guidance.crossTrackNm = 1;
        test::PredictArrivalIn(1.5);
        progress.routeDistanceToDestination = 12;
    }

    void LookAround() {
        ehsi.bearingPointer1 = BearingSource::Adf;
        ehsi.bearingPointer2 = BearingSource::Vor;
        ehsi.navSource = NavSource::FlightManagement;
        ehsi.mapOverlayOn = settings.EADIHdgTape = 1;
        nd.ndShowStations = nd.ndShowAirports = nd.ndShowWaypoints = nd.ndShowAdf = 1;
        nd.showTraffic = 1;
        atcBoundaries.loaded = true;
        atcBoundaries.items = {{"X1", "BDY", {4.0 / 60, 0}, {{0.1, 0}, {0.1, 0.1}, {0, 0.1}}}};
        const auto add = [](PointTable& table, PointKind kind, const char* ident, double northNm,
                            double eastNm) {
            table.Append({ident, "", northNm / 60, eastNm / 60, kind, "113.40", ""});
        };
        add(navDatabase.navaids, PointKind::Vor, "VVV", 1, -6);
        add(navDatabase.navaids, PointKind::Navaid, "NN", 5, -2);
        add(navDatabase.airports, PointKind::Airport, "KAPT", 3, 3);
        add(navDatabase.airwayFixes, PointKind::Intersection, "FIXXX", 3, -3);
        HoldPattern& hold = holdList.holds[1];
        hold.fixIndex = 1;
        hold.inboundCourseMag = 30;
        hold.legByTime = 0;
        hold.legDistanceNm = 4;
        holdList.count = 1;
        test::PlanMarks(2, 5);
        PlanRunway runway;
        runway.heading = runway.field8 = 60;
        runway.latitude = 4.0 / 60;
        runway.longitude = -0.05;
        planAirports.runways = {PlanRunway{}, runway};
        planAirports.selectedRunway = 1;
        planAirports.patternRunwayOffset = 0;
        source_->Tell({{80 - aircraft.trueHeading, 3, -12, -1, 1}});
    }

    std::unique_ptr<test::FakeTraffic> source_;
};

// The other side of what FlyBusily and LookAround show: the other bank, beyond the ends of scales
// and tapes, a close range, pointers and sources exchanged, layers off, a near target above.
void FlyOtherwise() {
    aircraft.pitch = 33;
    aircraft.bank = -47;
    aircraft.indicatedAirspeedKt = 95;
    aircraft.altitudeFt = 12340;
    aircraft.verticalSpeedFpm = 2600;
    aircraft.apAltitudeTargetFt = 20000;
    aircraft.radioAltitudeFt = 1450;
    aircraft.nav1CdiNeedle = -127;
    aircraft.nav1GlideslopeNeedle = 100;
    aircraft.markerBeacon = 1;
    aircraft.flightDirectorPitch = -9;
    aircraft.flightDirectorBank = 25;
    aircraft.apHeadingBug = 140;
    guidance.lnavEngaged = guidance.vnavEngaged = 1;
    guidance.crossTrackNm = 0.3;
    guidance.crossTrackSide = Side::Left;
    settings.EADIHdgTape = 0;
    std::swap(ehsi.bearingPointer1, ehsi.bearingPointer2);
    ehsi.navSource = NavSource::NavReceiver;
    ehsi.mapOverlayOn = nd.ndShowStations = 0;
    planAirports.runways[1].rightPattern = 1;
    planAirports.runways[1].latitude = 1.2 / 60;
    performance.showFloatingTodBod = 1;  // brought in to the edge
    test::PlanMarks(3, 5);
    traffic.items[0] = {340, 1.5, 3, '^', 'R'};
}

// Nothing comes from the simulator any more: flags and dashes.
void LoseEverything() {
    for (std::int32_t variable = 1; variable < 1000; ++variable) {
        test::FakeSimulator::Get().variables[variable] = test::kNan;
    }
    for (int readings = 0; readings < 19; ++readings) {
        RefreshAircraftState();
    }
}

// 1 without the control panel and with traffic, 2 the vertical path, 3 and 4 speeds, 5 north up.
std::int32_t mfdLook = 1;

void DrawMfdLook(const DrawTarget& target) {
    guidance.blinkCounter = 10;
    nd.showTraffic = mfdLook == 1 ? 1 : 0;
    mfd.mfdLayerA = mfd.mfdLayerB = 1;
    mfd.mfdPanelPresent = mfdLook > 1 ? 1 : 0;
    mfd.mfdMenuLevel = mfdLook == 2 ? kMfdSettingLevel : kMfdTopLevel;
    mfd.mfdSelA = 2;
    mfd.mfdValueA = 8;
    mfd.mfdValueB = 2000;
    mfd.page = mfdLook == 3   ? MfdPage::TakeoffSpeeds
               : mfdLook == 4 ? MfdPage::LandingSpeeds
                              : MfdPage::Map;
    mfd.speedRow = 1;
    mfd.mfdMapModeOn = mfdLook == 5 ? 1 : 0;
    mfd.storedPosition = {-1.0 / 60, 2.0 / 60};
    DrawMfd(target);
    nd.showTraffic = 1;
}

TEST_F(Pictures, LookAsTheyDidWhenLastLookedAt) {
    const struct {
        const char* name;
        test::DrawDisplay draw;
        CanvasSize design;
        std::int32_t& mode;
        std::int32_t modes;
    } displays[] = {{"EHSI", DrawEhsi, {266, 230}, ehsi.ehsiMode, 8},
                    {"ND", DrawNd, {244, 302}, nd.ndMode, 7},
                    {"EADI", DrawEadi, {266, 230}, nd.ndMode, 4},
                    {"TCAS", DrawTcas, {266, 230}, nd.ndMode, 1},
                    {"MFD", DrawMfdLook, {272, 314}, mfdLook, 5}};
    const bool renews = std::getenv("AVQ1_RENEW_PICTURES") != nullptr;
    std::map<std::string, Rows> before = ReadPictures();
    std::ostringstream now;
    const auto look = [&](const std::string& name, const Picture& picture, int scale) {
        const auto levels = Levels(picture, scale);
        const std::string text = Brightness(levels);
        now << "# " << name << '\n' << text;
        if (!renews) {
            ASSERT_TRUE(before.contains(name)) << name;
            EXPECT_EQ(CellsThatDiffer(levels, before[name]), 0) << name << '\n' << text;
        }
    };
    const struct {
        const char* name;
        void (*fly)();
        int scale;
        double ehsiRange;  // 0: in turn what is near, and the whole runway pattern
        std::int32_t ndRange;
    } looks[] = {{"", [] {}, 1, 0, 10},
                 {" otherwise", FlyOtherwise, 2, 2.5, 5},
                 {" without data", LoseEverything, 1, 12.5, 10}};
    for (const auto& [name, fly, scale, ehsiRange, ndRange] : looks) {
        fly();
        for (const auto& display : displays) {
            for (std::int32_t mode = 1; mode <= display.modes; ++mode) {
                display.mode = mode;
                aircraft.headingMag = PositiveModulo(250 + 90.0 * mode, 360);
                ehsi.ehsiRange = ehsiRange > 0 ? ehsiRange : mode % 2 == 0 ? 5 : 25;
                nd.ndRange = ndRange;
                look(std::string(display.name) + ' ' + std::to_string(mode) + name,
                     *test::DrawAt(display.draw, display.design, scale), scale);
            }
        }
    }
    if (renews) {
        std::ofstream(kFile) << now.str();
    }
}

}  // namespace
}  // namespace avq1
