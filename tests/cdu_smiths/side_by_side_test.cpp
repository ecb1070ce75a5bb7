// The same flight on the Smiths-style, the GNS-style and the compact unit side by side: what is
// entered on one shows on all, and no two say different times, altitudes or fuel.
#include <gmock/gmock.h>

#include <cmath>

#include "base/redraw.h"
#include "cdu_smiths/fake_smiths.h"
#include "guidance/vnav.h"
#include "simlink/sim_variables.h"

namespace avq1::test {
namespace {

using testing::Contains;
using testing::StartsWith;

class SideBySide : public SmithsTest {
  protected:
    SideBySide() {
        MakeDatabase();
        folder.Write("avq/Navdata/avq_ints.txt",
                     "NEWPT NEWPT 0.5 2.5\nLATER LATER 0.5 3.5\nFLY FLY 0.0 2.0\n");
        LoadNavDatabase();
        aircraft.longitude = 0.1;
        aircraft.groundSpeedKt = aircraft.indicatedAirspeedKt = 240;
        aircraft.altitudeFt = 6000;
        aircraft.simRateRaw = 256;
        aircraft.zuluHour = aircraft.clockHour = 12;
        simulator.variables[306] = 6.7;
        simulator.variables[291] = simulator.variables[297] = 8388608;
        simulator.variables[292] = simulator.variables[298] = 1000;
        simulator.variables[638] = 2000;
        simulator.variables[657] = 2200;
        cdu.Press("RTE =KAAA L1 =KBBB R1 NEXT_PAGE =ABCDE R1 =FLY R2 =LATER R3 R6 EXEC");
        SetCruiseAltitude(21000);
        RefreshPredictions();
    }

    // The text at a place of a row of the GNS-style unit that shows the identifier; empty without.
    std::string OnGns(const std::string& ident) const {
        for (const std::string& row : unit.Rows()) {
            const std::size_t at = row.find(ident + '|');
            if (at != std::string::npos) {
                const std::string behind = row.substr(at + ident.size() + 1);
                return behind.substr(0, behind.find('|'));  // a restriction's mark follows
            }
        }
        return "";
    }

    // Of the entry that a row of RTE LEGS or RTE DATA shows, what stands behind its identifier:
    // predicted restrictions are small, and a little lower.
    std::string SmithsColumn(const std::string& ident) const {
        constexpr int kFirstDataY = 33;
        constexpr int kSmallDrop = 5;
        for (int row = 0; row < 5; ++row) {
            const std::string data = cdu.At(kFirstDataY + 33 * row);
            if (data.starts_with(ident)) {
                const std::size_t behind = data.find('|');
                return behind != std::string::npos ? data.substr(behind + 1)
                                                   : cdu.At(kFirstDataY + kSmallDrop + 33 * row);
            }
        }
        return "";
    }

    void ShowGnsPlan(GnsColumn column) {
        gns.page = kGnsPlan;
        gns.planView = kActiveView;
        gns.Counter(GnsCounter::ActivePlan).n = 1;
        gns.columnMode = column;
        ClearSelections(gns);
        RequestUnitRedraw();
        unit.Draw();
    }

    // Lists, times, altitudes and fuel of all three, of the entries from the active one on.
    void Compare() {
        RefreshPredictions();
        CompareListsAndTimes();
        CompareAltitudes();
        CompareFuel();
    }

    void CompareListsAndTimes() {
        ShowGnsPlan(kColumnEta);
        cdu.Press("LEGS R6");
        compact.Press("LEGS");
        for (std::int32_t i = planBook.activeIndex; i <= activePlan.lastIndex; ++i) {
            const std::string& ident = activePlan.entries[i].ident;
            const std::string eta = OnGns(ident);  // "12:15"
            ASSERT_EQ(eta.size(), 5U) << ident;
            EXPECT_THAT(SmithsColumn(ident), StartsWith(eta.substr(0, 2) + eta.substr(3) + "Z|"));
            if (i < planBook.activeIndex + kCompactRows) {
                EXPECT_THAT(compact.Rows(), Contains(testing::HasSubstr(ident)));
            }
        }
        const std::string eta = OnGns(activePlan.entries[planBook.activeIndex].ident);
        const double minutes = std::stod(eta.substr(0, 2)) * 60 + std::stod(eta.substr(3)) -
                               aircraft.zuluHour * 60 - aircraft.zuluMinute;
        compact.Press("TO");
        EXPECT_EQ(compact.Rows()[3].substr(0, 11),
                  std::string("ETE:  ") + HoursMinutesText(0, minutes).c_str());
    }

