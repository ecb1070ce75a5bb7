#include "displays/screen_keys.h"

#include "platform/services.h"

namespace avq1 {
namespace {

constexpr std::uint32_t kEadiWindow = 4005;
constexpr std::uint32_t kEhsiWindow = 4008;
constexpr std::uint32_t kEhsiNbWindow = 4009;
constexpr std::uint32_t kNdWindow = 4011;

// The middle of a 384 x 371 display; the same area serves the displays without a bezel.
constexpr PixelBox kAttitudeSizedCentre{130, 130, 100, 100};
constexpr PixelBox kNdCentre{90, 118, 100, 100};

template <std::uint32_t ident>
void ToggleScreenWindow(const KeyClick& /*click*/) {
    TogglePanelWindow(ident);
}

}  // namespace

const ScreenKeys kEadiKeys = {
    {{"EADI window", kAttitudeSizedCentre, ToggleScreenWindow<kEadiWindow>, KeyArt::None}}};
const ScreenKeys kEhsiKeys = {
    {{"EHSI window", kAttitudeSizedCentre, ToggleScreenWindow<kEhsiWindow>, KeyArt::None}}};
const ScreenKeys kEhsiNbKeys = {
    {{"EHSI window", kAttitudeSizedCentre, ToggleScreenWindow<kEhsiNbWindow>, KeyArt::None}}};
const ScreenKeys kNdKeys = {
    {{"ND window", kNdCentre, ToggleScreenWindow<kNdWindow>, KeyArt::None}}};

}  // namespace avq1
