#include "avqdata/variation.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

constexpr double kReachDeg = 10.0;  // of latitude
constexpr std::size_t kNeighbours = 6;
constexpr double kLargestMisfitDeg = 25.0;

struct Neighbour {
    double squareDeg = kReachDeg * kReachDeg;
    double variation = 0;
};

double DesignatorHeading(const RunwayEnd& end) {
    return WholeNumber(std::string_view(end.ident).substr(0, 2)).value_or(0) * 10.0;
}

double Misfit(const RunwayEnd& end, double heading) {
    return std::abs(TurnDeg(heading, DesignatorHeading(end)));
}

// False when the heading cannot be that of the designator.
bool FillHeading(const std::optional<double>& variation, RunwayEnd& end) {
    const double offset = end.courseMag;
    double heading = variation ? Normalized(end.headingTrue - *variation) : DesignatorHeading(end);
    if (Misfit(end, heading) > kLargestMisfitDeg) {
        heading = end.headingTrue;  // near the poles runways are numbered by true north
    }
    end.headingMag = heading;
    end.courseMag = Normalized(heading + offset);
    end.needsVariation = false;
    return Misfit(end, heading) <= kLargestMisfitDeg &&
           (variation || Misfit(end, end.headingTrue) < 90.0);
}

}  // namespace

VariationField::VariationField(std::vector<VariationSample> samples)
    : samples_(std::move(samples)) {
    std::stable_sort(samples_.begin(), samples_.end(),
                     [](const VariationSample& a, const VariationSample& b) {
                         return a.at.latitude < b.at.latitude;
                     });
}

std::optional<double> VariationField::At(const LatLon& place) const {
    std::array<Neighbour, kNeighbours> nearest;
    std::size_t count = 0;
    const double shrink = std::cos(place.latitude * avq1::kDegToRad);
    auto sample = std::lower_bound(
        samples_.begin(), samples_.end(), place.latitude - kReachDeg,
        [](const VariationSample& s, double latitude) { return s.at.latitude < latitude; });
    for (; sample != samples_.end() && sample->at.latitude <= place.latitude + kReachDeg;
         ++sample) {
        const double north = sample->at.latitude - place.latitude;
        const double east = TurnDeg(place.longitude, sample->at.longitude) * shrink;
        const double square = north * north + east * east;
        if (square >= nearest.back().squareDeg) {
            continue;
        }
        nearest.back() = {square, sample->variation};
        count = std::min(count + 1, kNeighbours);
        std::sort(nearest.begin(), nearest.end(),
                  [](const Neighbour& a, const Neighbour& b) { return a.squareDeg < b.squareDeg; });
    }
    if (count == 0) {
        return std::nullopt;
    }
    // Relative to the nearest, so that neighbours on both sides of 180 degrees average well.
    double weights = 0;
    double sum = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const double weight = 1.0 / (nearest[i].squareDeg + 1e-4);
        weights += weight;
        sum += weight * TurnDeg(nearest[0].variation, nearest[i].variation);
    }
    return nearest[0].variation + sum / weights;
}

void FillHeadings(Dataset& data, Report& report) {
    const VariationField field(data.variations);
    for (Airport& airport : data.airports) {
        const bool wanted = std::any_of(airport.runways.begin(), airport.runways.end(),
                                        [](const RunwayEnd& end) { return end.needsVariation; });
        if (!wanted) {
            continue;
        }
        const std::optional<double> variation = field.At(airport.at);
        if (!variation) {
            report.Add(Topic::Warning,
                       "airports far from any variation: headings as their runways are numbered",
                       airport.ident);
        }
        std::erase_if(airport.runways, [&](RunwayEnd& end) {
            const bool fits = !end.needsVariation || FillHeading(variation, end);
            if (!fits) {
                report.Add(Topic::Dropped, "runway ends whose direction does not fit their number",
                           airport.ident + " " + end.ident);
            }
            return !fits;
        });
    }
}

}  // namespace avqdata
