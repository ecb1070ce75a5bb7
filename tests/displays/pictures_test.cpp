// Every display in every mode on flights of many kinds, compared with how it looked when it was
// last looked at: pictures.txt keeps its texts in drawing order and, of most flights, one letter of
// brightness for every 4 x 4 pixels at nominal size. Whatever a flight is like, texts keep apart
// and show no nonsense. After a change that is meant, AVQ1_RENEW_PICTURES=1
// build/asan/test_displays writes the file anew; look at the difference.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
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
#include "support/nav_points.h"
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

// The texts in drawing order, each of them once, behind "=" and in lines that can be read.
std::string TextLines() {
    constexpr std::size_t kLongestLine = 100;
    std::string lines;
    std::string line = "=";
    for (const test::DrawnText& drawn : Picture::Texts()) {
        line += drawn.text + '|';
        if (line.size() > kLongestLine) {
            lines += line + '\n';
            line = "=";
        }
    }
    return lines + line + '\n';
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

// What was kept of each picture: brightness by rows, and its texts as lines.
struct KeptPicture {
    Rows rows;
    std::string texts;
};

std::map<std::string, KeptPicture> ReadPictures() {
    std::map<std::string, KeptPicture> pictures;
    std::ifstream file(kFile);
    KeptPicture* picture = nullptr;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("# ")) {
            picture = &pictures[line.substr(2)];
        } else if (picture != nullptr && line.starts_with('=')) {
            picture->texts += line + '\n';
        } else if (picture != nullptr) {
            picture->rows.push_back(line);
        }
    }
    return pictures;
}

// ---- flights ----

std::unique_ptr<test::FakeTraffic> source;

void FlyBusily() {
    auto& variables = test::FakeSimulator::Get().variables;
    variables[49] = variables[852] = variables[58] = variables[792] = 1;
    aircraft.latitude = aircraft.longitude = 0;
    aircraft.trueHeading = 340;
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
    // the last far beyond every map
    test::SetActivePlan(
        {{"WP0", -5.0 / 60, 0}, {"WP1", 6.0 / 60, -0.03}, {"WP2", 7.0 / 60, 0.06}, {"WP3", -1, 2}});
    planBook.activeIndex = 1;
    modifiedPlan = activePlan;
    modifiedPlan.CutTo(1);
    PlanWaypoint detour;
    detour.ident = "DET";
    detour.latitude = 3.0 / 60;
    detour.longitude = 0.06;
    modifiedPlan.Append(std::move(detour));
    modifiedPlan.Append(Discontinuity());
    planBook.status = RouteStatus::Modified;
    guidance.distanceToGoNm = 7.46;
    guidance.desiredTrackMag = 350;
    guidance.bearingToWaypointMag = 345;
    guidance.crossTrackNm = 1.26;
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
    atcBoundaries.items = {{"X1", "BDY", {4.0 / 60, 0}, {{0.1, 0}, {0.1, 0.1}, {0, 0.1}}}};
    test::AddPoint(navDatabase.navaids, "VVV", 1.0 / 60, -6.0 / 60);
    test::AddPoint(navDatabase.navaids, "NN", 5.0 / 60, -2.0 / 60, PointKind::Navaid);
    test::AddPoint(navDatabase.airports, "KAPT", 3.0 / 60, 3.0 / 60);
    test::AddPoint(navDatabase.airwayFixes, "FIXXX", 3.0 / 60, -3.0 / 60);
    test::AddPoint(navDatabase.airwayFixes, "FARFX", 18.0 / 60, 12.0 / 60);
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
    planAirports.destinationElevationText = "433";
    source->Tell({{80 - aircraft.trueHeading, 3, -12, -1, 1}});
}

