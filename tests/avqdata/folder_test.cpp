// What a folder becomes: how sources combine, what fits, how it is written, what check says.
#include <gtest/gtest.h>

#include <algorithm>

#include "avqdata/airway_pieces.h"
#include "avqdata/check.h"
#include "avqdata/import_helpers.h"
#include "avqdata/limits.h"
#include "avqdata/text_tools.h"
#include "base/module_state.h"
#include "base/sim_folder.h"
#include "navdb/airport_detail.h"
#include "navdb/airways.h"
#include "navdb/boundaries.h"
#include "navdb/nav_database.h"
#include "support/temp_sim_folder.h"

namespace avqdata {
namespace {

RunwayEnd End(const char* ident, int lengthFt, const LatLon& at) {
    RunwayEnd end;
    end.ident = ident;
    end.lengthFt = lengthFt;
    end.at = at;
    end.headingMag = WholeNumber(std::string_view(ident).substr(0, 2)).value_or(0) * 10.0;
    end.courseMag = end.headingMag;
    return end;
}

Dataset SmallWorld() {
    Dataset data;
    data.stations = {{"QVR", "QUVER", {50, 8}, true, "113.70"},
                     {"QX", "QUIX", {50.5, 8}, false, "365"},
                     {"ABC", "ABECE", {51, 8}, true, "110.00"}};
    data.fixes = {{"BBBBB", {50, 9}}, {"AAAAA", {50, 8.5}}};
    data.airports = {{"QAAA", "Quax", 361, {50.01, 8.01}, {End("09", 8000, {50, 8})}, true, true}};
    data.airways = {{"Q1", {{"QVR", {50, 8}}, {"AAAAA", {50, 8.5}}, {"BBBBB", {50, 9}}}},
                    {"Q1", {{"FARAA", {-40, 8}}, {"FARBB", {-40, 9}}}}};
    data.boundaries = {{"CLASS_C_QAA", "QAA", {{50, 8}, {50.1, 8}, {50, 8.1}, {50, 8}}}};
    data.procedures[kSids]["QAAA"] = {"T QUAX1 --- 09", "QUAX1 AAAAA --- --- 50.00000 8.50000 FO",
                                      ";"};
    data.cycle = 2309;
    return data;
}

struct TemporaryFolder : avq1::test::TempSimFolder {
    std::string Navdata() const { return (root() / "avq" / "Navdata").string(); }
};

TEST(Folder, RoundTripThroughTheModule) {
    Import import;
    import.Add(SmallWorld());
    TemporaryFolder folder;
    ASSERT_TRUE(WriteFolder(folder.Navdata(), import.Texts(), import.error)) << import.error;
    Report report;
    CheckFolder(import.Texts(), report);
    EXPECT_EQ(report.Count(Topic::Fault), 0U);
    CountTables(import.folder, report);
    const std::pair<const char*, std::size_t> counts[] = {
        {"VORs", 2},        {"NDBs", 1},
        {"fixes", 4},       {"airways", 1},
        {"boundaries", 1},  {"unbroken pieces of airways", 2},
        {"airports", 1},    {"points of airways", 5},
        {"runway ends", 1}, {"airports with departures", 1}};
    for (const auto& [kind, count] : counts) {
        EXPECT_EQ(report.Count(Topic::Written, kind), count) << kind;
    }

    avq1::ResetModuleState();
    avq1::SimFolder = folder.root().string();
    avq1::LoadNavDatabase();
    avq1::ReadDatabaseCycle();
    EXPECT_EQ(avq1::DatabaseCycle, "AIRAC2309");
    EXPECT_EQ(avq1::DatabaseValidity, "SEP07OCT05/23");
    EXPECT_EQ(avq1::navDatabase.navaids.count, 3);
    EXPECT_EQ(avq1::navDatabase.letterGroupCount, 2);
    EXPECT_EQ(avq1::FindNavaid("QVR", "VOR", 50.2), 2);
    EXPECT_EQ(avq1::navDatabase.intersections.count, 4);  // with the two known from an airway only
    avq1::AirwayLookup lookup;
    EXPECT_TRUE(avq1::FindAirway("Q1", "BBBBB", lookup));
    EXPECT_EQ(lookup.entryIndex, 3);
    ASSERT_TRUE(avq1::LoadAirportDetail("QAAA", avq1::kDepartureSlot));
    const avq1::AirportDetail& detail = avq1::airportSlots[avq1::kDepartureSlot];
    ASSERT_EQ(detail.runways.size(), 1U);
    EXPECT_DOUBLE_EQ(detail.runways[0].heading, 90.0);
    ASSERT_EQ(detail.procedures.sids.size(), 1U);
    EXPECT_EQ(detail.procedures.sids[0].legs.at(0).flyover, 1);
    avq1::LoadAtcBoundaries();
    ASSERT_EQ(avq1::atcBoundaries.items.size(), 1U);
    EXPECT_EQ(avq1::atcBoundaries.items[0].points.size(), 4U);
    avq1::ResetModuleState();
}

TEST(Merge, LaterSourcesReplaceByRule) {
    Import import;
    import.Add(SmallWorld());
    Dataset later;
    later.stations = {{"QVR", "QUVER2", {50.0002, 8}, true, "114.00"},  // the same place
                      {"QX", "MOVED", {50.6, 8}, false, "366"},         // 6 nm away
                      {"ABC", "OTHER", {20, 8}, true, "110.00"}};       // another one
    later.airports = {{"QAAA", "Longer", 400, {50.02, 8.02}, {End("27", 8000, {50, 8.05})}, true},
                      {"QNEW", "New", 10, {52, 8}, {}, true}};
    import.Add(later, Coverage::Partial);
    const FolderTexts texts = import.Texts();
    EXPECT_EQ(LineOf(texts[kNavaidFile], "QVR"), "QVR QUVER2 50.00000 8.00000 VOR 114.00");
    EXPECT_EQ(LineOf(texts[kNavaidFile], "QX"), "QX MOVED 50.60000 8.00000 NDB 366");
    EXPECT_EQ(CountLines(texts[kNavaidFile]), 5U);  // with the cycle line and two ABC
    EXPECT_EQ(LineOf(texts[kAirportFile], "QAAA"),
              "QAAA Quax 361 50.01000 8.01000 09_8000_50.000000_8.000000_90.0_---_---_90.0 "
              "27_8000_50.000000_8.050000_270.0_---_---_270.0");
    EXPECT_NE(LineOf(texts[kAirportFile], "QNEW"), "");
    import.Add(later, Coverage::Whole);
    EXPECT_EQ(LineOf(import.Texts()[kAirportFile], "QAAA"),
              "QAAA Longer 400 50.02000 8.02000 27_8000_50.000000_8.050000_270.0_---_---_270.0");
    // That airlines serve QAAA is known on, from run to run.
    EXPECT_EQ(import.Texts()[kScheduledFile], "QAAA\n");
    EXPECT_EQ(FormatFolder(ParseFolder(import.Texts(), import.report))[kScheduledFile], "QAAA\n");
    // Another airport of the identifier neither takes the runways nor adds its own.
    Dataset elsewhere;
    elsewhere.airports = {{"QAAA", "Elsewhere", 9, {-20, 8}, {}, true}};
    import.Add(elsewhere, Coverage::Whole);
    elsewhere.airports[0].runways = {End("05", 8000, {-20, 8})};
    import.Add(elsewhere, Coverage::Partial);
    EXPECT_EQ(LineOf(import.Texts()[kAirportFile], "QAAA").substr(0, 27),
              "QAAA Longer 400 50.02000 8.");
    EXPECT_EQ(import.Texts()[kAirportFile].find("05_"), std::string::npos);
}

// Airways as texts: points a tenth of a degree apart by their letter, pieces divided by ";".
std::vector<Airway> Pieces(std::string_view text) {
    std::vector<Airway> pieces;
    for (const std::string& piece : SplitList(text, ';')) {
        Airway& airway = pieces.emplace_back();
        for (const std::string_view ident : Words(piece)) {
            if (airway.name.empty()) {
                airway.name = ident;
            } else {
                airway.points.push_back({std::string(ident), {50, 8 + (ident[0] - 'A') * 0.5}});
            }
        }
    }
    return pieces;
}

TEST(Merge, AnAirwayIsReplacedWhereTheLaterSourceHasItWhole) {
    const struct {
        const char* what;
        const char* have;
        const char* later;
        const char* then;
        const char* said;  // one case in the report
    } rows[] = {
        {"what lies beyond the source's end is kept and flown on", "Q A B C D E", "Q B X D",
         "Q A B X D E", "Q B to D"},
        {"turned round", "Q A B C D E", "Q D X B", "Q A B X D E", "Q D to E"},
        {"a stretch between two pieces of the source joins them", "Q A B C D E F", "Q A B; Q E F",
         "Q A B C D E F", "Q B to E"},
        {"the same again", "Q A B C D E", "Q B C D", "Q A B C D E", "Q A to B"},
        {"a fork stays apart", "Q A B C D", "Q A B X", "Q A B X; Q B C D", "Q B to D"},
        {"one point in common replaces nothing", "Q A B C", "Q X B Y", "Q X B Y; Q A B C", nullptr},
        {"an extension", "Q A B", "Q C B", "Q A B C", nullptr},
        {"another name", "Q A B C", "R A X C", "Q A B C; R A X C", nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Report report;
        std::vector<Airway> target = Pieces(row.have);
        MergeAirways(Pieces(row.later), target, report);
        std::string then;
        for (const Airway& airway : target) {
            then += (then.empty() ? "" : "; ") + airway.name;
            for (const Fix& point : airway.points) {
                then += " " + point.ident;
            }
        }
        EXPECT_EQ(then, row.then);
        std::string said;
        for (const ReportEntry& entry : report.entries) {
            for (const std::string& oneCase : entry.cases) {
                said += oneCase + ";";
            }
        }
        EXPECT_NE(said.find(row.said == nullptr ? "" : row.said), std::string::npos) << said;
        EXPECT_EQ(said.empty(), row.said == nullptr) << said;
    }
    // Of one name far apart, and of one place a little moved: the new one's.
    Report report;
    std::vector<Airway> target = Pieces("Q A B C");
    std::vector<Airway> moved = Pieces("Q A X B; Q A C");
    moved[0].points[2].at.latitude = 50.1;
    moved[1].points[0].at.latitude = 10;
    moved[1].points[1].at.latitude = 10;
    MergeAirways(std::move(moved), target, report);
    ASSERT_EQ(target.size(), 2U);
    ASSERT_EQ(target[1].points.size(), 4U);
    EXPECT_DOUBLE_EQ(target[1].points[2].at.latitude, 50.1);
}

TEST(Folder, ReadAndWrittenAgainItIsTheSame) {
    FolderTexts texts;
    // Hidden comments cannot be written; positions that become one are in their order.
    texts[kFixFile] = "\t;HID HID 1 1\n BBBBB B 1.000001 5\nBBBBB B 1.000002 3\nAAAAA A 1e0 2.5\n";
    texts[kAirportFile] = "QAAA Q 1 1 1 09_8000_1.00000049_1_90_---_---_90\n";
    Report report;
    Dataset data = ParseFolder(texts, report);
    EXPECT_EQ(report.Count(Topic::Dropped), 1U);
    SortDataset(data);
    const FolderTexts first = FormatFolder(data);
    EXPECT_EQ(first[kFixFile],
              "AAAAA AAAAA 1.00000 2.50000\nBBBBB BBBBB 1.00000 3.00000\n"
              "BBBBB BBBBB 1.00000 5.00000\n");
    EXPECT_NE(first[kAirportFile].find("09_8000_1.000000_1.000000"), std::string::npos);
    Dataset again = ParseFolder(first, report);
    SortDataset(again);
    EXPECT_EQ(FormatFolder(again), first);
}

TEST(Merge, OptionsChoose) {
    Import import;
    import.options.region = {49, 7, 51, 8.7};
    import.options.minRunwayFt = 9000;
    import.Add(SmallWorld());
    EXPECT_EQ(import.folder.airports.size(), 0U);
    EXPECT_EQ(import.folder.airways.size(), 1U);
    EXPECT_EQ(import.folder.airways.at(0).points.size(), 2U);  // cut at the border
    EXPECT_EQ(LineOf(import.Texts()[kFixFile], "BBBBB"), "");
    Import only;
    only.options.only = {"fixes"};
    only.Add(SmallWorld());
    EXPECT_EQ(only.folder.stations.size() + only.folder.airports.size(), 0U);
    EXPECT_EQ(only.folder.fixes.size(), 2U);
    EXPECT_EQ(only.folder.cycle, 0);
}

TEST(Capacities, ChooseTheUsefulAndSayWhatWent) {
    Import import;
    Dataset data;
    const auto name = [](char first, std::size_t number) {
        const auto letter = [&](std::size_t unit) { return char('A' + number / unit % 26); };
        return std::string{first, letter(676), letter(26), letter(1)};
    };
    for (std::size_t i = 0; i < 6000; ++i) {
        data.airports.push_back({"S" + std::to_string(i), "Strip", 0, {10, 10}, {}, false});
        data.airports.push_back(
            {name('K', i), "Field", 0, {10, 10}, {End("09", 5000, {10, 10})}, true});
    }
    data.airports.push_back({"ZZ-1", "Served", 0, {10, 10}, {}, false, true});
    for (std::size_t i = 0; i < 18000; ++i) {
        const LatLon at{10, static_cast<double>(i) / 100 - 90};
        data.stations.push_back({name('N', i % 17576), "N", at, i % 2 == 0, "113.00"});
    }
    for (std::size_t piece = 0; piece < 3; ++piece) {
        Airway airway{"Q9", {}};
        for (std::size_t i = 0; i < 100; ++i) {
            airway.points.push_back(
                {name('P', i), {30.0 * static_cast<double>(piece), 0.1 * static_cast<double>(i)}});
        }
        data.airways.push_back(airway);
    }
    data.airways.push_back({"Q8", {{"S5999", {10, 10}}, {name('N', 17001), {10, 80.01}}}});
    import.Add(std::move(data));
    EXPECT_EQ(import.folder.airports.size(), kMostAirports);
    EXPECT_EQ(LineOf(import.Texts()[kAirportFile], "S5999"), "");
    EXPECT_EQ(LineOf(import.Texts()[kFixFile], "S5999"), "S5999 S5999 10.00000 10.00000");
    EXPECT_EQ(std::ranges::count(import.folder.airports, true, &Airport::paved), 6000);
    EXPECT_NE(LineOf(import.Texts()[kAirportFile], "ZZ-1"), "");
    EXPECT_EQ(import.folder.stations.size(), kMostStations);
    EXPECT_EQ(std::ranges::count(import.folder.stations, true, &Station::isVor), 9000);
    EXPECT_EQ(import.folder.airways.size(), 3U);  // 250 points of one name are listed
    EXPECT_EQ(import.report.Count(Topic::Dropped), 2001U + 1000U + 1U);
    Report check;
    CheckFolder(import.Texts(), check);
    EXPECT_EQ(check.Count(Topic::Fault), 0U);
}

TEST(Capacities, UsedFixesComeFirstThenThoseNearAirports) {
    Dataset data;
    data.airports = {{"QAAA", "Quax", 361, {50, 8}, {}, true}};
    data.procedures[kApproaches]["QAAA"] = {"09 ILS ZPROC --- --- 10.00000 8.00000 0 0 ---"};
    data.airways = {{"Q1", {{"ZAWAY", {10, 9}}, {"ZPROC", {10, 8}}}}};
    data.fixes.reserve(kMostFixes + 4);
    for (const Fix& fix : {Fix{"AFARR", {51, 8}}, Fix{"ANEAR", {50.1, 8}}, Fix{"A1", {50, 8}},
                           Fix{"ZPROC", {60, 8}}, Fix{"ZPROC", {10, 8}}, Fix{"ZAWAY", {10, 9}}}) {
        data.fixes.push_back(fix);
    }
    while (data.fixes.size() < kMostFixes + 3) {
        data.fixes.push_back({"MMMMM", {50, 8}});
    }
    Report report;
    report.keepAll = true;
    FitCapacities(data, report);
    EXPECT_EQ(data.fixes.size(), kMostFixes);
    // Of the two of one name the unused one goes, being far from any airport.
    EXPECT_EQ(report.entries.at(0).cases, (std::vector<std::string>{"AFARR", "ZPROC", "A1"}));
    EXPECT_EQ(data.fixes.at(0).ident, "ANEAR");
    EXPECT_EQ(data.fixes.back().at.latitude, 10);
}

TEST(Folder, FilesAreFoundWhateverTheirLetterCase) {
    TemporaryFolder folder;
    folder.Write("avq/Navdata/AVQ_INTS.TXT", "OLDIE OLDIE 1.0 1.0\r\n");
    folder.Write("avq/Navdata/mine.txt", "keep");
    Import import;
    FolderTexts texts;
    ASSERT_TRUE(ReadFolder(folder.Navdata(), texts, import.error));
    import.folder = ParseFolder(texts, import.report);
    import.Add(SmallWorld());
    ASSERT_TRUE(WriteFolder(folder.Navdata(), import.Texts(), import.error));
    EXPECT_FALSE(folder.Exists("avq/Navdata/avq_ints.txt"));
    EXPECT_TRUE(folder.Exists("avq/Navdata/mine.txt"));
    ASSERT_TRUE(ReadFolder(folder.Navdata(), texts, import.error));
    EXPECT_EQ(LineOf(texts[kFixFile], "OLDIE"), "OLDIE OLDIE 1.00000 1.00000");
}

TEST(Check, NamesFileAndLineOfEachFault) {
    constexpr const char* kCycleFault =
        "cycle lines that do not read like ;AIRAC cycle : 2309 (07-SEP-2023 to 05-OCT-2023)";
    struct {
        FileRole role;
        std::string text;
        const char* kind;
        const char* place;
    } rows[] = {
        {kNavaidFile, "A A 1 1 VOR 113\nB B 1 1 VOR 113\nA2 A 1 1 VOR 113\n",
         "navaids apart from others of their first letter", "avq_navs.txt:3"},
        {kNavaidFile, "A A 1 1 VOR\n", "navaids without a frequency", "avq_navs.txt:1"},
        {kNavaidFile, ";AIRAC cycle : 2309 7-SEP-2023 to 05-OCT-2023\n", kCycleFault,
         "avq_navs.txt:1"},
        {kNavaidFile, ";AIRAC cycle : 2309 (99-XYZ-2023 to 05-OCT-2023)\n", kCycleFault,
         "avq_navs.txt:1"},
        {kNavaidFile, ";AIRAC cycle : 2309 (31-SEP-2023 to 05-OCT-2023)\n", kCycleFault,
         "avq_navs.txt:1"},
        {kNavaidFile, ";AIRAC cycle : 2309 (07-SEP-2023 to 05-SEP-2023)\n", kCycleFault,
         "avq_navs.txt:1"},
        {kNavaidFile, ";AIRAC cycle : X309 (07-SEP-2023 to 05-OCT-2023)\n", kCycleFault,
         "avq_navs.txt:1"},
        {kFixFile, "; fine\nAAAAA AAAAA 91 1\n", "positions that are none", "avq_ints.txt:2"},
        {kAirwayFile, "Q1 0010 NOFIX 1 1\n", "airway fixes that are not in the tables",
         "fsb_awy2.txt:1"},
        {kAirwayFile, "Q1 0010 NOFIX 1 1\nQ2 0010 NOFIX 1 1\nQ1 0020 NOFIX 1 1\n",
         "airways whose lines do not stand together", "fsb_awy2.txt:3"},
        {kAirwayFile, "Q1 0010 NOFIX 1 1" + std::string(200, ' ') + "\n",
         "lines longer than their reader takes", "fsb_awy2.txt:1"},
        {kAirportFile, "QAAA Q 1 1 1 09_8000_1_1_90_---_---\n",
         "runways without eight good sub-fields", "avq_apts.txt:1"},
        {kAirportFile, "QAAA Q 1 1 1 09_8000_2_1_90_---_---_90\n", "runways far from their airport",
         "avq_apts.txt:1"},
        {kAirportFile, "QAAA Q 1 1 1\nQAAA Q 1 1 1\n",
         "airports listed twice: only the first is loaded", "avq_apts.txt:2"},
        {kSidFile, "QUAX1 AAAAA --- --- 1 1 FO\n", "lines before the first section",
         "avq_sids.txt:1"},
        {kSidFile, "[QAAA]\nQUAX1 AAAAA --- --- 1 1 FO\n", "legs before their procedure's header",
         "avq_sids.txt:2"},
        {kStarFile, "[QAAA]\nT QUIN1 ---\n", "procedures without a leg", "avq_stars.txt"},
        {kApproachFile, "[QAAA]\n09 ILS NOFIX IAF --- 1 1 0 0 FO\n",
         "procedure fixes that are not in the tables", "avq_apps.txt:2"},
    };
    for (const auto& row : rows) {
        FolderTexts texts;
        texts[row.role] = row.text;
        Report report;
        CheckFolder(texts, report);
        const auto found = std::ranges::find(report.entries, row.kind, &ReportEntry::kind);
        ASSERT_TRUE(found != report.entries.end() && found->topic == Topic::Fault) << row.kind;
        EXPECT_TRUE(found->cases.at(0).starts_with(row.place)) << found->cases.at(0);
    }
}

TEST(Check, RunwayFixesLieAtTheirRunways) {
    const struct {
        const char* fix;  // and its position
        std::size_t faults;
    } rows[] = {
        {"RW09 50.00000 8.00000", 0}, {"RW09 20.00000 8.00000", 1},
        {"RW09 50.03000 8.00000", 1},  // 1.8 nm from the threshold
        {"RW27 50.03000 8.00000", 0},  // not listed: at the airport at least
        {"RW27 50.20000 8.00000", 1},
    };
    for (const auto& row : rows) {
        const std::vector<std::string_view> words = Words(row.fix);
        FolderTexts texts;
        texts[kAirportFile] = "QAAA Q 1 50.01 8.01 09_8000_50_8_90_---_---_90\n";
        texts[kApproachFile] = "[QAAA]\n09 ILS " + std::string(words[0]) + " MAF --- " +
                               std::string(words[1]) + " " + std::string(words[2]) + " 0 0 FO\n";
        Report report;
        CheckFolder(texts, report);
        EXPECT_EQ(report.Count(Topic::Fault, "runway fixes far from their runway"), row.faults)
            << row.fix;
    }
}

TEST(Check, TablesBeyondTheirRoomAreFaults) {
    for (const std::size_t beyond : {0U, 1U}) {
        FolderTexts texts;
        for (std::size_t i = 1; i < kMostBoundaries + beyond; ++i) {
            texts[kBoundaryFile] += "B" + std::to_string(i) + " B 1 1\n";
        }
        for (std::size_t i = 0; i < kMostBoundaryPoints + beyond; ++i) {
            texts[kBoundaryFile] += "LONG L 1 1\n";
        }
        for (std::size_t i = 0; i < kMostStations + beyond; ++i) {
            texts[kNavaidFile] += "A A 1 1 VOR 113\n";
        }
        for (std::size_t i = 0; i < kMostFixes + beyond; ++i) {
            texts[kFixFile] += "A A 1 1\n";
        }
        Report report;
        CheckFolder(texts, report);
        EXPECT_EQ(report.Count(Topic::Fault, "tables that are too long"), 3 * beyond);
        EXPECT_EQ(report.Count(Topic::Fault, "boundaries with more points than are read"), beyond);
    }
}

TEST(Check, ABoundaryThatComesAgainIsNamed) {
    FolderTexts texts;
    texts[kBoundaryFile] = "B1 X 1 1\nB2 X 1 1\nB1 X 1 1\n";
    Report report;
    CheckFolder(texts, report);
    const auto found = std::ranges::find(
        report.entries, "boundaries that come again and are drawn as others", &ReportEntry::kind);
    ASSERT_NE(found, report.entries.end());
    EXPECT_EQ(found->cases, std::vector<std::string>{"atc_bdry.txt:3: B1"});
}

TEST(Check, FindsTheDemosDataSound) {
    FolderTexts texts;
    std::string error;
    ASSERT_TRUE(ReadFolder(AVQ1_SOURCE_DIR "/demo/avq/Navdata", texts, error)) << error;
    Report report;
    CheckFolder(texts, report);
    EXPECT_EQ(report.Count(Topic::Fault), 0U);
    EXPECT_GE(std::ranges::count(texts[kApproachFile], '['), 3);
}

}  // namespace
}  // namespace avqdata
