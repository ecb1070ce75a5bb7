// displays/eadi/eadi_picture.h - one draw of the attitude display: what its layers share.
//
// Layers draw in design pixels around the centre of the attitude figure, x right and y down; the
// whole design is 266 x 230. Bank and flight director bank are degrees positive to the left, pitch
// and flight director pitch positive nose down, as the simulator counts them.
#pragma once

#include <cstdint>
#include <string_view>

#include "displays/flag.h"
#include "drawing/surface.h"

namespace avq1 {

inline constexpr double kEadiDesignWidth = 266;
inline constexpr double kEadiDesignHeight = 230;
inline constexpr CanvasPoint kEadiCentre{129, 114};
inline constexpr double kEadiPxPerPitchDeg = 3.8;

// Where sky and ground are seen.
struct EadiLayout {
    double left;
    double top;
    double right;
    double bottom;
};

inline constexpr EadiLayout kEadiNormal{-99, -94, 99, 88};
inline constexpr EadiLayout kEadiExpanded{-124, -114, 124, 113};

inline constexpr double kEadiPxPerCourseUnit = 0.6493506493506493;

struct EadiPicture {
    Surface& surface;
    Canvas& canvas;
    EadiLayout layout;
    bool attitudeValid = false;
    double bank = 0;
    double pitch = 0;
};

// A text on a black ground of its own, so that it reads the same over sky and earth.
void EadiText(EadiPicture& picture, std::string_view text, const CanvasFont& font,
              std::uint32_t argb, double x, double y);

// ---- layers ----
void DrawSkyAndGround(EadiPicture& picture);
void DrawPitchLadder(EadiPicture& picture);
void DrawRisingRunway(EadiPicture& picture);
void DrawBankScale(EadiPicture& picture);
void DrawFlightDirector(EadiPicture& picture);
void DrawAircraftFigure(EadiPicture& picture);
void DrawHeadingTape(EadiPicture& picture);
void DrawLocalizer(EadiPicture& picture);
void DrawGlideslope(EadiPicture& picture);
void DrawSpeedDeviation(EadiPicture& picture);
void DrawAnnunciations(EadiPicture& picture);
void DrawHeights(EadiPicture& picture);
void DrawMarker(EadiPicture& picture);

}  // namespace avq1