// The other side of those two: the other bank, beyond the ends of scales and tapes, pointers and
// sources exchanged, layers off, targets of every threat.
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
    aircraft.nav1DmeNm = 0.4;
    aircraft.markerBeacon = 1;
    aircraft.flightDirectorPitch = -9;
    aircraft.flightDirectorBank = 25;
    aircraft.apHeadingBug = 140;
    guidance.lnavEngaged = guidance.vnavEngaged = 1;
    guidance.crossTrackNm = 0.3;
    guidance.crossTrackSide = Side::Left;
    settings.EADIHdgTape = 0;
    settings.ExpandEADILnav = settings.EhsiStaticHdgPointer = 1;
    std::swap(ehsi.bearingPointer1, ehsi.bearingPointer2);
    ehsi.navSource = NavSource::NavReceiver;
    ehsi.mapOverlayOn = nd.ndShowStations = 0;
    planAirports.runways[1].rightPattern = 1;
    planAirports.runways[1].latitude = 1.2 / 60;
    performance.showFloatingTodBod = 1;  // brought in to the edge
    test::PlanMarks(3, 5);
    source->Tell({{20, 1.5, 3, 1, 3}, {120, 2, -7, 0, 2}, {200, 3, 0, -1, 0}, {300, 6, 2, 1, 1}});
}

// Down the path towards a localizer, the first waypoint behind a gap, a hold being flown.
void FlyAnApproach() {
    aircraft.headingHoldOn = 0;
    aircraft.radioAltitudeFt = 2400;
    aircraft.markerBeacon = 3;
    aircraft.nav1GlideslopeNeedle = 300;
    aircraft.nav1CdiNeedle = -40;
    aircraft.adfActive = 0;
    aircraft.windSpeedKt = 0;
    test::FakeSimulator::Get().variables[46] = 0xC0;
    settings.ExpandEADI = settings.EadiDualCue = settings.DispAppPtrnAlts = 1;
    settings.DispPrevWpt = 1;
    ehsi.bearingPointer1 = BearingSource::Vor;
    ehsi.bearingPointer2 = BearingSource::Fms;
    activePlan.Edit(2) = Discontinuity();
    modifiedPlan.Edit(0) = Discontinuity();
    holdList.holds[1].turnDirection = HoldTurn::Left;
    holdFlight.holdActive = holdFlight.holdTargetCorner = 1;
    vnav.cruiseAltitude = 30000;
    vnav.topOfClimbReached = vnav.descentActive = 1;
    vnav.pathAltitude = 4796;
    settings.TcasVertRange = 27;
    source->Tell({{60, 2, 27, 0, 1}, {20, 4, 28, 0, 1}});
}

// Far away, with everything as wide as it gets and records all around, closer than a map can show
// them.
void FlyAmongCrowds() {
    for (int i = 0; i < 300; ++i) {
        const std::string ident = "P" + std::to_string(i);
        const double northDeg = (std::fmod(i * 0.61803, 1.0) * 42 - 21) / 60;
        const double eastDeg = (std::fmod(i * 0.75487, 1.0) * 42 - 21) / 60;
        const PointKind kind = i % 2 == 0 ? PointKind::Vor : PointKind::Navaid;
        test::AddPoint(navDatabase.navaids, ident, northDeg, eastDeg, kind);
        test::AddPoint(navDatabase.airports, ident, northDeg + 0.01, eastDeg);
        test::AddPoint(navDatabase.airwayFixes, ident, northDeg + 0.01, eastDeg + 0.013);
    }
    for (const double eastDeg : {-0.043, -0.053, 0.0, 0.005}) {  // in each other's way
        PlanWaypoint entry = activePlan.entries[1];
        entry.ident = "LONGIDENT";
        entry.longitude = eastDeg;
        activePlan.Append(std::move(entry));
    }
    ehsi.bearingPointer1 = ehsi.bearingPointer2 = BearingSource::Vor;
    aircraft.nav1DmeNm = aircraft.nav2DmeNm = 188.8;
    aircraft.windSpeedKt = 134;
    aircraft.groundSpeedKt = derived.trueAirspeedEstimateKt = 1204;
    aircraft.radioAltitudeFt = 2500;
    ehsi.decisionHeight = 2500;
    guidance.distanceToGoNm = 4321.2;
    guidance.crossTrackNm = 125;
    guidance.lnavEngaged = guidance.vnavEngaged = 1;
    test::PredictArrivalIn(119.7);
    performance.approachFlapsMin = "15";
    settings.ShowTodBodIndicators = 0;  // it and traffic are drawn over what stands there
    source->Tell({});
}

