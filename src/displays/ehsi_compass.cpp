// The EHSI's compass: rose, heading bug, course and bearing pointers, own aircraft.
//
// The rose is magnetic with the heading up; pointers turn about the compass centre. Anything whose
// direction is not finite is not drawn.
#include <algorithm>
#include <array>
#include <cmath>

#include "displays/ehsi_picture.h"
#include "drawing/palette.h"
#include "drawing/symbols.h"
#include "geometry/geometry.h"
#include "guidance/guidance_state.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "simlink/sim_variables.h"

namespace avq1 {
namespace {

constexpr int kTickStepDeg = 5;
constexpr int kTickCount = 360 / kTickStepDeg;
constexpr const char* kRoseLabels[] = {"N", "3",  "6",  "E", "12", "15",
                                       "S", "21", "24", "W", "30", "33"};
constexpr double kLongTickPx = 9;
constexpr double kShortTickPx = 5;
constexpr double kLabelTopPx = 10;   // from the ring down to a label's top
constexpr double kLabelBoxPx = 17;   // square around a label, whatever way it is turned
constexpr double kLabelEdgeDeg = 4;  // a label nearer to the arc's end is left out

constexpr double kDotSpacingPx = 20;
constexpr double kFullScalePx = 2 * kDotSpacingPx;
constexpr double kFullScaleNeedle = 127;
constexpr double kFullScaleCrossTrackNm = 5.0;
constexpr double kPointerInnerPx = 50;  // pointers leave the middle free
constexpr double kRosePointerPx = 22;   // a course pointer that only marks the rose

// Degrees from the heading, -180 to 180.
double RelativeToHeading(double directionMag) {
    return PositiveModulo(directionMag - aircraft.headingMag + 180.0, 360.0) - 180.0;
}

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

bool ShowsLabel(const EhsiPicture& picture, int label) {
    return picture.fullCompass || std::abs(RelativeToHeading(label * 30.0)) <=
                                      picture.compass.halfAngleDeg - kLabelEdgeDeg;
}

// Ticks in the rose's own frame, north up, around (0, 0).
void DrawTicks(EhsiPicture& picture) {
    std::array<CanvasPoint, 2 * kTickCount> segments;
    std::size_t used = 0;
    for (int i = 0; i < kTickCount; ++i) {
        if (!picture.fullCompass &&
            std::abs(RelativeToHeading(i * kTickStepDeg)) > picture.compass.halfAngleDeg) {
            continue;
        }
        const Direction& direction = TickDirections()[static_cast<std::size_t>(i)];
        const double outer = picture.compass.radius;
        const double inner = outer - (i % 2 == 0 ? kLongTickPx : kShortTickPx);
        segments[used++] = {outer * direction.sine, -outer * direction.cosine};
        segments[used++] = {inner * direction.sine, -inner * direction.cosine};
    }
    picture.canvas.DrawSegments({colour::White, 1.2}, std::span(segments).first(used));
}

void DrawLabels(EhsiPicture& picture) {
    const CanvasFont font{"Arial", picture.compass.labelFontPx, true};
    for (int label = 0; label < 12; ++label) {
        if (ShowsLabel(picture, label)) {
            picture.surface.Turned(0, 0, label * 30.0, [&] {
                picture.surface.TextCentred(kRoseLabels[label], font, colour::White, 0,
                                            kLabelTopPx - picture.compass.radius);
            });
        }
    }
}

// A single-line pointer: arrow head towards the source, tail behind.
void DrawSinglePointer(Canvas& canvas, double tip, std::uint32_t argb) {
    const std::array<CanvasPoint, 8> lines{{{0, -kPointerInnerPx},
                                            {0, -tip},
                                            {-5, -tip + 9},
                                            {0, -tip},
                                            {5, -tip + 9},
                                            {0, -tip},
                                            {0, kPointerInnerPx},
                                            {0, tip}}};
    canvas.DrawSegments({argb, 1.5}, lines);
}

// A double-line pointer with a hollow head.
void DrawDoublePointer(Canvas& canvas, double tip, std::uint32_t argb) {
    const std::array<CanvasPoint, 7> head{{{-3, -kPointerInnerPx},
                                           {-3, -tip + 9},
                                           {-7, -tip + 9},
                                           {0, -tip},
                                           {7, -tip + 9},
                                           {3, -tip + 9},
                                           {3, -kPointerInnerPx}}};
    const std::array<CanvasPoint, 4> tail{
        {{-3, kPointerInnerPx}, {-3, tip - 3}, {3, tip - 3}, {3, kPointerInnerPx}}};
    canvas.DrawPolyline({argb, 1.3}, head, false);
    canvas.DrawPolyline({argb, 1.3}, tail, false);
}

struct Needle {
    bool shown = false;
    double relativeDeg = 0;
};

Needle NeedleOf(const EhsiPicture& picture, BearingSource source, bool first) {
    switch (source) {
        case BearingSource::Off:
            return {};
        case BearingSource::Vor:
            return first ? Needle{picture.nav1Signal && !picture.localizer,
                                  aircraft.nav1RelativeBearing}
                         : Needle{picture.nav2Signal, aircraft.nav2RelativeBearing};
        case BearingSource::Fms:
            return {picture.hasWaypoint, RelativeToHeading(guidance.bearingToWaypointMag)};
        case BearingSource::Adf:
            return {aircraft.adfActive >= 1, aircraft.adfRelativeBearing};
    }
    return {};
}

// What the course pointer shows: a course, and where the selected track lies from the aircraft.
struct CourseNeedle {
    bool pointed = false;         // there is a course
    bool deviationShown = false;  // and a deviation from it
    bool hasToFrom = false;
    double courseMag = 0;
    double deviation = 0;   // -1 to 1 at full scale, positive with the track to the right
    double bearingMag = 0;  // to the station or waypoint
    std::uint32_t argb = colour::Green;
};

CourseNeedle CourseOfNavReceiver(const EhsiPicture& picture) {
    CourseNeedle needle;
    needle.pointed = true;
    needle.deviationShown = picture.nav1Signal && picture.deviationValid;
    needle.hasToFrom = needle.deviationShown && !picture.localizer;
    needle.courseMag = aircraft.nav1Course;
    needle.deviation = aircraft.nav1CdiNeedle / kFullScaleNeedle;
    needle.bearingMag = aircraft.headingMag + aircraft.nav1RelativeBearing;
    return needle;
}

CourseNeedle CourseOfFlightManagement(const EhsiPicture& picture) {
    constexpr std::int32_t kRightOfTrack = 1;
    CourseNeedle needle;
    needle.pointed = picture.hasWaypoint;
    needle.deviationShown = picture.hasWaypoint && guidance.crossTrackNm != kNoCrossTrack;
    needle.hasToFrom = needle.deviationShown;
    needle.courseMag = guidance.desiredTrackMag;
    needle.deviation = guidance.crossTrackNm / kFullScaleCrossTrackNm *
                       (guidance.crossTrackSide == kRightOfTrack ? -1 : 1);
    needle.bearingMag = guidance.bearingToWaypointMag;
    needle.argb = colour::Magenta;
    return needle;
}

void DrawToFrom(Canvas& canvas, const CourseNeedle& needle) {
    const double fromCourse =
        std::abs(PositiveModulo(needle.bearingMag - needle.courseMag + 180.0, 360.0) - 180.0);
    const double side = fromCourse <= 90 ? -1 : 1;  // -1: ahead along the course
    const std::array<CanvasPoint, 3> mark{{{0, side * 36}, {-7, side * 25}, {7, side * 25}}};
    canvas.FillPolygon(colour::White, mark);
}

// `turn` is the course from straight up. Dots below the arc's picture are left out.
void DrawDeviation(EhsiPicture& picture, const CourseNeedle& needle, double turn) {
    constexpr double kDotRadius = 2.5;
    Canvas& canvas = picture.canvas;
    for (const double dot : {-2.0, -1.0, 1.0, 2.0}) {
        const double x = dot * kDotSpacingPx;
        const double below = x * std::sin(turn * kDegToRad) + kDotRadius;
        if (picture.fullCompass || picture.compass.centre.y + below < kArcBottom) {
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

void ClaimRoseLabels(EhsiPicture& picture) {
    const EhsiCompass& compass = picture.compass;
    const double middle = compass.radius - kLabelTopPx - compass.labelFontPx * 0.57;
    for (int label = 0; label < 12; ++label) {
        if (ShowsLabel(picture, label)) {
            const double turn = RelativeToHeading(label * 30.0) * kDegToRad;
            picture.mapTexts.Claim({compass.centre.x + middle * std::sin(turn) - kLabelBoxPx / 2,
                                    compass.centre.y - middle * std::cos(turn) - kLabelBoxPx / 2,
                                    kLabelBoxPx, kLabelBoxPx});
        }
    }
}

void DrawCompassRose(EhsiPicture& picture) {
    const EhsiCompass& compass = picture.compass;
    // inside the clip by half the pen's width
    const double ring = compass.radius - 0.6;
    picture.canvas.DrawArc({colour::White, 1.2}, {compass.centre.x - ring, compass.centre.y - ring},
                           {2 * ring, 2 * ring}, -90 - compass.halfAngleDeg,
                           2 * compass.halfAngleDeg);
    picture.surface.Turned(compass.centre.x, compass.centre.y, -aircraft.headingMag, [&] {
        DrawTicks(picture);
        DrawLabels(picture);
    });
}

void DrawHeadingBug(EhsiPicture& picture) {
    const EhsiCompass& compass = picture.compass;
    double relative = RelativeToHeading(aircraft.apHeadingBug);
    if (!picture.fullCompass && settings.EhsiStaticHdgPointer == 1) {
        // a heading beyond the arc keeps its pointer at the arc's end
        relative = std::clamp(relative, -compass.halfAngleDeg, compass.halfAngleDeg);
    }
    if (!picture.fullCompass && std::abs(relative) > compass.halfAngleDeg) {
        return;
    }
    const double r = compass.radius;
    const std::array<CanvasPoint, 7> bug{
        {{-7, -r}, {-7, -r + 6}, {-3, -r + 6}, {0, -r + 1}, {3, -r + 6}, {7, -r + 6}, {7, -r}}};
    picture.surface.Turned(compass.centre.x, compass.centre.y, relative,
                           [&] { picture.canvas.FillPolygon(colour::Cyan, bug); });
}

void DrawBearingPointers(EhsiPicture& picture) {
    const EhsiCompass& compass = picture.compass;
    const double tip = compass.radius - 4;
    const Needle first = NeedleOf(picture, ehsi.bearingPointer1, true);
    const Needle second = NeedleOf(picture, ehsi.bearingPointer2, false);
    if (first.shown) {
        picture.surface.Turned(compass.centre.x, compass.centre.y, first.relativeDeg,
                               [&] { DrawSinglePointer(picture.canvas, tip, colour::Blue); });
    }
    if (second.shown) {
        picture.surface.Turned(compass.centre.x, compass.centre.y, second.relativeDeg,
                               [&] { DrawDoublePointer(picture.canvas, tip, colour::PaleGreen); });
    }
}

void DrawCoursePointer(EhsiPicture& picture) {
    const EhsiCompass& compass = picture.compass;
    const CourseNeedle needle =
        FromFlightManagement() ? CourseOfFlightManagement(picture) : CourseOfNavReceiver(picture);
    if (!needle.pointed) {
        return;
    }
    const double turn = RelativeToHeading(needle.courseMag);
    picture.surface.Turned(compass.centre.x, compass.centre.y, turn, [&] {
        const double tip = compass.radius - 2;
        if (picture.mapMode && FromFlightManagement()) {
            // the drawn route shows course and deviation: the pointer keeps to the rose
            DrawCourseLine(picture.canvas, tip - kRosePointerPx, tip, needle.argb);
        } else {
            DrawCourseLine(picture.canvas, kPointerInnerPx, tip, needle.argb);
            DrawDeviation(picture, needle, turn);
        }
    });
}

void DrawOwnAircraft(EhsiPicture& picture) {
    const EhsiCompass& compass = picture.compass;
    const double top = compass.centre.y - compass.radius;
    picture.canvas.DrawLine({colour::White, 2.0}, compass.centre.x, top - 3, compass.centre.x,
                            top + kLongTickPx);
    DrawAircraftSymbol(picture.surface, compass.centre.x, compass.centre.y, colour::White);
}

}  // namespace avq1
