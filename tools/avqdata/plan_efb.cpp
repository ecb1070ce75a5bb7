// Plans of the newest simulator generation's flight bag: the planner's XML with names in the place
// of positions, without the airports at the ends, which the header names with their procedures.
#include <algorithm>

#include "avqdata/plan_resolve.h"
#include "avqdata/text_tools.h"
#include "avqdata/xml_text.h"
#include "base/text.h"
#include "flightplan/sim_plan.h"

namespace avqdata {
namespace {

using avq1::PlanWaypoint;

constexpr std::string_view kPlanElement = "FlightPlan.FlightPlan";
constexpr int kFirstMajor = 12;  // of the program, from which on it writes this form

// ---- reading ----

TerminalChoice ReadEnd(const XmlText& xml, std::size_t plan, const char* details,
                       const char* procedure) {
    const std::string path = std::string(details) + "/";
    TerminalChoice choice;
    choice.procedure = CleanWord(xml.Text(plan, path + procedure));
    choice.transition = CleanWord(xml.Text(plan, path + "TransitionFP"));
    choice.runway = RunwayFix(avq1::SimRunway(xml.Text(plan, path + "RunwayNumberFP"),
                                              xml.Text(plan, path + "RunwayDesignatorFP")));
    return choice;
}

void ReadEnds(const XmlText& xml, std::size_t root, ExchangePlan& plan) {
    plan.departure = ReadEnd(xml, root, "DepartureDetails", "DepartureFP");
    plan.arrival = ReadEnd(xml, root, "ArrivalDetails", "ArrivalFP");
    const TerminalChoice approach = ReadEnd(xml, root, "ApproachDetails", "ApproachTypeFP");
    if (!approach.runway.empty()) {
        plan.arrival.runway = approach.runway;
    }
    plan.arrival.approach = ApproachName(approach.procedure, approach.runway,
                                         xml.Text(root, "ApproachDetails/SuffixFP"));
    plan.arrival.approachTransition = approach.transition;
}

RoutePart AirportPart(const XmlText& xml, std::size_t root, const PlanSource& source,
                      const char* id, const char* place) {
    RoutePart part;
    part.entry.ident = CleanWord(xml.Text(root, id));
    part.entry.type = avq1::kAirportType;
    part.where = std::string(source.name) + ": <" + id + "> ";
    avq1::LatLon at;
    if (avq1::ReadSimPosition(xml.Text(root, place), at, part.entry.altitude)) {
        part.isPlaced = true;
        part.entry.latitude = at.latitude;
        part.entry.longitude = at.longitude;
    }
    return part;
}

RoutePart WaypointPart(const XmlText& xml, std::size_t index, const PlanSource& source) {
    const XmlElement& element = xml.elements[index];
    RoutePart part;
    part.where = AtLine(source.name, element.line, "");
    PlanWaypoint& entry = part.entry;
    const XmlElement* const type = xml.Find(index, "ATCWaypointType");
    entry.type = type == nullptr ? "" : TypeFromName(source.format, type->text);
    entry.ident = CleanWord(xml.Text(index, "ICAO/ICAOIdent"));
    for (const XmlElement* const named : {&element, type}) {
        if (entry.ident.empty() && named != nullptr) {
            entry.ident = CleanWord(Attribute(*named, "id"));
        }
    }
    entry.via = CleanWord(xml.Text(index, "ATCAirway"));
    part.follows = true;
    avq1::LatLon at;
    for (const char* place : {"WorldPosition", "WorldLocation"}) {
        if (!part.isPlaced && avq1::ReadSimPosition(xml.Text(index, place), at, entry.altitude)) {
            part.isPlaced = true;
            entry.latitude = at.latitude;
            entry.longitude = at.longitude;
        }
    }
    if (part.isPlaced && entry.ident.empty()) {
        entry.ident = "WPT";
    }
    entry.type = entry.type.empty() && part.isPlaced ? "WPT" : entry.type;
    return part;
}

void ReadEfb(const PlanSource& source, ExchangePlan& plan) {
    const XmlText xml = ParseXml(source.text);
    const std::size_t root = xml.First(kPlanElement);
    if (root == xml.elements.size()) {
        return;
    }
    SayIfCut(source, xml.isCut);
    plan.cruiseAltitudeFt = avq1::ToInteger(xml.Text(root, "CruisingAlt"));
    ReadEnds(xml, root, plan);
    std::vector<RoutePart> parts;
    for (const std::size_t index : xml.Children(root, "ATCWaypoint")) {
        parts.push_back(WaypointPart(xml, index, source));
    }
    RoutePart from = AirportPart(xml, root, source, "DepartureID", "DepartureLLA");
    RoutePart to = AirportPart(xml, root, source, "DestinationID", "DestinationLLA");
    const auto isAt = [](const std::vector<RoutePart>& list, bool first, const RoutePart& end) {
        return !list.empty() && (first ? list.front() : list.back()).entry.ident == end.entry.ident;
    };
    if (!from.entry.ident.empty() && !isAt(parts, true, from)) {
        parts.insert(parts.begin(), std::move(from));
    }
    if (!to.entry.ident.empty() && (parts.size() < 2 || !isAt(parts, false, to))) {
        parts.push_back(std::move(to));
    }
    PlaceRoute(source, std::move(parts), plan);
}

// ---- writing ----

std::string RunwayElements(std::string_view runway) {
    const std::string_view name = runway.substr(std::min<std::size_t>(runway.size(), 2));
    if (name.size() < 2) {
        return {};
    }
    const std::string_view side = name.substr(2);
    const char* const word = side == "L"   ? "LEFT"
                             : side == "R" ? "RIGHT"
                             : side == "C" ? "CENTER"
                                           : "NONE";
    return XmlLine(12, "RunwayNumberFP", std::to_string(avq1::ToInteger(name))) +
           XmlLine(12, "RunwayDesignatorFP", word);
}

std::string EndElement(const char* details, const char* procedure, const TerminalChoice& choice) {
    std::string inner = RunwayElements(choice.runway);
    inner += choice.procedure.empty() ? "" : XmlLine(12, procedure, choice.procedure);
    inner += choice.transition.empty() ? "" : XmlLine(12, "TransitionFP", choice.transition);
    return inner.empty() ? inner
                         : "        <" + std::string(details) + ">\n" + inner + "        </" +
                               details + ">\n";
}

std::string ApproachElement(const TerminalChoice& arrival) {
    const ApproachParts parts = PartsOfApproach(arrival.approach);
    if (parts.type.empty()) {
        return {};
    }
    std::string text = "        <ApproachDetails>\n" +
                       XmlLine(12, "ApproachTypeFP", parts.simType) +
                       RunwayElements("RW" + parts.runway);
    text += parts.suffix.empty() ? "" : XmlLine(12, "SuffixFP", parts.suffix);
    text += arrival.approachTransition.empty()
                ? ""
                : XmlLine(12, "TransitionFP", arrival.approachTransition);
    return text + "        </ApproachDetails>\n";
}

std::string WaypointElement(const PlanFormat& format, const PlanWaypoint& entry) {
    const bool isOwn = TypeName(format, entry) == format.typeNames.back();
    std::string text = isOwn ? "        <ATCWaypoint id=\"" + EscapedXml(entry.ident) + "\">\n"
                             : "        <ATCWaypoint>\n";
    text += XmlLine(12, "ATCWaypointType", TypeName(format, entry));
    text += isOwn ? XmlLine(12, "WorldPosition", SimPositionText(entry)) : "";
    text += AirwayOf(entry).empty() ? "" : XmlLine(12, "ATCAirway", AirwayOf(entry));
    text +=
        "            <ICAO>\n" + XmlLine(16, "ICAOIdent", entry.ident) + "            </ICAO>\n";
    return text + "        </ATCWaypoint>\n";
}

bool WriteEfb(const PlanFormat& format, const ExchangePlan& plan, std::string& text, std::string&) {
    const std::string from(IdentOfFirst(plan));
    const std::string to(IdentOfLast(plan));
    text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<SimBase.Document Type=\"AceXML\" "
        "version=\"1,0\">\n    <Descr>AceXML Document</Descr>\n    <FlightPlan.FlightPlan>\n";
    text += XmlLine(8, "DepartureID", from) + XmlLine(8, "DestinationID", to);
    text += XmlLine(8, "Title", from + " - " + to) + XmlLine(8, "Descr", from + " to " + to);
    text += XmlLine(8, "FPType", "IFR") +
            XmlLine(8, "CruisingAlt", avq1::Format("%.0f", PlannedCruiseFt(plan)));
    text +=
        "        <AppVersion>\n" + XmlLine(12, "AppVersionMajor", "12") + "        </AppVersion>\n";
    text += EndElement("DepartureDetails", "DepartureFP", plan.departure);
    for (std::size_t i = 1; i + 1 < plan.entries.size(); ++i) {
        text += avq1::HasPosition(plan.entries[i]) ? WaypointElement(format, plan.entries[i]) : "";
    }
    TerminalChoice arrival = plan.arrival;
    if (arrival.procedure.empty() && !arrival.approach.empty()) {
        arrival.runway.clear();  // the approach has it
    }
    text += EndElement("ArrivalDetails", "ArrivalFP", arrival) + ApproachElement(plan.arrival);
    text += "    </FlightPlan.FlightPlan>\n</SimBase.Document>\n";
    return true;
}

}  // namespace

bool IsEfbText(std::string_view text) {
    if (text.find("<FlightPlan.FlightPlan") == std::string_view::npos) {
        return false;
    }
    constexpr std::string_view kMajor = "<AppVersionMajor>";
    const std::size_t major = text.find(kMajor);
    const bool isNew = major != std::string_view::npos &&
                       avq1::ToInteger(text.substr(major + kMajor.size())) >= kFirstMajor;
    return isNew || text.find("Details>") != std::string_view::npos ||
           text.find("<WorldPosition>") == std::string_view::npos;
}

const PlanFormat kEfbPlanFormat{
    .name = "pln-efb",
    .title = "plan of the newest simulator's flight bag",
    .extensions = "pln",
    .sniff = IsEfbText,
    .read = ReadEfb,
    .write = WriteEfb,
    .carries = kCarriesPointNames | kCarriesAirways | kCarriesCruise | kCarriesTerminal |
               kCarriesApproaches,
    .typeNames = {"Airport", "VOR", "NDB", "Intersection", "User"},
    .longestIdent = 5,
    .longestPointIdent = 10,
    .endsAreAirports = true,
    .mostEntries = 1000,
};

}  // namespace avqdata
