#include "guidance/guidance_events.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>

#include "base/module_state.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr std::size_t kListenerCapacity = 8;

struct Connection {
    GuidanceEvent event = GuidanceEvent::PlanStarted;
    GuidanceListener listener = nullptr;

    bool operator==(const Connection&) const = default;
};

struct Connections {
    std::array<Connection, kListenerCapacity> rows;
    std::size_t count = 0;
};

Connections connections;
const StateReset resetConnections([] { connections = {}; });

}  // namespace

void ConnectGuidanceListener(GuidanceEvent event, GuidanceListener listener) {
    const auto end = connections.rows.begin() + static_cast<std::ptrdiff_t>(connections.count);
    const Connection wanted{event, listener};
    if (std::find(connections.rows.begin(), end, wanted) != end) {
        return;
    }
    assert(connections.count < kListenerCapacity);
    connections.rows[connections.count++] = wanted;
}

void TellGuidanceEvent(GuidanceEvent event, std::int32_t entryIndex) {
    const GuidanceReport report{event, entryIndex, aircraft.altitudeFt, OnGround()};
    for (std::size_t i = 0; i < connections.count; ++i) {
        if (connections.rows[i].event == event) {
            connections.rows[i].listener(report);
        }
    }
}

}  // namespace avq1
