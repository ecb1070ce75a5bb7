// `avqdata plan`: the table, the maps' lines, files written and left alone.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

#include "avqdata/plan_helpers.h"
#include "avqdata/plan_table.h"
#include "avqdata/plan_track.h"
#include "avqdata/plan_verb.h"
#include "support/temp_sim_folder.h"

namespace avqdata {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::HasSubstr;

// ---- the table ----

// Along the equator and a meridian a degree is 60 nm.
TEST(PlanTable, ShowsEveryColumnThatSaysSomething) {
    PlanReading read(
        "CruiseAlt=11000\nResvFuel=500\nFuel=2500\n[FlightPlan]\n"
        "AAAA 0 -0.5 APT ---\n"
        "BB 0 0.5 VOR 113.70 V1\n"
        "DISCO 0 0 WPT ---\n"
        "EVIL\x1B[2J -2 0.5 INT --- CCC1 STAR\n"
        "DDDD -2 0.5 APT ---\n");
    read.plan.entries[1].altitude = 10000;
    read.plan.entries[1].speed = 250;
    read.plan.departure = {"RW09", "SIDD1", "BB", "", ""};
    EXPECT_EQ(PlanTable(read.plan, *read.format),
              "AAAA to DDDD (AVQ1 plan), cruise 11000 ft, fuel 2500 with reserve 500\n"
              "Departure: runway RW09, SIDD1, transition BB\n"
              "no  ident     type  position             true  leg nm  total nm  via   procedure    "
              "freq  alt ft   kt\n"
              " 1  AAAA      APT   N00:00:00 W00:30:00\n"
              " 2  BB        VOR   N00:00:00 E00:30:00   090    60.0      60.0  V1               "
              "113.70   10000  250\n"
              " 3  DISCO           route gap\n"
              " 4  EVIL?[2J  INT   S02:00:00 E00:30:00   180   120.0     180.0  CCC1  STAR\n"
              " 5  DDDD      APT   S02:00:00 E00:30:00           0.0     180.0\n"
              "Total 180.0 nm, courses true, the way across a gap counts straight\n");
}

// ---- lines on a map ----

ExchangePlan Route(std::initializer_list<avq1::LatLon> places) {
    ExchangePlan plan;
    for (const avq1::LatLon& at : places) {
        avq1::PlanWaypoint entry = avq1::Discontinuity();
        if (std::isfinite(at.latitude)) {
            entry.ident = "P" + std::to_string(plan.entries.size());
            entry.type = "INT";
            entry.latitude = at.latitude;
            entry.longitude = at.longitude;
        }
        plan.entries.push_back(entry);
    }
    return plan;
}

constexpr avq1::LatLon kGap{std::numeric_limits<double>::infinity(), 0};

TEST(PlanTrack, EndsALineAtAGapAndAt180Degrees) {
    const struct {
        std::initializer_list<avq1::LatLon> places;
        std::vector<std::pair<avq1::LatLon, avq1::LatLon>> ends;  // of the lines
    } cases[] = {
        {{{0, 1}, {0, 2}, kGap, {0, 3}, {0, 4}}, {{{0, 1}, {0, 2}}, {{0, 3}, {0, 4}}}},
        {{{0, 1}, kGap, {0, 3}, {0, 4}, kGap}, {{{0, 3}, {0, 4}}}},
        {{{0, 1}, {0, 1}}, {}},
        {{{0, 179}, {0, -179}}, {{{0, 179}, {0, 180}}, {{0, -180}, {0, -179}}}},
        {{{0, -170}, {0, 170}}, {{{0, -170}, {0, -180}}, {{0, 180}, {0, 170}}}},
        // Points on the meridian itself, on either of its names.
        {{{0, 179}, {0, 180}, {1, 180}}, {{{0, 179}, {1, 180}}}},
        {{{0, 179}, {0, -180}, {0, -179}}, {{{0, 179}, {0, 180}}, {{0, -180}, {0, -179}}}},
        {{{0, 180}, {0, -179}}, {{{0, -180}, {0, -179}}}},
        {{{60, 179.5}, {61, -179.5}, {62, 179.5}},
         {{{60, 179.5}, {60.5, 180}}, {{60.5, -180}, {61.5, -180}}, {{61.5, 180}, {62, 179.5}}}},
    };
    for (const auto& c : cases) {
        const std::vector<RouteLine> lines = RouteLines(Route(c.places));
        ASSERT_EQ(lines.size(), c.ends.size()) << c.places.begin()[1].longitude;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            EXPECT_NEAR(lines[i].front().latitude, c.ends[i].first.latitude, 0.01);
            EXPECT_EQ(lines[i].front().longitude, c.ends[i].first.longitude);
            EXPECT_NEAR(lines[i].back().latitude, c.ends[i].second.latitude, 0.01);
            EXPECT_EQ(lines[i].back().longitude, c.ends[i].second.longitude);
        }
    }
}

