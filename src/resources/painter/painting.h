// resources/painter/painting.h - a picture being painted, and the materials units are made of:
// plates, screws, screen recesses, key caps, knobs and lamps.
//
// Coordinates are pixels, colours 0xRRGGBB. A picture starts fully transparent; light comes from
// the top left.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <vector>

#include "platform/panel_interface.h"

namespace avq1 {

using Rgb = std::uint32_t;

class Painting {
  public:
    Painting(int width, int height);
    ~Painting();
    Painting(const Painting&) = delete;
    Painting& operator=(const Painting&) = delete;

    cairo_t* cairo() const { return cairo_; }
    int width() const { return width_; }
    int height() const { return height_; }
    // Premultiplied ARGB words, top row first.
    std::vector<std::uint32_t> Pixels() const;
    bool WritePng(const char* path) const;

  private:
    int width_;
    int height_;
    cairo_surface_t* surface_;
    cairo_t* cairo_;
};

// What a unit's front plate is made of.
struct Finish {
    Rgb light;   // towards the top left
    Rgb dark;    // towards the bottom right
    Rgb keyTop;  // key caps
    Rgb keyBase;
    Rgb legend;  // engraved texts
};

void SetColour(cairo_t* cairo, Rgb colour, double alpha = 1.0);
// The colour moved towards white (amount > 0) or black (amount < 0), by up to 1.
Rgb Shade(Rgb colour, double amount);
void RoundedBox(cairo_t* cairo, double x, double y, double width, double height, double radius);

// A front plate over the whole picture: gradient, fine horizontal brushing, bevelled edge.
void PaintPlate(const Painting& painting, const Finish& finish);
void PaintScrew(cairo_t* cairo, double x, double y, double radius, double slotDegrees);
// The bevelled frame around a screen; the screen itself fills `box` exactly.
void PaintRecess(cairo_t* cairo, const PixelBox& box, double frame);
void PaintKeyCap(cairo_t* cairo, const PixelBox& box, const Finish& finish);
// A line key: a small cap with a white dash.
void PaintLineKey(cairo_t* cairo, const PixelBox& box, const Finish& finish);
// A round knob with an arrow on either side.
void PaintKnob(cairo_t* cairo, const PixelBox& box, const Finish& finish);
// A ribbed wheel in a tall box, turned up and down.
void PaintThumbwheel(cairo_t* cairo, const PixelBox& box, const Finish& finish);
// A selector knob whose pointer shows `degrees`, clockwise from straight up.
void PaintSelector(cairo_t* cairo, const PixelBox& box, double degrees);
// The same around a button: only its rim carries the pointer.
void PaintRingSelector(cairo_t* cairo, const PixelBox& box, double degrees);
// A filled triangle pointing to `degrees`, clockwise from straight up.
void PaintArrow(cairo_t* cairo, double x, double y, double size, double degrees);
void PaintLamp(cairo_t* cairo, const PixelBox& box, Rgb colour, bool lit);

}  // namespace avq1
