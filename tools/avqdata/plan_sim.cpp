// Plans of the simulator's planner in both of its forms. The module's reader reads them, at the
// precision of the file; the writers write what the planner itself writes.
#include <cmath>

#include "avqdata/plan_exchange.h"
#include "avqdata/text_tools.h"
#include "base/text.h"
#include "flightplan/sim_plan.h"

namespace avqdata {
namespace {

using avq1::Format;
using avq1::PlanWaypoint;

constexpr std::size_t kMostSimWaypoints = 1000;  // what the module's reader takes

// ---- reading ----

bool IsSimXml(std::string_view text) {
    return (text.find("<ATCWaypoint") != std::string_view::npos ||
            text.find("<FlightPlan.FlightPlan>") != std::string_view::npos) &&
           !IsEfbText(text);
}

bool IsSimKeys(std::string_view text) {
    constexpr std::string_view kWaypoint = "waypoint.";
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        const std::string_view line = Trim(text.substr(start, end - start));
        if (avq1::EqualsIgnoreCase(line.substr(0, kWaypoint.size()), kWaypoint) &&
            line.find('=') != std::string_view::npos) {
            return true;
        }
        start = end + 1;
    }
    return false;
}

void ReadEnds(const avq1::SimPlan& read, ExchangePlan& plan) {
    plan.departure.runway = RunwayFix(read.departure.runway);
    plan.departure.procedure = read.departure.procedure;
    plan.arrival.runway = RunwayFix(read.arrival.runway);
    plan.arrival.procedure = read.arrival.procedure;
    if (!read.arrival.approach.empty()) {
        plan.arrival.approach =
            ApproachName(read.arrival.approach, read.arrival.runway, read.arrival.approachSuffix);
    }
}

void ReadSim(const PlanSource& source, ExchangePlan& plan) {
    const avq1::SimPlan read = avq1::ReadSimPlan(source.text);
    for (const avq1::SimWaypoint& waypoint : read.waypoints) {
        PlanWaypoint entry;
        entry.ident = waypoint.ident;
        entry.type = waypoint.type;
        entry.latitude = waypoint.exact.latitude;
        entry.longitude = waypoint.exact.longitude;
        entry.via = waypoint.airway;
        entry.procedure = waypoint.procedure;
        entry.altitude = waypoint.altitude;
        entry.speed = waypoint.speed;
        AddWaypoint(std::move(entry), plan);
    }
    plan.cruiseAltitudeFt = read.cruisingAltitudeFt;
    ReadEnds(read, plan);
    for (const std::size_t offset : read.leftOutAt) {
        source.report.Add(Topic::Fault, "waypoints left out",
                          AtLine(source.name, LineAt(source.text, offset),
                                 "has no position that makes sense: left out"));
    }
    if (read.IsFull()) {
        source.report.Add(Topic::Fault, "plans cut short",
                          std::string(source.name) +
                              ": has 1000 waypoints or more: the rest of "
                              "them is left out");
    }
}

// ---- writing ----

// The kind of route as the planner sorts them: what it flies by default, nothing that is flown.
struct RouteKind {
    const char* word;
    int number;
};

RouteKind KindOf(const ExchangePlan& plan) {
    constexpr double kHighAirwaysFt = 18000;
    bool airways = false;
    bool onlyVors = plan.entries.size() > 2;
    for (std::size_t i = 0; i < plan.entries.size(); ++i) {
        airways = airways || !AirwayOf(plan.entries[i]).empty();
        const bool inside = i > 0 && i + 1 < plan.entries.size();
        onlyVors = onlyVors && (!inside || plan.entries[i].type == "VOR");
    }
    if (airways) {
        return PlannedCruiseFt(plan) >= kHighAirwaysFt ? RouteKind{"HighAlt", 3}
                                                       : RouteKind{"LowAlt", 2};
    }
    return onlyVors ? RouteKind{"VOR", 1} : RouteKind{"Direct", 0};
}

// N52* 40.61': hundredths of a minute are rounded before they are split, so 60.00 cannot come out.
std::string KeyCoordinate(double value, const char* letters, int digits) {
    const long hundredths = std::lround(std::abs(value) * 6000);
    return Format("%c%0*ld* %02ld.%02ld'", hundredths != 0 && value < 0 ? letters[1] : letters[0],
                  digits, hundredths / 6000, hundredths % 6000 / 100, hundredths % 100);
}

// N54° 39' 14.04"
std::string XmlCoordinate(double value, const char* letters) {
    const long hundredths = std::lround(std::abs(value) * 360000);
    return Format("%c%ld\xC2\xB0 %ld' %02ld.%02ld\"",
                  hundredths != 0 && value < 0 ? letters[1] : letters[0], hundredths / 360000,
                  hundredths % 360000 / 6000, hundredths % 6000 / 100, hundredths % 100);
}

std::string KeyPlace(const PlanWaypoint& entry) {
    return KeyCoordinate(entry.latitude, "NS", 2) + ", " + KeyCoordinate(entry.longitude, "EW", 3) +
           Format(", %+010.2f", AltitudeOrZero(entry));
}

bool WriteSimKeys(const PlanFormat& format, const ExchangePlan& plan, std::string& text,
                  std::string&) {
    const PlanWaypoint& from = plan.entries.front();
    const PlanWaypoint& to = plan.entries.back();
    text = "[flightplan]\r\n";
    text += "title=" + from.ident + " to " + to.ident + "\r\n";
    text += "description=" + from.ident + ", " + to.ident + "\r\n";
    text += "type=IFR\r\n";
    text += Format("routetype=%d\r\n", KindOf(plan).number);
    text += Format("cruising_altitude=%.0f\r\n", PlannedCruiseFt(plan));
    text += "departure_id=" + from.ident + ", " + KeyPlace(from) + "\r\n";
    text += "destination_id=" + to.ident + ", " + KeyPlace(to) + "\r\n";
    text += "departure_name=" + from.ident + "\r\n";
    text += "destination_name=" + to.ident + "\r\n";
    int number = 0;
    for (const PlanWaypoint& entry : plan.entries) {
        if (!avq1::HasPosition(entry)) {
            continue;
        }
        text += Format("waypoint.%d=", number++) + entry.ident + ", ";
        text += TypeName(format, entry);
        text += ", " + KeyPlace(entry) + ", ";
        text += AirwayOf(entry);
        text += "\r\n";
    }
    return true;
}

std::string Element(const char* name, std::string_view value) {
    return std::string("<") + name + ">" + std::string(value) + "</" + name + ">\r\n";
}

// Points of the pilot's own have no code in the planner's tables.
std::string XmlWaypoint(const PlanFormat& format, const PlanWaypoint& entry) {
    std::string text = "        <ATCWaypoint id=\"" + entry.ident + "\">\r\n";
    text += "            " + Element("ATCWaypointType", TypeName(format, entry));
    text += "            " + Element("WorldPosition", SimPositionText(entry));
    if (!AirwayOf(entry).empty()) {
        text += "            " + Element("ATCAirway", AirwayOf(entry));
    }
    if (TypeName(format, entry) != format.typeNames.back()) {
        text += "            <ICAO>\r\n                " + Element("ICAOIdent", entry.ident) +
                "            </ICAO>\r\n";
    }
    return text + "        </ATCWaypoint>\r\n";
}

bool WriteSimXml(const PlanFormat& format, const ExchangePlan& plan, std::string& text,
                 std::string&) {
    const std::string& from = plan.entries.front().ident;
    const std::string& to = plan.entries.back().ident;
    const std::string indent = "        ";
    text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"
        "<SimBase.Document Type=\"AceXML\" version=\"1,0\">\r\n"
        "    <Descr>AceXML Document</Descr>\r\n"
        "    <FlightPlan.FlightPlan>\r\n";
    text += indent + Element("Title", from + " to " + to);
    text += indent + Element("FPType", "IFR");
    text += indent + Element("RouteType", KindOf(plan).word);
    text += indent + Element("CruisingAlt", Format("%.0f", PlannedCruiseFt(plan)));
    text += indent + Element("DepartureID", from);
    text += indent + Element("DepartureLLA", SimPositionText(plan.entries.front()));
    text += indent + Element("DestinationID", to);
    text += indent + Element("DestinationLLA", SimPositionText(plan.entries.back()));
    text += indent + Element("Descr", from + ", " + to);
    text += indent + Element("DepartureName", from);
    text += indent + Element("DestinationName", to);
    text += indent + "<AppVersion>\r\n            <AppVersionMajor>10</AppVersionMajor>\r\n" +
            "            <AppVersionBuild>61472</AppVersionBuild>\r\n" + indent +
            "</AppVersion>\r\n";
    for (const PlanWaypoint& entry : plan.entries) {
        text += avq1::HasPosition(entry) ? XmlWaypoint(format, entry) : "";
    }
    text += "    </FlightPlan.FlightPlan>\r\n</SimBase.Document>\r\n";
    return true;
}

}  // namespace

