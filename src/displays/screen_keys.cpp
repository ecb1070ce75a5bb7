#include "displays/screen_keys.h"

#include "base/panel_windows.h"

namespace avq1 {
namespace {

// The middle of a 384 x 371 display; the same area serves the displays without a bezel.
constexpr PixelBox kAttitudeSizedCentre{130, 130, 100, 100};
constexpr PixelBox kNdCentre{90, 118, 100, 100};

}  // namespace

const ScreenKeys kEadiKeys = {
    {{"EADI window", kAttitudeSizedCentre, ToggleKeyWindow, panel_window::kEadi, KeyArt::None}}};
const ScreenKeys kEhsiKeys = {
    {{"EHSI window", kAttitudeSizedCentre, ToggleKeyWindow, panel_window::kEhsi, KeyArt::None}}};
const ScreenKeys kEhsiNbKeys = {{{"EHSI window", kAttitudeSizedCentre, ToggleKeyWindow,
                                  panel_window::kEhsiNoBezel, KeyArt::None}}};
const ScreenKeys kNdKeys = {
    {{"ND window", kNdCentre, ToggleKeyWindow, panel_window::kNd, KeyArt::None}}};

}  // namespace avq1
