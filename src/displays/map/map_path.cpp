#include "displays/map/map_path.h"

#include <algorithm>
#include <cmath>

#include "geometry/geometry.h"

namespace avq1 {
namespace {

struct Turn {
    CanvasPoint begin;
    CanvasPoint corner;
    CanvasPoint end;
    double degrees = 0;  // 0: no turn to be seen
};

Turn TurnAt(const CanvasPoint& from, const PathPoint& corner, const CanvasPoint& to) {
    constexpr double kLeastPx = 1;
    constexpr double kLeastDeg = 3;
    constexpr double kMostDeg = 150;  // nearly back: the arc would be a spike
    const CanvasPoint in{corner.at.x - from.x, corner.at.y - from.y};
    const CanvasPoint out{to.x - corner.at.x, to.y - corner.at.y};
    const double inPx = std::hypot(in.x, in.y);
    const double outPx = std::hypot(out.x, out.y);
    const double turnPx = std::min({corner.turnPx, inPx / 2, outPx / 2});
    const double degrees =
        std::abs(std::atan2(in.x * out.y - in.y * out.x, in.x * out.x + in.y * out.y)) / kDegToRad;
    Turn turn{corner.at, corner.at, corner.at};
    if (turnPx >= kLeastPx && degrees >= kLeastDeg && degrees <= kMostDeg) {
        turn.degrees = degrees;
        turn.begin = {corner.at.x - in.x / inPx * turnPx, corner.at.y - in.y / inPx * turnPx};
        turn.end = {corner.at.x + out.x / outPx * turnPx, corner.at.y + out.y / outPx * turnPx};
    }
    return turn;
}

// Points of the circle's arc, parts 0 to 1 of it.
CanvasPoint OnArc(const Turn& turn, double part) {
    const double middle = std::cos(turn.degrees / 2 * kDegToRad);
    const double a = (1 - part) * (1 - part);
    const double b = 2 * middle * part * (1 - part);
    const double c = part * part;
    const double sum = a + b + c;
    return {(a * turn.begin.x + b * turn.corner.x + c * turn.end.x) / sum,
            (a * turn.begin.y + b * turn.corner.y + c * turn.end.y) / sum};
}

void AppendHalf(const Turn& turn, double first, std::vector<CanvasPoint>& line) {
    constexpr double kStepDeg = 15;
    const int steps = turn.degrees > 0 ? 1 + static_cast<int>(turn.degrees / 2 / kStepDeg) : 0;
    for (int i = 0; i <= steps; ++i) {
        line.push_back(steps == 0 ? turn.corner : OnArc(turn, first + 0.5 * i / steps));
    }
}

}  // namespace

void LegOfPath(const std::vector<PathPoint>& path, std::size_t leg, bool closed,
               std::vector<CanvasPoint>& line) {
    const std::size_t count = path.size();
    const auto turnAt = [&](std::size_t i) {
        const bool end = !closed && (i == 0 || i + 1 == count);
        return end ? Turn{path[i].at, path[i].at, path[i].at}
                   : TurnAt(path[(i + count - 1) % count].at, path[i], path[(i + 1) % count].at);
    };
    line.clear();
    AppendHalf(turnAt((leg + count - 1) % count), 0.5, line);
    AppendHalf(turnAt(leg % count), 0, line);
}

}  // namespace avq1
