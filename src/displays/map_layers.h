// displays/map_layers.h - what the map-type displays draw around the aircraft: route, holding
// patterns, climb and descent markers, runway pattern, stations, airports and waypoints.
//
// A display describes its map once a draw in a MapFrame; layers change nothing but the
// places its texts take and the lists of records around the aircraft. What is drawn of the
// plan and the pattern is the caller's to clip (ClipToMap); records keep to the map themselves,
// since a clip costs more than drawing. Identifiers stay wholly inside and beside each other. A
// view that is not usable draws nothing.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "displays/map_view.h"
#include "displays/text_boxes.h"
#include "drawing/surface.h"
#include "navdb/nav_database.h"

namespace avq1 {

struct MapFrame {
    Surface& surface;
    MapView view;
    double rangeNm;
    CanvasPoint circleCentre;  // the map ends at this circle
    double circleRadius;
    TextBox window;  // and at this rectangle
    TextBoxes& texts;
    const TextBoxes& fixedTexts;  // no record's symbol covers these
};

void ClipToMap(const MapFrame& frame);
bool InsideMap(const MapFrame& frame, const TextBox& box);
// Cuts a line to the map; false when nothing of it is there.
bool CutToMap(const MapFrame& frame, CanvasPoint& from, CanvasPoint& to);
// Whether a symbol at this point can be seen.
bool NearMap(const MapFrame& frame, const CanvasPoint& point);

// Beside a symbol of this half-width, at the first of six places that is inside and free.
void DrawIdentBeside(const MapFrame& frame, const CanvasPoint& symbol, double halfWidth,
                     std::string_view ident, std::uint32_t argb);

// A text whose place is taken, to be drawn when its layer's turn comes.
struct PlacedText {
    CanvasPoint at;
    std::string_view text;
};

// For a text that must be read: farther out when the places beside the symbol are taken.
PlacedText PlaceTextNear(const MapFrame& frame, const CanvasPoint& symbol, double halfWidth,
                         std::string_view text);
void DrawPlacedText(const MapFrame& frame, const PlacedText& text, std::uint32_t argb);

// ---- the plan ----
void DrawActiveRoute(const MapFrame& frame);
// The route awaiting execution, with the texts of its open places; these take their places before
// any other record's identifier.
std::vector<PlacedText> PlaceOpenTexts(const MapFrame& frame);
void DrawPendingRoute(const MapFrame& frame, const std::vector<PlacedText>& openTexts);
void DrawHoldPatterns(const MapFrame& frame);
// Top of climb and top of descent while they lie ahead; the setting shows them, until 8 nm before
// the route's end.
bool ShowsProfileMarkers();
void DrawProfileMarkers(const MapFrame& frame);

// ---- the chosen runway's traffic pattern ----
struct PatternScale {
    double radiusPx;  // stands for the range
    double lineScale = 1;
    double sizeScale = 1;
};
void DrawRunwayPattern(const MapFrame& frame, const PatternScale& scale);

// ---- records around the aircraft, out to the map's range ----
void DrawNearbyStations(const MapFrame& frame, const PointRecord* except = nullptr);
void DrawNearbyAirports(const MapFrame& frame);
void DrawNearbyFixes(const MapFrame& frame);

}  // namespace avq1
