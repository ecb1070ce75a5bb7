// Little Navmap's own plans, XML: every waypoint of the route with its position, procedures by name
// only.
#include "avqdata/plan_exchange.h"
#include "avqdata/text_tools.h"
#include "avqdata/xml_text.h"
#include "base/text.h"

namespace avqdata {
namespace {

using avq1::PlanWaypoint;

bool IsNavmap(std::string_view text) {
    return text.find("<LittleNavmap") != std::string_view::npos;
}

// ---- reading ----

void ReadWaypoint(const PlanSource& source, const XmlText& xml, std::size_t index,
                  ExchangePlan& plan) {
    PlanWaypoint entry;
    entry.ident = CleanWord(xml.Text(index, "Ident"));
    const std::string where = AtLine(source.name, xml.elements[index].line,
                                     entry.ident.empty() ? "a waypoint" : entry.ident);
    const XmlElement* const at = xml.Find(index, "Pos");
    if (at == nullptr || !PutPosition(Attribute(*at, "Lat"), Attribute(*at, "Lon"), entry)) {
        source.report.Add(Topic::Fault, "waypoints left out",
                          where + " has no position that makes sense: left out");
        return;
    }
    entry.type = TypeFromName(source.format, xml.Text(index, "Type"));
    entry.type = entry.type.empty() ? "WPT" : entry.type;
    entry.ident = entry.ident.empty() ? "WPT" : entry.ident;
    entry.via = CleanWord(xml.Text(index, "Airway"));
    entry.via = entry.via.empty() ? CleanWord(xml.Text(index, "Track")) : entry.via;
    entry.altitude = HeightOrUnset(Attribute(*at, "Alt"));
    AddWaypoint(std::move(entry), plan);
}

void ReadProcedures(const XmlText& xml, std::size_t root, ExchangePlan& plan) {
    const auto word = [&](const char* path) {
        return CleanWord(xml.Text(root, std::string("Procedures/") + path));
    };
    plan.departure.procedure = word("SID/Name");
    plan.departure.runway = RunwayFix(word("SID/Runway"));
    plan.departure.transition = word("SID/Transition");
    plan.arrival.procedure = word("STAR/Name");
    plan.arrival.transition = word("STAR/Transition");
    plan.arrival.runway = RunwayFix(word("Approach/Runway"));
    if (plan.arrival.runway.empty()) {
        plan.arrival.runway = RunwayFix(word("STAR/Runway"));
    }
    plan.arrival.approach = word("Approach/ARINC");
    if (plan.arrival.approach.empty()) {
        plan.arrival.approach =
            ApproachName(word("Approach/Type"), word("Approach/Runway"), word("Approach/Suffix"));
    }
    plan.arrival.approachTransition = word("Approach/Transition");
}

void ReadNavmap(const PlanSource& source, ExchangePlan& plan) {
    const XmlText xml = ParseXml(source.text);
    const std::size_t root = xml.First("Flightplan");
    SayIfCut(source, xml.isCut);
    if (root == xml.elements.size()) {
        return;
    }
    const std::string_view exact = xml.Text(root, "Header/CruisingAltF");
    plan.cruiseAltitudeFt =
        Rounded(avq1::ToNumber(exact.empty() ? xml.Text(root, "Header/CruisingAlt") : exact));
    if (const XmlElement* const data = xml.Find(root, "NavData")) {
        const std::string cycle = Attribute(*data, "Cycle");
        plan.cycle = cycle.size() == 4 && WholeNumber(cycle) ? cycle : "";
    }
    ReadProcedures(xml, root, plan);
    for (const std::size_t list : xml.Children(root, "Waypoints")) {
        for (const std::size_t index : xml.Children(list, "Waypoint")) {
            ReadWaypoint(source, xml, index, plan);
        }
    }
}

// ---- writing ----

std::string PosLine(const PlanWaypoint& entry) {
    return avq1::Format("        <Pos Lon=\"%.6f\" Lat=\"%.6f\" Alt=\"%.2f\"/>\n", entry.longitude,
                        entry.latitude, AltitudeOrZero(entry));
}

std::string LineUnlessEmpty(const char* name, const std::string& value) {
    return value.empty() ? std::string() : XmlLine(8, name, value);
}

std::string Group(const char* name, const std::string& inner) {
    return inner.empty()
               ? inner
               : "      <" + std::string(name) + ">\n" + inner + "      </" + name + ">\n";
}

std::string ProcedureGroups(const ExchangePlan& plan) {
    const auto runway = [](const TerminalChoice& choice) {
        return LineUnlessEmpty("Runway", choice.runway.empty() ? "" : choice.runway.substr(2));
    };
    const TerminalChoice& from = plan.departure;
    const TerminalChoice& to = plan.arrival;
    const ApproachParts parts = PartsOfApproach(to.approach);
    std::string text = Group("SID", LineUnlessEmpty("Name", from.procedure) + runway(from) +
                                        LineUnlessEmpty("Transition", from.transition));
    text += Group("STAR", LineUnlessEmpty("Name", to.procedure) +
                              (to.approach.empty() || !to.procedure.empty() ? runway(to) : "") +
                              LineUnlessEmpty("Transition", to.transition));
    if (!to.approach.empty()) {
        text += Group("Approach", LineUnlessEmpty("ARINC", to.approach) + runway(to) +
                                      LineUnlessEmpty("Type", parts.type) +
                                      LineUnlessEmpty("Suffix", parts.suffix) +
                                      LineUnlessEmpty("Transition", to.approachTransition));
    }
    return text.empty() ? text : "    <Procedures>\n" + text + "    </Procedures>\n";
}

bool WriteNavmap(const PlanFormat& format, const ExchangePlan& plan, std::string& text,
                 std::string&) {
    text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<LittleNavmap>\n  <Flightplan>\n"
        "    <Header>\n      <FlightplanType>IFR</FlightplanType>\n";
    text += XmlLine(6, "CruisingAlt", avq1::Format("%.0f", PlannedCruiseFt(plan)));
    text += XmlLine(6, "CruisingAltF", avq1::Format("%.5f", PlannedCruiseFt(plan)));
    text += "      <FileVersion>1.2</FileVersion>\n    </Header>\n";
    text += plan.cycle.empty()
                ? ""
                : "    <NavData Cycle=\"" + EscapedXml(plan.cycle) + "\">AVQ1</NavData>\n";
    text += ProcedureGroups(plan) + "    <Waypoints>\n";
    for (const PlanWaypoint& entry : plan.entries) {
        if (!avq1::HasPosition(entry)) {
            continue;
        }
        text += "      <Waypoint>\n" + XmlLine(8, "Ident", entry.ident);
        text += LineUnlessEmpty("Airway", std::string(AirwayOf(entry)));
        text +=
            XmlLine(8, "Type", TypeName(format, entry)) + PosLine(entry) + "      </Waypoint>\n";
    }
    text += "    </Waypoints>\n  </Flightplan>\n</LittleNavmap>\n";
    return true;
}

}  // namespace

const PlanFormat kNavmapPlanFormat{
    .name = "lnmpln",
    .title = "Little Navmap plan",
    .extensions = "lnmpln",
    .sniff = IsNavmap,
    .read = ReadNavmap,
    .write = WriteNavmap,
    .carries = kCarriesPlaces | kCarriesAirways | kCarriesEndAirways | kCarriesAltitudes |
               kCarriesCruise | kCarriesTerminal | kCarriesApproaches,
    .typeNames = {"AIRPORT", "VOR", "NDB", "WAYPOINT", "USER"},
    .longestIdent = 10,
    .longestPointIdent = 10,
    .endsAreAirports = false,
    .mostEntries = 1000,
};

}  // namespace avqdata
