// Plans of Garmin's units: .fpl, an XML table of waypoints and the route through it; .gfp, a line
// of names, read only.
#include <algorithm>
#include <map>

#include "avqdata/plan_resolve.h"
#include "avqdata/text_tools.h"
#include "avqdata/xml_text.h"
#include "base/text.h"

namespace avqdata {
namespace {

using avq1::PlanWaypoint;

// ---- .fpl ----

bool IsFpl(std::string_view text) {
    return text.find("<flight-plan") != std::string_view::npos;
}

std::string TypeOf(const PlanFormat& format, std::string_view word) {
    return word == "INT-VRP" ? "INT" : std::string(TypeFromName(format, word));
}

// Identifier, type and country tell one waypoint of the table from the next.
std::string KeyOf(const XmlText& xml, std::size_t index, const std::string& prefix) {
    return std::string(xml.Text(index, prefix + "identifier")) + "\n" +
           std::string(xml.Text(index, prefix + "type")) + "\n" +
           std::string(xml.Text(index, prefix + "country-code"));
}

RoutePart TablePart(const PlanSource& source, const XmlText& xml, std::size_t index) {
    RoutePart part;
    PlanWaypoint& entry = part.entry;
    entry.ident = CleanWord(xml.Text(index, "identifier"));
    entry.type = TypeOf(source.format, xml.Text(index, "type"));
    entry.altitude = avq1::kUnset;
    part.where = AtLine(source.name, xml.elements[index].line, "");
    part.isPlaced = PutPosition(xml.Text(index, "lat"), xml.Text(index, "lon"), entry);
    entry.type = entry.type.empty() && part.isPlaced ? "WPT" : entry.type;
    entry.ident = entry.ident.empty() ? "WPT" : entry.ident;
    return part;
}

void ReadFpl(const PlanSource& source, ExchangePlan& plan) {
    const XmlText xml = ParseXml(source.text);
    const std::size_t root = xml.First("flight-plan");
    if (root == xml.elements.size()) {
        return;
    }
    SayIfCut(source, xml.isCut);
    std::vector<RoutePart> table;
    std::map<std::string, std::size_t> places;
    for (const std::size_t list : xml.Children(root, "waypoint-table")) {
        for (const std::size_t index : xml.Children(list, "waypoint")) {
            places.emplace(KeyOf(xml, index, ""), table.size());
            table.push_back(TablePart(source, xml, index));
        }
    }
    const std::vector<std::size_t> routes = xml.Children(root, "route");
    std::vector<RoutePart> parts;
    for (const std::size_t index :
         routes.empty() ? routes : xml.Children(routes.front(), "route-point")) {
        const auto place = places.find(KeyOf(xml, index, "waypoint-"));
        if (place != places.end()) {
            parts.push_back(table[place->second]);
        } else {
            RoutePart part;
            part.entry.ident = CleanWord(xml.Text(index, "waypoint-identifier"));
            part.entry.type = TypeOf(source.format, xml.Text(index, "waypoint-type"));
            part.where = AtLine(source.name, xml.elements[index].line, "");
            parts.push_back(std::move(part));
        }
    }
    PlaceRoute(source, routes.empty() ? std::move(table) : std::move(parts), plan);
}

bool WriteFpl(const PlanFormat& format, const ExchangePlan& plan, std::string& text,
              std::string& error) {
    constexpr std::string_view kAllowed = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    std::string table;
    std::string route;
    std::vector<const PlanWaypoint*> known;
    for (const PlanWaypoint& entry : plan.entries) {
        if (!avq1::HasPosition(entry)) {
            continue;
        }
        if (entry.ident.find_first_not_of(kAllowed) != std::string::npos) {
            error = entry.ident + ": the form takes capital letters and digits only";
            return false;
        }
        const auto same = std::find_if(known.begin(), known.end(), [&](const PlanWaypoint* other) {
            return other->ident == entry.ident && other->type == entry.type;
        });
        if (same != known.end() &&
            ((*same)->latitude != entry.latitude || (*same)->longitude != entry.longitude)) {
            error = entry.ident + ": the form has no place for two waypoints of a name and type";
            return false;
        }
        if (same == known.end()) {
            known.push_back(&entry);
            table += "    <waypoint>\n" + XmlLine(6, "identifier", entry.ident) +
                     XmlLine(6, "type", TypeName(format, entry)) +
                     "      <country-code></country-code>\n" +
                     XmlLine(6, "lat", Fixed(entry.latitude, 6)) +
                     XmlLine(6, "lon", Fixed(entry.longitude, 6)) +
                     "      <comment></comment>\n    </waypoint>\n";
        }
        route += "    <route-point>\n" + XmlLine(6, "waypoint-identifier", entry.ident) +
                 XmlLine(6, "waypoint-type", TypeName(format, entry)) +
                 "      <waypoint-country-code></waypoint-country-code>\n    </route-point>\n";
    }
    text =
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
        "<flight-plan xmlns=\"http://www8.garmin.com/xmlschemas/FlightPlan/v1\">\n"
        "  <waypoint-table>\n" +
        table + "  </waypoint-table>\n  <route>\n" +
        XmlLine(4, "route-name",
                std::string(IdentOfFirst(plan)) + " " + std::string(IdentOfLast(plan))) +
        "    <flight-plan-index>1</flight-plan-index>\n" + route + "  </route>\n</flight-plan>\n";
    return true;
}

// ---- .gfp ----

constexpr std::string_view kGfpStart = "FPN/RI";

bool IsGfp(std::string_view text) {
    return Trim(text).starts_with(kGfpStart);
}

struct GfpReader {
    const PlanSource& source;
    ExchangePlan& plan;
    std::vector<RoutePart> parts;
    std::size_t segment = 0;

