// The table of formats and what is walked over it: finding, reading, checking, writing.
#include <algorithm>
#include <cmath>

#include "avqdata/plan_exchange.h"
#include "avqdata/plan_resolve.h"
#include "avqdata/text_tools.h"
#include "base/text.h"

namespace avqdata {

const std::array<const PlanFormat*, 15> kPlanFormats{
    &kSimXmlPlanFormat,    &kSimKeyPlanFormat, &kEfbPlanFormat,         &kRtePlanFormat,
    &kFms1100PlanFormat,   &kFms3PlanFormat,   &kFlightGearPlanFormat,  &kGarminFplPlanFormat,
    &kGarminGfpPlanFormat, &kNavmapPlanFormat, &kSimbriefXmlPlanFormat, &kSimbriefJsonPlanFormat,
    &kRouteTextPlanFormat,  // what the others do not know
    &kGeoJsonPlanFormat,   &kKmlPlanFormat,
};

namespace {

using avq1::PlanWaypoint;

constexpr std::size_t kFewestEntries = 2;
constexpr double kHighestFt = 100000;
constexpr double kFastestKt = 2000;
constexpr std::size_t kLongestWord = 16;

bool IsUnset(double value) {
    return value == avq1::kUnset;
}

// What every format takes for an identifier or an airway; no form's own marks are among it.
bool IsWord(std::string_view text) {
    constexpr std::string_view kMarks = "-_+./*";
    return std::all_of(text.begin(), text.end(), [&](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
               kMarks.find(c) != std::string_view::npos;
    });
}

// ---- what a plan holds ----

std::size_t CountEntries(const ExchangePlan& plan, bool (*counts)(const PlanWaypoint& entry)) {
    return static_cast<std::size_t>(
        std::count_if(plan.entries.begin(), plan.entries.end(), counts));
}

std::size_t CountAirways(const ExchangePlan& plan) {
    return CountEntries(plan, [](const PlanWaypoint& e) { return !AirwayOf(e).empty(); });
}

std::size_t CountEndAirways(const ExchangePlan& plan) {
    const auto counts = [](const PlanWaypoint& entry) -> std::size_t {
        return entry.type == avq1::kAirportType && !AirwayOf(entry).empty() ? 1 : 0;
    };
    return plan.entries.size() < kFewestEntries
               ? 0
               : counts(plan.entries.front()) + counts(plan.entries.back());
}

std::size_t CountChoices(const ExchangePlan& plan) {
    std::size_t count = 0;
    for (const TerminalChoice* choice : {&plan.departure, &plan.arrival}) {
        for (const std::string* text : {&choice->runway, &choice->procedure, &choice->transition}) {
            count += text->empty() ? 0 : 1;
        }
    }
    return count;
}

std::size_t CountApproaches(const ExchangePlan& plan) {
    return (plan.arrival.approach.empty() ? 0U : 1U) +
           (plan.arrival.approachTransition.empty() ? 0U : 1U);
}

struct FeatureRow {
    unsigned feature;
    const char* what;
    std::size_t (*count)(const ExchangePlan& plan);
};

constexpr std::array<FeatureRow, 14> kFeatures{{
    {kCarriesAirways, "airways",
     [](const ExchangePlan& p) { return CountAirways(p) - CountEndAirways(p); }},
    {kCarriesEndAirways, "airways to the airports at the ends", CountEndAirways},
    {kCarriesProcedures, "procedures",
     [](const ExchangePlan& p) {
         return CountEntries(
             p, [](const PlanWaypoint& e) { return !e.procedure.empty() && !e.via.empty(); });
     }},
    {kCarriesLoneProcedures, "procedure tags without a name",
     [](const ExchangePlan& p) {
         return CountEntries(
             p, [](const PlanWaypoint& e) { return !e.procedure.empty() && e.via.empty(); });
     }},
    {kCarriesAltitudes, "altitudes",
     [](const ExchangePlan& p) {
         return CountEntries(p, [](const PlanWaypoint& e) { return !IsUnset(e.altitude); });
     }},
    {kCarriesSpeeds, "speeds",
     [](const ExchangePlan& p) {
         return CountEntries(p, [](const PlanWaypoint& e) { return !IsUnset(e.speed); });
     }},
    {kCarriesFrequencies, "frequencies",
     [](const ExchangePlan& p) {
         return CountEntries(p, [](const PlanWaypoint& e) { return !e.frequency.empty(); });
     }},
    {kCarriesGaps, "gaps, which are closed",
     [](const ExchangePlan& p) { return CountEntries(p, avq1::IsDiscontinuity); }},
    {kCarriesCruise, "cruise altitude",
     [](const ExchangePlan& p) -> std::size_t { return p.cruiseAltitudeFt != 0 ? 1 : 0; }},
    {kCarriesFuel, "fuel",
     [](const ExchangePlan& p) -> std::size_t {
         return p.fuelTotal != 0 || p.reserveFuel != 0 ? 1 : 0;
     }},
    {kCarriesTerminal, "runway and procedure choices", CountChoices},
    {kCarriesApproaches, "approach", CountApproaches},
    {kCarriesPositions, "positions of named waypoints",
     [](const ExchangePlan& p) {
         return CountEntries(
             p, [](const PlanWaypoint& e) { return avq1::HasPosition(e) && e.type != "WPT"; });
     }},
    {kCarriesPointNames, "names of own points",
     [](const ExchangePlan& p) {
         return CountEntries(
             p, [](const PlanWaypoint& e) { return avq1::HasPosition(e) && e.type == "WPT"; });
     }},
}};

// ---- what a format takes ----

std::string CheckWords(const PlanFormat& format, const PlanWaypoint& entry) {
    const std::size_t longest =
        entry.type == "WPT" ? format.longestPointIdent : format.longestIdent;
    if (entry.ident.empty()) {
        return "has no identifier";
    }
    if (entry.ident.size() > longest) {
        return "has an identifier of more than " + std::to_string(longest) + " characters";
    }
    if (!IsWord(entry.ident)) {
        return "has an identifier of more than letters, digits and -_+./*";
    }
    for (const std::string* word : {&entry.via, &entry.procedure, &entry.frequency}) {
        if (word->size() > kLongestWord || !IsWord(*word)) {
            return "has an airway, procedure or frequency that is no plain word";
        }
    }
    return {};
}

std::string CheckNumbers(const PlanWaypoint& entry) {
    if (!IsPosition({entry.latitude, entry.longitude})) {
        return "has no position on the earth";
    }
    if (!IsUnset(entry.altitude) && !(std::abs(entry.altitude) <= kHighestFt)) {
        return "has no possible altitude";
    }
    if (!IsUnset(entry.speed) && !(entry.speed >= 0 && entry.speed <= kFastestKt)) {
        return "has no possible speed";
    }
    return {};
}

std::string CheckEntry(const PlanFormat& format, const PlanWaypoint& entry) {
    if (avq1::IsDiscontinuity(entry)) {
        return {};
    }
    if (!avq1::HasPosition(entry)) {
        return "stands for an airway that is not entered yet";
    }
    const std::string fault = CheckNumbers(entry);
    return fault.empty() ? CheckWords(format, entry) : fault;
}

}  // namespace

// ---- finding ----

const PlanFormat* FormatNamed(std::string_view name) {
    const auto found = std::find_if(kPlanFormats.begin(), kPlanFormats.end(),
                                    [&](const PlanFormat* row) { return row->name == name; });
    return found == kPlanFormats.end() ? nullptr : *found;
}

const PlanFormat* FormatOfText(std::string_view text) {
    const auto found = std::find_if(
        kPlanFormats.begin(), kPlanFormats.end(),
        [&](const PlanFormat* row) { return row->read != nullptr && row->sniff(text); });
    return found == kPlanFormats.end() ? nullptr : *found;
}

bool HasExtension(const PlanFormat& format, std::string_view path) {
    for (const std::string& extension : SplitList(format.extensions, ' ')) {
        const std::size_t length = extension.size() + 1;
        if (path.size() > length &&
            avq1::EqualsIgnoreCase(path.substr(path.size() - length), "." + extension)) {
            return true;
        }
    }
    return false;
}

const PlanFormat* FormatOfFileName(std::string_view path) {
    const auto found = std::find_if(
        kPlanFormats.begin(), kPlanFormats.end(),
        [&](const PlanFormat* row) { return row->write != nullptr && HasExtension(*row, path); });
    return found == kPlanFormats.end() ? nullptr : *found;
}

// ---- reading ----

namespace {

// A line a format: its name and what it is.
std::string ReadableForms() {
    std::string list;
    for (const PlanFormat* row : kPlanFormats) {
        if (row->read != nullptr) {
            list += (list.empty() ? "  " : "\n  ") + std::string(row->name) + "  " +
                    std::string(row->title);
        }
    }
    return list;
}

// A runway is "RW" and its designator from here on, or none.
void CheckRunways(const PlanSource& source, ExchangePlan& plan) {
    for (TerminalChoice* choice : {&plan.departure, &plan.arrival}) {
        std::string runway = RunwayFix(choice->runway);
        if (runway.empty() && !choice->runway.empty()) {
            source.report.Add(Topic::Warning, "runways that are none",
                              std::string(source.name) + ": " + CleanWord(choice->runway) +
                                  " is no runway, left out");
        }
        choice->runway = std::move(runway);
    }
}

}  // namespace

bool ReadExchangePlan(std::string_view text, std::string_view name, const PlanData* data,
                      ExchangePlan& plan, const PlanFormat*& format, Report& report,
                      std::string& error) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
        error = std::string(name) + ": is UTF-16; save it as UTF-8 or Latin-1";
        return false;
    }
    if (text.starts_with(kByteOrderMark)) {
        text.remove_prefix(kByteOrderMark.size());
    }
    if (Trim(text).empty()) {
        error = std::string(name) + ": is empty, no flight plan";
        return false;
    }
    std::string withLines;
    if (text.find('\n') == std::string_view::npos && text.find('\r') != std::string_view::npos) {
        withLines = text;
        std::replace(withLines.begin(), withLines.end(), '\r', '\n');
        text = withLines;
        report.Add(Topic::Warning, "line ends",
                   std::string(name) +
                       ": has the line ends of old Macintoshes, which not every "
                       "program reads");
    }
    format = FormatOfText(text);
    if (format == nullptr) {
        error = std::string(name) +
                ": is no flight plan in a form that is known here; there are\n" + ReadableForms();
        return false;
    }
    plan = ExchangePlan{};
    const PlanSource source{text, name, *format, report, data};
    format->read(source, plan);
    CheckRunways(source, plan);
    CompletePlan(source, plan);
    if (std::none_of(plan.entries.begin(), plan.entries.end(), avq1::HasPosition)) {
        error = std::string(name) + ": holds no waypoint that can be read (" + format->title + ")";
        return false;
    }
    return true;
}

