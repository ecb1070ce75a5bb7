// The attitude display's scales: heading tape, localizer, glideslope, speed deviation.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "displays/deviation_scale.h"
#include "displays/eadi/eadi_picture.h"
#include "drawing/palette.h"
#include "geometry/geometry.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "simlink/sim_variables.h"

namespace avq1 {
namespace {

constexpr double kLocalizerY = 80;
constexpr double kFullCourseUnits = 127;

// Glideslope and speed deviation stand beside the picture, level with each other.
constexpr double kGlideslopeX = 112;
constexpr double kSpeedX = -112;
constexpr double kUprightCentreY = -11;
constexpr double kPxPerGlideUnit = 0.5;
constexpr double kFullGlideUnits = 120;

// The strip a scale lies on, so that it reads the same over sky and earth.
void DrawUprightGround(EadiPicture& picture, double x) {
    constexpr double kHalfWidth = 8;
    constexpr double kHalfHeight = 67;
    picture.canvas.FillRectangle(colour::Black, x - kHalfWidth, kUprightCentreY - kHalfHeight,
                                 2 * kHalfWidth, 2 * kHalfHeight);
}

// ---- heading tape ----
constexpr double kTapeReachDeg = 45;
constexpr double kTapePxPerDeg = 1.3;
constexpr double kTapeHalfWidth = kTapeReachDeg * kTapePxPerDeg + 8;  // room for whole labels
constexpr double kTapeTop = 91;
constexpr double kTapeHeight = 21;
constexpr const char* kTapeLabels[] = {"N", "3",  "6",  "E", "12", "15",
                                       "S", "21", "24", "W", "30", "33"};

void DrawTapeMarks(EadiPicture& picture, double heading) {
    constexpr CanvasFont kFont{"Arial", 10, true};
    const int first = static_cast<int>(std::ceil((heading - kTapeReachDeg) / 10));
    const int last = static_cast<int>(std::floor((heading + kTapeReachDeg) / 10));
    for (int tick = first; tick <= last; ++tick) {
        const double x = (tick * 10 - heading) * kTapePxPerDeg;
        const bool labelled = tick % 3 == 0;
        picture.canvas.DrawLine({colour::White, 1.2}, x, kTapeTop, x,
                                kTapeTop + (labelled ? 7 : 5));
        if (labelled) {
            const auto label = static_cast<std::size_t>((tick / 3 + 12) % 12);
            picture.surface.TextCentred(kTapeLabels[label], kFont, colour::White, x, kTapeTop + 8);
        }
    }
}

// Hosts differ: the value is the selected airspeed, or 1 while the airspeed hold is on, and then
// the hold's target is what is selected.
double SelectedAirspeedKt() {
    constexpr double kHoldOn = 1;
    return ShownAircraft().apSpeed115 == kHoldOn ? ShownAircraft().apAirspeedTargetKt
                                                 : ShownAircraft().apSpeed115;
}

}  // namespace

void DrawHeadingTape(EadiPicture& picture) {
    if (settings.EADIHdgTape != 1) {
        return;
    }
    Canvas& canvas = picture.canvas;
    if (!std::isfinite(ShownAircraft().headingMag)) {
        DrawFlag(picture.surface, "HDG", colour::Red, 0, kTapeTop + kTapeHeight / 2);
        return;
    }
    canvas.ClipRectangle(-kTapeHalfWidth, kTapeTop - 2, 2 * kTapeHalfWidth, kTapeHeight + 2);
    canvas.EndClip();
    canvas.FillRectangle(colour::Black, -kTapeHalfWidth, kTapeTop, 2 * kTapeHalfWidth, kTapeHeight);
    canvas.DrawLine({colour::White, 1.2}, -kTapeHalfWidth, kTapeTop, kTapeHalfWidth, kTapeTop);
    DrawTapeMarks(picture, PositiveModulo(ShownAircraft().headingMag, 360.0));
    constexpr std::array<CanvasPoint, 3> kIndex{
        {{-5, kTapeTop - 2}, {5, kTapeTop - 2}, {0, kTapeTop + 6}}};
    canvas.FillPolygon(colour::Yellow, kIndex);
}

void DrawLocalizer(EadiPicture& picture) {
    if ((ReadNavFlagWord() & kNavFlagLocalizer) == 0) {
        return;
    }
    constexpr double kReachPx = kFullCourseUnits * kEadiPxPerCourseUnit;
    const bool valid = std::isfinite(ShownAircraft().nav1CdiNeedle);
    EadiText(picture, "LOC", {"Arial", 9, true}, valid ? colour::Green : colour::Red, -97, 62);
    DrawScaleDots(picture.canvas, 0, kLocalizerY, kReachPx, 0);
    if (valid) {
        DrawScaleDiamond(
            picture.canvas, colour::Magenta,
            std::clamp(ShownAircraft().nav1CdiNeedle * kEadiPxPerCourseUnit, -kReachPx, kReachPx),
            kLocalizerY);
    }
}

void DrawGlideslope(EadiPicture& picture) {
    if ((ReadNavFlagWord() & kNavFlagGlideslope) == 0) {
        return;
    }
    constexpr double kReachPx = kFullGlideUnits * kPxPerGlideUnit;
    DrawUprightGround(picture, kGlideslopeX);
    DrawScaleDots(picture.canvas, kGlideslopeX, kUprightCentreY, 0, kReachPx);
    if (std::isfinite(ShownAircraft().nav1GlideslopeNeedle)) {
        const double offset =
            std::clamp(ShownAircraft().nav1GlideslopeNeedle * kPxPerGlideUnit, -kReachPx, kReachPx);
        DrawScaleDiamond(picture.canvas, colour::Magenta, kGlideslopeX, kUprightCentreY + offset);
    } else {
        DrawFlag(picture.surface, "GS", colour::Red, kGlideslopeX, kUprightCentreY);
    }
}

void DrawSpeedDeviation(EadiPicture& picture) {
    constexpr double kLeastKt = 40;
    constexpr int kReachKt = 13;
    constexpr double kPxPerKt = 4;
    const double selected = SelectedAirspeedKt();
    const double indicated = ShownAircraft().indicatedAirspeedKt;
    const double slowKt = std::trunc(selected - indicated);
    if (std::isnan(selected + indicated)) {
        DrawFlag(picture.surface, "IAS", colour::Red, kSpeedX, kUprightCentreY);
        return;
    }
    if (!(selected > kLeastKt && indicated > kLeastKt && std::abs(slowKt) <= kReachKt)) {
        return;
    }
    constexpr CanvasFont kFont{"Arial", 11, true};
    constexpr double kReachPx = kReachKt * kPxPerKt;
    DrawUprightGround(picture, kSpeedX);
    DrawScaleDots(picture.canvas, kSpeedX, kUprightCentreY, 0, kReachPx);
    picture.surface.TextCentred("F", kFont, colour::White, kSpeedX,
                                kUprightCentreY - kReachPx - 16);
    picture.surface.TextCentred("S", kFont, colour::White, kSpeedX, kUprightCentreY + kReachPx + 4);
    DrawScaleDiamond(picture.canvas, colour::Green, kSpeedX, kUprightCentreY + slowKt * kPxPerKt);
}

}  // namespace avq1
