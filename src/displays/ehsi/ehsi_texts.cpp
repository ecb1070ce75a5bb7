// The EHSI's data texts, around the compass: one row a text, walked by one routine.
//
// Left column: course box, source, deviation or DME, wind. Right column: the next waypoint. Bottom:
// speeds, annunciations, bearing pointer labels. Values that are missing or not finite are dashes.
#include <algorithm>
#include <array>
#include <cmath>

#include "displays/ehsi/ehsi_picture.h"
#include "displays/flag.h"
#include "displays/map/map_view.h"
#include "displays/map/map_wind.h"
#include "displays/shown_values.h"
#include "drawing/fixed_text.h"
#include "drawing/palette.h"
#include "guidance/guidance_state.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr CanvasFont kSmall{"Arial", 9};
constexpr CanvasFont kData{"Arial", 10};
constexpr CanvasFont kMain{"Arial", 12};
constexpr double kLeft = 3;
constexpr double kRight = 263;

FixedText Value(const char* dashes, bool shown, double value, int decimals, int width) {
    return shown && CanShow(value) ? FixedText("%*.*f", width, decimals, value)
                                   : FixedText("%s", dashes);
}

FixedText Degrees(bool shown, double value) {
    return shown && CanShow(value) ? FixedText("%03.0f", Compass360(value)) : FixedText("---");
}

void DrawCourseBox(EhsiPicture& picture) {
    const bool fms = FromFlightManagement();
    const FixedText degrees = fms ? Degrees(picture.hasWaypoint, guidance.desiredTrackMag)
                                  : Degrees(true, ShownAircraft().nav1Course);
    const std::string_view digits = degrees;
    const FixedText text("%s %.*s", fms ? "DTK" : "CRS", static_cast<int>(digits.size()),
                         digits.data());
    const std::uint32_t argb = fms ? colour::Magenta : colour::Green;
    const CanvasSize size = picture.canvas.MeasureText("CRS 888", kMain);
    picture.canvas.DrawRectangle({argb, 1.0}, 1, 1, size.width + 4, 14);
    picture.surface.Text(text, kMain, argb, kLeft, 1.5);
}

void DrawReceiverSource(EhsiPicture& picture) {
    picture.surface.Text(
        picture.receivers.localizer && picture.receivers.nav1Signal ? "LOC 1" : "NAV 1", kData,
        colour::Green, kLeft, 16);
    if (!picture.receivers.nav1Signal) {
        picture.surface.Text("NO SIGNAL", kSmall, colour::Amber, kLeft, 28);
    } else if (NavReceiverFailed(picture.receivers)) {
        picture.surface.Text("NAV FAIL", kSmall, colour::Red, kLeft, 28);
    } else {
        const bool hasDme = ShownAircraft().nav1DmeNm > 0;
        picture.surface.Text(Value("----", hasDme, ShownAircraft().nav1DmeNm, 1, 4), kData,
                             colour::White, kLeft, 27);
    }
}

void DrawFlightManagementSource(EhsiPicture& picture) {
    picture.surface.Text("FMS", kData, colour::Magenta, kLeft, 16);
    if (!picture.hasWaypoint) {
        picture.surface.Text("NO ROUTE", kSmall, colour::Amber, kLeft, 28);
    } else if (!PositionKnown()) {
        picture.surface.Text("NO POSITION", kSmall, colour::Red, kLeft, 28);
    } else if (guidance.crossTrackNm != kNoCrossTrack && CanShow(guidance.crossTrackNm)) {
        picture.surface.Text(FixedText("XTK%4.1f%c", guidance.crossTrackNm,
                                       guidance.crossTrackSide == Side::Right ? 'R' : 'L'),
                             kSmall, colour::White, kLeft, 28);
    }
}

void DrawSource(EhsiPicture& picture) {
    if (FromFlightManagement()) {
        DrawFlightManagementSource(picture);
    } else {
        DrawReceiverSource(picture);
    }
}

void DrawWindAt(EhsiPicture& picture) {
    DrawWind(picture.surface, picture.rose, {{11, 50}, 8, {19, 43}, kSmall});
}

void DrawNextWaypoint(EhsiPicture& picture) {
    if (!picture.hasWaypoint) {
        return;
    }
    picture.surface.TextRight(ActiveWaypoint().ident, kMain, colour::Magenta, kRight, 1);
    const FixedText distance =
        Value("--.-", PositionKnown(), std::max(guidance.distanceToGoNm, 0.0), 1, 4);
    const std::string_view digits = distance;
    picture.surface.TextRight(FixedText("%.*s NM", static_cast<int>(digits.size()), digits.data()),
                              kData, colour::White, kRight, 16);
    picture.surface.TextRight(TimeToGoText(), kData, colour::White, kRight, 28);
}

