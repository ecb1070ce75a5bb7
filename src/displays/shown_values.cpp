#include "displays/shown_values.h"

#include "displays/map/map_compass.h"
#include "guidance/predictions.h"

namespace avq1 {

FixedText TimeToGoText() {
    // rounded before it is split, so that no minute reads 60
    const double minutes = std::round(ShownMinutesTo(ActiveWaypointPrediction()));
    return PositionKnown() && CanShow(minutes)
               ? FixedText("%2.0f:%02.0f", std::floor(minutes / 60), std::fmod(minutes, 60.0))
               : FixedText("--:--");
}

}  // namespace avq1
