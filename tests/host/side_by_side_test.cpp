// One flight on the Smiths-style, the GNS-style and the compact unit side by side, flown from the
// take-off to the approach: what is entered on one shows on all, and minute by minute no two say
// different routes, times, altitudes or fuel.
#include <gmock/gmock.h>

#include <cmath>

#include "base/redraw.h"
#include "cdu_smiths/fake_smiths.h"
#include "flightplan/route_entry.h"
#include "guidance/vnav.h"
#include "simlink/sim_variables.h"
#include "support/vertical_flight.h"

namespace avq1::test {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr double kFrameS = 0.5;
constexpr double kMinuteS = 60;
constexpr int kGnsLines = 6;
constexpr double kGnsUnitsWide = 495.0 / 292;  // of a pixel of the GNS-style unit
constexpr double kGnsUnitsHigh = 400.0 / 217;
constexpr int kGnsFirstY = 40;
constexpr int kGnsLineStep = 40;
constexpr int kGnsIdentX = 90;
constexpr int kGnsValueX = 300;
constexpr int kSmithsLegs = 5;

// What a unit shows of an entry ahead: "12:15", "FL190A".
struct Shown {
    std::string ident;
    std::string value;

    friend bool operator==(const Shown&, const Shown&) = default;
    friend void PrintTo(const Shown& shown, std::ostream* out) {
        *out << shown.ident << ' ' << shown.value;
    }
};

std::string Trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? ""
                                      : text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

class SideBySide : public SmithsTest {
  protected:
    SideBySide() {
        MakeDatabase();
        folder.Write("avq/Navdata/avq_ints.txt",
                     "NEWPT NEWPT 0.5 2.5\nLATER LATER 0.5 3.5\nFLY FLY 0.0 2.0\n");
        LoadNavDatabase();
        performance = JetPerformance();
        simulator.variables[773] = 1;
        pilot.latitude = 1;  // the runway of KSID
        pilot.Report();
        RefreshAircraftState();
    }

    // The active plan's entries from the one flown to on that are places.
    static std::vector<std::string> RouteAhead() {
        std::vector<std::string> idents;
        for (std::int32_t i = planBook.activeIndex; activePlan.Holds(i); ++i) {
            if (HasPosition(activePlan.entries[i])) {
                idents.push_back(activePlan.entries[i].ident);
            }
        }
        return idents;
    }

    // The same on the GNS-style unit's plan pages, with one of its columns.
    std::vector<Shown> OnGns(GnsColumn column) {
        gns.columnMode = column;
        unit.Press("NAV FPL");
        std::vector<Shown> shown;
        const int count = activePlan.lastIndex + 2 - planBook.activeIndex;  // with the passed one
        for (int line = 0; line < count; ++line) {
            if (line > 0 && line % kGnsLines == 0) {
                unit.Press("NEXT");
            }
            AppendGnsLine(kGnsFirstY + kGnsLineStep * (line % kGnsLines), shown);
        }
        gns.columnMode = kColumnEte;
        return shown;
    }
    void AppendGnsLine(int y, std::vector<Shown>& shown) const {
        Shown line;
        bool passed = false;
        for (const DrawnText& text : unit.Texts()) {
            if (std::lround(text.y * kGnsUnitsHigh) == y) {
                passed = passed || text.text == "FR";
                if (std::lround(text.x * kGnsUnitsWide) == kGnsIdentX) {
                    line.ident = text.text;
                } else if (std::lround(text.x * kGnsUnitsWide) == kGnsValueX) {
                    line.value = Trimmed(text.text);
                }
            }
        }
        if (!passed && line.ident != kDiscontinuity) {
            shown.push_back(line);
        }
    }

    // The same on RTE LEGS or, after "LEGS R6", RTE DATA.
    std::vector<Shown> OnSmiths(const std::string& keys) {
        cdu.Press(keys);
        std::vector<Shown> shown;
        const int count = activePlan.lastIndex + 1 - planBook.activeIndex;
        for (int leg = 0; leg < count; ++leg) {
            if (leg > 0 && leg % kSmithsLegs == 0) {
                cdu.Press("NEXT_PAGE");
            }
            const int row = leg % kSmithsLegs + 1;
            const std::string data = cdu.Data(row);
            if (data.empty()) {
                continue;  // a gap
            }
            const std::size_t bar = std::min(data.find('|'), data.size());
            // what is predicted is small, and stands a little lower
            const std::string value =
                bar < data.size() ? data.substr(bar + 1) : cdu.At(33 * row + kSmallDrop);
            shown.push_back({Trimmed(data.substr(0, bar)), Trimmed(value)});
        }
        return shown;
    }

