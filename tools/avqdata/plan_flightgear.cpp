// FlightGear's routes: .fgfp and route files, XML property lists of waypoints.
#include "avqdata/plan_resolve.h"
#include "avqdata/text_tools.h"
#include "avqdata/xml_text.h"
#include "base/text.h"

namespace avqdata {
namespace {

using avq1::PlanWaypoint;

bool IsFlightGear(std::string_view text) {
    return text.find("<PropertyList") != std::string_view::npos &&
           (text.find("<route") != std::string_view::npos ||
            text.find("<wp>") != std::string_view::npos ||
            text.find("<wp ") != std::string_view::npos);
}

// ---- reading ----

// "(none)" and "DEFAULT" are FlightGear's words for no procedure.
std::string NameAt(const XmlText& xml, std::size_t root, const char* path) {
    const std::string name = CleanWord(xml.Text(root, path));
    return name == "(none)" || name == "DEFAULT" ? std::string() : name;
}

std::string EitherName(const XmlText& xml, std::size_t root, const char* first,
                       const char* second) {
    const std::string name = NameAt(xml, root, first);
    return name.empty() ? NameAt(xml, root, second) : name;
}

void ReadEnds(const XmlText& xml, std::size_t root, ExchangePlan& plan) {
    plan.departure.runway = RunwayFix(NameAt(xml, root, "departure/runway"));
    plan.departure.procedure = NameAt(xml, root, "departure/sid");
    plan.departure.transition =
        EitherName(xml, root, "departure/sid_trans", "departure/transition");
    plan.arrival.runway = RunwayFix(NameAt(xml, root, "destination/runway"));
    plan.arrival.procedure = NameAt(xml, root, "destination/star");
    plan.arrival.transition =
        EitherName(xml, root, "destination/star_trans", "destination/transition");
    plan.arrival.approach = NameAt(xml, root, "destination/approach");
    plan.arrival.approachTransition = NameAt(xml, root, "destination/approach_trans");
    plan.cruiseAltitudeFt = Rounded(avq1::ToNumber(xml.Text(root, "cruise/altitude-ft")));
    if (plan.cruiseAltitudeFt == 0) {
        constexpr double kFeetOfLevel = 100;
        plan.cruiseAltitudeFt =
            Rounded(avq1::ToNumber(xml.Text(root, "cruise/flight-level")) * kFeetOfLevel);
    }
}

bool IsTrue(std::string_view text) {
    return text == "true" || text == "1";
}

// A waypoint that FlightGear made of a procedure says at which end of the route.
void PutProcedure(const XmlText& xml, std::size_t index, const ExchangePlan& plan,
                  PlanWaypoint& entry) {
    const struct {
        const char* flag;
        const char* tag;
        const std::string& name;
    } rows[] = {{"departure", "SID", plan.departure.procedure},
                {"arrival", "STAR", plan.arrival.procedure},
                {"approach", "APPR", plan.arrival.approach}};
    for (const auto& row : rows) {
        if (entry.type != avq1::kAirportType && !row.name.empty() &&
            IsTrue(xml.Text(index, row.flag))) {
            entry.procedure = row.tag;
            entry.via = row.name;
        }
    }
}

RoutePart WaypointPart(const PlanSource& source, const XmlText& xml, std::size_t index,
                       const ExchangePlan& plan) {
    RoutePart part;
    PlanWaypoint& entry = part.entry;
    const std::string_view kind = xml.Text(index, "type");
    part.where = AtLine(source.name, xml.elements[index].line, "");
    entry.ident = CleanWord(xml.Text(index, "ident"));
    part.isPlaced = PutPosition(xml.Text(index, "lat"), xml.Text(index, "lon"), entry);
    if (kind == "runway") {  // the airport's; the runway stands in the header
        const std::string airport = CleanWord(xml.Text(index, "icao"));
        entry.ident = airport.empty() ? entry.ident : airport;
        entry.type = avq1::kAirportType;
    } else if (kind == "basic") {
        entry.type = "WPT";
    }
    if (kind == "via") {
        part.follows = true;
    }
    entry.via = CleanWord(xml.Text(index, "airway"));
    entry.altitude = HeightOrUnset(xml.Text(index, "altitude-ft"));
    PutProcedure(xml, index, plan, entry);
    return part;
}

// Legs that end at a height or a course have no place of their own.
bool HasPlace(std::string_view kind) {
    return kind != "hdgToAlt" && kind != "vectors" && kind != "dmeIntercept" &&
           kind != "radialIntercept" && kind != "hold";
}

// Types are not in the file: the data's where it has the name there, else by the name's length.
void PutType(const PlanSource& source, RoutePart& part) {
    constexpr double kSamePlaceNm = 1;
    PlanWaypoint& entry = part.entry;
    if (!part.isPlaced || !entry.type.empty()) {
        return;
    }
    const PlanPoint* const point =
        source.data == nullptr
            ? nullptr
            : source.data->Nearest(entry.ident, {entry.latitude, entry.longitude}, kSamePlaceNm);
    entry.type = point == nullptr ? "INT" : point->type;
}

RoutePart AirportPart(const PlanSource& source, const XmlText& xml, std::size_t root,
                      const char* path) {
    RoutePart part;
    part.entry.ident = CleanWord(xml.Text(root, path));
    part.entry.type = avq1::kAirportType;
    part.where = std::string(source.name) + ": ";
    return part;
}

// The airports of the header, where the route itself does not have them.
void PutEnds(const PlanSource& source, const XmlText& xml, std::size_t root,
             std::vector<RoutePart>& parts) {
    RoutePart from = AirportPart(source, xml, root, "departure/airport");
    RoutePart to = AirportPart(source, xml, root, "destination/airport");
    if (!from.entry.ident.empty()) {
        if (parts.empty() || parts.front().entry.ident != from.entry.ident) {
            parts.insert(parts.begin(), from);
        }
        parts.front().entry.type = avq1::kAirportType;
    }
    if (!to.entry.ident.empty()) {
        if (parts.size() < 2 || parts.back().entry.ident != to.entry.ident) {
            parts.push_back(to);
        }
        parts.back().entry.type = avq1::kAirportType;
    }
}

void ReadFlightGear(const PlanSource& source, ExchangePlan& plan) {
    const XmlText xml = ParseXml(source.text);
    const std::size_t root = xml.First("PropertyList");
    if (root == xml.elements.size()) {
        return;
    }
    SayIfCut(source, xml.isCut);
    ReadEnds(xml, root, plan);
    std::vector<RoutePart> parts;
    const std::vector<std::size_t> routes = xml.Children(root, "route");
    for (const std::size_t index : xml.Children(routes.empty() ? root : routes.front(), "wp")) {
        const std::string_view kind = xml.Text(index, "type");
        if (kind == "discontinuity") {
            parts.push_back({avq1::Discontinuity(), true, false, ""});
        } else if (HasPlace(kind)) {
            parts.push_back(WaypointPart(source, xml, index, plan));
        } else {
            source.report.Add(
                Topic::Warning, "legs without a place",
                AtLine(source.name, xml.elements[index].line,
                       "a leg of kind " + Printable(kind) + " has no place: left out"));
        }
    }
    PutEnds(source, xml, root, parts);
    for (RoutePart& part : parts) {
        PutType(source, part);
    }
    PlaceRoute(source, std::move(parts), plan);
}

// ---- writing ----

std::string Property(int indent, const char* name, const char* type, std::string_view value) {
    return std::string(static_cast<std::size_t>(indent), ' ') + "<" + name + " type=\"" + type +
           "\">" + EscapedXml(value) + "</" + name + ">\n";
}

std::string TextUnlessEmpty(const char* name, const std::string& value) {
    return value.empty() ? std::string() : Property(4, name, "string", value);
}

std::string RunwayProperty(const TerminalChoice& choice) {
    return TextUnlessEmpty("runway", choice.runway.empty() ? "" : choice.runway.substr(2));
}

std::string WaypointProperties(const PlanWaypoint& entry, std::size_t number) {
    std::string text =
        number == 0 ? "    <wp>\n" : "    <wp n=\"" + std::to_string(number) + "\">\n";
    if (!avq1::HasPosition(entry)) {
        return text + Property(6, "type", "string", "discontinuity") + "    </wp>\n";
    }
    text += Property(6, "type", "string", entry.type == "WPT" ? "basic" : "navaid");
    if (entry.altitude != avq1::kUnset) {
        text += Property(6, "alt-restrict", "string", "at") +
                Property(6, "altitude-ft", "double", Fixed(entry.altitude, 0));
    }
    text += AirwayOf(entry).empty() ? "" : Property(6, "airway", "string", AirwayOf(entry));
    text += Property(6, "ident", "string", entry.ident) +
            Property(6, "lon", "double", Fixed(entry.longitude, 6)) +
            Property(6, "lat", "double", Fixed(entry.latitude, 6));
    return text + "    </wp>\n";
}

bool WriteFlightGear(const PlanFormat&, const ExchangePlan& plan, std::string& text, std::string&) {
    const TerminalChoice& from = plan.departure;
    const TerminalChoice& to = plan.arrival;
    text = "<?xml version=\"1.0\"?>\n\n<PropertyList>\n  <version type=\"int\">2</version>\n";
    text += "  <departure>\n" + Property(4, "airport", "string", plan.entries.front().ident) +
            RunwayProperty(from) + TextUnlessEmpty("sid", from.procedure) +
            TextUnlessEmpty("sid_trans", from.transition) + "  </departure>\n";
    text += "  <destination>\n" + Property(4, "airport", "string", plan.entries.back().ident) +
            RunwayProperty(to) + TextUnlessEmpty("star", to.procedure) +
            TextUnlessEmpty("star_trans", to.transition) +
            TextUnlessEmpty("approach", to.approach) +
            TextUnlessEmpty("approach_trans", to.approachTransition) + "  </destination>\n";
    if (plan.cruiseAltitudeFt != 0) {
        text += "  <cruise>\n" +
                Property(4, "altitude-ft", "int", std::to_string(plan.cruiseAltitudeFt)) +
                "  </cruise>\n";
    }
    text += "  <route>\n";
    std::size_t number = 0;
    for (const PlanWaypoint& entry : plan.entries) {
        text += WaypointProperties(entry, number++);
    }
    text += "  </route>\n</PropertyList>\n";
    return true;
}

}  // namespace

const PlanFormat kFlightGearPlanFormat{
    .name = "fgfp",
    .title = "FlightGear route",
    .extensions = "fgfp",
    .sniff = IsFlightGear,
    .read = ReadFlightGear,
    .write = WriteFlightGear,
    .carries = kCarriesPlaces | kCarriesAirways | kCarriesEndAirways | kCarriesAltitudes |
               kCarriesCruise | kCarriesGaps | kCarriesTerminal | kCarriesApproaches,
    .typeNames = kPlanTypes,
    .longestIdent = 16,
    .longestPointIdent = 16,
    .endsAreAirports = true,
    .mostEntries = 1000,
};

}  // namespace avqdata
