#include <cmath>
#include <utility>

#include "base/text.h"
#include "flightplan/pilot_points.h"
#include "flightplan/plan_edit.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr std::size_t kBearingDigits = 3;
constexpr std::size_t kLongestPlaceBearingDistance = 12;
constexpr double kHalfCircumferenceNm = 10800;

struct PlaceBearing {
    std::string_view place;
    double bearingMag = 0;
};

// Splits "BOS090". False when there is no place, or no bearing of 000 to 360 after it.
bool ParsePlaceBearing(std::string_view text, PlaceBearing& result) {
    if (text.size() <= kBearingDigits) {
        return false;
    }
    const std::string_view digits = text.substr(text.size() - kBearingDigits);
    if (digits.find_first_not_of("0123456789") != std::string_view::npos) {
        return false;
    }
    result.place = text.substr(0, text.size() - kBearingDigits);
    result.bearingMag = ToNumber(digits);
    return result.bearingMag <= 360;
}

// What an entry is resolved for, and into.
struct Resolution {
    const FlightPlan& plan;
    SearchCategory category;
    SearchResults& results;
};

// Searches the place and takes the result nearest to the aircraft.
bool FindPlace(std::string_view place, SearchCategory category, FoundPoint& found) {
    SearchResults results;
    SearchIdent(place, category, results);
    const std::int32_t nearest = NearestResult(results);
    found = results[nearest];
    return nearest >= 1;
}

double ToTrue(double courseMag) {
    return courseMag + aircraft.magneticVariation;
}

void ResolveBearingDistance(const PlaceBearing& reference, double distanceNm,
                            const Resolution& resolution) {
    FoundPoint place;
    if (distanceNm <= kHalfCircumferenceNm &&
        FindPlace(reference.place, resolution.category, place)) {
        resolution.results.Append(place);
        resolution.results.pendingBearingMag = reference.bearingMag;
        resolution.results.pendingDistanceNm = std::trunc(distanceNm);
    }
}

void ResolveCrossing(const PlaceBearing& first, const PlaceBearing& second,
                     const Resolution& resolution) {
    FoundPoint place1;
    FoundPoint place2;
    LatLon crossing;
    if (FindPlace(first.place, resolution.category, place1) &&
        FindPlace(second.place, resolution.category, place2) &&
        CrossingOfCourses({place1.latitude, place1.longitude}, ToTrue(first.bearingMag),
                          {place2.latitude, place2.longitude}, ToTrue(second.bearingMag),
                          crossing)) {
        const std::string_view prefix = first.place.substr(0, kBearingDigits);
        resolution.results.Append(
            PilotPoint(crossing, NextPilotPointName(resolution.plan, prefix)));
    }
}

void ResolvePlaceBearing(std::string_view text, std::size_t slash, const Resolution& resolution) {
    PlaceBearing first;
    PlaceBearing second;
    if (!ParsePlaceBearing(text.substr(0, slash), first)) {
        return;
    }
    // A place may begin with a digit, so only a whole number counts as a distance.
    const std::string_view rest = text.substr(slash + 1);
    const bool isNumber = rest.find_first_not_of("0123456789.") == std::string_view::npos;
    if (isNumber && ToNumber(rest) > 0) {
        ResolveBearingDistance(first, ToNumber(rest), resolution);
    } else if (text.size() > kLongestPlaceBearingDistance && ParsePlaceBearing(rest, second)) {
        ResolveCrossing(first, second, resolution);
    }
}

}  // namespace

void ResolveEntry(const FlightPlan& plan, std::string_view text, SearchCategory category,
                  SearchResults& results) {
    SearchResults found;
    LatLon position;
    const std::size_t slash = text.find('/');
    if (ParseTypedPosition(text, position)) {
        found.Append(PilotPoint(position, NextPilotPointName(plan, kPilotPointPrefix)));
    } else if (slash != std::string_view::npos && slash > 0) {
        ResolvePlaceBearing(text, slash, {plan, category, found});
    } else {
        SearchIdent(text, category, found);
    }
    results = std::move(found);
}

}  // namespace avq1
