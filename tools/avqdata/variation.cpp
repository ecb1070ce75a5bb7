#include "avqdata/variation.h"

#include <algorithm>
#include <cmath>

#include "avqdata/cycle.h"
#include "avqdata/text_tools.h"
#include "magneticfield/magnetic_field.h"

namespace avqdata {
namespace {

constexpr double kLargestMisfitDeg = 25.0;

double Misfit(const RunwayEnd& end, double heading) {
    const int number = WholeNumber(std::string_view(end.ident).substr(0, 2)).value_or(0);
    return std::abs(TurnDeg(heading, number * 10.0));
}

// False when the heading cannot be that of the designator.
bool FillHeading(double variation, RunwayEnd& end) {
    const double offset = end.courseMag;
    end.headingMag = Normalized(end.headingTrue - variation);
    if (Misfit(end, end.headingMag) > kLargestMisfitDeg) {
        end.headingMag = end.headingTrue;  // near the poles runways are numbered by true north
    }
    end.courseMag = Normalized(end.headingMag + offset);
    end.needsVariation = false;
    return Misfit(end, end.headingMag) <= kLargestMisfitDeg;
}

}  // namespace

void FillHeadings(int cycle, Dataset& data, Report& report) {
    const double year = YearOfCycle(cycle).value_or(magneticfield::kModelEpoch);
    for (Airport& airport : data.airports) {
        const bool wanted = std::any_of(airport.runways.begin(), airport.runways.end(),
                                        [](const RunwayEnd& end) { return end.needsVariation; });
        const double variation =
            wanted ? magneticfield::Variation(airport.at.latitude, airport.at.longitude, year) : 0;
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
