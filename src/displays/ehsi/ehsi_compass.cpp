// The EHSI's compass: rose, heading bug, course and bearing pointers, own aircraft.
#include "displays/ehsi/ehsi_picture.h"
#include "drawing/palette.h"
#include "drawing/symbols.h"
#include "guidance/guidance_state.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

struct Needle {
    bool shown = false;
    double relativeDeg = 0;
};

Needle NeedleOf(const EhsiPicture& picture, BearingSource source, bool first) {
    const ReceiverState& receivers = picture.receivers;
    switch (source) {
        case BearingSource::Off:
            return {};
        case BearingSource::Vor:
            return first ? Needle{receivers.nav1Signal && !receivers.localizer,
                                  ShownAircraft().nav1RelativeBearing}
                         : Needle{receivers.nav2Signal, ShownAircraft().nav2RelativeBearing};
        case BearingSource::Fms:
            return {picture.hasWaypoint && PositionKnown(),
                    picture.rose.FromUp(guidance.bearingToWaypointMag)};
        case BearingSource::Adf:
            return {ShownAircraft().adfActive >= 1, ShownAircraft().adfRelativeBearing};
    }
    return {};
}

}  // namespace

void DrawCompassRose(EhsiPicture& picture) {
    DrawRose(picture.surface, picture.rose);
}

void DrawHeadingBug(EhsiPicture& picture) {
    DrawBug(picture.surface, picture.rose, ShownAircraft().apHeadingBug,
            settings.EhsiStaticHdgPointer == 1);
}

void DrawBearingPointers(EhsiPicture& picture) {
    const Needle first = NeedleOf(picture, ehsi.bearingPointer1, true);
    const Needle second = NeedleOf(picture, ehsi.bearingPointer2, false);
    if (first.shown) {
        DrawSinglePointer(picture.surface, picture.rose, first.relativeDeg, colour::Blue);
    }
    if (second.shown) {
        DrawDoublePointer(picture.surface, picture.rose, second.relativeDeg, colour::PaleGreen);
    }
}

void DrawCoursePointer(EhsiPicture& picture) {
    // on the map the drawn route shows course and deviation: the pointer keeps to the rose
    const bool onRose = picture.mapMode && FromFlightManagement();
    DrawCourse(picture.surface, picture.rose,
               FromFlightManagement() ? CourseOfFlightManagement()
                                      : CourseOfNavReceiver(picture.receivers),
               onRose ? CoursePointerStyle::OnRoseOnly : CoursePointerStyle::WithDeviation);
}

void DrawOwnAircraft(EhsiPicture& picture) {
    DrawLubberLine(picture.surface, picture.rose);
    DrawAircraftSymbol(picture.surface, picture.compass.centre.x, picture.compass.centre.y,
                       colour::White);
}

}  // namespace avq1
