#include "displays/map/map_compass.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "drawing/palette.h"
#include "geometry/geometry.h"
#include "guidance/guidance_state.h"
#include "simlink/aircraft_state.h"
#include "simlink/sim_variables.h"

namespace avq1 {
namespace {

constexpr int kTickStepDeg = 5;
constexpr int kTickCount = 360 / kTickStepDeg;
constexpr const char* kRoseLabels[] = {"N", "3",  "6",  "E", "12", "15",
                                       "S", "21", "24", "W", "30", "33"};
constexpr double kShortTickPx = 5;
constexpr double kLabelTopPx = 10;   // from the ring down to a label's top
constexpr double kLabelEdgeDeg = 4;  // a label nearer to the arc's end is left out

constexpr double kDotSpacingPx = 20;
constexpr double kFullScalePx = 2 * kDotSpacingPx;
constexpr double kFullScaleNeedle = 127;
constexpr double kFullScaleCrossTrackNm = 5.0;
constexpr double kPointerInnerPx = 50;  // pointers leave the middle free
constexpr double kRosePointerPx = 22;   // a course pointer that only marks the rose

struct Direction {
    double sine;
    double cosine;
};

const std::array<Direction, kTickCount>& TickDirections() {
    static const std::array<Direction, kTickCount> directions = [] {
        std::array<Direction, kTickCount> made;
        for (int i = 0; i < kTickCount; ++i) {
            const double angle = i * kTickStepDeg * kDegToRad;
            made[static_cast<std::size_t>(i)] = {std::sin(angle), std::cos(angle)};
        }
        return made;
    }();
    return directions;
}

bool ShowsLabel(const MapCompass& compass, int label) {
    return compass.IsFull() ||
           std::abs(compass.FromUp(label * 30.0)) <= compass.halfAngleDeg - kLabelEdgeDeg;
}

// Ticks in the rose's own frame, north up, around (0, 0).
void DrawTicks(Surface& surface, const MapCompass& compass) {
    std::array<CanvasPoint, 2 * kTickCount> segments;
    std::size_t used = 0;
    for (int i = 0; i < kTickCount; ++i) {
        if (!compass.IsFull() &&
            std::abs(compass.FromUp(i * kTickStepDeg)) > compass.halfAngleDeg) {
            continue;
        }
        const Direction& direction = TickDirections()[static_cast<std::size_t>(i)];
        const double outer = compass.radius;
        const double inner = outer - (i % 2 == 0 ? kCompassLongTickPx : kShortTickPx);
        segments[used++] = {outer * direction.sine, -outer * direction.cosine};
        segments[used++] = {inner * direction.sine, -inner * direction.cosine};
    }
    surface.canvas().DrawSegments({colour::White, 1.2}, std::span(segments).first(used));
}

void DrawLabels(Surface& surface, const MapCompass& compass) {
    const CanvasFont font{"Arial", compass.labelFontPx, true};
    for (int label = 0; label < 12; ++label) {
        if (ShowsLabel(compass, label)) {
            surface.Turned(0, 0, label * 30.0, [&] {
                surface.TextCentred(kRoseLabels[label], font, colour::White, 0,
                                    kLabelTopPx - compass.radius);
            });
        }
    }
}

void DrawToFrom(Canvas& canvas, const CourseNeedle& needle) {
    const double side = needle.PointsAway() ? 1 : -1;  // -1: ahead along the course
    const std::array<CanvasPoint, 3> mark{{{0, side * 36}, {-7, side * 25}, {7, side * 25}}};
    canvas.FillPolygon(colour::White, mark);
}

// `turn` is the course from straight up. Dots below the arc's picture are left out.
void DrawDeviation(Surface& surface, const MapCompass& compass, const CourseNeedle& needle,
                   double turn) {
    constexpr double kDotRadius = 2.5;
    Canvas& canvas = surface.canvas();
    for (const double dot : {-2.0, -1.0, 1.0, 2.0}) {
        const double x = dot * kDotSpacingPx;
        const double below = x * std::sin(turn * kDegToRad) + kDotRadius;
        if (compass.IsFull() || compass.centre.y + below < compass.bottom) {
            canvas.DrawEllipse({colour::White, 1.2}, x - kDotRadius, -kDotRadius, 2 * kDotRadius,
                               2 * kDotRadius);
        }
    }
    if (!needle.deviationShown || !std::isfinite(needle.deviation)) {
        return;
    }
    const double x = std::clamp(needle.deviation, -1.0, 1.0) * kFullScalePx;
    const double length = kPointerInnerPx - 5;
    canvas.DrawLine({needle.argb, 3.0}, x, -length, x, length);
    if (needle.hasToFrom && std::isfinite(needle.bearingMag)) {
        DrawToFrom(canvas, needle);
    }
}

// The course pointer from `inner` to the rose, on both sides.
void DrawCourseLine(Canvas& canvas, double inner, double tip, std::uint32_t argb) {
    canvas.DrawLine({argb, 3.0}, 0, -inner, 0, -tip + 10);
    canvas.DrawLine({argb, 3.0}, 0, inner, 0, tip);
    const std::array<CanvasPoint, 3> head{{{0, -tip}, {-6, -tip + 12}, {6, -tip + 12}}};
    canvas.FillPolygon(argb, head);
}

}  // namespace

double MapCompass::FromUp(double directionMag) const {
    return PositiveModulo(directionMag - upMag + 180.0, 360.0) - 180.0;
}

double MapCompass::InsideLabels() const {
    constexpr double kLineOfFont = 1.15;  // a label's height
    return radius - kLabelTopPx - kLineOfFont * labelFontPx;
}

bool CourseNeedle::PointsAway() const {
    return std::abs(PositiveModulo(bearingMag - courseMag + 180.0, 360.0) - 180.0) > 90;
}

bool PositionKnown() {
    const AircraftState& shown = ShownAircraft();
    return std::isfinite(shown.latitude + shown.longitude);
}

bool NavReceiverFailed(const ReceiverState& receivers) {
    const AircraftState& shown = ShownAircraft();
    return receivers.nav1Signal && !std::isfinite(shown.nav1Course + shown.nav1CdiNeedle);
}

ReceiverState ReadReceivers() {
    const auto flags = ReadNavFlagWord();
    return {Nav1HasSignal(), Nav2HasSignal(), (flags & kNavFlagLocalizer) != 0,
            HorizontalDeviationValid(), (flags & kNavFlagGlideslope) != 0};
}

CourseNeedle CourseOfNavReceiver(const ReceiverState& receivers) {
    const AircraftState& shown = ShownAircraft();
    CourseNeedle needle;
    needle.pointed = std::isfinite(shown.nav1Course);
    needle.deviationShown = receivers.nav1Signal && receivers.deviationValid;
    needle.hasToFrom = needle.deviationShown && !receivers.localizer;
    needle.courseMag = shown.nav1Course;
    needle.deviation = shown.nav1CdiNeedle / kFullScaleNeedle;
    needle.bearingMag = shown.headingMag + shown.nav1RelativeBearing;
    needle.argb = colour::Green;
    return needle;
}

CourseNeedle CourseOfFlightManagement() {
    CourseNeedle needle;
    needle.pointed = HasActiveWaypoint();
    needle.deviationShown =
        needle.pointed && guidance.crossTrackNm != kNoCrossTrack && PositionKnown();
    needle.hasToFrom = needle.deviationShown;
    needle.courseMag = guidance.desiredTrackMag;
    needle.deviation = guidance.crossTrackNm / kFullScaleCrossTrackNm *
                       (guidance.crossTrackSide == Side::Right ? -1 : 1);
    needle.bearingMag = guidance.bearingToWaypointMag;
    needle.argb = colour::Magenta;
    return needle;
}

TextBoxes PlacesOfRoseLabels(const MapCompass& compass) {
    constexpr double kBoxPx = 17;  // square around a label, whatever way it is turned
    TextBoxes places;
    const double middle = compass.radius - kLabelTopPx - compass.labelFontPx * 0.57;
    for (int label = 0; label < 12; ++label) {
        if (ShowsLabel(compass, label)) {
            const double turn = compass.FromUp(label * 30.0) * kDegToRad;
            places.Take({compass.centre.x + middle * std::sin(turn) - kBoxPx / 2,
                         compass.centre.y - middle * std::cos(turn) - kBoxPx / 2, kBoxPx, kBoxPx});
        }
    }
    return places;
}

void DrawRose(Surface& surface, const MapCompass& compass) {
    // inside the clip by half the pen's width
    const double ring = compass.radius - 0.6;
    surface.canvas().DrawArc(
        {colour::White, 1.2}, {compass.centre.x - ring, compass.centre.y - ring},
        {2 * ring, 2 * ring}, -90 - compass.halfAngleDeg, 2 * compass.halfAngleDeg);
    surface.Turned(compass.centre.x, compass.centre.y, -compass.upMag, [&] {
        DrawTicks(surface, compass);
        DrawLabels(surface, compass);
    });
}

void DrawLubberLine(Surface& surface, const MapCompass& compass) {
    const double top = compass.centre.y - compass.radius;
    surface.canvas().DrawLine({colour::White, 2.0}, compass.centre.x, top - 3, compass.centre.x,
                              top + kCompassLongTickPx);
}

void DrawBug(Surface& surface, const MapCompass& compass, double directionMag, bool stops) {
    double relative = compass.FromUp(directionMag);
    if (!compass.IsFull() && stops) {
        relative = std::clamp(relative, -compass.halfAngleDeg, compass.halfAngleDeg);
    }
    if (!compass.IsFull() && std::abs(relative) > compass.halfAngleDeg) {
        return;
    }
    const double r = compass.radius;
    const std::array<CanvasPoint, 7> bug{
        {{-7, -r}, {-7, -r + 6}, {-3, -r + 6}, {0, -r + 1}, {3, -r + 6}, {7, -r + 6}, {7, -r}}};
    surface.Turned(compass.centre.x, compass.centre.y, relative,
                   [&] { surface.canvas().FillPolygon(colour::Cyan, bug); });
}

void DrawCourse(Surface& surface, const MapCompass& compass, const CourseNeedle& needle,
                CoursePointerStyle style) {
    if (!needle.pointed) {
        return;
    }
    const double turn = compass.FromUp(needle.courseMag);
    surface.Turned(compass.centre.x, compass.centre.y, turn, [&] {
        const double tip = compass.radius - 2;
        if (style == CoursePointerStyle::OnRoseOnly) {
            DrawCourseLine(surface.canvas(), tip - kRosePointerPx, tip, needle.argb);
        } else {
            DrawCourseLine(surface.canvas(), kPointerInnerPx, tip, needle.argb);
            DrawDeviation(surface, compass, needle, turn);
        }
    });
}

void DrawSinglePointer(Surface& surface, const MapCompass& compass, double turn,
                       std::uint32_t argb) {
    const double tip = compass.radius - 4;
    const std::array<CanvasPoint, 8> lines{{{0, -kPointerInnerPx},
                                            {0, -tip},
                                            {-5, -tip + 9},
                                            {0, -tip},
                                            {5, -tip + 9},
                                            {0, -tip},
                                            {0, kPointerInnerPx},
                                            {0, tip}}};
    surface.Turned(compass.centre.x, compass.centre.y, turn, [&] {
        surface.canvas().DrawSegments({argb, 1.5}, lines);
    });
}

void DrawDoublePointer(Surface& surface, const MapCompass& compass, double turn,
                       std::uint32_t argb) {
    const double tip = compass.radius - 4;
    const std::array<CanvasPoint, 7> head{{{-3, -kPointerInnerPx},
                                           {-3, -tip + 9},
                                           {-7, -tip + 9},
                                           {0, -tip},
                                           {7, -tip + 9},
                                           {3, -tip + 9},
                                           {3, -kPointerInnerPx}}};
    const std::array<CanvasPoint, 4> tail{
        {{-3, kPointerInnerPx}, {-3, tip - 3}, {3, tip - 3}, {3, kPointerInnerPx}}};
    surface.Turned(compass.centre.x, compass.centre.y, turn, [&] {
        surface.canvas().DrawPolyline({argb, 1.3}, head, false);
        surface.canvas().DrawPolyline({argb, 1.3}, tail, false);
    });
}

}  // namespace avq1