    // After "LEGS" or "CROSS".
    void CompactCursorTo(const char* key, std::int32_t index) {
        compact.Press(key);
        while (mcu.legs.row + 1 != index) {
            compact.Press(mcu.legs.row + 1 < index ? "NEXT" : "PREV");
        }
    }

    // The legs of the compact unit from the one flown on: distance and course, or the altitude.
    std::vector<Shown> OnCompact(bool altitude) {
        CompactCursorTo("LEGS", planBook.activeIndex);
        std::vector<Shown> shown;
        for (std::int32_t i = planBook.activeIndex; activePlan.Holds(i); ++i) {
            if (i > planBook.activeIndex) {
                compact.Press("NEXT");
            }
            for (const std::string& row : compact.Rows()) {
                if (row.starts_with(">|") && HasPosition(activePlan.entries[i])) {
                    const std::string leg = row.substr(2);
                    const std::string ident = Trimmed(leg.substr(0, 8));
                    shown.push_back({ident, altitude ? Trimmed(leg.substr(leg.rfind('|') + 1))
                                                     : Trimmed(leg.substr(8, 9))});
                }
            }
        }
        return shown;
    }

    void Compare() {
        pilot.Fly(0);  // all of one moment
        RefreshPredictions();
        CompareRoutesAndTimes();
        CompareAltitudes();
        CompareFuel();
    }
    void CompareRoutesAndTimes();
    void CompareAltitudes();
    void CompareFuel();

    // Compares each minute.
    template <typename Done>
    void FlyUntil(Done done) {
        double sinceLook = 0;
        for (double flown = 0; !done() && !HasFailure(); flown += kFrameS, sinceLook += kFrameS) {
            ASSERT_LT(flown, 5400) << "it never comes";
            pilot.Fly(kFrameS);
            if (sinceLook >= kMinuteS) {
                SCOPED_TRACE(pilot.seconds);
                Compare();
                sinceLook = 0;
            }
        }
        Compare();
    }
    static bool FliesTo(const char* ident) { return ActiveWaypoint().ident == ident; }

