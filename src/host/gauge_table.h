// host/gauge_table.h - the 33 gauges the module offers, one row each, in Linkage order.
//
// Sizes and positions are bitmap pixels. The same rows make the headers, element trees and mouse
// tables the host clones, and the bitmaps painted at build time.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "base/key_area.h"
#include "drawing/surface.h"
#include "platform/panel_interface.h"

namespace avq1 {

struct SurfaceRow {
    std::int32_t resource = 0;  // 0 = the gauge has no drawing surface
    PixelBox box;               // position in the background, size
    std::uint32_t flags = 0;    // besides the ones every surface has
};

struct IconRow {
    std::int32_t resource;
    PixelPoint position;
    PixelPoint size;
    bool (*shown)();  // whether the icon is lit now
};

// What a gauge does on the events it uses.
struct GaugeBehaviour {
    bool installs = false;         // event 2: fills the simulator folder
    bool startsFlightLog = false;  // event 3
    bool initialises = false;      // event 4: the one-time loads
    bool loadsDatabase = false;    // navigation database and stored plans are part of its loads
    bool logsAfterDatabase = false;
    std::span<const char* const> placementWords = {};  // parameters that are no aircraft name
    bool drawsFrame = false;                           // event 10: runs the per-frame update
    bool usesGraphics = false;                         // events 14 and 15
    void (*draw)(const DrawTarget&) = nullptr;         // the screen on the drawing surface
    void (*onInstall)() = nullptr;                     // further work on event 2
    void (*onPanelDraw)() = nullptr;                   // event 10 of a gauge without a surface
    void (*onKill)() = nullptr;                        // event 12
    void (*beforeUpdate)() = nullptr;                  // event 10, before the per-frame update
    bool skipsHiddenCockpit = false;  // "VC" draws nothing while the main panel shows
    std::uint32_t popupIdent = 0;     // 0 = no pop-up window of its own
    bool secondCockpit = false;       // "VC2" draws in mode 3 while the pop-up shows
};

struct GaugeRow {
    const char* name;
    std::int32_t backgroundResource;  // 0 = an empty element
    PixelPoint size;
    std::uint32_t backgroundFlags;
    SurfaceRow surface;
    std::span<const IconRow> icons;
    std::span<const KeyArea> keys;
    const GaugeBehaviour* behaviour;  // null = no callback
};

const std::array<GaugeRow, kGaugeCount>& GaugeTable();

}  // namespace avq1
