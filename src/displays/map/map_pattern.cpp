// The traffic pattern of the chosen runway: extended centreline, approach fan, circuit, altitudes.
#include <cmath>
#include <cstdint>

#include "base/text.h"
#include "displays/map/map_layers.h"
#include "drawing/fixed_text.h"
#include "drawing/palette.h"
#include "flightplan/plan_airports.h"
#include "geometry/geometry.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr double kApproachPointNm = 14;
constexpr double kCentrelineNm = 60;
constexpr double kFanNm = 15;
constexpr double kFanDeg = 30;
constexpr double kUpwindNm = 3;
constexpr double kCrosswindNm = 5;
constexpr double kDownwindNm = 8;
constexpr double kLineWidthPx = 2;
constexpr double kLabelFontPx = 12;
constexpr double kLabelDownPx = 7;
constexpr double kLabelsWithinNm = 15;
constexpr int kApproachPointFt = 3000;
constexpr int kDownwindFt = 1500;

const PlanRunway* PatternRunway() {
    if (planAirports.patternRunwayOffset == kNoPatternRunway) {
        return nullptr;
    }
    const std::int64_t index =
        std::int64_t{planAirports.patternRunwayOffset} + std::int64_t{planAirports.selectedRunway};
    return index >= 0 && index < static_cast<std::int64_t>(planAirports.runways.size())
               ? &planAirports.runways[static_cast<std::size_t>(index)]
               : nullptr;
}

// The point from another on a magnetic bearing.
LatLon Onward(const LatLon& from, double bearingMag, double distanceNm) {
    LatLon point;
    PointAtDistance(from.latitude, from.longitude,
                    PositiveModulo(bearingMag + aircraft.magneticVariation, 360.0), distanceNm,
                    point.latitude, point.longitude);
    return point;
}

struct Pattern {
    LatLon threshold;
    LatLon approachPoint;
    LatLon centrelineEnd;
    LatLon fanEnds[2];
    LatLon upwindEnd;
    LatLon downwindStart;
    LatLon downwindEnd;
    LatLon baseEnd;
};

Pattern PatternOf(const PlanRunway& runway) {
    const double outbound = runway.field8 + 180.0;
    const double quarterTurn = runway.rightPattern == 1 ? 90.0 : -90.0;
    Pattern pattern;
    pattern.threshold = {runway.latitude, runway.longitude};
    pattern.approachPoint = Onward(pattern.threshold, outbound, kApproachPointNm);
    pattern.centrelineEnd = Onward(pattern.threshold, outbound, kCentrelineNm);
    pattern.fanEnds[0] = Onward(pattern.approachPoint, outbound - kFanDeg, kFanNm);
    pattern.fanEnds[1] = Onward(pattern.approachPoint, outbound + kFanDeg, kFanNm);
    pattern.upwindEnd = Onward(pattern.threshold, runway.heading, kUpwindNm);
    pattern.downwindStart = Onward(pattern.upwindEnd, runway.heading + quarterTurn, kCrosswindNm);
    pattern.downwindEnd = Onward(pattern.downwindStart, runway.heading + 180.0, kDownwindNm);
    pattern.baseEnd =
        Onward(pattern.downwindEnd, runway.heading + 180.0 + quarterTurn, kCrosswindNm);
    return pattern;
}

void DrawAltitude(const MapFrame& frame, const CanvasPoint& at, std::int64_t feet,
                  double sizeScale) {
    const CanvasFont font{"Arial", kLabelFontPx * sizeScale};
    const FixedText text("%lld00", static_cast<long long>(feet / 100));
    const double top = at.y + kLabelDownPx * sizeScale;
    if (!NearMap(frame, at)) {
        return;
    }
    const CanvasSize size = frame.surface.canvas().MeasureText(text, font);
    TakeFixedPlace(frame, {at.x, top, size.width, size.height});
    frame.surface.Text(text, font, colour::PaleGreen, at.x, top);
}

}  // namespace

void DrawRunwayPattern(const MapFrame& frame, const PatternScale& scale) {
    const PlanRunway* const runway = PatternRunway();
    const double radiusPx = std::trunc(scale.radiusPx * scale.sizeScale);
    MapView view = frame.view;
    view.pxPerNm = radiusPx / frame.rangeNm;
    if (runway == nullptr || !IsUsable(view)) {
        return;
    }
    const Pattern pattern = PatternOf(*runway);
    const auto place = [&](const LatLon& point) {
        return PlaceOnMap(view, point.latitude, point.longitude);
    };
    const CanvasPoint approachPoint = place(pattern.approachPoint);
    const CanvasPoint downwindStart = place(pattern.downwindStart);
    const CanvasPoint downwindEnd = place(pattern.downwindEnd);
    const CanvasPoint lines[] = {place(pattern.threshold),
                                 place(pattern.centrelineEnd),
                                 approachPoint,
                                 place(pattern.fanEnds[0]),
                                 approachPoint,
                                 place(pattern.fanEnds[1]),
                                 place(pattern.upwindEnd),
                                 downwindStart,
                                 downwindStart,
                                 downwindEnd,
                                 downwindEnd,
                                 place(pattern.baseEnd)};
    frame.surface.canvas().DrawSegments({colour::PaleGreen, kLineWidthPx * scale.lineScale}, lines);
    if (settings.DispAppPtrnAlts == 1 && frame.rangeNm <= kLabelsWithinNm) {
        const std::int64_t elevationFt = ToInteger(planAirports.destinationElevationText);
        DrawAltitude(frame, approachPoint, elevationFt + kApproachPointFt, scale.sizeScale);
        DrawAltitude(frame, downwindStart, elevationFt + kDownwindFt, scale.sizeScale);
    }
}

}  // namespace avq1
