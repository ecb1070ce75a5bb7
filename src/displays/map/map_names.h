// displays/map/map_names.h - the names of what stands on a map: collected while the symbols are
// drawn, placed and drawn when every symbol stands.
//
// So a letter hides no symbol, and a fix that several layers know (a waypoint of the route, a
// station, a record of the fix table) is drawn and named once, by the first of them. Names stay
// inside the compass numbers, whose places turn, so that none comes and goes as the rose turns.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "displays/map/text_boxes.h"
#include "drawing/surface.h"

namespace avq1 {

enum class NameRank {
    Required,   // of the route: over other symbols if need be, with a line to its own when away
    WhereFree,  // named when a place beside the symbol is free
    None,       // the symbol only
};

// One symbol of the map. The ident must last until the names are drawn.
struct MapName {
    CanvasPoint at;
    double halfWidth = 0;  // of the symbol
    std::string_view ident;
    std::uint32_t argb = 0;
    NameRank rank = NameRank::WhereFree;
    double latitude = 0;
    double longitude = 0;
};

struct MapFrame;

// Whether a text keeps inside the map and clear of the compass numbers.
bool InsideNames(const MapFrame& frame, const TextBox& box);

// A text that stands already; names keep off it.
void TakeFixedPlace(const MapFrame& frame, const TextBox& box);

// The symbol takes its place, so that no name covers it.
void AddMapName(const MapFrame& frame, const MapName& name);

// Whether a symbol of this name stands at this place already, within a mile.
bool StandsOnMap(const MapFrame& frame, std::string_view ident, double latitude, double longitude);

// The names of one rank, in the order they came.
void DrawMapNames(const MapFrame& frame, NameRank rank);

// An empty list; the one list of the module, kept from draw to draw so that a frame allocates
// nothing.
std::vector<MapName>& EmptyMapNames();

}  // namespace avq1
