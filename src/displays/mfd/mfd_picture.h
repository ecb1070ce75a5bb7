// displays/mfd/mfd_picture.h - one draw of the multifunction display: what its layers share.
//
// Design pixels, 272 x 314: data in the corners around the map's circle, a page over the map's
// lower part, the soft keys' labels at the bottom. Layers change nothing but the places their texts
// take.
#pragma once

#include <vector>

#include "displays/map/map_compass.h"
#include "displays/map/map_layers.h"
#include "displays/map/text_boxes.h"
#include "displays/mfd/mfd.h"
#include "drawing/surface.h"

namespace avq1 {

inline constexpr double kMfdWidth = 272;
inline constexpr double kMfdHeight = 314;
inline constexpr double kMfdCompassRadius = 106;
inline constexpr TextBox kMfdPageBox{2, 230, 268, 60};

struct MfdPicture {
    Surface& surface;
    Canvas& canvas;
    MapCompass rose;
    MapView view;
    double rangeNm = 0;  // the range in use
    bool hasWaypoint = false;
    bool showsPage = false;
    TextBoxes texts{};
    TextBoxes fixedTexts{};
    std::vector<MapName>& names = EmptyMapNames();
};

// The map, `rangeNm` reaching as far as the frame says; records show out to the compass.
MapFrame FrameOf(MfdPicture& picture, double rangeNm);

bool MfdShowsPage();

// ---- layers ----
void ClaimMfdPlaces(MfdPicture& picture);
void DrawMfdRangeRing(MfdPicture& picture);
void DrawMfdBoundaries(MfdPicture& picture);
void DrawMfdBoundaryNames(MfdPicture& picture);
void DrawMfdRunwayPattern(MfdPicture& picture);
void DrawMfdRoute(MfdPicture& picture);
void DrawMfdStations(MfdPicture& picture);
void DrawMfdAirports(MfdPicture& picture);
void DrawMfdRouteNames(MfdPicture& picture);
void DrawMfdOtherNames(MfdPicture& picture);
void DrawMfdDistanceRing(MfdPicture& picture);
void DrawMfdCompass(MfdPicture& picture);
void DrawMfdOwnAircraft(MfdPicture& picture);
void DrawMfdTraffic(MfdPicture& picture);
void DrawMfdTexts(MfdPicture& picture);
void DrawMfdPage(MfdPicture& picture);
void DrawMfdSoftKeyLabels(MfdPicture& picture);

}  // namespace avq1
