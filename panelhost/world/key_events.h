// panelhost/world/key_events.h - the numbered key events this host understands and what each does.
// One table; an event without a row is kept in the session's log as "unknown" and does nothing.
#pragma once

#include <cstdint>

#include "panelhost/world/world.h"

namespace panelhost {

struct KeyEventRow {
    std::int32_t number;
    const char* name;
    const char* meaning;
    void (*apply)(World& world, std::uint32_t value);
};

const KeyEventRow* FindKeyEvent(std::int32_t number);  // null: unknown
const KeyEventRow* KeyEventTable(int& count);

}  // namespace panelhost
