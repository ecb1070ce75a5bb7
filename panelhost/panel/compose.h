// panelhost/panel/compose.h - paints placed gauges into a window's picture and keeps it up to date.
//
// The picture has the window's design size times the surface scale. Elements are painted in tree
// order at position plus offset in the gauge's own coordinates; the hidden flag counts for the
// element alone, not for its children. Only boxes that changed are painted again.
#pragma once

#include <cstdint>
#include <vector>

#include "panelhost/module/resources.h"
#include "panelhost/panel/placement.h"

namespace panelhost {

struct PixelArea {
    int left = 0;
    int top = 0;
    int right = 0;  // one past the last
    int bottom = 0;
    bool IsEmpty() const { return left >= right || top >= bottom; }
};

PixelArea Union(const PixelArea& a, const PixelArea& b);
PixelArea Intersection(const PixelArea& a, const PixelArea& b);

struct PanelPicture {
    int scale = 1;
    Picture picture;     // its pixels are made when it is first painted
    Picture background;  // fitted; empty without
    PixelArea stale;     // to be painted before the picture is shown
};

inline constexpr std::uint32_t kPlainPanel = 0xFF23272B;
inline constexpr std::uint32_t kPlainGauge = 0xFF2E3338;

// Resampled to a size: box average when shrinking, bilinear when growing.
Picture Resample(const Picture& source, int width, int height);
// The same with pure black made transparent.
Picture KeyOutBlack(const Picture& source);

PixelArea PlacementArea(const Placement& placement, int scale);

// After a draw event: takes surface copies where the module cleared the on-screen flag and sets it
// again, follows moved, shown and hidden elements. True when something visible or a text changed;
// `stale` then covers it.
bool SettlePlacement(Placement& placement, int scale, PixelArea& stale);

// Paints the stale area: background, then every placement in order.
void PaintStale(PanelPicture& target, const std::vector<Placement*>& placements);

}  // namespace panelhost
