// drawing/surface.h - what a screen draws on for one draw event.
//
// A screen opens a Surface on the device context it is given, draws in its own design coordinates
// and lets it go. Opening sets anti-aliased shapes and text, clears the surface and scales the
// design to the surface's pixels. A screen with nothing to show (draw mode 2, avionics off) is
// fully transparent and stops there, others begin on an opaque black ground. Text's (x, y) is its
// top-left corner. Without a usable device context everything draws nothing.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/canvas.h"

namespace avq1 {

// What a gauge callback asks of its screen (see host/lifecycle.h).
enum class DisplayDrawMode : std::int32_t {
    Skip = 0,
    Normal = 1,
    ClearOnly = 2,
    SecondCockpit = 3
};

// The drawing surface of one draw event, as the gauge callback hands it on.
struct DrawTarget {
    void* deviceContext = nullptr;
    int widthPx = 0;
    int heightPx = 0;
    DisplayDrawMode mode = DisplayDrawMode::Normal;
};

class Surface {
  public:
    // Scales `designWidth` x `designHeight` to the target's pixels. A screen that is not `lit` has
    // nothing to draw.
    Surface(const DrawTarget& target, double designWidth, double designHeight, bool lit);

    Canvas& canvas() { return canvas_; }
    // False when there is nothing to draw on, the target asks for a clear only, or it is not lit.
    bool ShouldDraw() const { return shouldDraw_; }

    void Text(std::string_view text, const CanvasFont& font, std::uint32_t argb, double x,
              double y);
    void TextCentred(std::string_view text, const CanvasFont& font, std::uint32_t argb,
                     double centreX, double y);
    void TextRight(std::string_view text, const CanvasFont& font, std::uint32_t argb, double rightX,
                   double y);

    // Draws with the world turned about a point: `degrees` clockwise, (0, 0) at the point.
    template <class Draw>
    void Turned(double centreX, double centreY, double degrees, Draw draw) {
        canvas_.SaveState();
        canvas_.Translate(centreX, centreY);
        canvas_.Rotate(degrees);
        draw();
        canvas_.RestoreState();
    }

  private:
    Canvas canvas_;
    bool shouldDraw_;
};

}  // namespace avq1