void FlyAcrossTheDateLine() {
    aircraft.longitude = 179.99;
    aircraft.magneticVariation = 15;
    test::SetActivePlan({{"WEST", 0, 179.9}, {"EAST", 0.02, -179.9}, {"NORTH", 0.2, -179.9}});
    test::AddPoint(navDatabase.airports, "KDLN", 0.05, -179.95);
    planBook.status = RouteStatus::Active;
}

// Standing still with nothing received and nothing planned.
void StandStill() {
    test::FakeSimulator::Get().variables.clear();
    aircraft.groundSpeedKt = 20;
    navDatabase = NavDatabase{};
    activePlan.CutTo(-1);
    planBook.activeIndex = kNoWaypoint;
    planBook.status = RouteStatus::None;
    planAirports.patternRunwayOffset = kNoPatternRunway;
    ehsi.bearingPointer1 = BearingSource::Fms;
    trafficSource = TrafficSource{};
    test::FakeSimulator::Get().foreign.clear();
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
std::int32_t noMode = 1;

void DrawMfdLook(const DrawTarget& target) {
    guidance.blinkCounter = 10;
    const std::int32_t traffic = std::exchange(nd.showTraffic, mfdLook == 1 ? 1 : 0);
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
    mfd.storedPosition = {-1.0 / 60, aircraft.longitude + 2.0 / 60};
    DrawMfd(target);
    nd.showTraffic = traffic;
}

struct Display {
    const char* name;
    test::DrawDisplay draw;
    CanvasSize design;
    std::int32_t& mode;
    std::int32_t modes;
    bool bold;
};

const Display kDisplays[] = {{"EHSI", DrawEhsi, {266, 230}, ehsi.ehsiMode, 8, false},
                             {"ND", DrawNd, {244, 302}, nd.ndMode, 7, false},
                             {"EADI", DrawEadi, {266, 230}, noMode, 1, true},
                             {"TCAS", DrawTcas, {266, 230}, noMode, 1, false},
                             {"MFD", DrawMfdLook, {272, 314}, mfdLook, 5, true}};

struct Flight {
    const char* name;
    void (*fly)();
    bool pixels;
    int scale = 1;
    double mapRangeNm = 0;  // of EHSI and MFD; 0: in turn what is near, and the runway pattern
    std::int32_t ndRangeNm = 10;
    double trafficRangeNm = 5;
    DisplayDrawMode mode = DisplayDrawMode::Normal;
    double headingMag = 250;  // turned by 90 degrees for each mode
};

const Flight kFlights[] = {
    {"", [] {}, true},
    {" otherwise", FlyOtherwise, true, 2, 2.5, 5, 10, DisplayDrawMode::Normal, 247},
    {" on the approach", FlyAnApproach, true, 1, 12.5, 20, 20, DisplayDrawMode::Normal, 253},
    {" among crowds", FlyAmongCrowds, false, 1, 40, 40},
    {" nearer", FlyAmongCrowds, false, 1, 5, 10, 2},
    {" far out", [] { source->Tell({}); }, false, 1, 160, 80, 40},
    {" in the second cockpit", [] {}, false, 1, 25, 10, 5, DisplayDrawMode::SecondCockpit},
    {" across the date line", FlyAcrossTheDateLine, true, 1, 12.5, 10},
    {" standing still", StandStill, false, 1, 12.5, 10},
    {" without data", LoseEverything, true, 1, 12.5, 10},
};

class Pictures : public test::DisplayTest {
  protected:
    void Begin(const Flight& flight) {
        DisplayTest::SetUp();
        atcBoundaries.loaded = true;
        source = std::make_unique<test::FakeTraffic>();
        FlyBusily();
        LookAround();
        flight.fly();
    }

    // Every display in every mode, looked at after it was drawn.
    template <class Look>
    void ForEachPicture(const Flight& flight, Look look) {
        ehsi.ehsiMode8Range = flight.trafficRangeNm;
        nd.ndRange = flight.ndRangeNm;
        for (const Display& display : kDisplays) {
            for (std::int32_t mode = 1; mode <= display.modes; ++mode) {
                display.mode = mode;
                aircraft.headingMag = PositiveModulo(flight.headingMag + 90.0 * mode, 360);
                ehsi.ehsiRange = flight.mapRangeNm > 0 ? flight.mapRangeNm : mode % 2 == 0 ? 5 : 25;
                mfd.mfdMapRange = flight.mapRangeNm > 0 ? flight.mapRangeNm : 12.5;
                const auto picture =
                    test::DrawAt(display.draw, display.design, flight.scale, flight.mode);
                look(display, std::string(display.name) + ' ' + std::to_string(mode) + flight.name,
                     *picture);
            }
        }
    }
};

TEST_F(Pictures, LookAsTheyDidWhenLastLookedAt) {
    const bool renews = std::getenv("AVQ1_RENEW_PICTURES") != nullptr;
    std::map<std::string, KeptPicture> before = ReadPictures();
    std::ostringstream now;
    for (const Flight& flight : kFlights) {
        Begin(flight);
        ForEachPicture(
            flight, [&](const Display& display, const std::string& name, const Picture& picture) {
                const auto levels = flight.pixels ? Levels(picture, flight.scale)
                                                  : std::vector<std::vector<double>>{};
                const std::string brightness = Brightness(levels);
                now << "# " << name << '\n' << TextLines() << brightness;
                test::ExpectNoNonsenseTexts();
                if (flight.scale == 1 && flight.fly != LoseEverything) {
                    test::ExpectTextsApart(display.design, display.bold, name);
                }
                if (!renews) {
                    ASSERT_TRUE(before.contains(name)) << name;
                    EXPECT_EQ(TextLines(), before[name].texts) << name;
                    EXPECT_EQ(CellsThatDiffer(levels, before[name].rows), 0) << name << '\n'
                                                                             << brightness;
                }
            });
    }
    if (renews) {
        std::ofstream(kFile) << now.str();
    }
}

TEST_F(Pictures, ValuesThatAreNoNumbersNeverSpoilThem) {
    const Flight flight{"", [] {}, false};
    for (const double bad : test::kNonsense) {
        Begin(flight);
        for (double* const value : {&aircraft.nav1Course,
                                    &aircraft.nav1CdiNeedle,
                                    &aircraft.nav1RelativeBearing,
                                    &aircraft.apHeadingBug,
                                    &aircraft.windSpeedKt,
                                    &aircraft.groundSpeedKt,
                                    &aircraft.nav1DmeNm,
                                    &aircraft.magneticVariation,
                                    &aircraft.latitude,
                                    &aircraft.longitude,
                                    &aircraft.altitudeFt,
                                    &aircraft.trueHeading,
                                    &aircraft.adfRelativeBearing,
                                    &aircraft.pitch,
                                    &aircraft.bank,
                                    &aircraft.flightDirectorPitch,
                                    &aircraft.indicatedAirspeedKt,
                                    &aircraft.verticalSpeedFpm,
                                    &guidance.bearingToWaypointMag,
                                    &guidance.desiredTrackMag,
                                    &guidance.crossTrackNm,
                                    &guidance.distanceToGoNm,
                                    &derived.driftDeg,
                                    &derived.windDirectionMag,
                                    &derived.trueAirspeedEstimateKt}) {
            *value = bad;
        }
        ForEachPicture(
            flight, [&](const Display& display, const std::string& name, const Picture& picture) {
                EXPECT_FALSE(picture.IsClear());
                test::ExpectNoNonsenseTexts();
                test::ExpectTextsApart(display.design, display.bold, name);
                if (name.starts_with("ND") && !std::isfinite(bad)) {
                    ExpectShown({"NO MAP"}, nd.ndMode >= 5);
                }
            });
    }
}

TEST_F(Pictures, AreDrawnOnlyWithPowerAndWhenAskedFor) {
    Begin(kFlights[0]);
    for (const Display& display : kDisplays) {
        for (display.mode = 1; display.mode <= display.modes; ++display.mode) {
            test::ExpectDrawsOnlyWhenAsked(display.draw);
        }
    }
}

}  // namespace
}  // namespace avq1
