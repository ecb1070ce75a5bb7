// The bounds of planning and commands of the vertical guidance (commands.txt): each command line
// is a row of words that are done one after another, and below it stands what came of it.
#include <gtest/gtest.h>

#include <string>

#include "base/messages.h"
#include "base/module_state.h"
#include "base/text.h"
#include "flightplan/plan_edit.h"
#include "guidance/activation.h"
#include "guidance/vnav.h"
#include "guidance/vnav/flight_values.h"
#include "guidance/vnav/flown.h"
#include "guidance/vnav/planning.h"
#include "guidance/vnav/table_optimum.h"
#include "settings/settings.h"
#include "support/guidance_values.h"
#include "support/test_flight.h"
#include "support/transcript.h"

namespace avq1 {
namespace {

using Numbers = std::vector<double>;

Numbers NumbersOf(std::string text) {
    Numbers numbers;
    for (std::string_view rest = text; !rest.empty();) {
        const std::size_t comma = std::min(rest.find_first_of(",/"), rest.size());
        numbers.push_back(ToNumber(rest.substr(0, comma)));
        rest.remove_prefix(std::min(comma + 1, rest.size()));
    }
    return numbers;
}

std::int32_t Whole(double value) {
    return static_cast<std::int32_t>(value);
}

void Fly(double longitude, double altitudeFt, std::int32_t index) {
    aircraft.latitude = 0;
    aircraft.longitude = longitude;
    aircraft.altitudeFt = altitudeFt;
    aircraft.groundSpeedKt = 300;
    aircraft.indicatedAirspeedKt = 250;
    SetActiveWaypoint(index);
}

void Reset() {
    ResetModuleState();
    test::FakeSimulator::Install();
    performance.climbIas = performance.descentIas = 250;
    performance.climbTas = performance.descentTas = 300;
    performance.climbRate = 2000;
    performance.cruiseIas = 280;
    performance.descentRate = 1500;
    planBook.status = RouteStatus::Active;
    aircraft.tick = 1;
    test::Outcome();
}

// Entries on the equator at these degrees, or a degree apart with restrictions; the last is at sea
// level. The aircraft is over the first and flies to the second.
void SetRoute(const Numbers& values, bool degrees) {
    std::vector<test::RouteFix> fixes;
    static constexpr const char* kIdents[] = {"P0", "P1", "P2", "P3", "P4", "P5", "P6", "P7"};
    for (std::size_t i = 0; i < values.size(); ++i) {
        const bool restricted = !degrees && values[i] > 0;
        fixes.push_back({kIdents[i], 0, degrees ? values[i] : static_cast<double>(i),
                         restricted ? values[i] : kUnset, restricted ? kCrossAt : kNoCrossing});
    }
    test::SetActiveRoute(fixes);
    if (!degrees) {
        activePlan.Edit(activePlan.lastIndex).altitude = 0;
    }
    Fly(0, 0, 1);
}

struct Word {
    const char* name;
    void (*take)(const Numbers& n);
};

// Behind a colon: the numbers that a word is about.
const Word kWords[] = {
    {"plan",
     [](const Numbers& n) {
         Reset(), planBook.cruiseAltitudeFt = 30000, SetRoute(n, false), StartActivePlan();
     }},
    {"route", [](const Numbers& n) { Reset(), SetRoute(n, true); }},
    {"fly", [](const Numbers& n) { Fly(n.at(0), n.at(1), Whole(n.at(2))); }},
    {"ias", [](const Numbers& n) { aircraft.indicatedAirspeedKt = n.at(0); }},
    {"feet", [](const Numbers& n) { aircraft.altitudeFt = n.at(0); }},
    {"latitude",
     [](const Numbers& n) {
         aircraft.latitude = n.at(0), SetActiveWaypoint(planBook.activeIndex);
     }},
    {"engaged", [](const Numbers& n) { guidance.vnavEngaged = Whole(n.at(0)); }},
    {"lnav", [](const Numbers& n) { guidance.lnavEngaged = Whole(n.at(0)); }},
    {"cruising", [](const Numbers&) { vnav.topOfClimbReached = 1; }},
    {"climbing", [](const Numbers&) { vnav.topOfClimbReached = 0; }},
    {"descending", [](const Numbers&) { vnav.topOfClimbReached = vnav.descentActive = 1; }},
    {"to-go", [](const Numbers& n) { guidance.distanceToGoNm = n.at(0); }},
    {"to-target", [](const Numbers& n) { vnav.distanceToTarget = n.at(0); }},
    {"required", [](const Numbers& n) { vnav.requiredFpm = n.at(0); }},
    {"target-feet", [](const Numbers& n) { vnav.targetAltitude = n.at(0); }},
    {"at-entry", [](const Numbers& n) { vnav.targetIsEntry = Whole(n.at(0)); }},
    {"target", [](const Numbers& n) { planBook.verticalTargetIndex = Whole(n.at(0)); }},
    {"passed", [](const Numbers&) { vnav.crossingIndex = 0; }},
    {"crossing",
     [](const Numbers& n) { vnav.crossingIndex = Whole(n.at(0)), vnav.crossingDistance = 99; }},
    {"watch", [](const Numbers&) { WatchCrossing(); }},
    {"path",
     [](const Numbers& n) { vnav.descentCruiseAltitude = n.at(0), vnav.descentPathLength = 1; }},
    {"tod", [](const Numbers& n) { vnav.todNm = n.at(0); }},
    {"sends-altitudes", [](const Numbers& n) { settings.VnavSetAlts = Whole(n.at(0)); }},
    {"rate", [](const Numbers& n) { performance.climbRate = Whole(n.at(0)); }},
    {"highest", [](const Numbers& n) { performance.maxCruiseAltitude = Whole(n.at(0)); }},
    {"limits",
     [](const Numbers& n) {
         performance.climbIasMin = performance.minVnavIas = 200,
         performance.cruiseIas = Whole(n.at(0)), performance.descentIas = Whole(n.at(1));
     }},
    {"cross",
     [](const Numbers& n) {
         activePlan.Edit(Whole(n.at(0))).altitude = n.at(1);
         activePlan.Edit(Whole(n.at(0))).altitudeConstraint = Whole(n.at(2));
     }},
    {"slower", [](const Numbers&) { SetCrossing(activePlan, 1, {.speedKt = 200}); }},
    {"edit", [](const Numbers&) { activePlan.Edit(1).ataText = "12:34"; }},
    {"move", [](const Numbers& n) { activePlan.Edit(Whole(n.at(0))).latitude = n.at(1); }},
    {"start", [](const Numbers&) { StartActivePlan(); }},
    {"replan", [](const Numbers&) { ReplanChangedRoute(); }},
    {"fill", [](const Numbers& n) { PlanVerticalProfile(Whole(n.at(0)), 1); }},
    {"run", [](const Numbers&) { RunVerticalGuidance(); }},
    {"command", [](const Numbers&) { CommandVerticalSpeed(); }},
    {"aim", [](const Numbers&) { AimAtTarget(0); }},
    {"advise", [](const Numbers&) { AdvisePilot(); }},
    {"overdue", [](const Numbers&) { ApplyClimbFallback(); }},
    {"sequence", [](const Numbers&) { SequenceWaypoint(); }},
    {"speed", [](const Numbers& n) { SendSpeed(n.at(0)); }},
    {"altitude", [](const Numbers& n) { SendAltitude(n.at(0)); }},
};

std::string State() {
    const std::string outcome = test::Outcome();
    return Format(
               "phase %d cruise %d target %d%s %.0f ft; required %.1f command %d sent %d; toc "
               "%.2f tod %.2f climb %d to %d crossing %d",
               static_cast<int>(vnav.Phase()), vnav.cruiseAltitude, planBook.verticalTargetIndex,
               vnav.targets[4] ? "*" : "", vnav.targetAltitude, vnav.requiredFpm,
               Whole(vnav.vsCommand), Whole(vnav.lastVsSent), vnav.tocNm, vnav.todNm,
               vnav.predictedClimbDistance, planBook.activeIndex, vnav.crossingIndex) +
           (outcome == "\n" ? "" : '\n' + outcome);
}

// ---- rules that need no flight ----

std::string Level(const Numbers& n) {
    return Format("west %g %g east %g", ApplyLevelRule(n.at(0), 180), ApplyLevelRule(n.at(0), 360),
                  ApplyLevelRule(n.at(0), 179.9));
}
std::string Limit(const Numbers& n) {
    return Format("%g, of the tables %g", ClimbLimitNm(n.at(0)), TablePhaseLimitNm(n.at(0)));
}
std::string Average(const Numbers& n) {
    std::vector<TableStep> steps;
    for (std::size_t i = 0; i + 2 < n.size(); i += 3) {
        steps.push_back({n[i], n[i + 1], n[i + 2]});
    }
    const TableAverages averages = AverageSteps(steps);
    return Format("%.3f kt %.3f ft/min", averages.speedTas, averages.rate);
}
std::string Knob(const Numbers& n) {
    const SentTarget sent{Whole(n.at(0)), Whole(n.at(1)), 250, 250};
    return TurnedByPilot(sent, n.at(2), n.at(3)) ? "the pilot's" : "not the pilot's";
}
std::string Wind(const Numbers& n) {
    ClearCruiseWind();
    return EnterCruiseWind(n.at(0), n.at(1)) && EnteredCruiseWind().entered ? "taken" : "refused";
}

struct Rule {
    const char* name;
    std::string (*value)(const Numbers& n);
};
const Rule kRules[] = {
    {"level", Level}, {"limit", Limit}, {"average", Average}, {"knob", Knob}, {"wind", Wind},
};

std::string Answer(const std::string& command) {
    for (const std::string& word : test::WordsOf(command)) {
        const std::size_t colon = std::min(word.find(':'), word.size());
        const std::string name = word.substr(0, colon);
        const Numbers numbers = NumbersOf(word.substr(std::min(colon + 1, word.size())));
        for (const Rule& rule : kRules) {
            if (rule.name == name) {
                return rule.value(numbers);
            }
        }
        const auto found = std::find_if(std::begin(kWords), std::end(kWords),
                                        [&](const Word& known) { return known.name == name; });
        if (found == std::end(kWords)) {
            return "unknown: " + word;
        }
        found->take(numbers);
    }
    return State();
}

TEST(VerticalCommandLines, GiveWhatTheyGaveWhenLastLookedAt) {
    test::ExpectTranscript("guidance/commands.txt", Answer);
    ImportTable.panel.services = nullptr;
}

}  // namespace
}  // namespace avq1
