// The real files, where they are at hand: counts, known places, every procedure leg by leg.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <map>
#include <set>

#include "avqdata/check.h"
#include "avqdata/import_helpers.h"
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
    template <typename ImportFunction>
    void Run(ImportFunction function, const std::string& source, Coverage coverage) {
        Dataset data;
        ASSERT_TRUE(function(kData + source, import.Context(), data, import.error)) << import.error;
        import.Add(std::move(data), coverage);
    }
    void ExpectSound() {
        Report report;
        CheckFolder(import.Texts(), report);
        EXPECT_EQ(report.Count(Topic::Fault), 0U);
        for (const ReportEntry& entry : report.entries) {
            for (const std::string& one : entry.cases) {
                EXPECT_NE(entry.topic, Topic::Fault) << entry.kind << ": " << one;
            }
        }
    }
};

TEST_F(RealData, XplaneWorld) {
    Run(ImportXplane, "xplane", Coverage::Whole);
    EXPECT_EQ(import.folder.airports.size(), 10000U);
    EXPECT_EQ(import.folder.cycle, 1310);
    EXPECT_EQ(import.folder.stations.size(), 3720U + 7072U);
    const std::string ksfo = LineOf(import.Texts()[kAirportFile], "KSFO");
    EXPECT_NE(ksfo.find(" 10L_"), std::string::npos) << ksfo;
    EXPECT_NE(ksfo.find("_ILS_"), std::string::npos) << ksfo;
    ExpectSound();
}

TEST_F(RealData, OurAirportsAndThenNasr) {
    Run(ImportOurAirports, "ourairports", Coverage::Whole);
    Run(ImportNasr, "nasr", Coverage::Partial);
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

// The fixes of a route as the source writes them: only legs to a fix.
using Fixes = std::vector<std::string>;
using SourceRoutes = std::map<std::pair<char, std::string>, Fixes>;

// By airport, kind letter and procedure, read with nothing but columns.
std::map<std::string, SourceRoutes> ReadSource(const std::string& path) {
    std::map<std::string, SourceRoutes> procedures;
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
        const std::string key = std::string(Trim(line.substr(6, 4))) + " " + kind + " " +
                                std::string(Trim(line.substr(13, 6)));
        procedures[key][{line[19], std::string(Trim(line.substr(20, 5)))}].push_back(fix);
    }
    return procedures;
}

Fixes WithoutRepeats(Fixes fixes) {
    fixes.erase(std::unique(fixes.begin(), fixes.end()), fixes.end());
    return fixes;
}

// What a pilot gets who chooses this transition and runway.
Fixes Chosen(const avq1::Procedure& procedure, const std::string& transition,
             const std::string& runway) {
    Fixes fixes;
    for (const avq1::ProcedureLeg& leg : procedure.legs) {
        const bool candidate =
            leg.qualifier.empty() || leg.qualifier == transition || leg.mark == avq1::kCommonMark;
        const bool served = leg.text2.empty() || leg.text2 == "---" ||
                            (!runway.empty() && leg.text2.find(runway) != std::string::npos);
        if (candidate && served) {
            fixes.push_back(leg.fix);
        }
    }
    return WithoutRepeats(fixes);
}

// Every combination of branches of a departure or arrival.
void ExpectTerminal(const avq1::Procedure& procedure, const SourceRoutes& routes, bool outward,
                    const std::string& title) {
    SourceRoutes branches[3];  // in the order of the route types
    for (const auto& [key, fixes] : routes) {
        branches[key.first == 'T' ? 0 : (key.first - '1') % 3][key] = fixes;
    }
    for (SourceRoutes& branch : branches) {
        if (branch.empty()) {
            branch[{}] = {};
        }
    }
    for (const auto& [firstKey, first] : branches[0]) {
        for (const auto& [commonKey, common] : branches[1]) {
            for (const auto& [lastKey, last] : branches[2]) {
                Fixes want = first;
                want.insert(want.end(), common.begin(), common.end());
                want.insert(want.end(), last.begin(), last.end());
                std::string runway = outward ? firstKey.second : lastKey.second;
                runway = runway.starts_with("RW") ? runway.substr(2) : "";
                runway = runway.ends_with('B') ? runway.substr(0, 2) + "L" : runway;
                const std::string transition = outward ? lastKey.second : firstKey.second;
                EXPECT_EQ(Chosen(procedure, transition, runway), WithoutRepeats(want))
                    << title << " " << transition << " " << runway;
            }
        }
    }
}

