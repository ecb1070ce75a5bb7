// guidance/vnav/flight_values.h - how fast the aircraft flies and how much it burns, as its file
// and tables say and as it has shown in this flight.
//
// Speeds kt, altitudes feet, fuel flows pounds an hour, winds kt and degrees true.
#pragma once

#include "guidance/vnav/profile.h"

namespace avq1 {

// What this flight has shown so far.
struct FlightExperience {
    double airspeedRatio = 1;  // true airspeed to that of the standard atmosphere
    double machLimit = 99;     // beyond it the aircraft did not fly the speed it was told to
    double seen = 0;           // weight of the fuel flows seen; earlier ones fade
    double meanFlowPph = 0;    // of the fuel flows seen
    double meanFpm = 0;        // and of the vertical speeds they went with
    double spreadFpm2 = 0;     // variance of those
    double flowPerFpm = 0;     // what a foot a minute more burns
    double altitudeFt = 0;     // where the ratios were seen
    double indicatedKt = 0;    // at the last note, with the autopilot's target
    double targetKt = 0;
};

// Takes note of the aircraft as it is now; called every few seconds.
void LearnFlight(FlightExperience& experience);

double TrueAirspeedKt(const FlightExperience& experience, double indicatedKt, double altitudeFt);

// Where on the way ahead a wind is asked for.
struct WindPlace {
    double aheadNm = 0;
    double altitudeFt = 0;
    bool descending = false;
};

// Ground speed on a true course: the present wind, decaying to the wind entered for the cruise or
// the descent where there is one. At least 1 kt.
double GroundSpeedKt(double trueKt, double courseTrue, const WindPlace& place);

// At a vertical speed in feet a minute: as seen in this flight, before that as the tables say.
double FuelFlowPph(const FlightExperience& experience, VerticalPhase phase, double altitudeFt,
                   double verticalFpm);

}  // namespace avq1
