// displays/map/map_layers.h - what the map-type displays draw around the aircraft: route, holding
// patterns, climb and descent markers, runway pattern, stations, airports and waypoints.
//
// A display describes its map once a draw in a MapFrame; layers change nothing but the
// places its texts take, the names of what they drew and the lists of records around the aircraft.
// What is drawn of the plan and the pattern is the caller's to clip (ClipToMap); records keep to
// the map themselves, since a clip costs more than drawing. Names are drawn when all symbols
// stand, wholly inside and beside each other. A view that is not usable draws nothing.
#pragma once

#include <cstdint>
#include <vector>

#include "displays/map/map_names.h"
#include "displays/map/map_view.h"
#include "displays/map/text_boxes.h"
#include "drawing/palette.h"
#include "drawing/surface.h"
#include "navdb/nav_database.h"

namespace avq1 {

struct MapFrame {
    Surface& surface;
    MapView view;
    double rangeNm;
    CanvasPoint circleCentre;  // the map ends at this circle
    double circleRadius;
    TextBox window;               // and at this rectangle
    double namesRadius;           // beyond are the compass numbers: no name of a record there
    TextBoxes& fixedTexts;        // compass numbers and labels: no name at all covers them
    TextBoxes& texts;             // these and all else that is taken
    std::vector<MapName>& names;  // of every symbol drawn so far
};

void ClipToMap(const MapFrame& frame);
bool InsideMap(const MapFrame& frame, const TextBox& box);
// Whether a box is wholly within this radius of the map's circle's centre.
bool InsideCircle(const MapFrame& frame, double radius, const TextBox& box);
// Cuts a line to the map; false when nothing of it is there.
bool CutToMap(const MapFrame& frame, CanvasPoint& from, CanvasPoint& to);
// Whether a symbol at this point can be seen.
bool NearMap(const MapFrame& frame, const CanvasPoint& point);

struct RangeRing {
    CanvasPoint centre;
    double radius = 0;
    double halfAngleDeg = 180;  // either side of straight up
    double numberAtDeg = 0;     // where its number stands, clockwise from straight up
    double rangeNm = 0;
    std::uint32_t argb = colour::Grey;
    double dashes[2] = {3, 4};  // line and gap
};

// Dashed, and open where its number stands.
void DrawRangeRing(const MapFrame& frame, const RangeRing& ring);

// ---- the plan ----
void DrawActiveRoute(const MapFrame& frame);
// The route awaiting execution, and the texts of its open places among the names.
void DrawPendingRoute(const MapFrame& frame);
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
void DrawNearbyStations(const MapFrame& frame);
void DrawNearbyAirports(const MapFrame& frame);
void DrawNearbyFixes(const MapFrame& frame);

}  // namespace avq1
