// The attitude display's texts: autopilot modes, radio altitude, decision height, marker beacons.
#include <cmath>
#include <cstdint>

#include "displays/eadi/eadi_picture.h"
#include "displays/ehsi/ehsi.h"
#include "drawing/fixed_text.h"
#include "drawing/palette.h"
#include "guidance/guidance_state.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr CanvasFont kModeFont{"Arial", 11, true};
constexpr CanvasFont kLateralFont{"Arial", 8, true};  // two lines of capitals 7 pixels apart
constexpr CanvasFont kAlertFont{"Arial", 15, true};
constexpr CanvasFont kHeightFont{"Arial", 12, true};

bool IsOn(double flag) {
    return flag >= 0.5;
}

const char* Lateral() {
    return IsOn(ShownAircraft().headingHoldOn)       ? "HDG"
           : IsOn(ShownAircraft().autopilotNav1Lock) ? "NAV"
                                                     : "";
}
const char* SecondLateral() {
    return IsOn(ShownAircraft().approachHoldOn) ? "APR" : guidance.lnavEngaged == 1 ? "LNAV" : "";
}
const char* YawDamper() {
    return IsOn(ShownAircraft().yawDamperOn) ? "YD" : "";
}
const char* Vertical() {
    return !IsOn(ShownAircraft().apAltitudeLockOn) ? ""
           : guidance.vnavEngaged == 1             ? "VNAV"
                                                   : "ALT";
}

struct Annunciation {
    const char* (*text)();
    const CanvasFont& font;
    double x;
    double y;
};

constexpr Annunciation kAnnunciations[] = {
    {[] { return "AP"; }, kModeFont, -119, -114},
    {Lateral, kLateralFont, -54, -114},
    {SecondLateral, kLateralFont, -54, -107},
    {YawDamper, kModeFont, -119, -94},
    {Vertical, kModeFont, 26, -114},
};

struct Marker {
    double value;
    const char* text;
    std::uint32_t argb;
};

constexpr Marker kMarkers[] = {
    {1, "OM", colour::Cyan},
    {2, "MM", colour::Amber},
    {3, "IM", colour::White},
};

}  // namespace

void DrawAnnunciations(EadiPicture& picture) {
    const bool known = std::isfinite(ShownAircraft().autopilotOn);
    if (!known) {
        EadiText(picture, "AP", kModeFont, colour::Red, kAnnunciations[0].x, kAnnunciations[0].y);
    }
    if (!known || !IsOn(ShownAircraft().autopilotOn)) {
        return;
    }
    for (const Annunciation& row : kAnnunciations) {
        const std::string_view text = row.text();
        if (!text.empty()) {
            EadiText(picture, text, row.font, colour::Green, row.x, row.y);
        }
    }
}

void DrawHeights(EadiPicture& picture) {
    constexpr double kTop = 99;
    constexpr double kLowestFt = -20;
    constexpr double kHighestFt = 2500;
    constexpr double kDescendingFpm = -60;  // no alert on the runway or in the climb
    EadiText(picture, "DH", kHeightFont, colour::White, -121, kTop);
    EadiText(picture, FixedText("%d", ehsi.decisionHeight), kHeightFont, colour::Cyan, -98, kTop);
    const double heightFt = ShownAircraft().radioAltitudeFt;
    if (std::isnan(heightFt)) {
        EadiText(picture, "RA ---", kHeightFont, colour::Red, 68, kTop);
    } else if (heightFt >= kLowestFt && heightFt <= kHighestFt) {
        const FixedText value("%5.0f", std::nearbyint(heightFt) + 0.0);  // never "-0"
        const bool low = heightFt <= ehsi.decisionHeight;
        const double width = picture.canvas.MeasureText(value, kHeightFont).width;
        EadiText(picture, "RA", kHeightFont, colour::White, 68, kTop);
        EadiText(picture, value, kHeightFont, low ? colour::Amber : colour::Green, 122 - width,
                 kTop);
        if (low && ShownAircraft().verticalSpeedFpm < kDescendingFpm) {
            EadiText(picture, "DH", kAlertFont, colour::Amber, 72, 52);
        }
    }
}

void DrawMarker(EadiPicture& picture) {
    constexpr double kLeft = 103;
    constexpr double kTop = -98;
    constexpr double kWidth = 21;
    constexpr double kHeight = 15;
    for (const Marker& marker : kMarkers) {
        if (ShownAircraft().markerBeacon == marker.value) {
            picture.canvas.FillRectangle(colour::Black, kLeft, kTop, kWidth, kHeight);
            picture.canvas.DrawRectangle({marker.argb, 1.2}, kLeft, kTop, kWidth, kHeight);
            picture.surface.TextCentred(marker.text, {"Arial", 11, true}, marker.argb,
                                        kLeft + kWidth / 2, kTop + 1);
        }
    }
}

}  // namespace avq1