std::string SimPositionText(const PlanWaypoint& entry) {
    return XmlCoordinate(entry.latitude, "NS") + "," + XmlCoordinate(entry.longitude, "EW") +
           Format(",%+010.2f", AltitudeOrZero(entry));
}

const PlanFormat kSimXmlPlanFormat{
    .name = "pln-xml",
    .title = "simulator plan, XML form",
    .extensions = "pln",
    .sniff = IsSimXml,
    .read = ReadSim,
    .write = WriteSimXml,
    .carries =
        kCarriesPlaces | kCarriesAirways | kCarriesEndAirways | kCarriesAltitudes | kCarriesCruise,
    .typeNames = {"Airport", "VOR", "NDB", "Intersection", "User"},
    .longestIdent = 5,
    .longestPointIdent = 10,
    .endsAreAirports = true,
    .mostEntries = kMostSimWaypoints - 1,
};

const PlanFormat kSimKeyPlanFormat{
    .name = "pln-keys",
    .title = "simulator plan, form of keys and values",
    .extensions = "pln",
    .sniff = IsSimKeys,
    .read = ReadSim,
    .write = WriteSimKeys,
    .carries =
        kCarriesPlaces | kCarriesAirways | kCarriesEndAirways | kCarriesAltitudes | kCarriesCruise,
    .typeNames = {"A", "V", "N", "I", "U"},
    .longestIdent = 5,
    .longestPointIdent = 10,
    .endsAreAirports = true,
    .mostEntries = kMostSimWaypoints - 1,
};

}  // namespace avqdata
