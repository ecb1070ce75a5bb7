// panelhost/world/traffic_threat.h - how great a threat another aircraft is.
//
// By time to closest approach, as "Introduction to TCAS II, Version 7.1" (Federal Aviation
// Administration, 28 February 2011) publishes it: its table of sensitivity levels, the modified tau
// of its range test and the separation or time to the same altitude of its altitude test. Both
// tests must hold. Nothing is filtered or held on to: the same positions give the same threat.
#pragma once

namespace panelhost {

enum class Threat : int { Other = 0, Proximate = 1, Traffic = 2, Resolution = 3 };

// Another aircraft as seen from the own one.
struct Encounter {
    double rangeNm = 0;
    double rangeRateKt = 0;  // negative while closing
    double relativeAltitudeFt = 0;
    double relativeClimbFpm = 0;  // of the other less one's own
};

Threat ThreatOf(const Encounter& encounter, double ownAltitudeFt, double ownHeightFt);

}  // namespace panelhost
