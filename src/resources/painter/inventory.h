// resources/painter/inventory.h - which bitmaps the module needs, gathered from the gauge table.
//
// One plan per resource number, in order of first use; gauges that share a bitmap share its plan,
// with the keys of all of them. Positions are pixels from the bitmap's top-left corner.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "host/gauge_table.h"

namespace avq1 {

enum class BitmapRole : std::uint8_t {
    Background,  // a bezel, a control panel or a button
    Screen,      // a drawing surface: black until the module draws on it
    Icon,        // shown over a background while something is lit
};

struct IconPlace {
    std::int32_t number = 0;
    PixelBox box;
};

struct BitmapPlan {
    std::int32_t number = 0;
    PixelPoint size;
    BitmapRole role = BitmapRole::Background;
    PixelBox screen;               // of a background; width 0 = none
    std::vector<IconPlace> icons;  // of a background
    std::vector<KeyArea> keys;     // of a background
    std::int32_t owner = 0;        // of an icon: the first background it lies on
};

std::vector<BitmapPlan> PlanBitmaps(std::span<const GaugeRow> gauges);

// The plan of this number, or null.
const BitmapPlan* FindPlan(std::span<const BitmapPlan> plans, std::int32_t number);

}  // namespace avq1
