#include "drawing/symbols.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <span>

#include "drawing/palette.h"

namespace avq1 {
namespace {

constexpr double kLineWidthPx = 1.2;

// A symbol being drawn: around (0, 0), in units of design pixels times its size factors.
struct Pen {
    Surface& surface;
    Canvas& canvas;
    const Symbol& symbol;
    std::uint32_t argb;
};

void Outline(const Pen& pen, std::span<const CanvasPoint> corners) {
    if (pen.symbol.variant == 1) {
        pen.canvas.FillPolygon(pen.argb, corners);
    } else {
        pen.canvas.DrawPolyline({pen.argb, kLineWidthPx}, corners, true);
    }
}

void Circle(const Pen& pen, double radius) {
    pen.canvas.DrawEllipse({pen.argb, kLineWidthPx}, -radius, -radius, 2 * radius, 2 * radius);
}

void Lines(const Pen& pen, double widthPx, std::span<const CanvasPoint> ends) {
    pen.canvas.DrawSegments({pen.argb, widthPx}, ends);
}

void Label(const Pen& pen, const char* text) {
    constexpr double kLargePx = 9;
    constexpr double kSmallPx = 8;
    const double range = pen.symbol.rangeNm;
    const bool small = range == 0.5 || range == 2.5 || range == 12.5;
    pen.surface.Text(text, {"Arial", small ? kSmallPx : kLargePx}, pen.argb, 6, -5);
}

// ---- outlines of the records a map shows by the hundred ----
// One area is far cheaper to fill than a stroke is to draw: once around the outside and back along
// the inside.
template <std::size_t sides>
std::array<CanvasPoint, 2 * (sides + 1)> OutlineArea(double innerRadius, double firstCornerDeg) {
    constexpr double kDegToRad = std::numbers::pi / 180;
    constexpr double kSideDeg = 360.0 / sides;
    const double toCorner = 1 / std::cos(kSideDeg / 2 * kDegToRad);
    std::array<CanvasPoint, 2 * (sides + 1)> area;
    for (std::size_t i = 0; i <= sides; ++i) {
        const double turn = (firstCornerDeg + static_cast<double>(i) * kSideDeg) * kDegToRad;
        const auto corner = [&](double radius) {
            return CanvasPoint{radius * toCorner * std::sin(turn),
                               -radius * toCorner * std::cos(turn)};
        };
        area[i] = corner(innerRadius + kLineWidthPx / 2);
        area[area.size() - 1 - i] = corner(innerRadius - kLineWidthPx / 2);
    }
    return area;
}

void DrawOutline(const Pen& pen, std::span<const CanvasPoint> area) {
    const bool filled = pen.symbol.variant == 1;
    pen.canvas.FillPolygon(pen.argb, filled ? area.first(area.size() / 2) : area);
}

// A ring of dots around another dot.
void DrawNdb(const Pen& pen) {
    constexpr double kHalf = 0.75;
    static constexpr CanvasPoint kDots[] = {{0, 0},       {4.5, 0},    {3.2, 3.2},
                                            {0, 4.5},     {-3.2, 3.2}, {-4.5, 0},
                                            {-3.2, -3.2}, {0, -4.5},   {3.2, -3.2}};
    for (const CanvasPoint& dot : kDots) {
        pen.canvas.FillRectangle(pen.argb, dot.x - kHalf, dot.y - kHalf, 2 * kHalf, 2 * kHalf);
    }
}

void DrawStation(const Pen& pen) {
    static const auto hexagon = OutlineArea<6>(4.3, 30);
    if (pen.symbol.style == SymbolStyle::Ndb) {
        DrawNdb(pen);
    } else {
        DrawOutline(pen, hexagon);
    }
}

void DrawFix(const Pen& pen) {
    static const auto triangle = OutlineArea<3>(2.1, 0);
    DrawOutline(pen, triangle);
}

// A circle, round at three times the size, with the ends of a runway.
void DrawAirport(const Pen& pen) {
    static const auto circle = OutlineArea<16>(4, 0);
    static constexpr CanvasPoint kRunwayEnds[] = {{0, -6.8}, {0, -4}, {0, 4}, {0, 6.8}};
    DrawOutline(pen, circle);
    Lines(pen, kLineWidthPx, kRunwayEnds);
}

// ---- the other symbols ----
void DrawPlanAirport(const Pen& pen) {
    static constexpr CanvasPoint kRunway[] = {{-4.5, 4.5}, {4.5, -4.5}};
    Circle(pen, 5);
    Lines(pen, 2.0, kRunway);
}

void DrawOwnAircraft(const Pen& pen) {
    static constexpr CanvasPoint kTriangle[] = {{0, 0}, {7, 17}, {-7, 17}};
    pen.canvas.DrawPolyline({pen.argb, 1.6}, kTriangle, true);
}

void DrawOwnAircraftPlan(const Pen& pen) {
    static constexpr CanvasPoint kLines[] = {{0, -11}, {0, 12},  {-12, 0},
                                             {12, 0},  {-5, 10}, {5, 10}};
    Lines(pen, 2.0, kLines);
}

void DrawPlanWaypoint(const Pen& pen) {
    constexpr double kOuter = kWaypointStarRadius;
    constexpr double kInner = 1.4;
    static constexpr CanvasPoint kStar[] = {{0, -kOuter},     {kInner, -kInner}, {kOuter, 0},
                                            {kInner, kInner}, {0, kOuter},       {-kInner, kInner},
                                            {-kOuter, 0},     {-kInner, -kInner}};
    Outline(pen, kStar);
}

constexpr CanvasPoint kProfileMark[] = {{0, -4}, {4, 0}, {0, 4}, {-4, 0}};

void DrawTopOfClimb(const Pen& pen) {
    pen.canvas.FillPolygon(pen.argb, kProfileMark);
    Label(pen, "T/C");
}

void DrawTopOfDescent(const Pen& pen) {
    pen.canvas.FillPolygon(pen.argb, kProfileMark);
    Label(pen, "T/D");
}

void DrawHoldFix(const Pen& pen) {
    pen.canvas.DrawLine({pen.argb, kLineWidthPx}, -2, -3, 2, -3);
    pen.canvas.DrawLine({pen.argb, kLineWidthPx}, -2, 3, 2, 3);
    pen.canvas.DrawArc({pen.argb, kLineWidthPx}, {-5, -3}, {6, 6}, 90, 180);
    pen.canvas.DrawArc({pen.argb, kLineWidthPx}, {-1, -3}, {6, 6}, -90, 180);
    Label(pen, "HOLD");
}

void DrawPosition(const Pen& pen) {
    static constexpr CanvasPoint kCross[] = {{-4, -4}, {4, 4}, {-4, 4}, {4, -4}};
    Lines(pen, kLineWidthPx, kCross);
}

// ---- traffic ----
constexpr CanvasPoint kDiamond[] = {{0, -6}, {5, 0}, {0, 6}, {-5, 0}};

void DrawTrend(const Pen& pen) {
    const double up = pen.symbol.variant == kClimbing ? 1 : -1;
    if (pen.symbol.variant != kClimbing && pen.symbol.variant != kDescending) {
        return;
    }
    const CanvasPoint lines[] = {{9, 5 * up},  {9, -5 * up}, {9, -5 * up},
                                 {7, -2 * up}, {9, -5 * up}, {11, -2 * up}};
    Lines(pen, kLineWidthPx, lines);
}

void DrawOtherTraffic(const Pen& pen) {
    pen.canvas.DrawPolyline({pen.argb, kLineWidthPx}, kDiamond, true);
    DrawTrend(pen);
}

void DrawProximateTraffic(const Pen& pen) {
    pen.canvas.FillPolygon(pen.argb, kDiamond);
    DrawTrend(pen);
}

void DrawTrafficAdvisory(const Pen& pen) {
    pen.canvas.FillEllipse(pen.argb, -5, -5, 10, 10);
    DrawTrend(pen);
}

void DrawResolutionAdvisory(const Pen& pen) {
    pen.canvas.FillRectangle(pen.argb, -5, -5, 10, 10);
    DrawTrend(pen);
}

// ---- the table ----
struct SymbolRow {
    SymbolCode code;
    std::uint32_t own;
    std::uint32_t alert;
    double scale;
    void (*draw)(const Pen& pen);
};

constexpr double kLarge = 1.25;
constexpr SymbolRow kSymbols[] = {
    {SymbolCode::Ndb, colour::Blue, colour::Amber, 1, DrawNdb},
    {SymbolCode::Station, colour::Cyan, colour::Amber, 1, DrawStation},
    {SymbolCode::Fix, colour::Blue, colour::Amber, 1, DrawFix},
    {SymbolCode::Airport, colour::Cyan, colour::Amber, 1, DrawAirport},
    {SymbolCode::PlanAirport, colour::White, colour::Amber, 1, DrawPlanAirport},
    {SymbolCode::OwnAircraft, colour::White, colour::Amber, 1, DrawOwnAircraft},
    {SymbolCode::OwnAircraftPlan, colour::White, colour::Amber, 1, DrawOwnAircraftPlan},
    {SymbolCode::PlanWaypoint, colour::White, colour::Amber, 1, DrawPlanWaypoint},
    {SymbolCode::TopOfClimb, colour::Green, colour::Amber, 1, DrawTopOfClimb},
    {SymbolCode::TopOfDescent, colour::Green, colour::Amber, 1, DrawTopOfDescent},
    {SymbolCode::HoldFix, colour::White, colour::Amber, 1, DrawHoldFix},
    {SymbolCode::Position, colour::White, colour::Amber, 1, DrawPosition},
    {SymbolCode::OtherTraffic, colour::Cyan, colour::Amber, 1, DrawOtherTraffic},
    {SymbolCode::ProximateTraffic, colour::Cyan, colour::Amber, 1, DrawProximateTraffic},
    {SymbolCode::TrafficAdvisory, colour::Amber, colour::Amber, 1, DrawTrafficAdvisory},
    {SymbolCode::ResolutionAdvisory, colour::Red, colour::Red, 1, DrawResolutionAdvisory},
    {SymbolCode::LargeOtherTraffic, colour::Cyan, colour::Amber, kLarge, DrawOtherTraffic},
    {SymbolCode::LargeProximateTraffic, colour::Cyan, colour::Amber, kLarge, DrawProximateTraffic},
    {SymbolCode::LargeTrafficAdvisory, colour::Amber, colour::Amber, kLarge, DrawTrafficAdvisory},
    {SymbolCode::LargeResolutionAdvisory, colour::Red, colour::Red, kLarge, DrawResolutionAdvisory},
};

std::uint32_t ColourOf(const SymbolRow& row, SymbolStyle style) {
    switch (style) {
        case SymbolStyle::Own:
            return row.own;
        case SymbolStyle::White:
            return colour::White;
        case SymbolStyle::Green:
            return colour::Green;
        case SymbolStyle::Cyan:
            return colour::Cyan;
        case SymbolStyle::Magenta:
            return colour::Magenta;
        case SymbolStyle::Alert:
            return row.alert;
        case SymbolStyle::Ndb:
            return colour::Blue;
    }
    return row.own;
}

const SymbolRow* RowOf(SymbolCode code) {
    for (const SymbolRow& row : kSymbols) {
        if (row.code == code) {
            return &row;
        }
    }
    return nullptr;
}

}  // namespace

void DrawSymbol(Surface& surface, double x, double y, const Symbol& symbol) {
    const SymbolRow* const row = RowOf(symbol.code);
    if (row == nullptr) {
        return;
    }
    Canvas& canvas = surface.canvas();
    canvas.SaveState();
    canvas.Translate(x, y);
    canvas.Scale(row->scale * symbol.sizeX, row->scale * symbol.sizeY);
    row->draw({surface, canvas, symbol, ColourOf(*row, symbol.style)});
    canvas.RestoreState();
}

std::uint32_t SymbolColour(const Symbol& symbol) {
    const SymbolRow* const row = RowOf(symbol.code);
    return row == nullptr ? colour::White : ColourOf(*row, symbol.style);
}

void DrawAircraftSymbol(Surface& surface, double x, double y, std::uint32_t argb) {
    const std::array<CanvasPoint, 6> lines{
        {{x, y - 11}, {x, y + 12}, {x - 12, y}, {x + 12, y}, {x - 5, y + 10}, {x + 5, y + 10}}};
    surface.canvas().DrawSegments({argb, 2.0}, lines);
}

}  // namespace avq1
