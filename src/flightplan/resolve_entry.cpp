#include <cmath>

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

// Searches the place and takes the result nearest to the aircraft.
bool FindPlace(std::string_view place, SearchCategory category, PointRecord& found) {
    SearchIdent(place, category);
    const std::int32_t nearest = NearestResult();
    if (nearest < 1) {
        return false;
    }
    found = navDatabase.searchResults[nearest];
    return true;
}

double ToTrue(double courseMag) {
    return courseMag + aircraft.magneticVariation;
}

void ResolveBearingDistance(const PlaceBearing& reference, double distanceNm,
                            SearchCategory category) {
    PointRecord place;
    if (distanceNm > kHalfCircumferenceNm || !FindPlace(reference.place, category, place)) {
        navDatabase.searchResults.Clear();
        return;
    }
    navDatabase.searchResults.Clear();
    navDatabase.searchResults.Append(place);
    planBook.pendingBearing = reference.bearingMag;
    planBook.pendingDistanceNm = std::trunc(distanceNm);
}

void ResolveCrossing(const PlaceBearing& first, const PlaceBearing& second,
                     SearchCategory category) {
    PointRecord place1;
    PointRecord place2;
    LatLon crossing;
    if (FindPlace(first.place, category, place1) && FindPlace(second.place, category, place2) &&
        CrossingOfCourses({place1.latitude, place1.longitude}, ToTrue(first.bearingMag),
                          {place2.latitude, place2.longitude}, ToTrue(second.bearingMag),
                          crossing)) {
        OfferPilotPoint(crossing, first.place.substr(0, kBearingDigits));
        return;
    }
    navDatabase.searchResults.Clear();
}

void ResolvePlaceBearing(std::string_view text, std::size_t slash, SearchCategory category) {
    navDatabase.searchResults.Clear();
    PlaceBearing first;
    PlaceBearing second;
    if (!ParsePlaceBearing(text.substr(0, slash), first)) {
        return;
    }
    // A place may begin with a digit, so only a whole number counts as a distance.
    const std::string_view rest = text.substr(slash + 1);
    const bool isNumber = rest.find_first_not_of("0123456789.") == std::string_view::npos;
    if (isNumber && ToNumber(rest) > 0) {
        ResolveBearingDistance(first, ToNumber(rest), category);
    } else if (text.size() > kLongestPlaceBearingDistance && ParsePlaceBearing(rest, second)) {
        ResolveCrossing(first, second, category);
    }
}

}  // namespace

void ResolveEntry(std::string_view text, SearchCategory category) {
    planBook.pendingBearing = -1;  // of an entry that was given up
    planBook.pendingDistanceNm = -1;
    LatLon point;
    const std::size_t slash = text.find('/');
    if (ParseTypedPosition(text, point)) {
        OfferPilotPoint(point, kPilotPointPrefix);
    } else if (slash != std::string_view::npos && slash > 0) {
        ResolvePlaceBearing(text, slash, category);
    } else {
        SearchIdent(text, category);
    }
}

}  // namespace avq1