    void CompareAltitudes() {
        ShowGnsPlan(kColumnAlt);
        cdu.Press("LEGS");
        for (std::int32_t i = planBook.activeIndex; i < activePlan.lastIndex; ++i) {
            const std::string& ident = activePlan.entries[i].ident;
            const double feet = std::stod(OnGns(ident));
            std::string shown = SmithsColumn(ident);
            ASSERT_NE(shown.find('/'), std::string::npos) << ident << ' ' << shown;
            shown = shown.substr(shown.find('/') + 2);
            const bool level = shown.starts_with("FL");
            const double smithsFeet = level ? 100 * std::stod(shown.substr(2)) : std::stod(shown);
            EXPECT_NEAR(smithsFeet, feet, level ? 50 : 0) << ident;
        }
    }

    void CompareFuel() {
        gns.page = kGnsFuel;
        gns.Counter(GnsCounter::Fuel).n = 3;
        unit.Draw();
        const double planFuelLb = std::stod(OnGns("FPL FUEL"));
        cdu.Press("LEGS R6");
        const std::string destination = SmithsColumn("KBBB");
        EXPECT_NEAR(std::stod(destination.substr(destination.find('|') + 1)) * 1000,
                    FuelOnBoard() - planFuelLb, 51);
    }

    static constexpr std::int32_t kCompactRows = 4;
    FakeUnit compact;
};

TEST_F(SideBySide, AllUnitsShowTheSameFlight) {
    EXPECT_EQ(Show(activePlan), "KAAA >ABCDE FLY LATER KBBB");
    Compare();
    // a waypoint typed on the GNS-style unit
    ShowGnsPlan(kColumnEte);
    unit.Press("L3 =NEWPT ENTER ENTER");
    EXPECT_EQ(Show(activePlan), "KAAA >ABCDE FLY NEWPT LATER KBBB");
    Compare();
    // a restriction from the compact unit, and one from the Smiths-style unit
    compact.Press("CROSS UP*9 NEXT ENTER");
    EXPECT_EQ(activePlan.entries[2].altitude, 9000);
    EXPECT_THAT((cdu.Press("LEGS"), SmithsColumn("FLY")), testing::EndsWith("/  9000"));
    EXPECT_EQ((cdu.Press("=250/FL190A R3 EXEC LEGS"), SmithsColumn("NEWPT")), "  250 / FL190A");
    Compare();
    // under way
    SetActiveWaypoint(2);
    aircraft.longitude = 1.2;
    aircraft.zuluMinute = 17;
    aircraft.altitudeFt = 8500;
    Compare();
    // a direct-to on the Smiths-style unit
    cdu.Press("DIR_INTC L2 EXEC");
    EXPECT_EQ(Show(activePlan), "KAAA ABCDE FLY DCT DIRECT >NEWPT LATER KBBB");
    Compare();
}

TEST_F(SideBySide, APlanTypedOnTheOtherUnitIsActiveHere) {
    ResetModuleState();
    SimFolder = folder.root().string();
    LoadNavDatabase();
    avionicsPower = 1;
    InstallSmiths();
    gns.planView = kActiveView;
    cdu.Press("RTE");
    EXPECT_EQ(cdu.Data(1), "- - - - -|------");
    unit.Press("L1 =KAAA ENTER ENTER =NEWPT ENTER ENTER =KBBB ENTER ENTER");
    ASSERT_EQ(Show(activePlan), "KAAA >NEWPT KBBB");
    cdu.Press("RTE");
    EXPECT_EQ(cdu.Title(), "ACT|RTE| 1 /  2");
    EXPECT_EQ(cdu.Data(1), " KAAA|KBBB");
    cdu.Press("LEGS DEL L1");
    EXPECT_EQ(cdu.Title(), "MOD|RTE    LEGS| 1 /  1");
    EXPECT_EQ(Show(activePlan), "KAAA >NEWPT KBBB");
}

}  // namespace
}  // namespace avq1::test
