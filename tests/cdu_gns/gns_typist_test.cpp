// Everything the keys can type, on both gauges, in any order: the plan must stay one.
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <random>
#include <set>
#include <string>

#include "cdu_gns/gns_fixture.h"
#include "guidance/vnav.h"
#include "support/plan_faults.h"

namespace avq1::test {
namespace {

class GnsTypist : public GnsTest {
  protected:
    // The world moves on meanwhile, and now and then says nonsense.
    void MoveAlong() {
        std::uniform_real_distribution<double> any(-1, 1);
        aircraft.latitude = 60 * any(random);
        aircraft.longitude = 180 * any(random);
        aircraft.groundSpeedKt = 300 + 300 * any(random);
        aircraft.magneticVariation = 20 * any(random);
        aircraft.altitudeFt = 20000 + 20000 * any(random);
        aircraft.verticalSpeedFpm =
            random() % 50 == 0 ? std::numeric_limits<double>::quiet_NaN() : 3000 * any(random);
        avionicsPower = random() % 20 == 0 ? 0 : 1;
        if (random() % 7 == 0 && HasActiveWaypoint()) {
            SetActiveWaypoint(planBook.activeIndex + 1);
        }
        RunVerticalGuidance();
        RefreshPredictions();
    }

    std::mt19937 random{12345};
    FakeGns luminous{kGnsLmKeys};
};

TEST_F(GnsTypist, NoKeysInAnyOrderSpoilAPlan) {
    MakeDatabase();
    MakePlan();
    StorePlan("ONE");
    gns.listWanted = true;
    // AVQ1_TYPIST_KEYS asks for more than an everyday run has time for.
    const char* const asked = std::getenv("AVQ1_TYPIST_KEYS");
    const int keys = asked != nullptr ? std::atoi(asked) : 6000;
    // Words make sense where a row of letters does not.
    const std::vector<std::string> words = {"=KAAA",    "=NEWPT",   "=TWICE", "=#J9",
                                            "=NEWPT*",  "=*",       "=KSID",  "=250*9000",
                                            "=N333750", "=W1115430"};
    std::set<std::int32_t> seen;
    std::string typed;
    for (int pressed = 0; pressed < keys; ++pressed) {
        FakeGns& gauge = random() % 2 == 0 ? unit : luminous;
        const std::size_t key = random() % (2 * kGnsKeyCount);
        const KeyArea& row = kGnsKeys[std::min<std::size_t>(key, kGnsKeyCount - 2)];
        if (random() % 10 == 0) {
            const std::string& word = words[random() % words.size()];
            gauge.Press(word);
            gauge.Press("ENTER");
            typed += " " + word + " ENTER";
        } else {
            const std::string label = key < kGnsKeyCount - 1 ? row.label
                                      : key % 3 == 0         ? "ENTER"
                                                             : kGnsKeys[5 + key % 11].label;
            gauge.Click(label);
            typed += " " + label;
        }
        if (random() % 3 != 0) {
            gauge.Draw();
        }
        if (random() % 100 == 0) {
            MoveAlong();
        }
        if (activePlan.lastIndex > 190 && random() % 200 == 0) {
            MakePlan();
        }
        seen.insert(gns.page);
        const std::string fault = PlanFault();
        ASSERT_EQ(fault, "") << "key " << pressed << ", after:"
                             << typed.substr(typed.size() -
                                             std::min<std::size_t>(typed.size(), 400));
    }
    EXPECT_GE(seen.size(), 11U) << "the typist gets about";
}

}  // namespace
}  // namespace avq1::test
