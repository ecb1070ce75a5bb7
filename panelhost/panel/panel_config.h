// panelhost/panel/panel_config.h - a panel.cfg read into records: windows and the gauges placed in
// them.
//
// [Window Titles] names windows, [WindowNN] describes one and places its gauges; sizes and places
// are in the window's design coordinates (size_mm). Keys and section names compare without regard
// to case; "//" and ";" open comments; CRLF and a byte-order mark are accepted. Reading never
// fails: what cannot be understood is left out and named, with its line, in `warnings`.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace panelhost {

struct GaugePlacement {
    int number = 0;      // NN of gaugeNN: the drawing order
    std::string module;  // text before the "!"
    std::string gauge;
    int x = 0;
    int y = 0;
    int width = 0;  // 0: the gauge's own size
    int height = 0;
    std::string parameter;
    int line = 0;
};

struct PanelWindow {
    int number = 0;
    std::string title;
    std::uint32_t ident = 0;  // 0 the main panel; kNamedIdents + number without a numeric one
    int widthMm = 0;
    int heightMm = 0;
    int positionCode = 0;  // 0 to 8: top left to bottom right, three by three
    bool visible = true;
    bool hasPlace = false;  // window_pos given
    double placeX = 0;      // fraction of the desk
    double placeY = 0;
    bool hasShownSize = false;  // window_size given
    double shownX = 0;          // fraction of the desk
    double shownY = 0;
    std::string backgroundFile;
    std::vector<GaugePlacement> gauges;
    int line = 0;
};

struct PanelConfig {
    std::vector<PanelWindow> windows;  // by number
    std::vector<std::string> warnings;
};

inline constexpr std::uint32_t kNamedIdents = 100000;
inline constexpr int kMaxWindows = 100;
inline constexpr int kMaxGaugesPerWindow = 200;
inline constexpr int kMaxWindowMm = 4096;

// The desk a panel file's places and sizes are fractions of, pixels.
inline constexpr int kDeskWidth = 1600;
inline constexpr int kDeskHeight = 1000;

PanelConfig ParsePanelConfig(std::string_view text);

// Where a window stands on a desk of the given size, in desk pixels.
struct DeskBox {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};
DeskBox PlaceOnDesk(const PanelWindow& window, int deskWidth, int deskHeight);

// The module part of a placement without folder and extension, for comparing names.
std::string ModuleStem(std::string_view moduleName);

}  // namespace panelhost
