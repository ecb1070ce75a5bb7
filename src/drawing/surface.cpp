#include "drawing/surface.h"

#include "drawing/palette.h"

namespace avq1 {

Surface::Surface(const DrawTarget& target, double designWidth, double designHeight, bool lit)
    : canvas_(target.deviceContext, target.widthPx, target.heightPx),
      shouldDraw_(canvas_.IsOpen() && lit &&
                  (target.mode == DisplayDrawMode::Normal ||
                   target.mode == DisplayDrawMode::SecondCockpit)) {
    if (!canvas_.IsOpen() || target.mode == DisplayDrawMode::Skip) {
        return;
    }
    canvas_.SetAntialias(true);
    canvas_.Clear(shouldDraw_ ? colour::Black : colour::Clear);
    canvas_.Scale(target.widthPx / designWidth, target.heightPx / designHeight);
}

void Surface::Text(std::string_view text, const CanvasFont& font, std::uint32_t argb, double x,
                   double y) {
    canvas_.DrawText(text, font, argb, x, y);
}

void Surface::TextCentred(std::string_view text, const CanvasFont& font, std::uint32_t argb,
                          double centreX, double y) {
    canvas_.DrawText(text, font, argb, centreX - canvas_.MeasureText(text, font).width / 2, y);
}

void Surface::TextRight(std::string_view text, const CanvasFont& font, std::uint32_t argb,
                        double rightX, double y) {
    canvas_.DrawText(text, font, argb, rightX - canvas_.MeasureText(text, font).width, y);
}

}  // namespace avq1
