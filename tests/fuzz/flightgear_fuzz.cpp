// Any datagram is refused or taken whole: the world keeps to its bounds and what is sent is one
// line.
#include <cmath>

#include "fuzz/fuzz_text.h"
#include "panelhost/flightgear/live_link.h"
#include "panelhost/world/variables.h"

void FuzzText(std::string_view text) {
    using namespace panelhost;
    LiveLink link;
    OpenLink(AutopilotMapping{}, "0123456789abcdef", link);
    World world;
    Traffic traffic;
    // A field of the packet for every line of the input, so that most of them are whole.
    std::string datagram = link.stateOpening + " 5";
    std::size_t fields = 0;
    std::string_view rest = text;
    while (fields < kStateFields) {
        const std::size_t end = rest.find('\n');
        datagram += "\t" + std::string(rest.substr(0, end));
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
        ++fields;
    }
    Hear(link, datagram + "\n", 10);
    Hear(link, text, 10.01);
    const std::string sent = StepLink(link, 10.02, world, traffic);
    Require(sent.empty() || (sent.back() == '\n' && sent.find('\n') == sent.size() - 1));
    Require(traffic.aircraft.size() <= kTrafficNodes.size() * kToldAircraft);
    Require(world.autopilot.headingBugMag >= 1 && world.autopilot.headingBugMag <= 360);
    Require(world.simulationRate >= 0.25 && world.simulationRate <= 64);
    for (const double gallons : world.aircraft.fuelGallons) {
        Require(gallons >= 0 && std::isfinite(gallons));
    }
    int count = 0;
    const VariableRow* const rows = VariableTable(count);
    for (int i = 0; i < count; ++i) {
        Require(ReadVariable(world, rows[i].number).has_value());
    }
    std::string problem;
    Require(ReadMapping(text, problem).has_value() || !problem.empty());
}
