// Everything the keys can type, in any order, with the other unit at work beside: the plans must
// stay plans, and what is flown changes by EXEC alone.
#include <cstdlib>
#include <limits>
#include <random>
#include <set>
#include <sstream>

#include "cdu_smiths/fake_smiths.h"
#include "guidance/vnav.h"
#include "support/plan_faults.h"

namespace avq1::test {
namespace {

class SmithsTypist : public SmithsTest {
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
        if (random() % 30 == 0) {
            unit.Press("FPL L2 =NEWPT ENTER ENTER");
        }
        if (activePlan.lastIndex > 190 && random() % 4 == 0) {
            MakeRoute();
        }
        RunVerticalGuidance();
        RefreshPredictions();
    }

    // Nothing is planned yet.
    void BeginCold() {
        activePlan.CutTo(-1);
        modifiedPlan.CutTo(-1);
        DeleteAllHolds();
        planBook = PlanBook{};
        SetActiveWaypoint(kNoWaypoint);
    }

    // One key, or a word and a line key, with or without a draw after it.
    void TypeSomething() {
        // Words make sense where a row of letters does not.
        static const char* const kWords[] = {
            "=KAAA",   "=KBBB", "=KSID",      "=NEWPT",      "=TWICE", "=J9",   "=JTHR", "=ABCDE",
            "=LONGER", "=PPOS", "=250/FL180", "=/5000A",     "=ONE",   "=09",   "=180",  "=27R",
            "=350",    "=0.78", "=090/12",    "=NEWPT090/9", "=1230",  "=25.5", "=-5",   "=EAST1",
        };
        // So do the steps that lead on from an empty route.
        static const char* const kSteps[] = {
            "RTE =KAAA L1",         "RTE =KBBB R1", "RTE =ONE L2",    "RTE R6",  "LEGS R6",
            "RTE NEXT_PAGE =J9 L3", "INIT_REF L6",  "DIR_INTC L2",    "HOLD L2", "LEGS L6",
            "DEP_ARR L1",           "DEP_ARR R2",   "LEGS =NEWPT L2",
        };
        constexpr std::size_t kKinds = 11;
        const std::size_t kind = random() % kKinds;
        // The window key comes last and opens nothing here.
        const KeyArea& any = kSmithsKeys[random() % (kSmithsKeyCount - 1)];
        const KeyArea& line = kSmithsKeys[kFirstLineKey + random() % kLineKeys];
        if (kind < 3) {
            Do(kWords[random() % std::size(kWords)]);
            Do(FakeSmiths::NameOf(line));
        } else if (kind < 6) {
            Do(FakeSmiths::NameOf(line));
        } else if (kind == 10) {
            std::istringstream keys(kSteps[random() % std::size(kSteps)]);
            for (std::string key; keys >> key;) {
                Do(key);
            }
        } else if (kind == 6) {
            Do(random() % 3 == 0 ? "EXEC" : "CLR");
        } else {
            Do(FakeSmiths::NameOf(any));
        }
        if (smiths.scratchpad.size() > 10) {
            smiths.scratchpad.clear();
        }
    }

    void Do(const std::string& key) {
        typed += ' ' + key;
        const bool mayExecute = key == "EXEC" || smiths.execPressed;
        const std::string flown = Flown();
        if (key.front() == '=' || random() % 3 != 0) {
            cdu.Press(key);
        } else {
            cdu.Click(key);
        }
        if (!mayExecute) {
            ASSERT_EQ(Flown(), flown) << key;
        }
    }

    // The route flown and how far it is; its holds can be left at once.
    static std::string Flown() {
        std::string route = Show(activePlan);
        std::erase(route, '@');
        return route;
    }

    static constexpr std::size_t kFirstLineKey = 14;
    static constexpr std::size_t kLineKeys = 12;
    std::mt19937 random{54321};
    std::string typed;
};

TEST_F(SmithsTypist, NoKeysInAnyOrderSpoilAPlan) {
    MakeDatabase();
    MakeRoute();
    StorePlan("ONE");
    // AVQ1_TYPIST_KEYS asks for more than an everyday run has time for.
    const char* const asked = std::getenv("AVQ1_TYPIST_KEYS");
    const int keys = asked != nullptr ? std::atoi(asked) : 3000;
    std::set<std::int32_t> seen;
    std::set<RouteStatus> statuses;
    for (int pressed = 0; pressed < keys; ++pressed) {
        TypeSomething();
        ASSERT_FALSE(HasFatalFailure())
            << typed.substr(typed.size() - std::min<std::size_t>(typed.size(), 400));
        if (random() % 60 == 0) {
            MoveAlong();
        }
        if (pressed % 1000 == 500) {
            BeginCold();
        }
        seen.insert(smiths.page);
        statuses.insert(planBook.status);
        const std::string fault = PlanFault();
        ASSERT_EQ(fault, "") << "key " << pressed << ", after:"
                             << typed.substr(typed.size() -
                                             std::min<std::size_t>(typed.size(), 400));
        ASSERT_LE(smiths.scratchpad.size(), kSmithsScratchpadLength);
    }
    EXPECT_GE(seen.size(), 12U) << "the typist gets about";
    EXPECT_EQ(statuses.size(), 5U);
}

}  // namespace
}  // namespace avq1::test