std::string_view TypeFromName(const PlanFormat& format, std::string_view name) {
    for (std::size_t i = 0; i < kPlanTypes.size(); ++i) {
        if (avq1::EqualsIgnoreCase(format.typeNames[i], name)) {
            return kPlanTypes[i];
        }
    }
    return {};
}

void AddWaypoint(PlanWaypoint entry, ExchangePlan& plan) {
    if (!avq1::HasPosition(entry)) {
        entry.ident += 'X';
    }
    plan.entries.push_back(std::move(entry));
}

std::size_t LineAt(std::string_view text, std::size_t offset) {
    const std::string_view before = text.substr(0, offset);
    return 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
}

std::string CleanWord(std::string_view text) {
    std::string word;
    for (const char c : text.substr(0, 64)) {
        if (c > ' ' && c <= '~' && word.size() < kLongestWord) {
            word += c;
        }
    }
    return word;
}

void SayIfCut(const PlanSource& source, bool isCut) {
    if (isCut) {
        source.report.Add(Topic::Warning, "plans cut short",
                          std::string(source.name) +
                              ": ends in the middle, or is larger than any "
                              "plan");
    }
}

bool PutPosition(std::string_view latitude, std::string_view longitude, PlanWaypoint& entry) {
    const std::optional<avq1::LatLon> at = Position(Trim(latitude), Trim(longitude));
    if (at) {
        entry.latitude = at->latitude;
        entry.longitude = at->longitude;
    }
    return at.has_value();
}

