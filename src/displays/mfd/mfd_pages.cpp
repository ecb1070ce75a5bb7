// The pages over the lower part of the map: the vertical path being set, take-off and landing
// speeds. What the left knob changes stands dark on a light ground.
#include <cmath>
#include <limits>
#include <string_view>

#include "displays/mfd/mfd_picture.h"
#include "displays/mfd/mfd_speeds.h"
#include "displays/shown_values.h"
#include "drawing/fixed_text.h"
#include "drawing/palette.h"
#include "settings/aircraft_performance.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr CanvasFont kLabelFont{"Arial", 9};
constexpr CanvasFont kValueFont{"Arial", 10, true};
constexpr double kFirstRowY = 243;
constexpr double kRowHeight = 11.5;
constexpr double kValueRight = 116;
constexpr double kSecondColumn = 146;
constexpr double kSecondValueRight = 258;

double RowTop(int row) {
    return kFirstRowY + row * kRowHeight;
}

void DrawValue(MfdPicture& picture, const FixedText& text, std::uint32_t argb, double right,
               int row, bool chosen = false) {
    const CanvasSize size = picture.canvas.MeasureText(text, kValueFont);
    const double top = RowTop(row);
    if (chosen) {
        picture.canvas.FillRectangle(argb, right - size.width - 3, top + 0.5, size.width + 6,
                                     kRowHeight - 0.5);
    }
    picture.surface.TextRight(text, kValueFont, chosen ? colour::Black : argb, right, top);
}

void DrawLabel(MfdPicture& picture, std::string_view text, double x, int row) {
    picture.surface.Text(text, kLabelFont, colour::White, x, RowTop(row) + 0.5);
}

// ---- the vertical path ----
struct PathRow {
    const char* label;
    FixedText (*value)();
    bool (*chosen)();
};

constexpr PathRow kPathRows[] = {
    {"DIST", [] { return FixedText("%-3.0f NM", mfd.mfdValueA); }, [] { return mfd.mfdSelA > 0; }},
    {"ST EL", [] { return FixedText("%4.0f FT", mfd.mfdValueB); }, [] { return mfd.mfdSelB == 1; }},
    {"VANG", [] { return FixedText("%.1f DEG", performance.flightPathAngleDeg); },
     [] { return mfd.mfdSelC == 1; }},
};

// A path angle is always one down. NaN without a descent speed, and when an altitude is to be
// reached from one that is lost.
double RequiredUpFpm() {
    const bool byAngle = mfd.mfdSelC == 1 || !(mfd.mfdValueA > 0 && mfd.mfdValueB > 0);
    if (performance.descentIas <= 0 || !(byAngle || std::isfinite(ShownAircraft().altitudeFt))) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    return byAngle ? -mfd.mfdRequiredVs : mfd.mfdRequiredVs;
}

FixedText VerticalSpeed(double upFpm) {
    const double whole = std::round(std::abs(upFpm));
    return CanShow(upFpm) ? FixedText("%4.0f %s", whole, upFpm > 0.5 ? "UP" : "DN")
                          : FixedText("---- --");
}

void DrawPathPage(MfdPicture& picture) {
    constexpr double kCloseFpm = 200;
    int row = 0;
    for (const PathRow& path : kPathRows) {
        DrawLabel(picture, path.label, 10, row);
        DrawValue(picture, path.value(), colour::Cyan, kValueRight, row, path.chosen());
        ++row;
    }
    const double requiredFpm = RequiredUpFpm();
    const double actualFpm = ShownAircraft().verticalSpeedFpm;
    const bool close = std::abs(requiredFpm - actualFpm) <= kCloseFpm;
    DrawLabel(picture, "VS REQ", kSecondColumn, 0);
    DrawValue(picture, VerticalSpeed(requiredFpm), colour::Magenta, kSecondValueRight, 0);
    DrawLabel(picture, "VS NOW", kSecondColumn, 1);
    DrawValue(picture, VerticalSpeed(actualFpm), close ? colour::Green : colour::Amber,
              kSecondValueRight, 1);
    DrawLabel(picture, "GSPD", kSecondColumn, 2);
    DrawValue(picture,
              CanShow(ShownAircraft().groundSpeedKt)
                  ? FixedText("%4.0f KT", ShownAircraft().groundSpeedKt)
                  : FixedText("---- KT"),
              colour::Green, kSecondValueRight, 2);
}

// ---- speeds ----
FixedText LabelOf(const MfdSpeedRow& speed) {
    if (speed.flaps == nullptr || (performance.*speed.flaps).empty()) {
        return FixedText("%s", speed.label);
    }
    return FixedText("%s %s", speed.label, (performance.*speed.flaps).c_str());
}

void DrawSpeedsPage(MfdPicture& picture) {
    int row = 0;
    for (const MfdSpeedRow& speed : MfdSpeedRows(mfd.page)) {
        DrawLabel(picture, LabelOf(speed), 10, row);
        const std::int32_t knots = performance.*speed.value;
        DrawValue(picture, knots > 0 ? FixedText("%03d KT", knots) : FixedText("--- KT"),
                  colour::Cyan, kValueRight, row, row == mfd.speedRow);
        ++row;
    }
    DrawLabel(picture, "IAS", kSecondColumn, 0);
    const double airspeedKt = ShownAircraft().indicatedAirspeedKt;
    DrawValue(picture,
              CanShow(airspeedKt) ? FixedText("%3.0f KT", airspeedKt) : FixedText("--- KT"),
              colour::Green, kSecondValueRight, 0);
}

}  // namespace

void DrawMfdPage(MfdPicture& picture) {
    const TextBox& box = kMfdPageBox;
    picture.canvas.FillRectangle(colour::Black, box.x, box.y, box.width, box.height);
    picture.canvas.DrawRectangle({colour::Grey, 1.0}, box.x, box.y, box.width, box.height);
    const bool path = mfd.mfdMenuLevel == kMfdSettingLevel;
    const char* const title = path                                 ? "VNAV"
                              : mfd.page == MfdPage::TakeoffSpeeds ? "T/O SPEEDS"
                                                                   : "LNDG SPEEDS";
    picture.surface.TextCentred(title, kLabelFont, colour::White, kMfdWidth / 2, box.y + 1);
    if (path) {
        DrawPathPage(picture);
    } else {
        DrawSpeedsPage(picture);
    }
}

}  // namespace avq1
