// Plans for maps, written only: GeoJSON (RFC 7946) and KML (OGC 07-147r2). Positions have six
// decimals, a tenth of a metre.
#include <cmath>
#include <nlohmann/json.hpp>

#include "avqdata/plan_exchange.h"
#include "avqdata/plan_track.h"
#include "base/text.h"

namespace avqdata {
namespace {

using avq1::PlanWaypoint;
using nlohmann::ordered_json;

bool IsWrittenOnly(std::string_view) {
    return false;
}

double Rounded6(double value) {
    return std::round(value * 1e6) / 1e6 + 0.0;  // no -0.0
}

// ---- GeoJSON ----

ordered_json PointOf(double latitude, double longitude) {
    return ordered_json::array({Rounded6(longitude), Rounded6(latitude)});
}

ordered_json RouteGeometry(const ExchangePlan& plan) {
    ordered_json lines = ordered_json::array();
    for (const RouteLine& line : RouteLines(plan)) {
        ordered_json points = ordered_json::array();
        for (const avq1::LatLon& at : line) {
            points.push_back(PointOf(at.latitude, at.longitude));
        }
        lines.push_back(std::move(points));
    }
    if (lines.empty()) {
        return nullptr;  // a route that stays where it is
    }
    const bool single = lines.size() == 1;
    return {{"type", single ? "LineString" : "MultiLineString"},
            {"coordinates", single ? lines[0] : lines}};
}

void PutText(ordered_json& object, const char* key, const std::string& value) {
    if (!value.empty()) {
        object[key] = value;
    }
}

void PutNumber(ordered_json& object, const char* key, double value, double none) {
    if (value != none) {
        object[key] = value;
    }
}

ordered_json TerminalProperties(const TerminalChoice& choice) {
    ordered_json properties = ordered_json::object();
    PutText(properties, "runway", choice.runway);
    PutText(properties, "procedure", choice.procedure);
    PutText(properties, "transition", choice.transition);
    PutText(properties, "approach", choice.approach);
    PutText(properties, "approachTransition", choice.approachTransition);
    return properties;
}

ordered_json RouteFeature(const ExchangePlan& plan) {
    ordered_json properties{{"from", IdentOfFirst(plan)}, {"to", IdentOfLast(plan)}};
    PutNumber(properties, "cruiseAltitudeFt", plan.cruiseAltitudeFt, 0);
    PutNumber(properties, "fuel", plan.fuelTotal, 0);
    PutNumber(properties, "reserveFuel", plan.reserveFuel, 0);
    for (const auto& [key, choice] :
         {std::pair("departure", &plan.departure), std::pair("arrival", &plan.arrival)}) {
        const ordered_json chosen = TerminalProperties(*choice);
        if (!chosen.empty()) {
            properties[key] = chosen;
        }
    }
    return {{"type", "Feature"}, {"geometry", RouteGeometry(plan)}, {"properties", properties}};
}

ordered_json WaypointFeature(const PlanFormat& format, const PlanWaypoint& entry,
                             std::size_t number) {
    ordered_json properties{
        {"number", number}, {"ident", entry.ident}, {"type", TypeName(format, entry)}};
    PutText(properties, "via", entry.via);
    PutText(properties, "procedure", entry.procedure);
    PutText(properties, "frequency", entry.frequency);
    PutNumber(properties, "altitudeFt", entry.altitude, avq1::kUnset);
    PutNumber(properties, "speedKt", entry.speed, avq1::kUnset);
    return {{"type", "Feature"},
            {"geometry",
             {{"type", "Point"}, {"coordinates", PointOf(entry.latitude, entry.longitude)}}},
            {"properties", properties}};
}

bool WriteGeoJson(const PlanFormat& format, const ExchangePlan& plan, std::string& text,
                  std::string&) {
    const auto line = [](const ordered_json& feature) {
        return feature.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
    };
    text = "{\"type\":\"FeatureCollection\",\"features\":[\n" + line(RouteFeature(plan));
    for (std::size_t i = 0; i < plan.entries.size(); ++i) {
        if (avq1::HasPosition(plan.entries[i])) {
            text += ",\n" + line(WaypointFeature(format, plan.entries[i], i + 1));
        }
    }
    text += "\n]}\n";
    return true;
}

// ---- KML ----

std::string KmlElement(const char* name, std::string_view value) {
    return std::string("<") + name + ">" + EscapedXml(value) + "</" + name + ">";
}

std::string KmlPoint(double latitude, double longitude) {
    return avq1::Format("%.6f,%.6f", Rounded6(longitude), Rounded6(latitude));
}

// "VOR 113.70, J121, SID, 12000 ft, 250 kt"
std::string Description(const PlanFormat& format, const PlanWaypoint& entry) {
    std::string text(TypeName(format, entry));
    text += entry.frequency.empty() ? "" : " " + entry.frequency;
    text += entry.via.empty() ? "" : ", " + entry.via;
    text += entry.procedure.empty() ? "" : ", " + entry.procedure;
    text += entry.altitude == avq1::kUnset ? "" : avq1::Format(", %.0f ft", entry.altitude);
    text += entry.speed == avq1::kUnset ? "" : avq1::Format(", %.0f kt", entry.speed);
    return text;
}

std::string KmlRoute(const ExchangePlan& plan, const std::string& title) {
    std::string text = "  <Placemark>\n    " + KmlElement("name", title) +
                       "\n    <styleUrl>#route</styleUrl>\n    <MultiGeometry>\n";
    for (const RouteLine& line : RouteLines(plan)) {
        text += "      <LineString><tessellate>1</tessellate><coordinates>";
        for (std::size_t i = 0; i < line.size(); ++i) {
            text += (i == 0 ? "" : " ") + KmlPoint(line[i].latitude, line[i].longitude);
        }
        text += "</coordinates></LineString>\n";
    }
    return text + "    </MultiGeometry>\n  </Placemark>\n";
}

bool WriteKml(const PlanFormat& format, const ExchangePlan& plan, std::string& text, std::string&) {
    const std::string title =
        std::string(IdentOfFirst(plan)) + " to " + std::string(IdentOfLast(plan));
    text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<kml xmlns=\"http://www.opengis.net/kml/2.2\">\n<Document>\n  " +
        KmlElement("name", title) +
        "\n  <Style id=\"route\"><LineStyle><color>ffff00ff</color><width>3</width></LineStyle>"
        "</Style>\n";
    text += KmlRoute(plan, title);
    for (const PlanWaypoint& entry : plan.entries) {
        if (avq1::HasPosition(entry)) {
            text += "  <Placemark>" + KmlElement("name", entry.ident) +
                    KmlElement("description", Description(format, entry)) + "<Point><coordinates>" +
                    KmlPoint(entry.latitude, entry.longitude) +
                    "</coordinates></Point></Placemark>\n";
        }
    }
    text += "</Document>\n</kml>\n";
    return true;
}

}  // namespace

const PlanFormat kGeoJsonPlanFormat{
    .name = "geojson",
    .title = "GeoJSON",
    .extensions = "geojson json",
    .sniff = IsWrittenOnly,
    .read = nullptr,
    .write = WriteGeoJson,
    .carries = kCarriesAll,
    .typeNames = kPlanTypes,
    .longestIdent = 16,
    .longestPointIdent = 16,
    .endsAreAirports = false,
    .mostEntries = 1000,
};

const PlanFormat kKmlPlanFormat{
    .name = "kml",
    .title = "KML",
    .extensions = "kml",
    .sniff = IsWrittenOnly,
    .read = nullptr,
    .write = WriteKml,
    .carries = kCarriesAll &
               ~unsigned{kCarriesCruise | kCarriesFuel | kCarriesTerminal | kCarriesApproaches},
    .typeNames = kPlanTypes,
    .longestIdent = 16,
    .longestPointIdent = 16,
    .endsAreAirports = false,
    .mostEntries = 1000,
};

}  // namespace avqdata
