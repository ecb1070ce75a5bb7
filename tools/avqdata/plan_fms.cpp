// X-Plane's .fms plans, versions 3 and 1100. A line is a waypoint when it begins with a number and
// has more words than one; the version's own columns follow the identifier.
#include <algorithm>

#include "avqdata/cycle.h"
#include "avqdata/plan_exchange.h"
#include "avqdata/source_file.h"
#include "avqdata/text_tools.h"
#include "base/text.h"

namespace avqdata {
namespace {

using avq1::PlanWaypoint;

constexpr int kOldVersion = 3;
constexpr int kNewVersion = 1100;
constexpr std::string_view kDirect = "DRCT";
constexpr std::string_view kDeparts = "ADEP";
constexpr std::string_view kArrives = "ADES";
constexpr std::size_t kLongestIdentRead = 16;

// ---- the header ----

// The version that the second line names; 0 when the text is no .fms plan.
int VersionOf(std::string_view text) {
    LineSource lines = LineSource::OfText(text, "");
    std::string_view line;
    if (!lines.Next(line) || (Trim(line) != "I" && Trim(line) != "A") || !lines.Next(line)) {
        return 0;
    }
    const std::vector<std::string_view> words = Words(line);
    const bool named = words.size() >= 2 && avq1::EqualsIgnoreCase(words[1], "version");
    return named ? std::max(WholeNumber(words[0]).value_or(0), 0) : 0;
}

bool IsOldFms(std::string_view text) {
    const int version = VersionOf(text);
    return version > 0 && version < kNewVersion;
}

bool IsNewFms(std::string_view text) {
    return VersionOf(text) >= kNewVersion;
}

struct HeaderKey {
    std::string_view key;
    TerminalChoice ExchangePlan::*end;
    std::string TerminalChoice::*field;
};

// In the order in which they are written, behind the departure and behind the destination.
constexpr std::array<HeaderKey, 8> kHeaderKeys{{
    {"DEPRWY", &ExchangePlan::departure, &TerminalChoice::runway},
    {"SID", &ExchangePlan::departure, &TerminalChoice::procedure},
    {"SIDTRANS", &ExchangePlan::departure, &TerminalChoice::transition},
    {"DESRWY", &ExchangePlan::arrival, &TerminalChoice::runway},
    {"STAR", &ExchangePlan::arrival, &TerminalChoice::procedure},
    {"STARTRANS", &ExchangePlan::arrival, &TerminalChoice::transition},
    {"APP", &ExchangePlan::arrival, &TerminalChoice::approach},
    {"APPTRANS", &ExchangePlan::arrival, &TerminalChoice::approachTransition},
}};

// ---- reading ----

struct FmsReader {
    const PlanSource& source;
    ExchangePlan& plan;
    int version;
    std::size_t line = 0;
    std::size_t announced = 0;  // waypoints by the header's count
    std::size_t met = 0;        // waypoint lines, sound or not
    bool inHeader = true;
};

void AddFault(FmsReader& reader, const std::string& text) {
    reader.source.report.Add(Topic::Fault, "waypoints left out",
                             AtLine(reader.source.name, reader.line, text + ": left out"));
}

void AddWarning(FmsReader& reader, const std::string& text) {
    reader.source.report.Add(Topic::Warning, "lines",
                             AtLine(reader.source.name, reader.line, text));
}

std::string Quoted(std::string_view word) {
    return "'" + std::string(word.substr(0, 24)) + "'";
}

// type ident [via] altitude latitude longitude; what follows is passed over.
void ReadWaypoint(FmsReader& reader, const std::vector<std::string_view>& words) {
    const std::size_t altitudeColumn = reader.version >= kNewVersion ? 3 : 2;
    ++reader.met;
    if (words.size() < altitudeColumn + 3) {
        AddFault(reader, "has " + std::to_string(words.size()) + " of " +
                             std::to_string(altitudeColumn + 3) + " columns");
        return;
    }
    const std::string_view latitude = words[altitudeColumn + 1];
    const std::string_view longitude = words[altitudeColumn + 2];
    const std::optional<avq1::LatLon> at = Position(latitude, longitude);
    if (!at) {
        AddFault(reader, Quoted(latitude) + " " + Quoted(longitude) + " is no position");
        return;
    }
    PlanWaypoint entry;
    entry.ident = words[1].substr(0, kLongestIdentRead);
    if (entry.ident.size() < words[1].size()) {
        AddWarning(reader, Quoted(words[1]) + " is cut to 16 characters");
    }
    entry.latitude = at->latitude;
    entry.longitude = at->longitude;
    entry.type = TypeFromName(reader.source.format, words[0]);
    if (entry.type.empty()) {
        entry.type = "WPT";
        AddWarning(reader, "type " + Quoted(words[0]) + " is not known: read as WPT");
    }
    const std::optional<double> altitude = Number(words[altitudeColumn]);
    if (!altitude) {
        AddWarning(reader, Quoted(words[altitudeColumn]) + " is no altitude: read as none");
    } else if (*altitude >= 1.0 || *altitude <= -1.0) {
        entry.altitude = *altitude;
    }
    const std::string_view via = reader.version >= kNewVersion ? words[2] : kDirect;
    if (via != kDirect && via != kDeparts && via != kArrives) {
        entry.via = via.substr(0, kLongestIdentRead);
    }
    AddWaypoint(std::move(entry), reader.plan);
}

void ReadHeaderLine(FmsReader& reader, const std::vector<std::string_view>& words) {
    if (words.size() < 2) {
        return;
    }
    const auto row = std::find_if(kHeaderKeys.begin(), kHeaderKeys.end(),
                                  [&](const HeaderKey& key) { return key.key == words[0]; });
    if (row != kHeaderKeys.end()) {
        (reader.plan.*row->end).*row->field = words[1].substr(0, kLongestIdentRead);
    } else if (words[0] == "CYCLE" && words[1].size() == 4 && WholeNumber(words[1])) {
        reader.plan.cycle = words[1];
    } else if (words[0] == "NUMENR") {
        reader.announced = static_cast<std::size_t>(std::max(WholeNumber(words[1]).value_or(0), 0));
    }
}

// Old plans are filled up to a hundred lines with these.
bool IsFiller(const std::vector<std::string_view>& words) {
    return words[0] == "0" && words[1].starts_with("--");
}

void ReadLine(FmsReader& reader, std::string_view line) {
    const std::vector<std::string_view> words = Words(line);
    if (words.empty()) {
        return;
    }
    const std::optional<int> number = WholeNumber(words[0]);
    if (!number && reader.inHeader) {
        ReadHeaderLine(reader, words);
        return;
    }
    if (!number) {
        AddFault(reader, "begins with " + Quoted(words[0]) + ", which is no type of waypoint");
        return;
    }
    if (words.size() ==
        1) {  // the old version's two counts; X-Plane's second lacks the first entry
        reader.announced = static_cast<std::size_t>(std::max(*number, 0));
        return;
    }
    reader.inHeader = false;
    if (!IsFiller(words)) {
        ReadWaypoint(reader, words);
    }
}

void SayWhatLacks(FmsReader& reader) {
    if (reader.announced > reader.met) {
        AddWarning(reader, "the plan ends after " + std::to_string(reader.met) + " of " +
                               std::to_string(reader.announced) + " waypoints");
    }
}

void ReadFms(const PlanSource& source, ExchangePlan& plan) {
    FmsReader reader{source, plan, VersionOf(source.text)};
    LineSource lines = LineSource::OfText(source.text, "");
    std::string_view line;
    lines.Next(line);
    lines.Next(line);
    reader.line = 2;
    if (reader.version != kOldVersion && reader.version != kNewVersion) {
        AddWarning(reader, "version " + std::to_string(reader.version) + " is not known: read as " +
                               source.format.title);
    }
    while (lines.Next(line)) {
        reader.line = lines.LineNumber();
        ReadLine(reader, line);
    }
    SayWhatLacks(reader);
}

// ---- writing ----

std::string Numbers(const PlanWaypoint& entry) {
    return Fixed(AltitudeOrZero(entry), 6) + " " + Fixed(entry.latitude, 6) + " " +
           Fixed(entry.longitude, 6);
}

bool WriteOldFms(const PlanFormat& format, const ExchangePlan& plan, std::string& text,
                 std::string&) {
    std::string lines;
    std::size_t count = 0;
    for (const PlanWaypoint& entry : plan.entries) {
        if (avq1::HasPosition(entry)) {
            ++count;
            lines += TypeName(format, entry);
            lines += " " + entry.ident + " " + Numbers(entry) + "\n";
        }
    }
    text = "I\n3 version\n1\n" + std::to_string(count - 1) + "\n" + lines;
    return true;
}

// "ADEP KGSO", or "DEP CTF" when the route does not begin at an airport, and the choices there.
std::string TerminalBlock(const ExchangePlan& plan, TerminalChoice ExchangePlan::*end,
                          const PlanWaypoint& entry, const char* key) {
    const bool airport = entry.type == avq1::kAirportType;
    std::string text = (airport ? "A" : "") + std::string(key) + " " + entry.ident + "\n";
    for (const HeaderKey& row : kHeaderKeys) {
        const std::string& choice = plan.*end.*row.field;
        if (row.end == end && !choice.empty()) {
            text += std::string(row.key) + " " + choice + "\n";
        }
    }
    return text;
}

bool CheckHeader(const ExchangePlan& plan, std::string& error) {
    if (!WholeNumber(plan.cycle) || CycleLine(WholeNumber(plan.cycle).value_or(0)).empty() ||
        plan.cycle.size() != 4) {
        error = "the format wants the data's cycle in four digits, as in 2309";
        return false;
    }
    const TerminalChoice& arrival = plan.arrival;
    const bool departs = plan.entries.front().type == avq1::kAirportType;
    const bool arrives = plan.entries.back().type == avq1::kAirportType;
    if ((!departs && plan.departure != TerminalChoice{}) ||
        (!arrives && arrival != TerminalChoice{})) {
        error = "runways and procedures are chosen only at an airport";
        return false;
    }
    if (arrival.runway.empty() && (!arrival.procedure.empty() || !arrival.approach.empty())) {
        error = "an arrival or approach without its runway is none in this format";
        return false;
    }
    return true;
}

bool WriteNewFms(const PlanFormat& format, const ExchangePlan& plan, std::string& text,
                 std::string& error) {
    if (!CheckHeader(plan, error)) {
        return false;
    }
    std::vector<const PlanWaypoint*> placed;
    for (const PlanWaypoint& entry : plan.entries) {
        if (avq1::HasPosition(entry)) {
            placed.push_back(&entry);
        }
    }
    text = "I\n1100 Version\nCYCLE " + plan.cycle + "\n";
    text += TerminalBlock(plan, &ExchangePlan::departure, *placed.front(), "DEP");
    text += TerminalBlock(plan, &ExchangePlan::arrival, *placed.back(), "DES");
    text += "NUMENR " + std::to_string(placed.size()) + "\n";
    for (const PlanWaypoint* entry : placed) {
        const bool airport = entry->type == avq1::kAirportType;
        std::string_view via = AirwayOf(*entry).empty() ? kDirect : AirwayOf(*entry);
        via = airport && entry == placed.front() ? kDeparts : via;
        via = airport && entry == placed.back() ? kArrives : via;
        text += TypeName(format, *entry);
        text += " " + entry->ident + " ";
        text += via;
        text += " " + Numbers(*entry) + "\n";
    }
    return true;
}

constexpr std::array<std::string_view, kPlanTypes.size()> kFmsTypes{"1", "3", "2", "11", "28"};

}  // namespace

const PlanFormat kFms1100PlanFormat{
    .name = "fms1100",
    .title = "X-Plane plan, version 1100",
    .extensions = "fms",
    .sniff = IsNewFms,
    .read = ReadFms,
    .write = WriteNewFms,
    .carries = kCarriesPlaces | kCarriesAirways | kCarriesAltitudes | kCarriesTerminal |
               kCarriesApproaches,
    .typeNames = kFmsTypes,
    .longestIdent = 7,
    .longestPointIdent = 16,
    .endsAreAirports = false,
    .mostEntries = 1000,
};

const PlanFormat kFms3PlanFormat{
    .name = "fms3",
    .title = "X-Plane plan, version 3",
    .extensions = "fms",
    .sniff = IsOldFms,
    .read = ReadFms,
    .write = WriteOldFms,
    .carries = kCarriesPlaces | kCarriesAltitudes,
    .typeNames = kFmsTypes,
    .longestIdent = 7,
    .longestPointIdent = 16,
    .endsAreAirports = false,
    .mostEntries = 100,
};

}  // namespace avqdata
