#include "displays/flag.h"

#include "drawing/palette.h"

namespace avq1 {

void DrawFlag(Surface& surface, std::string_view text, std::uint32_t argb, double centreX,
              double centreY) {
    constexpr CanvasFont kFont{"Arial", 14, true};
    Canvas& canvas = surface.canvas();
    const CanvasSize size = canvas.MeasureText(text, kFont);
    const double width = size.width + 8;
    const double height = size.height + 2;
    canvas.FillRectangle(colour::Black, centreX - width / 2, centreY - height / 2, width, height);
    canvas.DrawRectangle({argb, 1.5}, centreX - width / 2, centreY - height / 2, width, height);
    surface.TextCentred(text, kFont, argb, centreX, centreY - size.height / 2);
}

}  // namespace avq1