double HeightOrUnset(std::string_view feet) {
    const std::optional<double> height = Number(Trim(feet));
    const bool isHeight = height && std::abs(*height) >= 1 && std::abs(*height) <= kHighestFt;
    return isHeight ? *height : avq1::kUnset;
}

// ---- writing ----

std::string XmlLine(int indent, std::string_view name, std::string_view value) {
    std::string line(static_cast<std::size_t>(indent), ' ');
    line += "<";
    line += name;
    line += ">" + EscapedXml(value) + "</";
    line += name;
    return line + ">\n";
}

std::string_view TypeName(const PlanFormat& format, const PlanWaypoint& entry) {
    const auto found = std::find(kPlanTypes.begin(), kPlanTypes.end(), entry.type);
    return found == kPlanTypes.end()
               ? format.typeNames.back()
               : format.typeNames[static_cast<std::size_t>(found - kPlanTypes.begin())];
}

std::string_view AirwayOf(const PlanWaypoint& entry) {
    return entry.procedure.empty() ? std::string_view(entry.via) : std::string_view{};
}

std::string_view IdentOfFirst(const ExchangePlan& plan) {
    const auto found = std::find_if(plan.entries.begin(), plan.entries.end(), avq1::HasPosition);
    return found == plan.entries.end() ? std::string_view{} : std::string_view(found->ident);
}

