// host/mouse_table.h - turns a table of key areas into the host's mouse rectangle table.
//
// Each key becomes a parent rectangle with one child of the same size, and gets a mouse function
// of its own, so a click finds its row whatever the host made of the records.
#pragma once

#include <array>
#include <cstddef>
#include <utility>

#include "base/key_area.h"
#include "host/gauge_table.h"

namespace avq1 {

template <const auto& keys, std::size_t index>
std::int32_t AVQ1_PANEL_CALL OnKeyClick(MouseCallbackData* data, std::uint32_t flags) {
    const KeyArea& key = keys[index];
    if (key.action != nullptr) {
        key.action({key, data != nullptr ? data->relativePoint : PixelPoint{}, flags});
    }
    return 0;
}

template <const auto& keys, std::size_t... index>
auto BuildMouseRectangles(std::index_sequence<index...>) {
    std::array<MouseRectangle, 3 * sizeof...(index) + 1> table{};
    const MouseFunction functions[] = {&OnKeyClick<keys, index>...};
    for (std::size_t i = 0; i < sizeof...(index); ++i) {
        const KeyArea& key = keys[i];
        MouseRectangle& parent = table[3 * i];
        parent.type = MouseRectangleType::Parent;
        parent.box = key.box;
        MouseRectangle& child = table[3 * i + 1];
        child.type = MouseRectangleType::Child;
        child.box = {0, 0, key.box.width, key.box.height};
        child.cursor = key.cursor;
        child.mouseFlags = key.MouseFlags();
        child.function = functions[i];
        table[3 * i + 2].type = MouseRectangleType::EndOfParent;
    }
    return table;
}

// The key table of `keys`, an array with static storage; its rectangles live as long as the module.
template <const auto& keys>
const KeyTable* KeyTableOf() {
    static const auto rectangles =
        BuildMouseRectangles<keys>(std::make_index_sequence<std::size(keys)>{});
    static const KeyTable table{keys, rectangles.data()};
    return &table;
}

}  // namespace avq1
