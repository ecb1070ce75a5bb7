// displays/map/map_compass.h - the compass of the map-type displays: rose, bug, course and bearing
// pointers, deviation.
//
// Directions are degrees magnetic; `upMag` is what points up. Pointers turn about the compass
// centre. Anything whose direction is not finite is not drawn. Functions only read.
#pragma once

#include <cstdint>

#include "displays/map/text_boxes.h"
#include "drawing/surface.h"

namespace avq1 {

struct MapCompass {
    CanvasPoint centre;
    double radius = 0;
    double halfAngleDeg = 180;  // the rose shows this much either side of up
    double labelFontPx = 11;
    double bottom = 0;  // nothing of the instruments is drawn below
    double upMag = 0;

    bool IsFull() const { return halfAngleDeg >= 180; }
    // What keeps within this of the centre is clear of the rose's numbers, whatever is up.
    double InsideLabels() const;
    // Degrees from straight up, -180 to 180.
    double FromUp(double directionMag) const;
};

inline constexpr double kCompassLongTickPx = 9;

// What a course pointer shows: a course, and where the selected track lies from the aircraft.
struct CourseNeedle {
    bool pointed = false;         // there is a course
    bool deviationShown = false;  // and a deviation from it
    bool hasToFrom = false;
    double courseMag = 0;
    double deviation = 0;   // -1 to 1 at full scale, positive with the track to the right
    double bearingMag = 0;  // to the station or waypoint
    std::uint32_t argb = 0;

    bool PointsAway() const;  // the station or waypoint lies behind, along the course
};

// What the receivers say in this draw.
struct ReceiverState {
    bool nav1Signal = false;
    bool nav2Signal = false;
    bool localizer = false;
    bool deviationValid = false;
    bool glideslope = false;

    bool HasIls() const { return nav1Signal && localizer && glideslope; }
};

ReceiverState ReadReceivers();

// Whether what guidance tells of the way to the waypoint still holds.
bool PositionKnown();
// NAV1 has a signal, but its course or deviation has been lost.
bool NavReceiverFailed(const ReceiverState& receivers);

CourseNeedle CourseOfNavReceiver(const ReceiverState& receivers);
CourseNeedle CourseOfFlightManagement();

enum class CoursePointerStyle { WithDeviation, OnRoseOnly };

// The places of the rose's numbers, for what names the map.
TextBoxes PlacesOfRoseLabels(const MapCompass& compass);
void DrawRose(Surface& surface, const MapCompass& compass);
void DrawLubberLine(Surface& surface, const MapCompass& compass);
// `stops`: a heading beyond the arc keeps its pointer at the arc's end.
void DrawBug(Surface& surface, const MapCompass& compass, double directionMag, bool stops = false);
void DrawCourse(Surface& surface, const MapCompass& compass, const CourseNeedle& needle,
                CoursePointerStyle style);
// Degrees clockwise from straight up.
void DrawSinglePointer(Surface& surface, const MapCompass& compass, double turn,
                       std::uint32_t argb);
void DrawDoublePointer(Surface& surface, const MapCompass& compass, double turn,
                       std::uint32_t argb);

}  // namespace avq1
