// The shared plans, read by the program and, apart from it, by a few lines that know only how such
// a file looks; distances by another formula.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>

#include "avqdata/plan_helpers.h"
#include "avqdata/plan_table.h"

namespace avqdata {
namespace {

const std::filesystem::path kPlans = AVQ1_SOURCE_DIR "/../shared/data/flightplans";

struct SimplePlace {
    std::string ident;
    double latitude = 0;
    double longitude = 0;
};

std::string ContentsOf(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// Any of N54° 39' 14.04" (also with * for the sign, and minutes alone) and 54.285833.
double SimpleCoordinate(const std::string& text) {
    static const std::regex number("[0-9]+(\\.[0-9]+)?");
    double value = 0;
    double unit = 1;
    for (std::sregex_iterator it(text.begin(), text.end(), number), end; it != end; ++it) {
        value += std::stod(it->str()) * unit;
        unit /= 60;
    }
    return text.find_first_of("SW-") != std::string::npos ? -value : value;
}

std::vector<SimplePlace> SimpleXml(const std::string& text) {
    static const std::regex waypoint(R"(<ATCWaypoint id="([^"]*)\")");
    static const std::regex airport("<ATCWaypointType>(Airport|AIRPORT)<");
    static const std::regex position("<WorldPosition>([^,]*),([^,]*),");
    static const std::regex code("<ICAOIdent>([^<]*)<");
    std::vector<SimplePlace> places;
    bool isAirport = false;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::smatch found;
        if (std::regex_search(line, found, waypoint)) {
            places.push_back({found[1], 0, 0});
            isAirport = false;
        } else if (std::regex_search(line, airport)) {
            isAirport = true;
        } else if (!places.empty() && std::regex_search(line, found, position)) {
            places.back().latitude = SimpleCoordinate(found[1]);
            places.back().longitude = SimpleCoordinate(found[2]);
        } else if (isAirport && std::regex_search(line, found, code)) {
            places.back().ident = found[1];
        }
    }
    return places;
}

std::vector<SimplePlace> SimpleKeys(const std::string& text) {
    static const std::regex shortForm("^waypoint\\.[0-9]+=([^,]+), ., ([NS][^,]*), ([EW][^,]*),");
    static const std::regex longForm(
        "^Waypoint\\.[0-9]+=[^,]*, ([^,]+), [^,]*, [^,]*, ., ([NS][^,]*), ([EW][^,]*),");
    std::vector<SimplePlace> places;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::smatch found;
        if (std::regex_search(line, found, shortForm) || std::regex_search(line, found, longForm)) {
            places.push_back({found[1], SimpleCoordinate(found[2]), SimpleCoordinate(found[3])});
        }
    }
    return places;
}

double HaversineNm(const SimplePlace& a, const SimplePlace& b) {
    constexpr double kRad = 3.14159265358979323846 / 180;
    const double north = std::sin((b.latitude - a.latitude) * kRad / 2);
    const double east = std::sin((b.longitude - a.longitude) * kRad / 2);
    const double h =
        north * north + std::cos(a.latitude * kRad) * std::cos(b.latitude * kRad) * east * east;
    return 2 * std::asin(std::sqrt(h)) / kRad * 60;
}

void ExpectReadAs(const std::filesystem::path& path, const std::vector<SimplePlace>& places) {
    const PlanReading read(ContentsOf(path), path.filename().string());
    ASSERT_TRUE(read.done) << read.error;
    EXPECT_EQ(read.Said(), "");
    ASSERT_EQ(read.plan.entries.size(), places.size()) << read.Idents();
    double totalNm = 0;
    for (std::size_t i = 0; i < places.size(); ++i) {
        const avq1::PlanWaypoint& entry = read.plan.entries[i];
        EXPECT_EQ(entry.ident, places[i].ident);
        EXPECT_NEAR(entry.latitude, places[i].latitude, 1e-9) << entry.ident;
        EXPECT_NEAR(entry.longitude, places[i].longitude, 1e-9) << entry.ident;
        totalNm += i > 0 ? HaversineNm(places[i - 1], places[i]) : 0;
    }
    const std::string table = PlanTable(read.plan, *read.format);
    const std::size_t total = table.find("\nTotal ");
    ASSERT_NE(total, std::string::npos);
    EXPECT_NEAR(std::stod(table.substr(total + 7)), totalNm, 0.06);
}

TEST(SharedPlans, ReadAsTheyWereWritten) {
    if (!std::filesystem::exists(kPlans)) {
        GTEST_SKIP() << "no plans at " << kPlans;
    }
    std::size_t waypoints = 0;
    std::set<std::string> refused;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(kPlans)) {
        if (!entry.is_regular_file()) {
            continue;
        }
        SCOPED_TRACE(entry.path().string());
        const std::string text = ContentsOf(entry.path());
        const bool isXml = text.find("<ATCWaypoint") != std::string::npos;
        const std::vector<SimplePlace> places = isXml ? SimpleXml(text) : SimpleKeys(text);
        if (places.empty()) {
            refused.insert(entry.path().filename().string());
            EXPECT_NE(PlanReading(text).error.find("no flight plan in a form"), std::string::npos);
            continue;
        }
        ExpectReadAs(entry.path(), places);
        waypoints += places.size();
    }
    // Counted by eye, so that the simple reading itself cannot miss a file or half of one.
    EXPECT_EQ(waypoints, 205U);
    EXPECT_EQ(refused, std::set<std::string>{"LIDTLSZS_FSC.pln"});
}

}  // namespace
}  // namespace avqdata
