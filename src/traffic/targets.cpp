#include "traffic/targets.h"

#include <cmath>

#include "drawing/fixed_text.h"
#include "drawing/palette.h"
#include "drawing/symbols.h"
#include "geometry/geometry.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

struct ThreatRow {
    char threatCode;
    SymbolCode onMap;
    SymbolCode onTrafficGauge;
    SymbolStyle style;
};

// The most threatening last, on top of the others.
constexpr ThreatRow kThreats[] = {
    {'O', SymbolCode::OtherTraffic, SymbolCode::LargeOtherTraffic, SymbolStyle::Own},
    {'P', SymbolCode::ProximateTraffic, SymbolCode::LargeProximateTraffic, SymbolStyle::Own},
    {'T', SymbolCode::TrafficAdvisory, SymbolCode::LargeTrafficAdvisory, SymbolStyle::Alert},
    {'R', SymbolCode::ResolutionAdvisory, SymbolCode::LargeResolutionAdvisory, SymbolStyle::Alert},
};

// Right of the symbol and its trend arrow, level with it; on a ground of its own, since a target
// flies over whatever the map shows.
void DrawAltitude(Surface& surface, const CanvasPoint& at, double hundreds, std::uint32_t argb,
                  TrafficLayout layout) {
    const bool onMap = layout == TrafficLayout::Map;
    const CanvasFont font{"Arial", onMap ? 9.0 : 11.0, true};
    const FixedText text("%+03.0f", std::nearbyint(hundreds) + 0.0);  // never "-00"
    const double left = at.x + (onMap ? 13 : 16);
    const CanvasSize size = surface.canvas().MeasureText(text, font);
    const double top = at.y - size.height / 2;
    surface.canvas().FillRectangle(colour::Black, left, top + 1, size.width, size.height - 2);
    surface.Text(text, font, argb, left, top);
}

void DrawOneTarget(Surface& surface, const TrafficView& view, TrafficLayout layout,
                   const TrafficTarget& target, const ThreatRow& threat) {
    Symbol symbol{layout == TrafficLayout::Map ? threat.onMap : threat.onTrafficGauge};
    symbol.variant = target.trendCode == '^'   ? kClimbing
                     : target.trendCode == 'v' ? kDescending
                                               : 0;
    symbol.style = threat.style;
    int x = 0;
    int y = 0;
    PolarToScreen(view.upTrue.value_or(ShownAircraft().trueHeading), target.bearingTrue,
                  view.centreX, view.centreY, target.rangeNm * (view.radiusPx / view.rangeNm), x,
                  y);
    const CanvasPoint at{static_cast<double>(x), static_cast<double>(y)};
    DrawSymbol(surface, at.x, at.y, symbol);
    DrawAltitude(surface, at, target.relativeAltitudeHundreds, SymbolColour(symbol), layout);
}

bool IsShown(const TrafficTarget& target, double rangeNm) {
    constexpr double kFarRanges = 10;  // certainly off the display
    const double bandHundreds = settings.TcasVertRange;
    // false also for what is no number
    return target.relativeAltitudeHundreds > -bandHundreds &&
           target.relativeAltitudeHundreds <= bandHundreds && target.rangeNm >= 0 &&
           target.rangeNm < kFarRanges * rangeNm &&
           std::isfinite(target.bearingTrue + ShownAircraft().trueHeading);
}

}  // namespace

void DrawTraffic(Surface& surface, const TrafficView& view, TrafficLayout layout) {
    RefreshTargets();
    for (const ThreatRow& threat : kThreats) {
        for (std::int32_t i = 0; i < traffic.count; ++i) {
            const TrafficTarget& target = traffic.items[static_cast<std::size_t>(i)];
            if (target.threatCode == threat.threatCode && IsShown(target, view.rangeNm)) {
                DrawOneTarget(surface, view, layout, target, threat);
            }
        }
    }
}

}  // namespace avq1
