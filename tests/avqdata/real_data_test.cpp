// The real files, where they are at hand: counts, known places, every procedure leg by leg.
#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <filesystem>
#include <map>
#include <set>

#include "avqdata/arinc.h"
#include "avqdata/check.h"
#include "avqdata/import_helpers.h"
#include "avqdata/procedure_arcs.h"
#include "avqdata/text_tools.h"
#include "navdb/procedures.h"

namespace avqdata {
namespace {

const std::string kData = AVQ1_SOURCE_DIR "/../shared/data/";

struct RealData : testing::Test {
    Import import;

    void SetUp() override {
        if (!std::filesystem::exists(kData)) {
            GTEST_SKIP() << kData << " is not there: nothing to import";
        }
    }
    void Run(const char* format, const std::string& source) {
        Dataset data;
        ASSERT_TRUE(ReadWhole(format, kData + source, import, data)) << import.error;
        import.Add(std::move(data), SourceNamed(format).coverage);
    }
    void ExpectSound() {
        Report report;
        CheckFolder(import.Texts(), report);
        for (const ReportEntry& entry : report.entries) {
            EXPECT_NE(entry.topic, Topic::Fault) << entry.kind << ": " << entry.cases.at(0);
        }
    }
};

TEST_F(RealData, XplaneWorld) {
    Run("xplane", "xplane");
    EXPECT_EQ(import.folder.airports.size(), 10000U);
    EXPECT_EQ(import.folder.cycle, 1310);
    EXPECT_EQ(import.folder.stations.size(), 3720U + 7072U);
    const std::string ksfo = LineOf(import.Texts()[kAirportFile], "KSFO");
    EXPECT_NE(ksfo.find(" 10L_"), std::string::npos) << ksfo;
    EXPECT_NE(ksfo.find("_ILS_"), std::string::npos) << ksfo;
    ExpectSound();
}

TEST_F(RealData, OurAirportsAndThenNasr) {
    Run("ourairports", "ourairports");
    Run("nasr", "nasr");
    EXPECT_EQ(import.folder.airports.size(), 10000U);
    EXPECT_EQ(import.folder.cycle, 2309);
    const FolderTexts texts = import.Texts();
    EXPECT_EQ(LineOf(texts[kFixFile], "AAALL"), "AAALL AAALL 42.12019 -71.14176");
    for (const char* ident : {"EDDF", "KJFK", "RJTT", "YSSY", "SBGR", "FACT"}) {
        EXPECT_NE(LineOf(texts[kAirportFile], ident), "") << ident;
    }
    ExpectSound();
}

// ---- procedures ----

using Fixes = std::vector<std::string>;

// The fixes of every route as the source writes them, by airport, kind letter, procedure and
// branch, read with nothing but columns: only legs to a fix.
std::map<std::string, Fixes> ReadSource(const std::string& path) {
    std::map<std::string, Fixes> routes;
    const std::set<std::string> toFix{"IF", "TF", "CF", "DF", "AF", "RF", "HA",
                                      "HF", "HM", "PI", "FA", "FC", "FD", "FM"};
    LineSource lines = LineSource::OfFile(path, {});
    std::string_view line;
    while (lines.Next(line)) {
        const char kind = line.size() > 120 && line[4] == 'P' ? line[12] : ' ';
        const bool leg = (kind == 'D' || kind == 'E' || kind == 'F') && line[38] <= '1';
        const std::string fix(leg ? Trim(line.substr(29, 5)) : "");
        if (!leg || fix.empty() || !toFix.contains(std::string(line.substr(47, 2)))) {
            continue;
        }
        Fixes& fixes = routes[std::string(Trim(line.substr(6, 4))) + " " + kind + " " +
                              std::string(line.substr(13, 12))];
        if (fixes.empty() || fixes.back() != fix) {
            fixes.push_back(fix);
        }
    }
    return routes;
}

// Fixes follow each other in a procedure; `missing` may be another branch's.
bool Holds(const avq1::Procedure& procedure, const Fixes& fixes, std::size_t missing) {
    std::size_t found = 0;
    for (const avq1::ProcedureLeg& leg : procedure.legs) {
        found += found < fixes.size() && fixes[found] == leg.fix ? 1 : 0;
    }
    return found + missing >= fixes.size();
}

TEST_F(RealData, EveryRouteOfTheExcerptLegByLeg) {
    Run("cifp", "cifp/self_contained_excerpt.pc");
    EXPECT_EQ(import.report.Count(Topic::Unresolved), 0U);  // every fix resolves
    ExpectSound();
    const FolderTexts texts = import.Texts();
    std::set<std::string> compared;
    for (const auto& route : ReadSource(kData + "cifp/self_contained_excerpt.pc")) {
        const std::string& key = route.first;
        const std::vector<std::string_view> words = Words(key);
        compared.insert(key.substr(0, key.size() - 6));
        avq1::AirportProcedures loaded;
        if (words[1] == "F") {  // under the type and runway that the import chose
            avq1::ReadApproaches(texts[kApproachFile], words[0], loaded);
            EXPECT_TRUE(std::ranges::any_of(loaded.approaches, [&](const auto& approach) {
                return Holds(approach, route.second, 1);
            })) << key;
            continue;
        }
        avq1::ReadSids(texts[kSidFile], words[0], loaded.sids);
        avq1::ReadStars(texts[kStarFile], words[0], loaded.stars);
        const avq1::Procedure* procedure = avq1::FindProcedure(
            words[1] == "D" ? loaded.sids : loaded.stars, Trim(key.substr(key.size() - 12, 6)));
        ASSERT_NE(procedure, nullptr) << key;
        EXPECT_TRUE(Holds(*procedure, route.second, 0)) << key;
    }
    EXPECT_EQ(compared.size(), 73U);
}

// Points along an arc: three letters and two digits.
bool IsAlongArc(const std::string& fix) {
    return fix.size() == 5 && std::isalpha(static_cast<unsigned char>(fix[2])) != 0 &&
           std::isdigit(static_cast<unsigned char>(fix[3])) != 0 &&
           std::isdigit(static_cast<unsigned char>(fix[4])) != 0;
}

// From one fix to an arc's end with nothing but points along arcs between, in whatever approach has
// the arc's transition.
std::vector<std::vector<Fix>> WaysBetween(const avq1::AirportProcedures& procedures,
                                          const std::string& before,
                                          const ProcedureLegRecord& arc) {
    const std::string transition = arc.routeType == 'A' ? arc.transition : "";
    std::vector<std::vector<Fix>> ways;
    for (const avq1::Procedure& approach : procedures.approaches) {
        for (const std::string& group : procedures.approachGroups) {
            std::vector<Fix> way;
            for (const avq1::ProcedureLeg& leg : approach.legs) {
                if (leg.group != group || (!leg.qualifier.empty() && leg.qualifier != transition)) {
                    continue;
                }
                const Fix fix{leg.fix, {leg.latitude, leg.longitude}};
                if (!way.empty() && fix.ident == arc.fix) {
                    way.push_back(fix);
                    ways.push_back(way);
                    way.clear();
                } else if (fix.ident == before) {
                    way = {fix};
                } else if (!way.empty() && IsAlongArc(fix.ident)) {
                    way.push_back(fix);
                } else {
                    way.clear();
                }
            }
        }
    }
    return ways;
}

// Every arc of the source, found again in what the module loads: how far the way from the fix
// before to the arc's end strays from the true arc, and that it goes the right way round.
std::size_t ExpectArcsFollowed(const std::string& path, const FolderTexts& texts) {
    struct Point {
        LatLon at;
        double variation = 0;
    };
    constexpr double kCoarseCourseNm = 0.05;  // courses with whole degrees of variation
    std::map<std::string, Point> points;      // by airport and identifier
    std::string before;
    std::size_t arcs = 0;
    LineSource lines = LineSource::OfFile(path, {});
    std::string_view line;
    while (lines.Next(line)) {
        const bool ofAirport = line.substr(4, 2) == "P ";
        const bool isStation = line.substr(4, 2) == "D ";
        const std::string airport(line.substr(6, 4));
        const std::optional<LatLon> at = ArincPosition(line, 33);
        if (at && ((ofAirport && line[12] == 'C') || isStation)) {
            points[(isStation ? "" : airport) + std::string(Trim(line.substr(13, 5)))] = {
                *at, ArincVariation(line.substr(74, 5)).value_or(0)};
        }
        const bool isLeg = ofAirport && line[12] == 'F' && line[38] <= '1';
        const ProcedureLegRecord leg = isLeg ? ReadLeg(line, 0) : ProcedureLegRecord{};
        if (leg.path == "AF" || leg.path == "RF") {
            ++arcs;
            SCOPED_TRACE(std::string(line.substr(0, 60)));
            avq1::AirportProcedures loaded;
            avq1::ReadApproaches(texts[kApproachFile], Trim(airport), loaded);
            LatLon centre;
            if (leg.path == "AF") {
                centre = points.at(leg.centre).at;
            } else {  // square to the course on which the arc is left
                const Point& end = points.at(airport + leg.fix);
                avq1::PointAtDistance(
                    end.at.latitude, end.at.longitude,
                    Normalized(*leg.courseDeg + end.variation + (leg.turn == 'R' ? 90 : -90)),
                    leg.radiusNm, centre.latitude, centre.longitude);
            }
            const double radiusNm = leg.path == "AF"
                                        ? DistanceNm(centre, points.at(airport + leg.fix).at)
                                        : leg.radiusNm;
            bool found = false;
            for (const std::vector<Fix>& way : WaysBetween(loaded, before, leg)) {
                std::vector<LatLon> places;
                for (const Fix& fix : way) {
                    places.push_back(fix.at);
                }
                found = true;
                EXPECT_LE(FarthestOffArcNm(places, centre, radiusNm),
                          kFarthestOffArcNm + kCoarseCourseNm);
                EXPECT_EQ(TurnedDeg(places, centre) > 0, leg.turn == 'R');
            }
            EXPECT_TRUE(found);
        }
        before = isLeg ? leg.fix : "";
    }
    return arcs;
}

TEST_F(RealData, EveryArcIsFollowed) {
    Run("cifp", "cifp/self_contained_excerpt.pc");
    EXPECT_EQ(ExpectArcsFollowed(kData + "cifp/self_contained_excerpt.pc", import.Texts()), 18U);
    const char* const withArcs = "cifp/09J_vor-a_pi_af_cycle2609.pc";
    import = {};
    Run("cifp", withArcs);
    EXPECT_EQ(ExpectArcsFollowed(kData + withArcs, import.Texts()), 2U);
    EXPECT_EQ(import.report.Count(Topic::Warning), 0U);
}

// Legs as "FIX restriction!", of a route or of what a choice gives.
using Marked = std::vector<std::string>;

std::string_view FixOf(std::string_view marked) {
    return marked.substr(0, marked.find(' '));
}

// A fix twice on end stands once where the first says nothing of its own.
Marked Merged(const Marked& legs) {
    Marked merged;
    for (const std::string& leg : legs) {
        const bool again = !merged.empty() && FixOf(merged.back()) == FixOf(leg);
        if (again && (merged.back() == leg || merged.back() == std::string(FixOf(leg)) + " ---")) {
            merged.pop_back();
        }
        merged.push_back(leg);
    }
    return merged;
}

// The routes of the source's approaches, holds and turns at a fix one with it: by airport and
// procedure, and then by transition ("" = the final approach).
std::map<std::string, std::map<std::string, Marked>> ReadApproachRoutes(const std::string& path) {
    struct Fix {
        std::string ident;
        std::string restriction;
        bool flyover = false;
        bool missed = false;
    };
    std::map<std::string, std::map<std::string, std::vector<Fix>>> routes;
    std::map<std::string, bool> missed;
    LineSource lines = LineSource::OfFile(path, {});
    std::string_view line;
    while (lines.Next(line)) {
        if (line.size() < 120 || line.substr(4, 2) != "P " || line[12] != 'F' || line[38] > '1') {
            continue;
        }
        const ProcedureLegRecord leg = ReadLeg(line, 0);
        const std::string key(line.substr(6, 4));
        const std::string name = std::string(Trim(key)) + " " + std::string(line.substr(13, 6));
        const std::string transition = leg.routeType == 'A' ? leg.transition : "";
        bool& isMissed = missed[name + transition];
        isMissed = isMissed || leg.description[2] == 'M';
        const std::set<std::string> toFix{"IF", "TF", "CF", "DF", "AF", "RF", "HA",
                                          "HF", "HM", "PI", "FA", "FC", "FD", "FM"};
        if (!leg.fix.empty() && toFix.contains(leg.path)) {
            const bool flyover = leg.description[1] == 'Y' || leg.description[1] == 'B';
            std::vector<Fix>& fixes = routes[name][transition];
            if (!fixes.empty() && fixes.back().ident == leg.fix &&
                fixes.back().missed == isMissed) {
                fixes.back().flyover = fixes.back().flyover || flyover;
                fixes.back().restriction =
                    fixes.back().restriction == "---" ? leg.restriction : fixes.back().restriction;
            } else {
                fixes.push_back({leg.fix, leg.restriction, flyover, isMissed});
            }
        }
        isMissed = isMissed || leg.description[3] == 'M';
    }
    std::map<std::string, std::map<std::string, Marked>> marked;
    for (const auto& [name, ofName] : routes) {
        for (const auto& [transition, fixes] : ofName) {
            for (const Fix& fix : fixes) {
                marked[name][transition].push_back(fix.ident + " " + fix.restriction +
                                                   (fix.flyover ? "!" : ""));
            }
        }
    }
    return marked;
}

// What an approach of the module gives for a transition, without the points along arcs.
Marked Chosen(const avq1::Procedure& approach, const std::string& group,
              const std::string& transition) {
    Marked legs;
    for (const avq1::ProcedureLeg& leg : approach.legs) {
        if (leg.group == group && !IsAlongArc(leg.fix) &&
            (leg.qualifier.empty() || leg.qualifier == transition)) {
            legs.push_back(leg.fix + " " + leg.text1 + (leg.flyover != 0 ? "!" : ""));
        }
    }
    return Merged(legs);
}

// The same records in either form: the same lines of every airport's procedures.
TEST_F(RealData, AFileAnAirportGivesWhatTheCodedRecordsGive) {
    Run("cifp", "cifp/self_contained_excerpt.pc");
    Import other;
    Dataset data;
    ASSERT_TRUE(ReadWhole("xplane", kData + "xplane12", other, data)) << other.error;
    EXPECT_EQ(other.report.Count(Topic::Unresolved), 0U);
    EXPECT_EQ(other.report.Count(Topic::Fault), 0U);
    for (const ProcedureKind kind : {kSids, kStars, kApproaches}) {
        EXPECT_EQ(data.procedures[kind].size(), import.folder.procedures[kind].size());
        for (const auto& [airport, lines] : import.folder.procedures[kind]) {
            EXPECT_EQ(data.procedures[kind][airport], lines) << airport;
        }
    }
    other.Add(std::move(data));
    Report check;
    CheckFolder(other.Texts(), check);
    EXPECT_EQ(check.Count(Topic::Fault), 0U);
}

TEST_F(RealData, EveryChoiceOfAnApproachKeepsItsOwnLegs) {
    Run("cifp", "cifp/self_contained_excerpt.pc");
    const FolderTexts texts = import.Texts();
    std::size_t choices = 0;
    for (const auto& [name, routes] :
         ReadApproachRoutes(kData + "cifp/self_contained_excerpt.pc")) {
        avq1::AirportProcedures loaded;
        avq1::ReadApproaches(texts[kApproachFile], name.substr(0, name.find(' ')), loaded);
        for (const auto& route : routes) {
            const std::string& transition = route.first;
            if (transition.empty()) {
                continue;
            }
            ++choices;
            Marked wanted = route.second;
            const auto final = routes.find("");
            ASSERT_NE(final, routes.end()) << name;
            wanted.insert(wanted.end(), final->second.begin(), final->second.end());
            wanted = Merged(wanted);
            const bool found = std::ranges::any_of(loaded.approaches, [&](const auto& approach) {
                return std::ranges::any_of(loaded.approachGroups, [&](const std::string& group) {
                    return Chosen(approach, group, transition) == wanted;
                });
            });
            EXPECT_TRUE(found) << name << " " << transition << ": "
                               << testing::PrintToString(wanted);
        }
    }
    EXPECT_EQ(choices, 101U);
}

TEST_F(RealData, ARandomSampleIsReportedNotFeared) {
    Run("cifp", "cifp/us_sample_j121_t222_cycle2101.pc.gz");
    EXPECT_EQ(import.folder.cycle, 2101);
    EXPECT_GT(import.report.Count(Topic::Unresolved, "procedure fixes that are not in the source"),
              1000U);
    ExpectSound();
}

TEST_F(RealData, AirspacesOfBothForms) {
    import.options.classes = {"ARTCC", "CLASS_B"};
    Run("airspace", "airspace/faa_us_airspace_2026-04-16.geojson.gz");
    EXPECT_EQ(import.folder.boundaries.size(), 59U);  // 26 centres, 30 of class B, parts apart
    std::set<std::string> idents;
    for (const Boundary& boundary : import.folder.boundaries) {
        idents.insert(boundary.ident);
    }
    EXPECT_TRUE(idents.contains("CLASS_B_JFK"));
    EXPECT_FALSE(idents.contains("CLASS_B_JFK_2"));
    EXPECT_FALSE(idents.contains("ARTCC_ZAN_2"));  // one across the date line
    Import openAir;
    Dataset data;
    ASSERT_TRUE(ReadWhole("airspace", kData + "airspace/us_airspace_openair_2018-09-13.txt.gz",
                          openAir, data))
        << openAir.error;
    EXPECT_EQ(data.boundaries.size(), 2361U);
    EXPECT_EQ(openAir.report.Count(Topic::Fault), 0U);
    for (const Boundary& boundary : data.boundaries) {
        EXPECT_FALSE(boundary.ident.starts_with("OTHER") || boundary.name == "-") << boundary.ident;
    }
}

}  // namespace
}  // namespace avqdata
