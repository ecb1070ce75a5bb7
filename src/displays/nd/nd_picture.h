// displays/nd/nd_picture.h - one draw of the navigation display: what its layers share.
//
// Design pixels, 244 x 302. Receivers are read once a draw; layers change nothing but
// the places their texts take, which they claim as they come.
#pragma once

#include <vector>

#include "displays/map/map_compass.h"
#include "displays/map/map_layers.h"
#include "displays/map/text_boxes.h"
#include "displays/nd/nd_panel.h"
#include "drawing/surface.h"
#include "navdb/nav_database.h"

namespace avq1 {

inline constexpr double kNdWidth = 244;
inline constexpr double kNdHeight = 302;
inline constexpr double kNdMapBottom = 263;  // of an arc's map: data stands below

struct NdPicture {
    Surface& surface;
    Canvas& canvas;
    DisplayDrawMode drawMode;
    MapCompass rose;
    MapView view;  // of the map modes
    ReceiverState receivers{};
    bool hasWaypoint = false;
    const PointRecord* station = nullptr;  // what NAV1 receives, when the database has it
    TextBoxes fixedTexts{};
    TextBoxes texts{};
    std::vector<MapName>& names = EmptyMapNames();
};

bool NdIsMap();               // modes 5 to 7
bool NdFollowsNavReceiver();  // modes 1 and 3
bool NdCentredOnWaypoint();   // mode 7 with a waypoint chosen
bool NdShowsRange();

MapFrame FrameOf(NdPicture& picture);

// What the picture lacks, in words; null when nothing.
const char* NdMissingDatum(const NdPicture& picture);
TextBox NdMissingBox(NdPicture& picture, const char* text);

// ---- layers ----
void ClaimNdPlaces(NdPicture& picture);
void DrawNdBoundaries(NdPicture& picture);
void DrawNdBoundaryNames(NdPicture& picture);
void DrawNdRoute(NdPicture& picture);
void DrawNdCompass(NdPicture& picture);
void DrawNdCourse(NdPicture& picture);
void DrawNdAdfNeedle(NdPicture& picture);
void DrawNdNav1Station(NdPicture& picture);
void DrawNdStations(NdPicture& picture);
void DrawNdAirports(NdPicture& picture);
void DrawNdFixes(NdPicture& picture);
void DrawNdHolds(NdPicture& picture);
void DrawNdPendingRoute(NdPicture& picture);
void DrawNdAltitudeArc(NdPicture& picture);
void DrawNdRouteNames(NdPicture& picture);
void DrawNdOtherNames(NdPicture& picture);
void DrawNdPathDeviation(NdPicture& picture);
void DrawNdGlideslope(NdPicture& picture);
void DrawNdSelectedHeading(NdPicture& picture);
void DrawNdTraffic(NdPicture& picture);
void DrawNdOwnAircraft(NdPicture& picture);
void DrawNdTexts(NdPicture& picture);

}  // namespace avq1