// Tokyo to San Francisco climbs ten degrees above both; the line ends at 180 degrees on the way.
TEST(PlanTrack, FollowsTheGreatCircle) {
    double northernmost = 0;
    double totalNm = 0;
    for (const RouteLine& line : RouteLines(Route({{35.76, 140.39}, {37.62, -122.38}}))) {
        for (std::size_t i = 1; i < line.size(); ++i) {
            northernmost = std::max(northernmost, line[i].latitude);
            const double stepNm = avq1::GreatCircleDistanceNm(
                line[i - 1].latitude, line[i - 1].longitude, line[i].latitude, line[i].longitude);
            EXPECT_LE(stepNm, 60.001);
            totalNm += stepNm;
        }
    }
    EXPECT_NEAR(totalNm, avq1::GreatCircleDistanceNm(35.76, 140.39, 37.62, -122.38), 0.05);
    EXPECT_GT(northernmost, 47);
}

TEST(PlanMaps, GeoJsonHasRouteAndPoints) {
    ExchangePlan plan = Route({{-17.5, 177.5}, {-18, -179}, kGap, {-20, -175}, {-21, -175}});
    plan.cruiseAltitudeFt = 31000;
    plan.entries[1].via = "B599";
    plan.entries[1].altitude = 31000;
    const json document = json::parse(PlanWriting("geojson", plan).text, nullptr, false);
    ASSERT_FALSE(document.is_discarded());
    EXPECT_EQ(document["type"], "FeatureCollection");
    const json& features = document["features"];
    ASSERT_EQ(features.size(), 5U);
    EXPECT_EQ(features[0]["geometry"]["type"], "MultiLineString");
    EXPECT_EQ(features[0]["geometry"]["coordinates"].size(), 3U);
    EXPECT_EQ(features[0]["properties"]["cruiseAltitudeFt"], 31000);
    EXPECT_EQ(features[2]["geometry"]["coordinates"], json::array({-179.0, -18.0}));
    EXPECT_EQ(
        features[2]["properties"],
        json::parse(R"({"number":2,"ident":"P1","type":"INT","via":"B599","altitudeFt":31000})"));
    const auto geometry = [](std::initializer_list<avq1::LatLon> places) {
        return json::parse(PlanWriting("geojson", Route(places)).text)["features"][0]["geometry"];
    };
    EXPECT_EQ(geometry({{0, 1}, {0, 1.5}}),
              json::parse(R"({"type":"LineString","coordinates":[[1,0],[1.5,0]]})"));
    EXPECT_TRUE(geometry({{0, 1}, {0, 1}}).is_null());
}

// ---- files ----

struct PlanFiles : testing::Test {
    avq1::test::TempSimFolder folder;
    std::ostringstream out;
    std::ostringstream err;

    PlanFiles() {
        folder.Write("good.RTE",
                     "[FlightPlan]\nAAAA 50 8 APT ---\nBBB 51 8 VOR 113.70\nCCCC 52 8 APT ---\n");
        folder.Write("holed.fms", "I\n3 version\n1\n1\n1 AAAA 0 50 8\n11 B 0 x 8\n1 CCCC 0 52 8\n");
        folder.Write("taken.kml", "mine");
    }
    std::string Path(const std::string& name) const { return (folder.root() / name).string(); }
    std::ptrdiff_t CountFiles() const {
        return std::distance(fs::directory_iterator(folder.root()), fs::directory_iterator());
    }
};

testing::Matcher<const std::string&> SaysOf(const char* part) {
    if (*part == '\0') {
        return testing::Eq("");
    }
    return HasSubstr(part);
}

TEST_F(PlanFiles, WhatARunSaysAndLeavesBehind) {
    const struct {
        const char* file;
        const char* to;
        const char* as;
        bool force;
        int status;
        const char* out;  // a part of what is said, empty: nothing
        const char* err;
    } cases[] = {
        {"good.RTE", "", "", false, kPlanDone, "Total 120.0 nm", ""},
        {"good.RTE", "a.pln", "", false, kPlanDone, "3 waypoints as simulator plan, XML form",
         "not carried: frequencies\n"},
        {"good.RTE", "b.PLN", "pln-keys", false, kPlanDone, "form of keys", "frequencies\n"},
        {"good.RTE", "c.rte", "", false, kPlanDone, "AVQ1 plan", "names end in .RTE, in capitals"},
        {"good.RTE", "d.json", "", false, kPlanDone, "GeoJSON", ""},
        {"good.RTE", "taken.kml", "", false, kPlanFailed, "", "is there already"},
        {"good.RTE", "taken.kml", "", true, kPlanDone, "KML", ""},
        {"good.RTE", "e.kml", "rte", false, kPlanFailed, "", "rte wants the extension .rte"},
        {"good.RTE", "e.gpx", "", false, kPlanFailed, "", "no format has this extension"},
        {"good.RTE", "e.pln", "gpx", false, kPlanFailed, "", "gpx: is no format"},
        {"good.RTE", "no/such/folder/e.pln", "", false, kPlanFailed, "", "cannot be written"},
        {"holed.fms", "", "", false, kPlanFaulty, "AAAA to CCCC", "holed.fms:6: 'x' '8' is no pos"},
        {"holed.fms", "f.RTE", "", false, kPlanFaulty, "2 waypoints", "left out\n"},
        {"taken.kml", "", "", false, kPlanFailed, "", "known here; there are\n  pln-xml  "},
        {"absent.RTE", "g.kml", "", false, kPlanFailed, "", "cannot be opened"},
    };
    std::ptrdiff_t files = CountFiles();
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.file) + " to " + c.to);
        out.str("");
        err.str("");
        PlanRequest request;
        request.file = Path(c.file);
        request.to = *c.to != '\0' ? Path(c.to) : "";
        request.as = c.as;
        request.force = c.force;
        EXPECT_EQ(RunPlan(request, out, err), c.status);
        EXPECT_THAT(out.str(), SaysOf(c.out));
        EXPECT_THAT(err.str(), SaysOf(c.err));
        files += *c.to != '\0' && c.status != kPlanFailed && !c.force ? 1 : 0;
        EXPECT_EQ(CountFiles(), files);  // nothing half-made is left
        EXPECT_THAT(folder.Read("taken.kml"), testing::StartsWith(c.force ? "<?xml" : "mine"));
        folder.Write("taken.kml", "mine");
    }
}

