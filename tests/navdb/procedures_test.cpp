#include "navdb/procedures.h"

#include <gtest/gtest.h>

#include "base/module_state.h"
#include "base/text.h"
#include "navdb/airport_detail.h"
#include "navdb/section_index.h"
#include "support/temp_sim_folder.h"

namespace avq1 {
namespace {

using test::TempSimFolder;

// "NAME: FIX(qualifier)* FIX ...": what the junction rules made of a procedure's legs.
std::string Show(const Procedure& procedure) {
    std::string text = procedure.name + ":";
    for (const ProcedureLeg& leg : procedure.legs) {
        text += " " + leg.fix;
        text += leg.qualifier.empty() ? "" : "(" + leg.qualifier + ")";
        text += leg.mark;
    }
    return text;
}

std::string Show(const std::vector<Procedure>& table) {
    std::string text;
    for (const Procedure& procedure : table) {
        text += (text.empty() ? "" : "; ") + Show(procedure);
    }
    return text;
}

TEST(Procedures, StopAtTheirCapacities) {
    const auto lines = [](const char* format, int count) {
        std::string text = "[KBOS]\n";
        for (int i = 0; i < count; ++i) {
            text += Format(format, i);
        }
        return text;
    };
    std::vector<Procedure> table;
    ReadSids(lines("S%d AAA\n", 150), "KBOS", table);
    EXPECT_EQ(table.size(), 140U);
    EXPECT_EQ(table.back().name, "S139");
    ReadSids(lines("S1 F%d\n", 205), "KBOS", table);
    ASSERT_EQ(table.at(0).legs.size(), 200U);
    EXPECT_EQ(table[0].legs.back().fix, "F199");
    ReadStars(lines("T S%d - -\n", 100), "KBOS", table);
    EXPECT_EQ(table.size(), 90U);
    AirportProcedures approaches;
    ReadApproaches(lines("%d ILS AAA ---\n", 60), "KBOS", approaches);
    EXPECT_EQ(approaches.approaches.size(), 50U);
    ReadApproaches(lines("01 G%d AAA ---\n", 20), "KBOS", approaches);
    EXPECT_EQ(approaches.approachGroups.size(), 10U);
    EXPECT_EQ(approaches.approaches.at(0).legs.size(), 20U);
}

// An airport with everything the lists need, in the files.
void WriteAirport(const TempSimFolder& folder) {
    folder.Write("avq/Navdata/avq_apts.txt",
                 "KBOS Boston 20 42.36 -71.01 04R_10000_42.3_-71_35_0_0_35 "
                 "22L_10000_42.4_-71_215_0_0_215 09_7000_42.3_-71_92_0_0_92\n");
    folder.Write("avq/Navdata/avq_sids.txt",
                 "[KAAA]\nT NO1 x -\n[KBOS]\nT SID1 x 04R,09\nSID1 AAA\n*\nT SID2 x\nSID2 BBB\n");
    folder.Write("avq/Navdata/avq_stars.txt",
                 "[KBOS]\nT STAR1 x 22L\nSTAR1.ZZZ ZZZ\nSTAR1.AAA AAA\n"
                 "STAR1.ZZZ YYY\nSTAR1 MMM\n[KZZZ]\nSTAR9 AAA\n");
    folder.Write(
        "avq/Navdata/avq_apps.txt",
        "[KBOS]\n22L ILS PROVI IAF\n22L ILS MILTT FAF\n22L ILS RUNWY MAP\n22L RNAV PROVI IAF\n"
        "22L RNAV WINNI WINNI\n04R ILS MILIS IAF\n22L ILS REPLY MAF\n-- VORA LWM IAF\n");
}

TEST(Procedures, AnAirportSlotGetsItsOwnKinds) {
    ResetModuleState();
    const TempSimFolder folder;
    WriteAirport(folder);
    ASSERT_TRUE(LoadAirportDetail("KBOS", kDepartureSlot));
    const AirportProcedures& departure = airportSlots[kDepartureSlot].procedures;
    EXPECT_EQ(departure.sids.size(), 2U);
    EXPECT_TRUE(departure.stars.empty());
    EXPECT_TRUE(departure.approaches.empty());
    ASSERT_TRUE(LoadAirportDetail("KBOS", kArrivalSlot));
    const AirportProcedures& arrival = airportSlots[kArrivalSlot].procedures;
    EXPECT_TRUE(arrival.sids.empty());
    EXPECT_EQ(arrival.stars.size(), 1U);
    EXPECT_EQ(arrival.approaches.size(), 3U);
    EXPECT_EQ(arrival.approachGroups, (std::vector<std::string>{"ILS", "RNAV", "VORA"}));
    EXPECT_FALSE(LoadAirportDetail("KXXX", kArrivalSlot));
    EXPECT_TRUE(arrival.stars.empty());
}

TEST(Procedures, ListsOfferWhatFits) {
    using Texts = std::vector<std::string>;
    ResetModuleState();
    const TempSimFolder folder;
    WriteAirport(folder);
    LoadAirportDetail("KBOS", kDepartureSlot);
    LoadAirportDetail("KBOS", kArrivalSlot);
    EXPECT_EQ(ListSidRunways("SID1"), (Texts{"04R", "09"}));
    EXPECT_EQ(ListSidRunways("SID2"), (Texts{"04R", "22L", "09"}));
    EXPECT_EQ(ListSidRunways("SID3"), Texts{});
    EXPECT_EQ(ListStarRunways("STAR1"), Texts{"22L"});
    const AirportProcedures& arrival = airportSlots[kArrivalSlot].procedures;
    EXPECT_EQ(ListTransitions(arrival.stars[0], false), (Texts{"AAA", "MMM", "ZZZ"}));
    EXPECT_EQ(ListTransitions(arrival.stars[0], true), Texts{"MMM"});
    EXPECT_EQ(ListApproaches("22L"),
              (std::vector<ApproachChoice>{{"ILS", "22L"}, {"RNAV", "22L"}, {"ILS", "22L"}}));
    EXPECT_EQ(ListApproaches(kNoChoice).size(), 5U);
    EXPECT_EQ(ListApproachTransitions("RNAV", "22L"), Texts{"PROVI"});
    EXPECT_EQ(ListApproachTransitions("ILS", "22L"), Texts{"PROVI"});
    ListApproachTypes("22L", kNoChoice);
    EXPECT_EQ(arrival.approachGroups, (Texts{"ILS", "RNAV", "VORA"}));  // a text without a runway
    ListApproachTypes(kNoChoice, "MILIS");
    EXPECT_EQ(arrival.approachGroups, Texts{"ILS"});
}

// The index must find in a file what reading it from its start finds: the first section of a name.
TEST(Procedures, TheIndexReadsWhatAPlainScanReads) {
    ResetModuleState();
    const TempSimFolder folder;
    const std::string text =
        "S1 AAA\n[KB]\r\nT S1 h 04\nS1 BBB\n[KC] x\nS2 CCC\n [KA]\nS2 DDD\n[KA\nS1 EEE\n[\n"
        "S1 FFF\n[KB]\nS1 GGG\n[KA]\nS1.T1 HHH\n* x\n[KB";
    folder.Write("avq/Navdata/avq_sids.txt", text);
    for (const char* ident : {"KA", "KB", "KC", "KD", "K", ""}) {
        std::vector<Procedure> plain;
        ReadSids(text, ident, plain);
        AirportProcedures indexed;
        LoadSids(ident, indexed);
        EXPECT_EQ(Show(indexed.sids), Show(plain)) << ident;
        EXPECT_EQ(plain.empty(), std::string(ident) == "KD" || std::string(ident) == "K") << ident;
    }
}

TEST(Procedures, AFileReplacedSinceItsIndexIsReadAnew) {
    ResetModuleState();
    const TempSimFolder folder;
    folder.Write("avq/Navdata/avq_sids.txt", "[KAAA]\nA1 AAA\n[KBOS]\nB1 BBB\n");
    IndexProcedureFiles();
    folder.Write("avq/Navdata/avq_sids.txt", "; longer now\n[KAAA]\nA1 AAA\n[KBOS]\nB2 CCC\n");
    AirportProcedures read;
    LoadSids("KBOS", read);
    EXPECT_EQ(Show(read.sids), "B2: CCC(CCC)*");
    // Where its section begins as before, but has grown; and an airport that the file had not.
    folder.Write("avq/Navdata/avq_sids.txt",
                 "; longer now\n[KAAA]\nA1 AAA\n[KBOS]\nB2 CCC\nB3 DDD\n[KCCC]\nC1 EEE\n");
    LoadSids("KBOS", read);
    EXPECT_EQ(Show(read.sids), "B2: CCC; B3: DDD(DDD)*");
    LoadSids("KCCC", read);
    EXPECT_EQ(Show(read.sids), "C1: EEE(EEE)*");
    std::filesystem::remove(folder.root() / "avq/Navdata/avq_sids.txt");
    LoadSids("KBOS", read);
    EXPECT_EQ(Show(read.sids), "");
}

TEST(SectionIndex, SectionsBeginWithLinesAndWithThePiecesOfLongOnes) {
    const std::string piece(1699, 'x');
    const std::string text =
        "\xEF\xBB\xBF[KAAA] x\nA [KNOT]\n" + piece + "[KBBB]\r\nx" + piece + "[KNOT]\n\n[KCCC";
    // However the text is cut into pieces: in a section's name, a mark, a line end.
    for (const std::size_t pieceSize : {1, 2, 5, 1700, 1 << 20}) {
        std::string found;
        for (const FileSection& section : FindSections(text, pieceSize)) {
            found += section.ident + Format("+%zu|", section.size);
            EXPECT_EQ(text.substr(section.offset, 5), "[" + section.ident);
        }
        EXPECT_EQ(found, "KAAA+1717|KBBB+1716|KCCC+5|") << pieceSize;
    }
}

}  // namespace
}  // namespace avq1
