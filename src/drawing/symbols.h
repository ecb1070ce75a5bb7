// drawing/symbols.h - the symbols the map-type displays share; each is centred on (x, y).
//
// Symbols can be told apart without colour. Sizes are design pixels of the display.
#pragma once

#include <cstdint>

#include "drawing/surface.h"

namespace avq1 {

inline constexpr double kWaypointStarRadius = 5.0;

// A VOR is a hexagon, an NDB a dotted ring, an airport a circle with runway ends, an intersection a
// triangle, a flight plan waypoint a four-pointed star. Traffic: open diamond, filled diamond,
// circle, square, by threat; the second row of them is larger, for the traffic gauge.
enum class SymbolCode : std::int32_t {
    Ndb = 1,
    Station = 2,  // VOR, in the style Ndb an NDB
    Fix = 3,
    Airport = 4,
    PlanAirport = 5,  // with its runway across
    OwnAircraft = 11,
    OwnAircraftPlan = 12,  // seen from above
    PlanWaypoint = 20,
    TopOfClimb = 30,
    TopOfDescent = 31,
    HoldFix = 40,
    Position = 50,  // a place without a record of its own
    OtherTraffic = 60,
    ProximateTraffic = 61,
    TrafficAdvisory = 62,
    ResolutionAdvisory = 63,
    LargeOtherTraffic = 70,
    LargeProximateTraffic = 71,
    LargeTrafficAdvisory = 72,
    LargeResolutionAdvisory = 73,
};

enum class SymbolStyle : std::int32_t {
    Own = 0,  // the colour the symbol has by itself
    White = 1,
    Green = 2,
    Cyan = 3,
    Magenta = 4,
    Alert = 5,  // the symbol's alerting colour
    Ndb = 6,
};

inline constexpr std::int32_t kNoVariant = -99;
inline constexpr std::int32_t kClimbing = 1;    // traffic: an arrow up beside the symbol
inline constexpr std::int32_t kDescending = 2;  // an arrow down

struct Symbol {
    SymbolCode code = SymbolCode::Station;
    std::int32_t variant = kNoVariant;  // other than traffic: 1 is filled
    double sizeX = 1;                   // factors on the symbol's own size
    double sizeY = 1;
    SymbolStyle style = SymbolStyle::Own;
    double rangeNm = 0;  // of the display; labels are smaller at 0.5, 2.5 and 12.5
};

// An unknown code draws nothing.
void DrawSymbol(Surface& surface, double x, double y, const Symbol& symbol);

// What DrawSymbol draws it in, for texts beside it.
std::uint32_t SymbolColour(const Symbol& symbol);

// The own aircraft seen from above, nose up.
void DrawAircraftSymbol(Surface& surface, double x, double y, std::uint32_t argb);

}  // namespace avq1
