// panelhost/session/mouse.h - finds the gauge rectangle under the pointer and calls the module for
// it.
//
// Points are design coordinates of a window; a gauge scaled by the panel file gets them in pixels
// of its own background. The gauge drawn last is on top. A press calls the rectangle's mouse
// function with the button's flag, while it is held its repeat flag every kRepeatTicks update
// ticks, and its release flag at the end - each only when the rectangle asks for it.
#pragma once

#include "panelhost/session/host_state.h"

namespace panelhost {

inline constexpr int kRepeatTicks = 3;       // of 1/18 s
inline constexpr int kFirstRepeatTicks = 6;  // a click shorter than this never repeats
inline constexpr int kMaxMouseRows = 2048;

struct FlatRectangle {
    const avq1::MouseRectangle* rectangle = nullptr;
    avq1::PixelBox box;  // in pixels of the gauge's background
    bool isLeaf = true;
};

// The table's rectangles with absolute boxes; leaves before their parents, in table order.
std::vector<FlatRectangle> FlattenRectangles(const avq1::MouseRectangle* table);

bool PressMouse(HostState& host, HostWindow& window, double x, double y, std::uint32_t flag);
void ReleaseMouse(HostState& host);
void RepeatMouse(HostState& host);  // once per update tick
std::vector<Lamp> ListLamps(const HostState& host, const HostWindow& window);
std::vector<ClickArea> ListClickAreas(const HostState& host, const HostWindow& window);

}  // namespace panelhost
