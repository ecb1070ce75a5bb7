// The attitude display's figure: sky and ground, pitch ladder, bank scale, flight director.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "displays/eadi/eadi_picture.h"
#include "drawing/fixed_text.h"
#include "drawing/palette.h"
#include "geometry/geometry.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "simlink/sim_variables.h"

namespace avq1 {
namespace {

constexpr std::uint32_t kSky = 0xFF0060C4;
constexpr std::uint32_t kGround = 0xFF946239;

// The ladder stays inside the bank scale and above the localizer's.
constexpr double kLadderRadius = 70;
constexpr double kBankRadius = 82;
constexpr double kChevronsBeyondDeg = 30;

// Left wing down turns the world clockwise; nose up moves it down.
void TurnWithWorld(EadiPicture& picture) {
    picture.canvas.Rotate(picture.bank);
    picture.canvas.Translate(0, -picture.pitch * kEadiPxPerPitchDeg);
}

// One rung, in tenths of a degree above the horizon, when all of it is on the ladder's circle.
void DrawRung(EadiPicture& picture, int tenths) {
    constexpr double kNumberPx = 15;
    const double y = -tenths / 10.0 * kEadiPxPerPitchDeg;
    const bool numbered = tenths % 100 == 0;
    const double half = numbered ? 26 : tenths % 50 == 0 ? 14 : 7;
    const double fromCentre = (tenths / 10.0 + picture.pitch) * kEadiPxPerPitchDeg;
    if (std::hypot(half, fromCentre) > kLadderRadius) {
        return;
    }
    picture.canvas.DrawLine({colour::White, 1.2}, -half, y, half, y);
    if (numbered && std::hypot(half + kNumberPx, fromCentre) <= kLadderRadius) {
        constexpr CanvasFont kFont{"Arial", 9, true};
        constexpr double kGapPx = 3;
        const FixedText number("%d", std::abs(tenths / 10));
        const double top = y - 5.2;  // digits level with the rung
        picture.surface.TextRight(number, kFont, colour::White, -half - kGapPx, top);
        picture.surface.Text(number, kFont, colour::White, half + kGapPx, top);
    }
}

// Beyond 30 degrees of pitch: red marks that point to the horizon.
void DrawChevrons(EadiPicture& picture) {
    constexpr double kHalf = 20;
    constexpr double kDepth = 26;
    constexpr CanvasPen kPen{0xFFF10101, 4};
    for (const double pitchDeg : {40.0, 55.0, 70.0, 85.0}) {
        for (const double side : {-1.0, 1.0}) {  // above, below the horizon
            const double point = side * pitchDeg * kEadiPxPerPitchDeg;
            const double ends = point + side * kDepth;
            const std::array<CanvasPoint, 3> mark{{{-kHalf, ends}, {0, point}, {kHalf, ends}}};
            picture.canvas.DrawPolyline(kPen, mark, false);
        }
    }
}

void DrawSingleCue(EadiPicture& picture, double commandY, double turn) {
    constexpr std::array<CanvasPoint, 3> kRightBar{{{4, 0}, {52, 13}, {52, 20}}};
    constexpr std::array<CanvasPoint, 3> kLeftBar{{{-4, 0}, {-52, 13}, {-52, 20}}};
    picture.canvas.Translate(0, commandY);
    picture.canvas.Rotate(turn);
    for (const auto& bar : {kRightBar, kLeftBar}) {
        picture.canvas.FillPolygon(colour::Magenta, bar);
        picture.canvas.DrawPolyline({colour::Black, 0.8}, bar, true);
    }
}

void DrawDualCue(EadiPicture& picture, double commandX, double commandY) {
    constexpr double kHalfPx = 45;
    picture.canvas.DrawLine({colour::Magenta, 3}, -kHalfPx, commandY, kHalfPx, commandY);
    picture.canvas.DrawLine({colour::Magenta, 3}, commandX, -kHalfPx, commandX, kHalfPx);
}

}  // namespace

void DrawSkyAndGround(EadiPicture& picture) {
    const EadiLayout& layout = picture.layout;
    if (!picture.attitudeValid) {
        picture.canvas.DrawRectangle({colour::Grey, 1}, layout.left + 0.5, layout.top + 0.5,
                                     layout.right - layout.left - 1,
                                     layout.bottom - layout.top - 1);
        DrawFlag(picture.surface, "ATT", colour::Red, 0, -32);
        return;
    }
    constexpr double kBeyond = 600;  // farther than any corner at any attitude
    picture.canvas.FillRectangle(kSky, layout.left, layout.top, layout.right - layout.left,
                                 layout.bottom - layout.top);
    TurnWithWorld(picture);
    picture.canvas.FillRectangle(kGround, -kBeyond, 0, 2 * kBeyond, kBeyond);
    picture.canvas.DrawLine({colour::White, 1.5}, -kBeyond, 0, kBeyond, 0);
}

void DrawPitchLadder(EadiPicture& picture) {
    if (!picture.attitudeValid) {
        return;
    }
    constexpr int kRungTenths = 25;
    constexpr int kLastRung = 900 / kRungTenths;
    constexpr double kReachTenths = (kLadderRadius + 6) / kEadiPxPerPitchDeg * 10;
    const double upTenths = -picture.pitch * 10;
    const int first = static_cast<int>(std::ceil((upTenths - kReachTenths) / kRungTenths));
    const int last = static_cast<int>(std::floor((upTenths + kReachTenths) / kRungTenths));
    TurnWithWorld(picture);
    for (int rung = std::max(first, -kLastRung); rung <= std::min(last, kLastRung); ++rung) {
        if (rung != 0) {
            DrawRung(picture, rung * kRungTenths);
        }
    }
    if (std::abs(picture.pitch) > kChevronsBeyondDeg) {
        DrawChevrons(picture);
    }
}

void DrawBankScale(EadiPicture& picture) {
    if (!picture.attitudeValid) {
        return;
    }
    struct Mark {
        double bankDeg;
        double lengthPx;
    };
    constexpr Mark kMarks[] = {{10, 5}, {20, 5}, {30, 9}, {45, 5}, {60, 9}};
    std::array<CanvasPoint, 4 * std::size(kMarks)> segments;
    std::size_t used = 0;
    for (const Mark& mark : kMarks) {
        const double angle = mark.bankDeg * kDegToRad;
        for (const double side : {-1.0, 1.0}) {
            for (const double radius : {kBankRadius, kBankRadius + mark.lengthPx}) {
                segments[used++] = {side * radius * std::sin(angle), -radius * std::cos(angle)};
            }
        }
    }
    picture.canvas.DrawSegments({colour::White, 1.4}, segments);
    picture.canvas.DrawArc({colour::White, 1.2}, {-kBankRadius, -kBankRadius},
                           {2 * kBankRadius, 2 * kBankRadius}, -150, 120);
    constexpr std::array<CanvasPoint, 3> kZero{
        {{0, -kBankRadius}, {-5, -kBankRadius - 9}, {5, -kBankRadius - 9}}};
    picture.canvas.FillPolygon(colour::White, kZero);
    // the pointer stays with the sky
    constexpr std::array<CanvasPoint, 3> kPointer{
        {{0, -kBankRadius + 1}, {-6, -kBankRadius + 11}, {6, -kBankRadius + 11}}};
    picture.canvas.Rotate(picture.bank);
    picture.canvas.FillPolygon(colour::Yellow, kPointer);
}

// Below 200 ft over the localizer's runway: it rises to the aircraft figure, and stands where the
// localizer needle does.
void DrawRisingRunway(EadiPicture& picture) {
    constexpr double kBelowFt = 200;
    constexpr double kLowestFt = -20;
    constexpr double kTopAtGround = 14;  // under the figure
    constexpr double kPxPerFt = 0.25;
    const AircraftState& shown = ShownAircraft();
    const bool localizer = (ReadNavFlagWord() & kNavFlagLocalizer) != 0;
    if (!picture.attitudeValid || !localizer || !std::isfinite(shown.nav1CdiNeedle) ||
        !(shown.radioAltitudeFt < kBelowFt && shown.radioAltitudeFt >= kLowestFt)) {
        return;
    }
    const double x = std::clamp(shown.nav1CdiNeedle * kEadiPxPerCourseUnit, -80.0, 80.0);
    const double top = kTopAtGround + std::max(shown.radioAltitudeFt, 0.0) * kPxPerFt;
    const std::array<CanvasPoint, 4> runway{
        {{x - 8, top}, {x + 8, top}, {x + 20, top + 11}, {x - 20, top + 11}}};
    picture.canvas.FillPolygon(colour::Green, runway);
    picture.canvas.DrawPolyline({colour::Black, 0.8}, runway, true);
    picture.canvas.DrawLine({colour::Magenta, 1.5}, x, top, x, top + 11);
}

// The cue stands where the aircraft figure would be if the commands were flown.
void DrawFlightDirector(EadiPicture& picture) {
    if (!picture.attitudeValid || !FlightDirectorOn()) {
        return;
    }
    constexpr double kLimitPx = 55;
    constexpr double kLimitDeg = 45;
    constexpr double kPxPerBankDeg = 1.6;
    const double bankLeft = ShownAircraft().flightDirectorBank - picture.bank;
    const double pitchDown = ShownAircraft().flightDirectorPitch - picture.pitch;
    if (!std::isfinite(bankLeft) || !std::isfinite(pitchDown)) {
        DrawFlag(picture.surface, "FD", colour::Amber, -78, 40);
        return;
    }
    const double commandY = std::clamp(pitchDown * kEadiPxPerPitchDeg, -kLimitPx, kLimitPx);
    if (settings.EadiDualCue == 1) {
        DrawDualCue(picture, std::clamp(-bankLeft * kPxPerBankDeg, -kLimitPx, kLimitPx), commandY);
    } else {
        DrawSingleCue(picture, commandY, std::clamp(-bankLeft, -kLimitDeg, kLimitDeg));
    }
}

// Wings level always. Under the single cue a delta that fits between its bars, else bars and dot.
void DrawAircraftFigure(EadiPicture& picture) {
    constexpr CanvasPen kEdge{colour::White, 1};
    const auto draw = [&](std::span<const CanvasPoint> shape) {
        picture.canvas.FillPolygon(colour::Black, shape);
        picture.canvas.DrawPolyline(kEdge, shape, true);
    };
    if (settings.EadiDualCue == 1) {
        constexpr std::array<CanvasPoint, 6> kRightWing{
            {{26, -2.5}, {64, -2.5}, {64, 2.5}, {31, 2.5}, {31, 9}, {26, 9}}};
        constexpr std::array<CanvasPoint, 6> kLeftWing{
            {{-26, -2.5}, {-64, -2.5}, {-64, 2.5}, {-31, 2.5}, {-31, 9}, {-26, 9}}};
        constexpr std::array<CanvasPoint, 4> kNose{{{-3, -3}, {3, -3}, {3, 3}, {-3, 3}}};
        draw(kRightWing);
        draw(kLeftWing);
        draw(kNose);
        return;
    }
    constexpr std::array<CanvasPoint, 4> kDelta{{{0, 0}, {42, 21}, {0, 9}, {-42, 21}}};
    constexpr std::array<CanvasPoint, 4> kRightMark{{{62, -2}, {78, -2}, {78, 2}, {62, 2}}};
    constexpr std::array<CanvasPoint, 4> kLeftMark{{{-62, -2}, {-78, -2}, {-78, 2}, {-62, 2}}};
    draw(kDelta);
    draw(kRightMark);
    draw(kLeftMark);
}

}  // namespace avq1
