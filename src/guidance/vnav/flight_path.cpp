#include "guidance/vnav/flight_path.h"

#include <algorithm>
#include <cmath>

namespace avq1 {
namespace {

constexpr double kLeastClimbFpm = 1500;
constexpr double kMostFpm = 3000;
constexpr double kAboveAirportFt = 200;
constexpr int kHalvings = 20;

class PathBuilder {
  public:
    PathBuilder(const PlanningInput& input, const PlannedProfile& profile)
        : input_(input),
          profile_(profile),
          hereNm_(input.at.alongNm),
          altitudeFt_(input.altitudeFt) {
        path_.Add(hereNm_, altitudeFt_);
    }

    void Climb(double changeNm, const ClimbSpeed& speed) {
        const RouteTable& route = *input_.route;
        bool restricted = false;
        for (std::int32_t i = input_.activeIndex; i < route.last; ++i) {
            const double restrictionFt = input_.Entry(i).altitude;
            if (profile_.targets[i] && BelongsToClimb(route, i) &&
                restrictionFt < profile_.cruiseAltitude) {
                restricted = true;
                ClimbTo(restrictionFt, route.alongNm[i] - changeNm, speed);
                LevelTo(route.alongNm[i] - changeNm);
            }
        }
        const double climbNm =
            input_.speeds.ClimbNm(std::max(profile_.cruiseAltitude - altitudeFt_, 0.0));
        ClimbTo(profile_.cruiseAltitude, restricted ? hereNm_ + climbNm : profile_.tocNm, speed);
        path_.topOfClimbNm = hereNm_;
    }

    // A climb that a descent must cut short ends where both meet.
    void CutClimbShort() {
        const std::int32_t passed = input_.activeIndex - 1;
        double low = input_.at.alongNm;
        double high = hereNm_;
        if (DescentBeginsNm(input_, profile_, altitudeFt_, passed) >= high) {
            return;
        }
        for (int i = 0; i < kHalvings; ++i) {
            const double middle = (low + high) / 2;
            const double reachedFt = path_.AltitudeAt(middle);
            (DescentBeginsNm(input_, profile_, reachedFt, passed) > middle ? low : high) = middle;
        }
        altitudeFt_ = path_.AltitudeAt(low);
        while (path_.count > 1 && path_.nodes[path_.count - 1].alongNm > low) {
            --path_.count;
        }
        hereNm_ = low;
        path_.Add(low, altitudeFt_);
        path_.topOfClimbNm = low;
    }

    void Descend(std::int32_t passedIndex, bool descending) {
        const RouteTable& route = *input_.route;
        bool first = !descending;
        std::int32_t target = passedIndex;
        while (target < route.last) {
            const double beginsNm =
                descending ? hereNm_ : DescentBeginsNm(input_, profile_, altitudeFt_, target);
            target = NextTarget(target);
            const double targetFt = TargetAltitude(target);
            if (targetFt < altitudeFt_) {
                LevelTo(beginsNm);
                path_.topOfDescentNm = first ? hereNm_ : path_.topOfDescentNm;
                first = false;
                altitudeFt_ = targetFt;
            }
            hereNm_ = std::max(hereNm_, route.alongNm[target]);
            path_.Add(hereNm_, altitudeFt_);
            descending = false;
        }
    }

    const FlightPath& Path() const { return path_; }

  private:
    void LevelTo(double alongNm) {
        if (alongNm > hereNm_) {
            hereNm_ = alongNm;
            path_.Add(hereNm_, altitudeFt_);
        }
    }

    void ClimbTo(double feet, double byNm, const ClimbSpeed& speed) {
        const double gainFt = feet - altitudeFt_;
        const double knots = speed.at(speed.context, (feet + altitudeFt_) / 2);
        if (gainFt <= 0 || !(knots > 0)) {
            altitudeFt_ = std::max(altitudeFt_, feet);
            return;
        }
        const double minutes = std::max((byNm - hereNm_) / (knots / 60), 0.0);
        const double fpm =
            minutes > 0 ? std::clamp(gainFt / minutes, kLeastClimbFpm, kMostFpm) : kMostFpm;
        hereNm_ += gainFt / fpm * knots / 60;
        altitudeFt_ = feet;
        path_.Add(hereNm_, feet);
    }

    std::int32_t NextTarget(std::int32_t index) const {
        const RouteTable& route = *input_.route;
        for (std::int32_t i = index + 1; i < route.last; ++i) {
            if (profile_.targets[i] && !BelongsToClimb(route, i)) {
                return i;
            }
        }
        return route.last;
    }

    double TargetAltitude(std::int32_t index) const {
        const PlanWaypoint& entry = input_.Entry(index);
        if (index != input_.route->last) {
            return entry.altitude;
        }
        return DescentEndFt(*input_.route, altitudeFt_) +
               (entry.type == kAirportType ? kAboveAirportFt : 0);
    }

    const PlanningInput& input_;
    const PlannedProfile& profile_;
    double hereNm_;
    double altitudeFt_;
    FlightPath path_;
};

}  // namespace

void FlightPath::Add(double alongNm, double altitudeFt) {
    if (count < kCapacity) {
        nodes[count++] = {alongNm, altitudeFt};
    }
}

double FlightPath::AltitudeAt(double alongNm) const {
    const auto end = nodes.begin() + static_cast<std::ptrdiff_t>(count);
    const auto after = std::find_if(nodes.begin(), end,
                                    [&](const PathNode& node) { return node.alongNm > alongNm; });
    if (after == nodes.begin() || after == end) {
        return count == 0 ? 0 : (after == end ? nodes[count - 1] : nodes[0]).altitudeFt;
    }
    const PathNode& before = *(after - 1);
    const double share = (alongNm - before.alongNm) / (after->alongNm - before.alongNm);
    return before.altitudeFt + share * (after->altitudeFt - before.altitudeFt);
}

FlightPath BuildFlightPath(const PlanningInput& input, const PlannedProfile& profile,
                           VerticalPhase phase, std::int32_t targetIndex, double changeNm,
                           const ClimbSpeed& climbSpeed) {
    PathBuilder builder(input, profile);
    if (phase == VerticalPhase::Climb) {
        builder.Climb(changeNm, climbSpeed);
        builder.CutClimbShort();
    }
    const bool descending = phase == VerticalPhase::Descent;
    builder.Descend((descending ? targetIndex : input.activeIndex) - 1, descending);
    return builder.Path();
}

}  // namespace avq1
