// platform/canvas.h - the drawing library behind every screen: one interface, one backend a build
// (shapes of our own and Cairo's letters on Linux, the system's own library on Windows).
//
// A canvas draws on a gauge's device context for one draw event; text, pens and brushes are plain
// values, and everything costly (fonts, contexts) is cached in the backend. Coordinates pass the
// world transform; sizes are pixels before it. Colours are ARGB, not premultiplied. Angles are
// degrees, clockwise, 0 along +x. A text's (x, y) is the top-left corner of its line box; texts are
// Latin-1, at most 256 characters. Failed operations draw nothing and set LastStatus(); drawing
// goes on. Values that are not finite draw nothing, and a transform made of them hides what is
// drawn under it until RestoreState or ResetTransform undoes it.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace avq1 {

struct CanvasPoint {
    double x = 0;
    double y = 0;
};

struct CanvasSize {
    double width = 0;
    double height = 0;
};

// dashPixels: {} for a solid line, else alternating on and off lengths.
struct CanvasPen {
    std::uint32_t argb = 0xFFFFFFFF;
    double widthPx = 1.0;
    std::span<const double> dashPx = {};
    bool arrowAtEnd = false;
};

struct CanvasFont {
    const char* family = "Arial";
    double sizePx = 12;
    bool bold = false;
};

// Starts and stops the drawing library. Start returns a token that is never 0 on success and is
// given to the stop; 0 when the library cannot start (screens then draw nothing).
std::uintptr_t StartDrawingLibrary();
void StopDrawingLibrary(std::uintptr_t token);

class Canvas {
  public:
    // `deviceContext` is what the host put into the surface element. A null or unusable one gives a
    // canvas that draws nothing; IsOpen() tells.
    Canvas(void* deviceContext, int widthPx, int heightPx);
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    bool IsOpen() const { return native_ != nullptr; }
    int LastStatus() const { return status_; }

    void SetAntialias(bool on);
    void Clear(
        std::uint32_t argb);  // replaces every pixel, alpha included; ignores clip and transform

    void FillRectangle(std::uint32_t argb, double x, double y, double width, double height);
    void DrawRectangle(const CanvasPen& pen, double x, double y, double width, double height);
    void DrawLine(const CanvasPen& pen, double x1, double y1, double x2, double y2);
    void DrawPolyline(const CanvasPen& pen, std::span<const CanvasPoint> points, bool closed);
    // Many separate lines in one stroke: every two points are one line.
    void DrawSegments(const CanvasPen& pen, std::span<const CanvasPoint> points);
    void FillPolygon(std::uint32_t argb, std::span<const CanvasPoint> points);
    void DrawEllipse(const CanvasPen& pen, double x, double y, double width, double height);
    void FillEllipse(std::uint32_t argb, double x, double y, double width, double height);
    // The arc of the ellipse in the given box from startDeg over sweepDeg.
    void DrawArc(const CanvasPen& pen, const CanvasPoint& topLeft, const CanvasSize& size,
                 double startDeg, double sweepDeg);

    void Translate(double dx, double dy);
    void Rotate(double degrees);
    void Scale(double sx, double sy);
    void ResetTransform();
    void SaveState();  // transform and clip, nested
    void RestoreState();

    // These add to a path; EndClip intersects the present clip with it and begins the next one.
    void ClipLine(double x1, double y1, double x2, double y2);
    void ClipArc(const CanvasPoint& topLeft, const CanvasSize& size, double startDeg,
                 double sweepDeg);
    void ClipEllipse(double x, double y, double width, double height);
    void ClipRectangle(double x, double y, double width, double height);
    void EndClip();
    void ResetClip();

    void DrawText(std::string_view text, const CanvasFont& font, std::uint32_t argb, double x,
                  double y);
    CanvasSize MeasureText(std::string_view text, const CanvasFont& font);

  private:
    void* native_ = nullptr;  // the backend's context, owned by its cache
    void* deviceContext_ = nullptr;
    int status_ = 0;
};

}  // namespace avq1