void DrawHeadingReadout(EhsiPicture& picture) {
    const bool valid = std::isfinite(ShownAircraft().headingMag);
    const double centreX = picture.compass.centre.x;
    picture.surface.TextCentred(Degrees(valid, ShownAircraft().headingMag), kData,
                                valid ? colour::White : colour::Red, centreX,
                                picture.compass.readoutY);
    if (!valid) {
        DrawFlag(picture.surface, "HDG", colour::Red, centreX, picture.compass.centre.y - 36);
    }
}

void DrawSpeeds(EhsiPicture& picture) {
    picture.surface.Text("GS", kSmall, colour::White, kLeft, 205);
    picture.surface.TextRight(Value("---", true, ShownAircraft().groundSpeedKt, 0, 4), kData,
                              colour::Green, 42, 204);
    picture.surface.Text("TAS", kSmall, colour::White, 109, 218);
    picture.surface.TextRight(Value("---", true, ShownDerived().trueAirspeedEstimateKt, 0, 4),
                              kData, colour::Green, 152, 217);
}

bool NothingToMap(const EhsiPicture& picture) {
    if (!IsUsable(ViewFromAircraft(0, 0, 1, ehsi.ehsiRange))) {
        return true;
    }
    return FromFlightManagement() ? !picture.hasWaypoint : !picture.receivers.nav1Signal;
}

void DrawAnnunciations(EhsiPicture& picture) {
    const bool weatherMode = ehsi.ehsiMode == 2 || ehsi.ehsiMode == 6 || ehsi.ehsiMode == 7;
    if (weatherMode) {
        picture.surface.TextRight("WX OFF", kSmall, colour::Cyan, kRight, 205);
    }
    if (picture.mapMode && NothingToMap(picture)) {
        picture.surface.TextRight("NO MAP", kSmall, colour::Amber, 221, 205);
    }
}

struct PointerLabel {
    const char* name = nullptr;  // null: the pointer is off
    FixedText value{"%s", ""};
};

PointerLabel LabelOf(BearingSource source, const char* vorName, bool signal, double dmeNm,
                     bool hasWaypoint) {
    switch (source) {
        case BearingSource::Off:
            return {};
        case BearingSource::Vor:
            return {vorName, Value("---", signal && dmeNm > 0, dmeNm, 1, 3)};
        case BearingSource::Fms:
            return {"FMS", FixedText("%s", hasWaypoint && PositionKnown() ? "" : "---")};
        case BearingSource::Adf:
            return {"ADF", FixedText("%s", ShownAircraft().adfActive >= 1 &&
                                                   std::isfinite(ShownAircraft().adfRelativeBearing)
                                               ? ""
                                               : "---")};
    }
    return {};
}

void DrawPointerLabels(EhsiPicture& picture) {
    constexpr double kGapPx = 4;
    constexpr double kTop = 217;
    const PointerLabel first = LabelOf(ehsi.bearingPointer1, "VOR 1", picture.receivers.nav1Signal,
                                       ShownAircraft().nav1DmeNm, picture.hasWaypoint);
    const PointerLabel second = LabelOf(ehsi.bearingPointer2, "VOR 2", picture.receivers.nav2Signal,
                                        ShownAircraft().nav2DmeNm, picture.hasWaypoint);
    if (first.name != nullptr) {
        const double nameEnd = kLeft + picture.canvas.MeasureText(first.name, kData).width;
        picture.surface.Text(first.name, kData, colour::Blue, kLeft, kTop);
        picture.surface.Text(first.value, kData, colour::Blue, nameEnd + kGapPx, kTop);
    }
    if (second.name != nullptr) {
        const double valueWidth = picture.canvas.MeasureText(second.value, kData).width;
        const double nameEnd = kRight - (valueWidth > 0 ? valueWidth + kGapPx : 0);
        picture.surface.TextRight(second.name, kData, colour::PaleGreen, nameEnd, kTop);
        picture.surface.TextRight(second.value, kData, colour::PaleGreen, kRight, kTop);
    }
}

constexpr void (*kTexts[])(EhsiPicture&) = {
    DrawCourseBox,      DrawSource, DrawWindAt,        DrawNextWaypoint,
    DrawHeadingReadout, DrawSpeeds, DrawAnnunciations, DrawPointerLabels,
};

}  // namespace

void DrawEhsiTexts(EhsiPicture& picture) {
    for (const auto draw : kTexts) {
        draw(picture);
    }
}

}  // namespace avq1