// A route in place of a file, data to place it, the plan against data.
TEST_F(PlanFiles, RoutesAndData) {
    folder.Write("Nav/avq_navs.txt",
                 ";AIRAC cycle : 2309 (07-SEP-2023 to 05-OCT-2023)\nBBB BEE 51 8 VOR 113.70\n");
    folder.Write("Nav/avq_apts.txt", "AAAA A 300 50 8\nCCCC C 300 52 8\n");
    folder.Write("Empty/readme.txt", "nothing");
    folder.Write("empty.pln", "");
    const std::string route = "aaaa bbb cccc";  // as somebody types it
    const struct {
        std::string file;
        const char* to;
        const char* data;
        const char* check;
        int status;
        const char* out;
        const char* err;
    } cases[] = {
        {route, "", "Nav", "", kPlanDone, "AAAA to CCCC (route text)", ""},
        {route, "a.RTE", "Nav", "", kPlanDone, "3 waypoints as AVQ1 plan", ""},
        {route, "", "", "", kPlanFailed, "",
         "word 1, AAAA has no position in the file, and no data"},
        {"aaaa bbb nnnn cccc", "b.RTE", "Nav", "", kPlanFaulty, "3 waypoints",
         "route: word 3, NNNN is not in the data: left out"},
        {route, "", "Empty", "", kPlanFailed, "", "holds none of the navigation files"},
        {route, "", "Absent", "", kPlanFailed, "", "holds none of the navigation files"},
        {Path("good.RTE"), "", "", "Nav", kPlanDone,
         "good.RTE: 0 faults, 0 warnings, checked against cycle 2309", ""},
        {Path("holed.fms"), "", "", "Nav", kPlanFaulty, "1 faults", "holed.fms:6"},
        {Path("empty.pln"), "", "", "", kPlanFailed, "", "empty.pln: is empty, no flight plan"},
        {route, "x.gfp", "Nav", "", kPlanFailed, "", "no format has this extension"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file + " to " + c.to);
        out.str("");
        err.str("");
        PlanRequest request;
        request.file = c.file;
        request.to = *c.to != '\0' ? Path(c.to) : "";
        request.data = *c.data != '\0' ? Path(c.data) : "";
        request.check = *c.check != '\0' ? Path(c.check) : "";
        EXPECT_EQ(RunPlan(request, out, err), c.status);
        EXPECT_THAT(out.str(), SaysOf(c.out));
        EXPECT_THAT(err.str(), SaysOf(c.err));
    }
    EXPECT_THAT(folder.Read("a.RTE"), HasSubstr("VOR 113.70"));
}

// Today's cycle, unless the plan or the user names one.
TEST_F(PlanFiles, CycleOfAnFmsPlan) {
    const auto run = [&](const char* from, const char* to, const char* cycle) {
        return RunPlan({Path(from), Path(to), "", cycle, true}, out, err);
    };
    EXPECT_EQ(run("good.RTE", "a.fms", "2309"), kPlanDone);
    EXPECT_THAT(folder.Read("a.fms"), HasSubstr("\nCYCLE 2309\n"));
    EXPECT_EQ(run("a.fms", "b.fms", ""), kPlanDone);
    EXPECT_EQ(folder.Read("b.fms"), folder.Read("a.fms"));
    EXPECT_EQ(run("good.RTE", "c.fms", ""), kPlanDone);
    EXPECT_THAT(folder.Read("c.fms"), testing::ContainsRegex("\nCYCLE [2-9][0-9][01][0-9]\n"));
    EXPECT_EQ(run("good.RTE", "c.fms", "23x"), kPlanFailed);
}

}  // namespace
}  // namespace avqdata