void ExpectApproach(const std::vector<avq1::Procedure>& approaches, const SourceRoutes& routes,
                    const std::string& title, std::size_t& legsLeftOut) {
    // Found by its final route: the type and runway it was given are the importer's choice.
    const auto sequence = [&](const avq1::Procedure& approach, const std::string& group,
                              const std::string& transition) {
        Fixes fixes;
        for (const avq1::ProcedureLeg& leg : approach.legs) {
            const bool ofFinal = leg.qualifier.empty() || leg.qualifier == "MISSED" ||
                                 (leg.role == "IAF" && !routes.contains({'A', leg.qualifier}));
            if (leg.group == group &&
                (transition.empty() ? ofFinal : leg.qualifier == transition)) {
                fixes.push_back(leg.fix);
            }
        }
        return WithoutRepeats(fixes);
    };
    // `have` may lack fixes of `want`, in order: counted, and few.
    const auto isWithin = [&](const Fixes& have, const Fixes& want, std::size_t& missing) {
        std::size_t found = 0;
        for (const std::string& fix : want) {
            found += found < have.size() && have[found] == fix ? 1 : 0;
        }
        missing = want.size() - found;
        return found == have.size() && !have.empty();
    };
    std::size_t best = 99;
    for (const avq1::Procedure& approach : approaches) {
        std::set<std::string> groups;
        for (const avq1::ProcedureLeg& leg : approach.legs) {
            groups.insert(leg.group);
        }
        for (const std::string& group : groups) {
            std::size_t missingOfAll = 0;
            bool all = true;
            for (const auto& [key, route] : routes) {
                const Fixes have = sequence(approach, group, key.first == 'A' ? key.second : "");
                std::size_t missing = 0;
                all = all && isWithin(have, WithoutRepeats(route), missing);
                missingOfAll += missing > 0 && key.first == 'A' ? missing - 1 : missing;
            }
            best = all ? std::min(best, missingOfAll) : best;
        }
    }
    EXPECT_LE(best, 1U) << title;
    legsLeftOut += best == 99 ? 0 : best;
}

TEST_F(RealData, EveryProcedureOfTheExcerptLegByLeg) {
    Run(ImportCifp, "cifp/self_contained_excerpt.pc", Coverage::Partial);
    EXPECT_EQ(import.report.Count(Topic::Unresolved), 0U);  // every fix resolves
    ExpectSound();
    const FolderTexts texts = import.Texts();
    std::size_t compared = 0;
    std::size_t legsLeftOut = 0;
    for (const auto& [key, routes] : ReadSource(kData + "cifp/self_contained_excerpt.pc")) {
        const std::vector<std::string_view> words = Words(key);
        avq1::AirportProcedures procedures;
        avq1::ReadSids(texts[kSidFile], words[0], procedures.sids);
        avq1::ReadStars(texts[kStarFile], words[0], procedures.stars);
        avq1::ReadApproaches(texts[kApproachFile], words[0], procedures);
        ++compared;
        if (words[1] == "F") {
            ExpectApproach(procedures.approaches, routes, key, legsLeftOut);
            continue;
        }
        const auto& table = words[1] == "D" ? procedures.sids : procedures.stars;
        const avq1::Procedure* procedure = avq1::FindProcedure(table, words[2]);
        ASSERT_NE(procedure, nullptr) << key;
        ExpectTerminal(*procedure, routes, words[1] == "D", key);
    }
    EXPECT_EQ(compared, 73U);
    EXPECT_EQ(legsLeftOut, import.report.Count(
                               Topic::Dropped,
                               "legs of missed approaches back to a fix that names a transition"));
}

TEST_F(RealData, ARandomSampleIsReportedNotFeared) {
    Run(ImportCifp, "cifp/us_sample_j121_t222_cycle2101.pc.gz", Coverage::Partial);
    EXPECT_EQ(import.folder.cycle, 2101);
    EXPECT_GT(import.report.Count(Topic::Unresolved, "procedure fixes that are not in the source"),
              1000U);
    ExpectSound();
    for (const char* file :
         {"cifp/09J_vor-a_pi_af_cycle2609.pc", "cifp/single_leg_oddities_cycle2609.pc"}) {
        Import small;
        Dataset data;
        EXPECT_TRUE(ImportCifp(kData + file, small.Context(), data, small.error)) << small.error;
    }
}

TEST_F(RealData, AirspacesOfBothForms) {
    import.options.classes = {"ARTCC", "CLASS_B"};
    Run(ImportAirspace, "airspace/faa_us_airspace_2026-04-16.geojson.gz", Coverage::Partial);
    EXPECT_GT(import.folder.boundaries.size(), 350U);
    Import openAir;
    Dataset data;
    ASSERT_TRUE(ImportAirspace(kData + "airspace/us_airspace_openair_2018-09-13.txt.gz",
                               openAir.Context(), data, openAir.error))
        << openAir.error;
    EXPECT_GT(data.boundaries.size(), 3000U);
    EXPECT_EQ(openAir.report.Count(Topic::Fault), 0U);
}

}  // namespace
}  // namespace avqdata
