// tests/support/screen_changes.h - what each key of a session changed on a unit's screen and in the
// plans, as lines for a kept file.
#pragma once

#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "base/text.h"
#include "flightplan/flight_plan.h"
#include "flightplan/plan_notation.h"
#include "support/picture.h"

namespace avq1::test {

// A line for every text of a screen: place, font size, colour, what it says.
inline std::set<std::string> ScreenLines(const std::vector<DrawnText>& texts) {
    std::set<std::string> lines;
    for (const DrawnText& text : texts) {
        lines.insert(Format("%3d %3d %2d %06X |", static_cast<int>(text.y),
                            static_cast<int>(text.x), static_cast<int>(text.pixelSize),
                            text.argb & 0xFFFFFF) +
                     text.text);
    }
    return lines;
}

class ScreenChanges {
  public:
    // Lines that went, lines that came, and the plans that read otherwise. A line begins with its
    // place, "  y   x".
    void Note(std::set<std::string> shown, std::ostream& out) {
        constexpr std::size_t kPlaceLength = 7;
        for (const std::string& line : shown_) {
            out << (shown.contains(line) ? "" : "-" + line.substr(0, kPlaceLength) + '\n');
        }
        for (const std::string& line : shown) {
            out << (shown_.contains(line) ? "" : '+' + line + '\n');
        }
        shown_ = std::move(shown);
        NotePlan("active ", activePlan, active_, out);
        NotePlan("modified ", modifiedPlan, modified_, out);
    }

  private:
    static void NotePlan(const char* name, const FlightPlan& plan, std::string& before,
                         std::ostream& out) {
        if (std::string now = Show(plan, true); now != before) {
            out << name << now << '\n';
            before = std::move(now);
        }
    }

    std::set<std::string> shown_;
    std::string active_;
    std::string modified_;
};

// The words of a flow, each with its heading and what `look` writes of it.
template <class Look>
void WalkFlow(const char* name, const char* keys, std::ostream& out, Look look) {
    std::istringstream words(keys);
    int number = 0;
    for (std::string word; words >> word;) {
        out << "# " << name << ", " << ++number << ": " << word << '\n';
        look(word);
    }
}

}  // namespace avq1::test
