// Reads the file of traffic scenes.
#include <cmath>
#include <optional>

#include "panelhost/base/text.h"
#include "panelhost/world/traffic.h"

namespace panelhost {
namespace {

using WordList = std::vector<std::string_view>;

// A word as a number within bounds.
std::optional<double> Number(std::string_view word, double least, double most) {
    const std::optional<double> value = ToNumber(word);
    return value && *value >= least && *value <= most ? value : std::nullopt;
}

struct EncounterColumn {
    double TrafficPlan::*value;
    double least;
    double most;
};

constexpr EncounterColumn kEncounter[] = {{&TrafficPlan::secondsAhead, 0, 3600},
                                          {&TrafficPlan::turnDeg, -360, 360},
                                          {&TrafficPlan::speedKt, -600, 600},
                                          {&TrafficPlan::aboveFt, -45000, 45000},
                                          {&TrafficPlan::climbFpm, -6000, 6000}};

bool ReadEncounter(const WordList& words, TrafficPlan& plan) {
    if (words.size() != 2 + std::size(kEncounter)) {
        return false;
    }
    for (std::size_t i = 0; i < std::size(kEncounter); ++i) {
        const std::optional<double> value =
            Number(words[2 + i], kEncounter[i].least, kEncounter[i].most);
        if (!value) {
            return false;
        }
        plan.*kEncounter[i].value = *value;
    }
    return true;
}

bool ReadRoute(const WordList& words, TrafficPlan& plan) {
    const std::optional<double> knots = words.size() > 5 ? Number(words[2], 60, 700) : std::nullopt;
    const std::optional<double> ahead = knots ? Number(words[3], 0, 36000) : std::nullopt;
    if (!ahead || words.size() > 4 + kMostRoutePoints) {
        return false;
    }
    plan.speedKt = *knots;
    plan.secondsAhead = *ahead;
    for (std::size_t i = 4; i < words.size(); ++i) {
        const std::vector<std::string_view> parts = SplitOn(words[i], ',');
        if (parts.size() != 3) {
            return false;
        }
        const std::optional<double> latitude = Number(parts[0], -89.9, 89.9);
        const std::optional<double> longitude = Number(parts[1], -180, 180);
        const std::optional<double> feet = Number(parts[2], 0, 60000);
        if (!latitude || !longitude || !feet) {
            return false;
        }
        plan.route.push_back({{*latitude, *longitude}, *feet});
    }
    return true;
}

bool ReadPlan(const WordList& words, TrafficPlan& plan) {
    if (words.size() < 2) {
        return false;
    }
    return EqualNoCase(words[1], "meets")   ? ReadEncounter(words, plan)
           : EqualNoCase(words[1], "flies") ? ReadRoute(words, plan)
                                            : false;
}

// "[name] title"
bool ReadHeader(std::string_view line, TrafficScene& scene) {
    const std::size_t end = line.find(']');
    if (end == std::string_view::npos || end < 2) {
        return false;
    }
    scene.name = Lower(Trim(line.substr(1, end - 1)));
    scene.title = std::string(Trim(line.substr(end + 1)));
    return !scene.name.empty() && Words(scene.name).size() == 1;
}

}  // namespace

std::vector<TrafficScene> ParseTrafficScenes(std::string_view text,
                                             std::vector<std::string>& warnings) {
    std::vector<TrafficScene> scenes;
    int number = 0;
    for (std::string_view line : Lines(text)) {
        ++number;
        line = Trim(line.substr(0, line.find(';')));
        bool good = true;
        if (line.starts_with('[')) {
            TrafficScene scene;
            good = scenes.size() < kMostScenes && ReadHeader(line, scene);
            if (good) {
                scenes.push_back(std::move(scene));
            }
        } else if (!line.empty()) {
            TrafficPlan plan;
            good = !scenes.empty() && scenes.back().plans.size() < avq1::kMostTrafficRecords &&
                   ReadPlan(Words(line), plan);
            if (good) {
                scenes.back().plans.push_back(std::move(plan));
            }
        }
        if (!good) {
            warnings.push_back(Format("traffic.txt line %d cannot be read", number));
        }
    }
    return scenes;
}

}  // namespace panelhost
