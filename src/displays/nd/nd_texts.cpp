// The navigation display's data block: one function a group, walked by one routine.
//
// Top left: speeds, wind, course. Top centre: heading. Top right: the next waypoint. Bottom left:
// the NAV1 receiver. Bottom right: ADF and traffic. Values that are missing or not finite are
// dashes.
#include <algorithm>
#include <cmath>
#include <string_view>

#include "base/text.h"
#include "displays/flag.h"
#include "displays/map/map_wind.h"
#include "displays/nd/nd_picture.h"
#include "displays/shown_values.h"
#include "drawing/fixed_text.h"
#include "drawing/palette.h"
#include "guidance/guidance_state.h"
#include "simlink/aircraft_state.h"
#include "traffic/targets.h"

namespace avq1 {
namespace {

constexpr CanvasFont kSmall{"Arial", 9};
constexpr CanvasFont kData{"Arial", 10};
constexpr CanvasFont kMain{"Arial", 12};
constexpr double kLeft = 3;
constexpr double kRight = 241;
constexpr double kCentre = kNdWidth / 2;
constexpr double kBottomRows[] = {264, 276, 288};
constexpr const char* kDashes = "- - -";

FixedText Degrees(bool shown, double directionMag) {
    return shown && CanShow(directionMag) ? FixedText("%03.0f", Compass360(directionMag))
                                          : FixedText("---");
}

FixedText Named(const char* name, const FixedText& value) {
    const std::string_view digits = value;
    return FixedText("%s %.*s", name, static_cast<int>(digits.size()), digits.data());
}

void DrawSpeeds(NdPicture& picture) {
    const auto speed = [](double knots) {
        return CanShow(knots) ? FixedText("%.0f", knots) : FixedText("---");
    };
    Surface& surface = picture.surface;
    surface.Text("GS", kSmall, colour::White, kLeft, 3);
    surface.TextRight(speed(ShownAircraft().groundSpeedKt), kData, colour::Green, 40, 2);
    surface.Text("TAS", kSmall, colour::White, 46, 3);
    surface.TextRight(speed(ShownDerived().trueAirspeedEstimateKt), kData, colour::Green, 88, 2);
}

void DrawWindAt(NdPicture& picture) {
    DrawWind(picture.surface, picture.rose, {{10, 24}, 7, {21, 17}, kData});
}

void DrawCourseText(NdPicture& picture) {
    const bool receiver = NdFollowsNavReceiver();
    const FixedText text =
        receiver ? Named("CRS", Degrees(true, ShownAircraft().nav1Course))
                 : Named("DTK", Degrees(picture.hasWaypoint, guidance.desiredTrackMag));
    picture.surface.Text(text, kData, receiver ? colour::Green : colour::Magenta, kLeft, 32);
}

void DrawHeadingBox(NdPicture& picture) {
    constexpr double kHalfWidth = 15;
    constexpr double kHeight = 15;
    const double top = picture.rose.centre.y - picture.rose.radius - 19;
    const bool valid = std::isfinite(ShownAircraft().headingMag);
    const std::uint32_t argb = valid ? colour::White : colour::Red;
    picture.surface.TextRight("HDG", kSmall, colour::Green, kCentre - kHalfWidth - 3, top + 3);
    picture.surface.Text("MAG", kSmall, colour::Green, kCentre + kHalfWidth + 3, top + 3);
    picture.canvas.DrawRectangle({argb, 1.0}, kCentre - kHalfWidth, top, 2 * kHalfWidth, kHeight);
    picture.surface.TextCentred(Degrees(valid, ShownAircraft().headingMag), kMain, argb, kCentre,
                                top + 1);
}

void DrawTrack(NdPicture& picture) {
    const double trackMag = ShownAircraft().headingMag - ShownDerived().driftDeg;
    picture.surface.TextCentred(
        Named("TRK", Degrees(ShownAircraft().groundSpeedKt > kMovingKt, trackMag)), kData,
        colour::White, kCentre, kBottomRows[2]);
}

void DrawNextWaypoint(NdPicture& picture) {
    if (!picture.hasWaypoint) {
        return;
    }
    Surface& surface = picture.surface;
    surface.TextRight(ActiveWaypoint().ident, kMain, colour::Magenta, kRight, 1);
    surface.TextRight(TimeToGoText(), kData, colour::White, kRight, 16);
    const bool hasDistance = PositionKnown() && CanShow(guidance.distanceToGoNm);
    surface.TextRight(hasDistance ? FixedText("%.1f NM", std::max(guidance.distanceToGoNm, 0.0))
                                  : FixedText("--.- NM"),
                      kData, colour::White, kRight, 28);
}

void DrawReceiver(NdPicture& picture) {
    const ReceiverState& receivers = picture.receivers;
    const bool ils = receivers.nav1Signal && receivers.localizer;
    Surface& surface = picture.surface;
    surface.Text(ils ? "ILS 1" : "VOR 1", kData, colour::Green, kLeft, kBottomRows[0]);
    const double frequency = picture.station == nullptr ? 0 : ToNumber(picture.station->frequency);
    surface.Text(frequency > 0 && CanShow(frequency) ? FixedText("%3.2f", frequency)
                                                     : FixedText("%s", kDashes),
                 kData, colour::White, kLeft, kBottomRows[1]);
    const bool hasDme =
        receivers.nav1Signal && ShownAircraft().nav1DmeNm > 0 && CanShow(ShownAircraft().nav1DmeNm);
    surface.Text("DME", kSmall, colour::White, kLeft, kBottomRows[2] + 1);
    surface.Text(hasDme ? FixedText("%.1f", ShownAircraft().nav1DmeNm) : FixedText("%s", kDashes),
                 kData, colour::White, 26, kBottomRows[2]);
    const bool away =
        receivers.nav1Signal && !receivers.localizer && CourseOfNavReceiver(receivers).PointsAway();
    if (away) {
        surface.Text("FROM", kSmall, colour::White, 42, kBottomRows[1] + 1);
    }
}

void DrawAdfAndTraffic(NdPicture& picture) {
    Surface& surface = picture.surface;
    if (nd.ndShowAdf == 1) {
        surface.TextRight("ADF 1", kData, colour::Blue, kRight, kBottomRows[0]);
        const double bearingMag = ShownAircraft().headingMag + ShownAircraft().adfRelativeBearing;
        const bool received = ShownAircraft().adfActive > 0 && CanShow(bearingMag);
        surface.TextRight(received ? Degrees(true, bearingMag) : FixedText("%s", kDashes), kData,
                          colour::Blue, kRight, kBottomRows[1]);
    }
    if (nd.showTraffic == 1) {
        surface.TextRight("TCAS", kData, colour::Cyan, kRight, kBottomRows[2]);
        if (!HasTrafficSource()) {
            surface.TextRight("OFF", kSmall, colour::Amber, kRight - 30, kBottomRows[2] + 1);
        }
    }
}

// Below the compass, where it cuts no pointer; on a map around the aircraft behind it, where it
// hides least.
double MissingTop(const NdPicture& picture) {
    const MapCompass& rose = picture.rose;
    return NdIsMap() && rose.IsFull() ? rose.centre.y + rose.radius * 0.56 : kNdMapBottom + 7;
}

void DrawMissing(NdPicture& picture) {
    if (const char* const text = NdMissingDatum(picture); text != nullptr) {
        const TextBox box = NdMissingBox(picture, text);
        picture.surface.Text(text, kMain, colour::Amber, box.x, box.y);
    }
    if (!std::isfinite(ShownAircraft().headingMag)) {
        DrawFlag(picture.surface, "HDG", colour::Red, kCentre,
                 picture.rose.centre.y - picture.rose.radius * 0.65);
    }
}

constexpr void (*kTexts[])(NdPicture&) = {
    DrawSpeeds,  DrawWindAt,       DrawCourseText, DrawHeadingBox,    DrawTrack,
    DrawMissing, DrawNextWaypoint, DrawReceiver,   DrawAdfAndTraffic,
};

}  // namespace

const char* NdMissingDatum(const NdPicture& picture) {
    const bool database = navDatabase.navaids.count > 0 || navDatabase.airports.count > 0 ||
                          navDatabase.airwayFixes.count > 0;
    const bool databaseWanted =
        nd.ndShowStations == 1 || nd.ndShowAirports == 1 || nd.ndShowWaypoints == 1;
    if (NdIsMap() && !IsUsable(picture.view)) {
        return "NO MAP";
    }
    if (NdIsMap() && databaseWanted && !database) {
        return "NO NAV DATA";
    }
    if (NdFollowsNavReceiver()) {
        return !picture.receivers.nav1Signal          ? "NO SIGNAL"
               : NavReceiverFailed(picture.receivers) ? "NAV FAIL"
                                                      : nullptr;
    }
    if (!picture.hasWaypoint) {
        return "NO FLIGHT PLAN";
    }
    return PositionKnown() ? nullptr : "NO POSITION";
}

TextBox NdMissingBox(NdPicture& picture, const char* text) {
    const CanvasSize size = picture.canvas.MeasureText(text, kMain);
    return {kCentre - size.width / 2, MissingTop(picture), size.width, size.height};
}

void DrawNdTexts(NdPicture& picture) {
    for (const auto draw : kTexts) {
        draw(picture);
    }
}

}  // namespace avq1
