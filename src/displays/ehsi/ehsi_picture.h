// displays/ehsi/ehsi_picture.h - one draw of the EHSI: what its layers share.
//
// The picture is drawn in design pixels, 266 x 230. Receiver states are read once a draw. Layers
// change nothing but the places their texts take; texts in the map area claim theirs first.
#pragma once

#include <cstdint>
#include <vector>

#include "displays/ehsi/ehsi.h"
#include "displays/map/map_compass.h"
#include "displays/map/map_layers.h"
#include "displays/map/text_boxes.h"
#include "drawing/surface.h"

namespace avq1 {

inline constexpr double kEhsiDesignWidth = 266;
inline constexpr double kEhsiDesignHeight = 230;

struct EhsiCompass {
    CanvasPoint centre;
    double radius;        // of the rose
    double mapRadius;     // stands for ehsiRange in the map modes
    double halfAngleDeg;  // the rose shows this much either side of the heading
    double readoutY;      // top of the heading readout
    double labelFontPx;   // of the rose's numbers
};

inline constexpr EhsiCompass kFullCompass{{129, 114}, 100, 40, 180, 0, 11};
inline constexpr EhsiCompass kArcCompass{{129, 190}, 160, 95, 48, 12, 12};

// The arc compass and its map end above the texts at the bottom.
inline constexpr double kArcBottom = 203;

struct EhsiPicture {
    Surface& surface;
    Canvas& canvas;
    DisplayDrawMode drawMode;
    EhsiCompass compass;
    bool fullCompass = true;
    bool mapMode = false;
    ReceiverState receivers{};
    bool hasWaypoint = false;
    MapCompass rose{};
    TextBoxes fixedTexts{};
    TextBoxes mapTexts{};
    std::vector<MapName>& names = EmptyMapNames();
};

bool FromFlightManagement();

// The map inside the compass, and where its content must stay.
MapFrame FrameOf(EhsiPicture& picture);

// ---- layers ----
void DrawRangeMark(EhsiPicture& picture);
void DrawBoundaryLayer(EhsiPicture& picture);
void DrawRunwayPatternLayer(EhsiPicture& picture);
void DrawRouteLayer(EhsiPicture& picture);
void DrawHoldLayer(EhsiPicture& picture);
void DrawProfileLayer(EhsiPicture& picture);
void DrawStationLayer(EhsiPicture& picture);
void DrawRouteNameLayer(EhsiPicture& picture);
void DrawOtherNameLayer(EhsiPicture& picture);
void ClaimPathDeviationLayer(EhsiPicture& picture);
void DrawPathDeviationLayer(EhsiPicture& picture);
void DrawGlideslopeLayer(EhsiPicture& picture);
void DrawBoundaryNameLayer(EhsiPicture& picture);
void DrawCompassRose(EhsiPicture& picture);
void DrawHeadingBug(EhsiPicture& picture);
void DrawBearingPointers(EhsiPicture& picture);
void DrawCoursePointer(EhsiPicture& picture);
void DrawOwnAircraft(EhsiPicture& picture);
void DrawEhsiTexts(EhsiPicture& picture);
void DrawTrafficPresentation(EhsiPicture& picture);

}  // namespace avq1
