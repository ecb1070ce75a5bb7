// SimBrief's flight plans, read only: the same fields as XML and as JSON.
#include <algorithm>
#include <functional>
#include <nlohmann/json.hpp>

#include "avqdata/plan_exchange.h"
#include "avqdata/text_tools.h"
#include "avqdata/xml_text.h"
#include "base/text.h"

namespace avqdata {
namespace {

using avq1::PlanWaypoint;
using nlohmann::json;

constexpr double kPoundsOfKilogram = 2.2046226;
constexpr std::size_t kMostFixes = 1000;

// A field by its path, "origin/icao_code"; empty where there is none.
using FieldOf = std::function<std::string(const char* path)>;

struct Brief {
    FieldOf field;
    std::vector<FieldOf> fixes;
    std::vector<std::string> places;  // of the fixes, for messages
};

bool IsSimbriefXml(std::string_view text) {
    return text.find("<OFP") != std::string_view::npos &&
           text.find("<navlog") != std::string_view::npos;
}

bool IsSimbriefJson(std::string_view text) {
    return Trim(text).starts_with('{') && text.find("\"navlog\"") != std::string_view::npos;
}

PlanWaypoint Airport(const FieldOf& field, const std::string& end) {
    PlanWaypoint entry;
    entry.ident = CleanWord(field((end + "/icao_code").c_str()));
    entry.type = avq1::kAirportType;
    entry.altitude = HeightOrUnset(field((end + "/elevation").c_str()));
    const bool isPlaced =
        PutPosition(field((end + "/pos_lat").c_str()), field((end + "/pos_long").c_str()), entry);
    entry.ident = isPlaced ? entry.ident : std::string();
    return entry;
}

std::string TypeOf(std::string_view type) {
    return type == "vor"   ? "VOR"
           : type == "ndb" ? "NDB"
           : type == "apt" ? "APT"
           : type == "wpt" ? "INT"
                           : "WPT";  // a position, or what is new
}

void ReadHeader(const Brief& brief, ExchangePlan& plan) {
    const FieldOf& field = brief.field;
    plan.cruiseAltitudeFt = Rounded(avq1::ToNumber(field("general/initial_altitude")));
    const std::string cycle = field("params/airac");
    plan.cycle = cycle.size() == 4 && WholeNumber(cycle) ? cycle : "";
    const double weight =
        avq1::EqualsIgnoreCase(field("params/units"), "kgs") ? kPoundsOfKilogram : 1;
    constexpr double kMostFuel = 1e7;
    plan.fuelTotal = std::clamp(avq1::ToNumber(field("fuel/plan_ramp")), 0.0, kMostFuel) * weight;
    plan.reserveFuel = std::clamp(avq1::ToNumber(field("fuel/reserve")), 0.0, kMostFuel) * weight;
    plan.departure.runway = RunwayFix(CleanWord(field("origin/plan_rwy")));
    plan.arrival.runway = RunwayFix(CleanWord(field("destination/plan_rwy")));
}

// What is flagged as of a procedure belongs to the departure until the first fix that is not.
void PutVia(const FieldOf& fix, bool isDeparting, ExchangePlan& plan, PlanWaypoint& entry) {
    const std::string via = CleanWord(fix("via_airway"));
    if (fix("is_sid_star") != "1") {
        entry.via = via == "DCT" ? std::string() : via;
        return;
    }
    if (entry.type != avq1::kAirportType) {
        entry.procedure = isDeparting ? "SID" : "STAR";
        entry.via = via == "DCT" ? std::string() : via;
    }
    std::string& name = isDeparting ? plan.departure.procedure : plan.arrival.procedure;
    name = name.empty() && via != "DCT" ? via : name;
}

void ReadBrief(const PlanSource& source, const Brief& brief, ExchangePlan& plan) {
    ReadHeader(brief, plan);
    PlanWaypoint origin = Airport(brief.field, "origin");
    if (!origin.ident.empty()) {
        AddWaypoint(std::move(origin), plan);
    }
    bool isDeparting = true;
    for (std::size_t i = 0; i < brief.fixes.size(); ++i) {
        const FieldOf& fix = brief.fixes[i];
        PlanWaypoint entry;
        entry.ident = CleanWord(fix("ident"));
        entry.type = TypeOf(fix("type"));
        const bool isComputed = entry.ident == "TOC" || entry.ident == "TOD";
        if (isComputed && fix("type") != "vor" && fix("type") != "ndb") {
            continue;  // tops of climb and descent are no fixes
        }
        isDeparting = isDeparting && fix("is_sid_star") == "1";
        if (entry.ident.empty() || !PutPosition(fix("pos_lat"), fix("pos_long"), entry)) {
            source.report.Add(Topic::Fault, "waypoints left out",
                              brief.places[i] +
                                  (entry.ident.empty() ? "a waypoint" : Printable(entry.ident)) +
                                  " has no name or no position that makes sense: left out");
            continue;
        }
        const bool isStation = entry.type == "VOR" || entry.type == "NDB";
        entry.frequency = isStation ? CleanWord(fix("frequency")) : std::string();
        entry.altitude = HeightOrUnset(fix("altitude_feet"));
        PutVia(fix, isDeparting, plan, entry);
        AddWaypoint(std::move(entry), plan);
    }
    PlanWaypoint destination = Airport(brief.field, "destination");
    if (!destination.ident.empty() &&
        (plan.entries.size() < 2 || plan.entries.back().ident != destination.ident)) {
        AddWaypoint(std::move(destination), plan);
    }
}

void ReadSimbriefXml(const PlanSource& source, ExchangePlan& plan) {
    const XmlText xml = ParseXml(source.text);
    const std::size_t root = xml.First("OFP");
    if (root == xml.elements.size()) {
        return;
    }
    SayIfCut(source, xml.isCut);
    const auto fieldsOf = [&xml](std::size_t index) {
        return [&xml, index](const char* path) { return std::string(xml.Text(index, path)); };
    };
    Brief brief{fieldsOf(root), {}, {}};
    for (const std::size_t log : xml.Children(root, "navlog")) {
        for (const std::size_t index : xml.Children(log, "fix")) {
            if (brief.fixes.size() < kMostFixes) {
                brief.fixes.emplace_back(fieldsOf(index));
                brief.places.push_back(AtLine(source.name, xml.elements[index].line, ""));
            }
        }
    }
    ReadBrief(source, brief, plan);
}

// Numbers stand in quotes or not, as the service likes.
std::string JsonField(const json& object, std::string_view path) {
    const json* value = &object;
    while (!path.empty()) {
        const std::size_t slash = std::min(path.find('/'), path.size());
        const std::string key(path.substr(0, slash));
        if (!value->is_object() || !value->contains(key)) {
            return {};
        }
        value = &(*value)[key];
        path.remove_prefix(std::min(slash + 1, path.size()));
    }
    if (value->is_string()) {
        return value->get<std::string>();
    }
    return value->is_number() ? avq1::Format("%.10g", value->get<double>()) : std::string();
}

void ReadSimbriefJson(const PlanSource& source, ExchangePlan& plan) {
    const json document = json::parse(source.text, nullptr, false);
    if (document.is_discarded() || !document.is_object() || !document.contains("navlog")) {
        source.report.Add(Topic::Fault, "plans cut short",
                          std::string(source.name) + ": is no sound JSON, or ends in the middle");
        return;
    }
    const auto fieldsOf = [](const json& object) {
        return [&object](const char* path) { return JsonField(object, path); };
    };
    const json& log = document["navlog"];
    const json& fixes = log.is_object() && log.contains("fix") ? log["fix"] : log;
    Brief brief{fieldsOf(document), {}, {}};
    for (const json& fix : fixes) {
        if (brief.fixes.size() < kMostFixes) {
            brief.fixes.emplace_back(fieldsOf(fix));
            brief.places.push_back(std::string(source.name) + ": fix " +
                                   std::to_string(brief.fixes.size()) + ", ");
        }
    }
    ReadBrief(source, brief, plan);
}

}  // namespace

const PlanFormat kSimbriefXmlPlanFormat{
    .name = "simbrief-xml",
    .title = "SimBrief plan, XML",
    .extensions = "xml",
    .sniff = IsSimbriefXml,
    .read = ReadSimbriefXml,
    .write = nullptr,
    .carries = 0,
    .typeNames = kPlanTypes,
    .longestIdent = 0,
    .longestPointIdent = 0,
    .endsAreAirports = false,
    .mostEntries = 0,
};

const PlanFormat kSimbriefJsonPlanFormat{
    .name = "simbrief-json",
    .title = "SimBrief plan, JSON",
    .extensions = "json",
    .sniff = IsSimbriefJson,
    .read = ReadSimbriefJson,
    .write = nullptr,
    .carries = 0,
    .typeNames = kPlanTypes,
    .longestIdent = 0,
    .longestPointIdent = 0,
    .endsAreAirports = false,
    .mostEntries = 0,
};

}  // namespace avqdata
