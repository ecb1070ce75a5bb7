// A logged flight along its plan's route, with its altitudes.
#include <algorithm>
#include <cmath>

#include "avqdata/log_formats.h"
#include "avqdata/text_tools.h"
#include "base/text.h"
#include "geometry/geometry.h"

namespace avqdata {
namespace {

using avq1::Format;
using avq1::LatLon;

constexpr double kMetresPerFoot = 0.3048;

// An entry of the plan, and how far along the route it lies.
struct RoutePlace {
    std::string ident;
    LatLon at;
    double alongNm = 0;
};

struct PlacedRecord {
    const LogRecord* record = nullptr;
    double flownNm = 0;  // by ground speed and time
    double alongNm = 0;  // on the route
};

std::vector<RoutePlace> PlacesOf(const ExchangePlan& plan) {
    std::vector<RoutePlace> places;
    for (const avq1::PlanWaypoint& entry : plan.entries) {
        if (!avq1::HasPosition(entry)) {
            continue;
        }
        const LatLon at{entry.latitude, entry.longitude};
        const double alongNm =
            places.empty() ? 0 : places.back().alongNm + DistanceNm(places.back().at, at);
        places.push_back({entry.ident, at, alongNm});
    }
    return places;
}

// Between two records the mean of their ground speeds is flown.
std::vector<PlacedRecord> FlownDistances(const std::vector<LogRecord>& records) {
    std::vector<PlacedRecord> placed;
    for (const LogRecord& record : records) {
        double flownNm = 0;
        if (!placed.empty()) {
            const LogRecord& before = *placed.back().record;
            flownNm = placed.back().flownNm + (before.groundSpeedKt + record.groundSpeedKt) / 2 *
                                                  (record.seconds - before.seconds) / 3600;
        }
        placed.push_back({&record, flownNm, 0});
    }
    return placed;
}

// Places the records from `first` on, up to `last`, between two distances along the route.
void Stretch(std::vector<PlacedRecord>& placed, std::size_t first, std::size_t last, double fromNm,
             double toNm) {
    const double flownNm = placed[last].flownNm - placed[first].flownNm;
    for (std::size_t i = first; i <= last; ++i) {
        const double share =
            flownNm > 0 ? (placed[i].flownNm - placed[first].flownNm) / flownNm : 1;
        placed[i].alongNm = fromNm + share * (toNm - fromNm);
    }
}

std::vector<PlacedRecord> PlaceRecords(const LoggedFlight& flight,
                                       const std::vector<RoutePlace>& places) {
    std::vector<PlacedRecord> placed = FlownDistances(flight.records);
    std::size_t anchor = 0;  // the last record whose place is known
    std::size_t next = 0;    // the first place not passed
    double anchorNm = 0;
    for (std::size_t i = 0; i < placed.size(); ++i) {
        const auto passed = std::find_if(
            places.begin() + static_cast<std::ptrdiff_t>(next), places.end(),
            [&](const RoutePlace& place) { return place.ident == placed[i].record->waypoint; });
        if (placed[i].record->waypoint == kNoLogWaypoint || passed == places.end()) {
            continue;
        }
        Stretch(placed, anchor, i, anchorNm, passed->alongNm);
        anchor = i;
        anchorNm = passed->alongNm;
        next = static_cast<std::size_t>(passed - places.begin()) + 1;
    }
    const std::size_t last = placed.size() - 1;
    const std::string& segment = placed[last].record->segment;
    const bool arrived = segment == "Landing" || segment == "Arr_Taxi" || segment == "End_Flight";
    const double routeNm = places.back().alongNm;
    const double restNm = placed[last].flownNm - placed[anchor].flownNm;
    Stretch(placed, anchor, last, anchorNm,
            arrived ? routeNm : std::min(anchorNm + restNm, routeNm));
    return placed;
}

LatLon PositionAlong(const std::vector<RoutePlace>& places, double alongNm) {
    const auto after = std::find_if(places.begin() + 1, places.end() - 1,
                                    [&](const RoutePlace& p) { return p.alongNm >= alongNm; });
    const RoutePlace& from = *(after - 1);
    LatLon at = from.at;
    const double legNm = std::clamp(alongNm - from.alongNm, 0.0, after->alongNm - from.alongNm);
    avq1::PointAtDistance(from.at.latitude, from.at.longitude, CourseTrue(from.at, after->at),
                          legNm, at.latitude, at.longitude);
    return at;
}

std::string Coordinates(const std::vector<RoutePlace>& places, const PlacedRecord& placed) {
    const LatLon at = PositionAlong(places, placed.alongNm);
    return Format("%.6f,%.6f,%.0f", at.longitude, at.latitude,
                  placed.record->altitudeFt * kMetresPerFoot);
}

std::string Placemark(const LogRecord& record, const std::string& coordinates) {
    const bool passed = record.waypoint != kNoLogWaypoint;
    return "  <Placemark><name>" + EscapedXml(passed ? record.waypoint : record.segment) +
           "</name><description>" +
           Format("%.0f ft, %.0f kt over ground, %.0f lb of fuel", record.altitudeFt,
                  record.groundSpeedKt, record.fuelLb) +
           "</description><Point><altitudeMode>absolute</altitudeMode><coordinates>" + coordinates +
           "</coordinates></Point></Placemark>\n";
}

}  // namespace

std::string FlightKml(const LoggedFlight& flight, const ExchangePlan& plan) {
    const std::vector<RoutePlace> places = PlacesOf(plan);
    if (places.size() < 2 || flight.records.empty()) {
        return {};
    }
    const std::vector<PlacedRecord> placed = PlaceRecords(flight, places);
    std::string track;
    std::string marks;
    std::string segment;
    for (const PlacedRecord& one : placed) {
        const std::string coordinates = Coordinates(places, one);
        track += (track.empty() ? "" : " ") + coordinates;
        if (one.record->segment != segment || one.record->waypoint != kNoLogWaypoint) {
            marks += Placemark(*one.record, coordinates);
        }
        segment = one.record->segment;
    }
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<kml xmlns=\"http://www.opengis.net/kml/2.2\">\n<Document>\n  <name>" +
           EscapedXml(flight.route) +
           "</name>\n  <Style id=\"flown\"><LineStyle><color>ffff00ff</color><width>3</width>"
           "</LineStyle></Style>\n  <Placemark><name>" +
           EscapedXml(flight.route) +
           "</name><styleUrl>#flown</styleUrl><LineString><extrude>1</extrude>"
           "<altitudeMode>absolute</altitudeMode><coordinates>" +
           track + "</coordinates></LineString></Placemark>\n" + marks + "</Document>\n</kml>\n";
}

}  // namespace avqdata
