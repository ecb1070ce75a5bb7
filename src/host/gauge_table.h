// host/gauge_table.h - the 33 gauges the module offers, one row each, in Linkage order.
//
// Sizes and positions are bitmap pixels from the gauge's top-left corner. The same rows make the
// headers, element trees and mouse tables the host clones, and the bitmaps painted at build time.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "base/key_area.h"
#include "drawing/surface.h"
#include "platform/panel_interface.h"
#include "simlink/keyboard.h"

namespace avq1 {

struct SurfaceRow {
    std::int32_t resource = 0;  // 0 = the gauge has no drawing surface
    PixelBox box;               // place in the background, size
    bool luminous = false;
};

struct IconRow {
    std::int32_t resource;
    PixelBox box;
    bool (*shown)();  // whether the icon is lit now
};

// A gauge's clickable areas, as rows and as the host's table made from them.
struct KeyTable {
    std::span<const KeyArea> rows = {};
    const MouseRectangle* rectangles = nullptr;
};

// What a gauge does on the events it uses.
struct GaugeBehaviour {
    bool takesSimFolder = false;   // install: fills the simulator folder
    bool startsFlightLog = false;  // after install
    bool initialises = false;      // initialise: the one-time loads
    bool loadsNavigation = false;  // its loads include the navigation database and stored plans
    bool logsAfterLoad = false;    // its navigation load is followed by the flight log's start
    const KeyboardUser* keyboardUser = nullptr;  // loses the keyboard on disconnect and kill
    void (*beforeUpdate)() = nullptr;            // draw: comes before the per-frame update
    bool updatesFrame = false;                   // draw: runs the per-frame update
    bool startsGraphics = false;                 // connect and disconnect
    bool hiddenWhileMainShows = false;           // a "VC" instance draws nothing then
    std::uint32_t popupIdent = 0;                // its own pop-up window; 0 = none
    bool secondCockpit = false;                  // a "VC2" instance has a mode of its own
    void (*drawScreen)(const DrawTarget&) = nullptr;
    bool (*keepsPicture)() = nullptr;  // draw: a frame not to be copied; null = none
    void (*onInstall)() = nullptr;
    void (*onPanelDraw)() = nullptr;  // draw event of a control panel
    void (*onKill)() = nullptr;
};

struct GaugeRow {
    const char* name;
    std::int32_t background;  // bitmap number; 0 = an empty element
    PixelPoint size;
    std::uint32_t backgroundFlags;
    SurfaceRow surface;
    std::span<const IconRow> icons;
    const KeyTable* keys;             // null = none
    const GaugeBehaviour* behaviour;  // null = no callback
};

const std::array<GaugeRow, kGaugeCount>& GaugeTable();

}  // namespace avq1
