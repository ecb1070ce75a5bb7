// What the module offers and does, gauge by gauge, as a panel system sees it: its records, where
// every element and key lies, what a key opens, and what each event changes. Compared with how it
// was when somebody last looked: panels and the painted bezels rest on these places.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>

#include "base/module_state.h"
#include "base/sim_folder.h"
#include "base/text.h"
#include "displays/mfd/mfd.h"
#include "flightlog/flight_log.h"
#include "flightplan/plan_files.h"
#include "guidance/guidance_state.h"
#include "host/gauge_table.h"
#include "host/lifecycle.h"
#include "navdb/nav_database.h"
#include "settings/aircraft_performance.h"
#include "settings/settings.h"
#include "support/fake_simulator.h"
#include "support/kept_file.h"
#include "support/placement.h"
#include "support/temp_sim_folder.h"

namespace avq1 {
namespace {

constexpr std::uint32_t kUntouched = 0xFF123456;  // of a placement

using test::FakeSimulator;
using test::Placement;

std::string BoxText(const PixelBox& box) {
    return Format("%d,%d %dx%d", box.x, box.y, box.width, box.height);
}

// One line: a label may be of two.
std::string Label(std::string label) {
    for (char& character : label) {
        character = character == '\n' ? '/' : character;
    }
    return label;
}

void Begin() {
    ResetModuleState();
    FakeSimulator::Install().variables[773] = 1;  // avionics on
    FakeSimulator::Get().variables[1] = 7;
}

// The windows that a click in the middle of a key's area opens.
std::string Opened(Placement& gauge, const PixelBox& box) {
    FakeSimulator::Get().windows.clear();
    gauge.Click(box.x + box.width / 2, box.y + box.height / 2);
    std::string opened;
    for (const auto& [ident, shown] : FakeSimulator::Get().windows) {
        opened += shown ? Format(" opens %d", static_cast<int>(ident)) : "";
    }
    return opened;
}

void WriteKeys(const GaugeRow& row, Placement& gauge, std::ostream& out) {
    Begin();
    const MouseRectangle* const rectangles = gauge.header().mouseRectangles;
    EXPECT_EQ(rectangles, row.keys != nullptr ? row.keys->rectangles : nullptr);
    for (std::size_t i = 0; row.keys != nullptr && i < row.keys->rows.size(); ++i) {
        const KeyArea& key = row.keys->rows[i];
        const MouseRectangle& area = row.keys->rectangles[3 * i];
        const MouseRectangle& click = row.keys->rectangles[3 * i + 1];
        out << "  " << BoxText(area.box) << " \"" << Label(key.label) << "\" code " << key.code
            << " flags " << std::hex << click.mouseFlags << std::dec << " cursor "
            << static_cast<int>(click.cursor) << " art " << static_cast<int>(key.art)
            << Opened(gauge, area.box)
            << (click.function == nullptr || key.action == nullptr ? " dead\n" : "\n");
    }
}

void WriteElements(const GaugeRow& row, Placement& gauge, std::ostream& out) {
    out << "# " << row.name << ' ' << row.size.x << 'x' << row.size.y << ", "
        << gauge.header().widthMm << " mm, surface " << BoxText(row.surface.box) << '\n';
    for (int depth = 0; gauge.Element(depth) != nullptr; ++depth) {
        const ElementHeader& element = gauge.Element(depth)->header;
        out << Format("  bitmap %d at %d,%d flags %x\n", element.resourceNumber, element.position.x,
                      element.position.y, element.imageFlags);
    }
}

// What events may change: name and value.
std::vector<std::pair<const char*, std::string>> Everything(Placement& gauge) {
    const bool painted =
        std::ranges::any_of(gauge.pixels(), [](auto p) { return p != kUntouched; });
    const StaticImageElement* surface = gauge.Element(1);
    return {{"folder", SimFolder.empty() ? "none" : "set"},
            {"log", std::to_string(FlightLogStarted)},
            {"settings", std::to_string(SettingsLoaded)},
            {"airports", std::to_string(navDatabase.airports.count)},
            {"plans", std::to_string(storedPlans.plans.size())},
            {"aircraft", AircraftName},
            {"published", std::to_string(FakeSimulator::Get().named.size())},
            {"drawing", std::to_string(GdiplusToken != 0)},
            {"frames", std::to_string(guidance.framesSinceStart)},
            {"panel", std::to_string(mfd.panelDrawn)},
            {"painted", std::to_string(painted)},
            {"shown", std::to_string(surface != nullptr ? surface->header.imageFlags : 0)}};
}

void WriteEvents(const GaugeRow& row, std::ostream& out) {
    const test::TempSimFolder folder;
    folder.Write("avq/Navdata/avq_apts.txt", "KAAA ALPHA 10 40.0 -75.0\n");
    Begin();
    SimFolder.clear();
    Placement gauge(row.name, "A320", row.surface.box.width, row.surface.box.height);
    if (StaticImageElement* surface = gauge.Element(1); surface != nullptr) {
        surface->header.imageFlags |= image_flag::kOnScreen;
    }
    auto before = Everything(gauge);
    for (std::int32_t event = 0; event <= 17; ++event) {
        gauge.Send(event);
        const auto now = Everything(gauge);
        std::string changed;
        for (std::size_t i = 0; i < now.size(); ++i) {
            changed += now[i] != before[i] ? " " + (now[i].first + ("=" + now[i].second)) : "";
        }
        out << (changed.empty() ? "" : Format("  event %d:", event) + changed + '\n');
        SimFolder = folder.root().string();  // where the loads find their files
        before = Everything(gauge);
    }
}

TEST(Gauges, AreAndDoWhatTheyDidWhenLastLookedAt) {
    std::ostringstream now;
    for (int i = 0; i < kGaugeCount; ++i) {
        const GaugeRow& row = GaugeTable()[static_cast<std::size_t>(i)];
        const std::string_view name = Linkage.gauges[i]->name;  // a copy: its record is packed
        ASSERT_EQ(name, row.name);
        Placement gauge(row.name, nullptr);
        WriteElements(row, gauge, now);
        WriteKeys(row, gauge, now);
        WriteEvents(row, now);
    }
    ResetModuleState();
    ImportTable.panel.services = nullptr;
    test::ExpectAsKept(now.str(), "host/gauges.txt");
}

}  // namespace
}  // namespace avq1