    RoutePart NewPart() const {
        RoutePart part;
        part.where = std::string(source.name) + ": part " + std::to_string(segment) + ", ";
        part.follows = true;
        return part;
    }
};

void AddAirport(std::string_view ident, GfpReader& reader) {
    RoutePart part = reader.NewPart();
    part.entry.ident = CleanWord(ident);
    part.entry.type = avq1::kAirportType;
    reader.parts.push_back(std::move(part));
}

// "LGA", "N50805W124202", "SEA,N47261W122186", "EAT.V120.SEA.V495.CONDI"
void AddFixes(std::string_view text, GfpReader& reader) {
    bool isAirway = false;
    std::string airway;
    for (const std::string& word : SplitList(text, '.')) {
        if (word.empty()) {  // "A..B" is direct
            isAirway = false;
            airway.clear();
            continue;
        }
        if (isAirway) {
            airway = CleanWord(word);
            isAirway = false;
            continue;
        }
        const std::size_t comma = std::min(word.find(','), word.size());
        RoutePart part = reader.NewPart();
        part.entry.ident = CleanWord(word.substr(0, comma));
        part.entry.via = airway;
        const std::string_view place =
            std::string_view(word).substr(comma < word.size() ? comma + 1 : 0);
        const std::optional<avq1::LatLon> at = RoutePosition(place);
        if (at) {
            part.isPlaced = true;
            part.entry.latitude = at->latitude;
            part.entry.longitude = at->longitude;
            part.entry.type = comma < word.size() ? "" : "WPT";
        }
        reader.parts.push_back(std::move(part));
        isAirway = true;
        airway.clear();
    }
}

// "HELNS5.SEA(13O)": name, transition, runway
void ReadChoice(std::string_view text, std::string& name, std::string& transition,
                std::string& runway) {
    const std::size_t bracket = std::min(text.find('('), text.size());
    if (bracket < text.size()) {
        const std::string_view inside = text.substr(bracket + 1, text.find(')') - bracket - 1);
        const bool isOpen = inside.ends_with('O');  // no side: "13O"
        runway = RunwayFix(inside.substr(0, inside.size() - (isOpen ? 1 : 0)));
    }
    text = text.substr(0, bracket);
    const std::size_t dot = std::min(text.find('.'), text.size());
    name = CleanWord(text.substr(0, dot));
    transition = CleanWord(text.substr(std::min(dot + 1, text.size())));
}

void ReadSegment(std::string_view key, std::string_view value, GfpReader& reader) {
    TerminalChoice& from = reader.plan.departure;
    TerminalChoice& to = reader.plan.arrival;
    if (key == "DA" || key == "AA") {
        AddAirport(value, reader);
    } else if (key == "F") {
        AddFixes(value, reader);
    } else if (key == "D") {
        ReadChoice(value, from.procedure, from.transition, from.runway);
    } else if (key == "R") {
        const bool isOpen = value.ends_with('O');
        from.runway = RunwayFix(value.substr(0, value.size() - (isOpen ? 1 : 0)));
    } else if (key == "A") {
        ReadChoice(value, to.procedure, to.transition, to.runway);
    } else if (key == "AP") {
        ReadChoice(value, to.approach, to.approachTransition, to.runway);
    } else {
        reader.source.report.Add(Topic::Warning, "parts of the route",
                                 std::string(reader.source.name) + ": part " +
                                     std::to_string(reader.segment) + ", '" + Printable(key) +
                                     "' is not known: passed over");
    }
}

// The arrival's airport may stand before its procedures and behind the last fix, or be the last.
void ReadGfp(const PlanSource& source, ExchangePlan& plan) {
    std::string_view line = Trim(source.text);  // what follows the first line counts nothing
    line = line.substr(0, line.find_first_of("\r\n"));
    line.remove_prefix(std::min(kGfpStart.size(), line.size()));
    GfpReader reader{source, plan, {}, 0};
    const std::vector<std::string> words = SplitList(line, ':');
    std::string key;
    std::size_t arrival = 0;
    for (const std::string& word : words) {
        constexpr std::array<std::string_view, 8> kKeys{"F", "DA", "AA", "D", "A", "R", "AP", "CR"};
        if (key.empty() && std::find(kKeys.begin(), kKeys.end(), word) != kKeys.end()) {
            key = word;
            continue;
        }
        if (word.empty()) {
            continue;
        }
        ++reader.segment;
        arrival = key == "AA" ? reader.parts.size() + 1 : arrival;
        ReadSegment(key.empty() ? std::string_view(word) : std::string_view(key), word, reader);
        key.clear();
    }
    if (arrival > 0 && arrival <= reader.parts.size()) {  // what follows it leads to it
        const auto at = reader.parts.begin() + static_cast<std::ptrdiff_t>(arrival) - 1;
        std::rotate(at, at + 1, reader.parts.end());
    }
    if (reader.parts.size() > 1 &&  // its procedures name the airport once more
        reader.parts.back().entry.ident == reader.parts[reader.parts.size() - 2].entry.ident) {
        reader.parts.pop_back();
    }
    const ApproachParts parts = PartsOfApproach(plan.arrival.approach);
    plan.arrival.runway = parts.runway.empty() ? plan.arrival.runway : RunwayFix(parts.runway);
    PlaceRoute(source, std::move(reader.parts), plan);
}

}  // namespace

const PlanFormat kGarminFplPlanFormat{
    .name = "fpl",
    .title = "Garmin plan",
    .extensions = "fpl",
    .sniff = IsFpl,
    .read = ReadFpl,
    .write = WriteFpl,
    .carries = kCarriesPlaces,
    .typeNames = {"AIRPORT", "VOR", "NDB", "INT", "USER WAYPOINT"},
    .longestIdent = 12,
    .longestPointIdent = 12,
    .endsAreAirports = false,
    .mostEntries = 300,
};

const PlanFormat kGarminGfpPlanFormat{
    .name = "gfp",
    .title = "Garmin route",
    .extensions = "gfp",
    .sniff = IsGfp,
    .read = ReadGfp,
    .write = nullptr,
    .carries = 0,
    .typeNames = kPlanTypes,
    .longestIdent = 0,
    .longestPointIdent = 0,
    .endsAreAirports = false,
    .mostEntries = 0,
};

}  // namespace avqdata
