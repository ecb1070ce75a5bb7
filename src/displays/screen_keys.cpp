#include "displays/screen_keys.h"

namespace avq1 {
namespace {

constexpr std::int32_t kEadiWindow = 4005;
constexpr std::int32_t kEhsiWindow = 4008;
constexpr std::int32_t kEhsiNbWindow = 4009;
constexpr std::int32_t kNdWindow = 4011;

// The middle of a 384 x 371 display; the same area serves the displays without a bezel.
constexpr PixelBox kAttitudeSizedCentre{130, 130, 100, 100};
constexpr PixelBox kNdCentre{90, 118, 100, 100};

}  // namespace

const ScreenKeys kEadiKeys = {
    {{"EADI window", kAttitudeSizedCentre, ToggleKeyWindow, kEadiWindow, KeyArt::None}}};
const ScreenKeys kEhsiKeys = {
    {{"EHSI window", kAttitudeSizedCentre, ToggleKeyWindow, kEhsiWindow, KeyArt::None}}};
const ScreenKeys kEhsiNbKeys = {
    {{"EHSI window", kAttitudeSizedCentre, ToggleKeyWindow, kEhsiNbWindow, KeyArt::None}}};
const ScreenKeys kNdKeys = {{{"ND window", kNdCentre, ToggleKeyWindow, kNdWindow, KeyArt::None}}};

}  // namespace avq1
