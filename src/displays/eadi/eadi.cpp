#include "displays/eadi/eadi.h"

#include <algorithm>
#include <cmath>

#include "displays/eadi/eadi_picture.h"
#include "displays/layers.h"
#include "drawing/palette.h"
#include "guidance/guidance_state.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

const EadiLayout& ChosenLayout() {
    const bool expanded =
        settings.ExpandEADI == 1 || (settings.ExpandEADILnav == 1 && guidance.lnavEngaged == 1);
    return expanded ? kEadiExpanded : kEadiNormal;
}

// What belongs to the outside world and the cue ends with the picture area.
void Inside(EadiPicture& picture) {
    const EadiLayout& layout = picture.layout;
    picture.canvas.ClipRectangle(layout.left, layout.top, layout.right - layout.left,
                                 layout.bottom - layout.top);
    picture.canvas.EndClip();
}

constexpr DisplayLayer<EadiPicture> kLayers[] = {
    {Always, Inside, DrawSkyAndGround},   {Always, Inside, DrawPitchLadder},
    {Always, Inside, DrawBankScale},      {Always, Inside, DrawRisingRunway},
    {Always, Inside, DrawFlightDirector}, {Always, Inside, DrawAircraftFigure},
    {Always, nullptr, DrawLocalizer},     {Always, nullptr, DrawGlideslope},
    {Always, nullptr, DrawHeadingTape},   {Always, nullptr, DrawSpeedDeviation},
    {Always, nullptr, DrawAnnunciations}, {Always, nullptr, DrawHeights},
    {Always, nullptr, DrawMarker},
};

}  // namespace

void EadiText(EadiPicture& picture, std::string_view text, const CanvasFont& font,
              std::uint32_t argb, double x, double y) {
    constexpr double kCapTop = 0.19;  // of the font's size, from the text's top
    constexpr double kBaseline = 0.91;
    const double width = picture.canvas.MeasureText(text, font).width;
    picture.canvas.FillRectangle(colour::Black, x - 1, y + kCapTop * font.sizePx - 0.5, width + 2,
                                 (kBaseline - kCapTop) * font.sizePx + 1);
    picture.surface.Text(text, font, argb, x, y);
}

void DrawEadi(const DrawTarget& target) {
    Surface surface(target, kEadiDesignWidth, kEadiDesignHeight, avionicsPower != 0);
    if (!surface.ShouldDraw()) {
        return;
    }
    Canvas& canvas = surface.canvas();
    canvas.Translate(kEadiCentre.x, kEadiCentre.y);
    EadiPicture picture{surface, canvas, ChosenLayout()};
    const AircraftState& shown = ShownAircraft();
    picture.attitudeValid = std::isfinite(shown.bank) && std::isfinite(shown.pitch);
    if (picture.attitudeValid) {
        picture.bank = std::remainder(shown.bank, 360.0);
        picture.pitch = std::clamp(shown.pitch, -90.0, 90.0);
    }
    DrawLayers(picture, kLayers);
}

}  // namespace avq1