    static constexpr int kSmallDrop = 5;
    VerticalPilot pilot;
    FakeUnit compact;
};

void SideBySide::CompareRoutesAndTimes() {
    const std::vector<Shown> etas = OnGns(kColumnEta);
    const std::vector<Shown> data = OnSmiths("LEGS R6");
    const std::vector<Shown> legs = OnCompact(false);
    const std::vector<std::string> route = RouteAhead();
    ASSERT_EQ(etas.size(), route.size());
    ASSERT_EQ(data.size(), route.size());
    ASSERT_EQ(legs.size(), route.size());
    for (std::size_t i = 0; i < route.size(); ++i) {
        EXPECT_EQ(etas[i].ident, route[i]);
        EXPECT_EQ(data[i].ident, route[i]);
        EXPECT_EQ(legs[i].ident, route[i]);
        ASSERT_EQ(etas[i].value.size(), 5U) << etas[i].value;  // "12:15", there "1215Z"
        EXPECT_EQ(data[i].value.substr(0, 5),
                  etas[i].value.substr(0, 2) + etas[i].value.substr(3) + "Z");
    }
    // from here, and to the end
    const std::vector<Shown> etes = OnGns(kColumnEte);
    compact.Press("TO");
    EXPECT_EQ(Trimmed(compact.Rows()[3]),
              "ETE:  " + etes.front().value + " (" + etes.back().value + ")");
    cdu.Press("PROG");
    EXPECT_THAT(cdu.Data(2), AllOf(StartsWith(route.front()),
                                   HasSubstr('|' + data.front().value.substr(0, 5) + '|')));
    EXPECT_THAT(cdu.Data(4), AllOf(StartsWith(route.back()),
                                   HasSubstr('|' + data.back().value.substr(0, 5) + '|')));
}

void SideBySide::CompareAltitudes() {
    const std::vector<Shown> feet = OnGns(kColumnAlt);
    const std::vector<Shown> crossings = OnSmiths("LEGS");
    const std::vector<Shown> compactFeet = OnCompact(true);
    EXPECT_EQ(compactFeet, feet);
    ASSERT_EQ(crossings.size(), feet.size());
    for (std::size_t i = 0; i < feet.size(); ++i) {
        const std::string shown = crossings[i].value.substr(crossings[i].value.find('/') + 2);
        const bool level = shown.starts_with("FL");
        const double smithsFeet = level ? 100 * std::stod(shown.substr(2)) : std::stod(shown);
        EXPECT_NEAR(smithsFeet, std::stod(feet[i].value), level ? 50 : 0) << feet[i].ident;
    }
}

void SideBySide::CompareFuel() {
    gns.page = kGnsFuel;
    gns.Counter(GnsCounter::Fuel).n = 3;
    RequestUnitRedraw();
    unit.Draw();
    double planFuelLb = -1;
    for (const std::string& row : unit.Rows()) {
        if (row.starts_with("FPL FUEL|")) {
            planFuelLb = std::stod(row.substr(row.find('|') + 1));
        }
    }
    const std::string data = OnSmiths("LEGS R6").back().value;
    const double smithsLb = 1000 * std::stod(data.substr(data.find('|') + 1));
    EXPECT_NEAR(smithsLb, FuelOnBoard() - planFuelLb, 51);
    cdu.Press("PROG");
    EXPECT_THAT(cdu.Data(4), EndsWith(Trimmed(data.substr(data.find('|') + 1))));
}

TEST_F(SideBySide, AllUnitsShowTheFlightMinuteByMinute) {
    // the route, with its procedures, on the Smiths-style unit; the gap before the approach closed
    cdu.Press("RTE =KSID L1 =KBBB R1 =09 L3 NEXT_PAGE =FLY R1 =LATER R2");
    cdu.Press("DEP_ARR L1 L1 L2 R6 DEP_ARR R1 L1 L2 R1 LEGS NEXT_PAGE DEL L2");
    cdu.Press("RTE R6 CRZ =210 L1 EXEC");
    EXPECT_EQ(Show(activePlan),
              "KSID SID:EAST1.NORTH(>EAAA,ENNN) FLY LATER STAR:DOWN2.WEST(DWWW,DAAA) APPR(FAAA) "
              "KBBB");
    EngageLnav();
    ToggleVnav();
    FlyUntil([] { return FliesTo("FLY"); });
    // a waypoint typed on the GNS-style unit
    unit.Press("NAV FPL L2 L2 =NEWPT ENTER ENTER");
    Compare();
    // a restriction from the compact unit, and one from the Smiths-style unit
    CompactCursorTo("CROSS", FindEntry(activePlan, "DAAA", kFirstWaypoint));
    compact.Press("UP*9 ENTER");
    cdu.Press("LEGS =250/FL180B R4 EXEC");
    EXPECT_EQ(cdu.Data(4), "DWWW |  250 / 18000B");
    FlyUntil([] { return FliesTo("NEWPT"); });
    // a direct-to on the Smiths-style unit
    cdu.Press("DIR_INTC L2 EXEC");
    EXPECT_EQ(Show(activePlan),
              "KSID SID:EAST1.NORTH(EAAA,ENNN) FLY NEWPT DCT DIRECT >LATER "
              "STAR:DOWN2.WEST(DWWW,DAAA) APPR(FAAA) KBBB");
    FlyUntil([] { return vnav.Phase() == VerticalPhase::Descent; });
    FlyUntil([] { return FliesTo("DWWW"); });
    // the next waypoint on the compact unit
    compact.Press("TO NEXT");
    EXPECT_TRUE(FliesTo("DAAA"));
    FlyUntil([this] { return pilot.longitude >= 6.2; });
    EXPECT_NEAR(pilot.altitudeFt, 9000, 200) << "over DAAA";
    FlyUntil([] { return guidance.lnavEngaged == 0; });
    EXPECT_LT(pilot.altitudeFt, 3000);
}

TEST_F(SideBySide, APlanTypedOnTheOtherUnitIsActiveHere) {
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
    // the other unit needs the modified plan: no modification waits that is none any more
    unit.Press("DIRECT");
    cdu.Draw();
    EXPECT_EQ(cdu.Title(), "ACT|RTE    LEGS| 1 /  1");
    EXPECT_EQ(Show(activePlan), "KAAA >NEWPT KBBB");
    folder.Write("avq/flightplans/A.RTE", "[FlightPlan]\nKSID 1 0 APT ---\nKBBB 0 7 APT ---\n");
    cdu.Press("DEL L1");
    EXPECT_TRUE(SmithsExecLit());
    unit.Press("FPL FPL L7 ENTER");
    EXPECT_EQ(Show(modifiedPlan), "KSID KBBB");
    EXPECT_FALSE(SmithsExecLit());
    cdu.Press("EXEC");
    EXPECT_EQ(Show(activePlan), "KAAA >NEWPT KBBB");
}

}  // namespace
}  // namespace avq1::test
