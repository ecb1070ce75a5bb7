#include "panelhost/world/traffic_threat.h"

#include <cmath>
#include <iterator>

namespace panelhost {
namespace {

struct Thresholds {
    double tauS;
    double modifiedRangeNm;
    double separationFt;
};

struct SensitivityRow {
    double belowFt;  // own altitude; the first two rows go by height above the ground
    Thresholds traffic;
    Thresholds resolution;  // tau 0: none near the ground
};

constexpr SensitivityRow kSensitivity[] = {
    {1000, {20, 0.30, 850}, {0, 0, 0}},        {2350, {25, 0.33, 850}, {15, 0.20, 600}},
    {5000, {30, 0.48, 850}, {20, 0.35, 600}},  {10000, {40, 0.75, 850}, {25, 0.55, 600}},
    {20000, {45, 1.00, 850}, {30, 0.80, 600}}, {42000, {48, 1.30, 850}, {35, 1.10, 700}},
    {1e9, {48, 1.30, 1200}, {35, 1.10, 800}},
};
constexpr int kRowsByHeight = 2;

constexpr double kProximateNm = 6;
constexpr double kProximateFt = 1200;

const SensitivityRow& RowFor(double altitudeFt, double heightFt) {
    for (int i = 0; i < static_cast<int>(std::size(kSensitivity)) - 1; ++i) {
        if ((i < kRowsByHeight ? heightFt : altitudeFt) < kSensitivity[i].belowFt) {
            return kSensitivity[i];
        }
    }
    return kSensitivity[std::size(kSensitivity) - 1];
}

// Nearer than the modified range, or closing to it within the time.
bool IsNear(const Encounter& encounter, const Thresholds& limits) {
    if (encounter.rangeNm <= limits.modifiedRangeNm) {
        return true;
    }
    if (!(encounter.rangeRateKt < 0)) {
        return false;
    }
    const double reserve = limits.modifiedRangeNm * limits.modifiedRangeNm / encounter.rangeNm;
    return (encounter.rangeNm - reserve) / -encounter.rangeRateKt * 3600 <= limits.tauS;
}

bool IsLevel(const Encounter& encounter, const Thresholds& limits) {
    const double apartFt = std::abs(encounter.relativeAltitudeFt);
    const double closingFpm =
        encounter.relativeAltitudeFt > 0 ? -encounter.relativeClimbFpm : encounter.relativeClimbFpm;
    return apartFt <= limits.separationFt ||
           (closingFpm > 0 && apartFt / closingFpm * 60 <= limits.tauS);
}

bool Alerts(const Encounter& encounter, const Thresholds& limits) {
    return limits.tauS > 0 && IsNear(encounter, limits) && IsLevel(encounter, limits);
}

}  // namespace

Threat ThreatOf(const Encounter& encounter, double ownAltitudeFt, double ownHeightFt) {
    const SensitivityRow& row = RowFor(ownAltitudeFt, ownHeightFt);
    if (Alerts(encounter, row.resolution)) {
        return Threat::Resolution;
    }
    if (Alerts(encounter, row.traffic)) {
        return Threat::Traffic;
    }
    return encounter.rangeNm <= kProximateNm &&
                   std::abs(encounter.relativeAltitudeFt) <= kProximateFt
               ? Threat::Proximate
               : Threat::Other;
}

}  // namespace panelhost
