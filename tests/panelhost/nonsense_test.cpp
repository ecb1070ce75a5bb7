// The real module in a simulator that tells nonsense: nothing absurd is shown or sent.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <map>
#include <utility>

#include "panelhost/base/text.h"
#include "panelhost/world/variables.h"
#include "tests/panelhost/host_fixture.h"

namespace panelhost {
namespace {

constexpr double kNonsense[] = {1e300, NAN, -1e9, 2147483647};
constexpr int kPerStep = 3;  // variables
constexpr int kKeys = 25;    // of every screen, with all of them nonsense

// What the module may send, and its parameter as a signed number.
struct EventRange {
    std::int32_t number, least, most;
};
constexpr EventRange kMaySend[] = {
    {65561, 0, 0},
    {65584, 0, 0},
    {65662, 0, 0},
    {65663, 0, 0},
    {65708, 0x10800, 0x11795},
    {65714, 0, 0x1799},
    {65716, 0, 360},
    {65790, 0, 0},
    {65859, 0, 0},
    {65879, 0, 0},
    {65880, 0, 0},
    {66036, -6000, 6000},
    {66037, 0, 400},
    {66042, 1, 360},
    {66124, 0, 60000},
};

bool MaySend(const KeyEventRecord& event) {
    const auto value = static_cast<std::int32_t>(event.value);
    return std::ranges::any_of(kMaySend, [&](const EventRange& range) {
        return range.number == event.number && range.least <= value && value <= range.most;
    });
}

// No screen has room for a number of more than six digits.
bool IsAbsurd(const std::string& text) {
    std::size_t digits = 0;
    std::size_t most = 0;
    for (const char c : text) {
        digits = std::isdigit(static_cast<unsigned char>(c)) != 0 ? digits + 1 : 0;
        most = std::max(most, digits);
    }
    return most > 6 || text.find("nan") != std::string::npos ||
           text.find("inf") != std::string::npos;
}

class NonsenseTest : public HostTest {
  protected:
    void Check() {
        for (const int view : views_) {
            const std::uint64_t revision = session_.Window(view).revision;
            if (std::exchange(seen_[view], revision) == revision) {
                continue;
            }
            for (const DrawnText& text : session_.Texts(view)) {
                EXPECT_FALSE(IsAbsurd(text.text)) << text.gauge << ": " << text.text;
            }
        }
        for (const KeyEventRecord& event : session_.Status().lastEvents) {
            if (event.serial > lastSerial_ && event.fromModule) {
                EXPECT_TRUE(MaySend(event)) << event.number << " " << event.value;
            }
            lastSerial_ = std::max(lastSerial_, event.serial);
        }
    }
    // Some key of every screen: pages come and go meanwhile.
    void PressSomething(std::size_t step) {
        for (const int view : views_) {
            const std::vector<ClickArea> areas = session_.ClickAreas(view);
            if (!areas.empty()) {
                const ClickArea& area = areas[step * 7 % areas.size()];
                session_.Click(view, area.x + area.width / 2, area.y + area.height / 2);
            }
        }
    }

    std::vector<int> views_;
    std::map<int, std::uint64_t> seen_;
    std::uint64_t lastSerial_ = 0;
};

TEST_F(NonsenseTest, IsNeitherShownNorSent) {
    CopyDemo();
    ASSERT_TRUE(session_.Open(options_)) << session_.error();
    StartDemo();
    for (const Display& display : session_.Displays()) {
        if (display.kind == DisplayKind::OwnWindow && display.title != "Main Panel") {
            views_.push_back(session_.View(display.index, 1));
        }
    }
    int count = 0;
    const VariableRow* const variables = VariableTable(count);
    std::size_t key = 0;
    for (const double value : kNonsense) {
        SCOPED_TRACE(value);
        EXPECT_EQ(Run("click MCU ALT\n"), "");
        // The tick, which stands first, comes last: while it stands still nothing else is read.
        for (int i = count - 1; i > 0 && !HasFailure(); --i) {
            session_.OverrideVariable(variables[i].number, value);
            if (i % kPerStep == 0) {
                session_.Step(1.0 / 18);
                Check();
            }
        }
        for (int i = 0; i < kKeys && !HasFailure(); ++i) {
            PressSomething(++key);
            session_.Step(1.0 / 18);
            Check();
        }
        session_.OverrideVariable(variables[0].number, value);
        session_.Step(1.0 / 18);
        Check();
        for (int i = 0; i < count; ++i) {
            session_.OverrideVariable(variables[i].number, std::nullopt);
        }
    }
}

}  // namespace
}  // namespace panelhost