std::string_view IdentOfLast(const ExchangePlan& plan) {
    const auto found = std::find_if(plan.entries.rbegin(), plan.entries.rend(), avq1::HasPosition);
    return found == plan.entries.rend() ? std::string_view{} : std::string_view(found->ident);
}

std::string EscapedXml(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            default:
                escaped += c;
        }
    }
    return escaped;
}

double AltitudeOrZero(const PlanWaypoint& entry) {
    return IsUnset(entry.altitude) ? 0 : entry.altitude;
}

double PlannedCruiseFt(const ExchangePlan& plan) {
    double highestFt = plan.cruiseAltitudeFt;
    if (plan.cruiseAltitudeFt == 0) {
        for (const PlanWaypoint& entry : plan.entries) {
            highestFt = std::max(highestFt, AltitudeOrZero(entry));
        }
    }
    return highestFt;
}

std::string CheckWritable(const PlanFormat& format, const ExchangePlan& plan) {
    const auto placed = std::count_if(plan.entries.begin(), plan.entries.end(), avq1::HasPosition);
    if (static_cast<std::size_t>(placed) < kFewestEntries) {
        return "a route needs two waypoints at least";
    }
    if (plan.entries.size() > format.mostEntries) {
        return std::to_string(plan.entries.size()) + " waypoints are more than the " +
               std::to_string(format.mostEntries) + " this format's programs read";
    }
    for (std::size_t i = 0; i < plan.entries.size(); ++i) {
        const std::string fault = CheckEntry(format, plan.entries[i]);
        if (!fault.empty()) {
            return "waypoint " + std::to_string(i + 1) + " " + fault;
        }
    }
    for (const TerminalChoice* choice : {&plan.departure, &plan.arrival}) {
        for (const std::string* word : {&choice->runway, &choice->procedure, &choice->transition,
                                        &choice->approach, &choice->approachTransition}) {
            if (word->size() > kLongestWord || !IsWord(*word)) {
                return "a runway or procedure at the ends is no plain word";
            }
        }
    }
    if (format.endsAreAirports && (plan.entries.front().type != avq1::kAirportType ||
                                   plan.entries.back().type != avq1::kAirportType)) {
        return "this format's programs want an airport at both ends of the route";
    }
    return {};
}

bool WriteExchangePlan(const PlanFormat& format, const ExchangePlan& plan, std::string& text,
                       std::string& error) {
    if (format.write == nullptr) {
        error = "the form is only read";
        return false;
    }
    const std::string fault = CheckWritable(format, plan);
    if (!fault.empty()) {
        error = fault;
        return false;
    }
    return format.write(format, AsFormatHolds(format, plan), text, error);
}

std::string NotCarried(const PlanFormat& format, const ExchangePlan& whole) {
    const ExchangePlan plan = AsFormatHolds(format, whole);
    std::string lost;
    if (plan.entries.size() < whole.entries.size()) {
        lost = "points of procedures that are named instead (" +
               std::to_string(whole.entries.size() - plan.entries.size()) + ")";
    }
    for (const FeatureRow& row : kFeatures) {
        const std::size_t count = (format.carries & row.feature) != 0 ? 0 : row.count(plan);
        if (count > 0) {
            lost += lost.empty() ? "" : ", ";
            lost += row.what;
            lost += count > 1 ? " (" + std::to_string(count) + ")" : "";
        }
    }
    return lost;
}

}  // namespace avqdata
