#include "flightplan/sim_plan.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "base/text.h"
#include "geometry/geometry.h"

namespace avq1 {
namespace {

constexpr std::size_t kMaxIdentLength = 16;
constexpr std::size_t kMaxWaypoints = 1000;  // far beyond any plan; bounds what a file can cost
constexpr double kLeastSecond = 1e-6;        // a tenth of a minute is 6 s, not 5.9999999
constexpr std::string_view kUntyped = "WPT";
constexpr auto kNpos = std::string_view::npos;

struct SimWaypoint {
    std::string ident;
    std::string_view type = kUntyped;
    double latitude = 0;
    double longitude = 0;
};

struct SimPlan {
    std::vector<SimWaypoint> waypoints;
    std::int32_t leftOut = 0;

    bool IsFull() const { return waypoints.size() >= kMaxWaypoints; }
};

std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && IsSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && IsSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

bool StartsWithIgnoreCase(std::string_view text, std::string_view start) {
    return text.size() >= start.size() && EqualsIgnoreCase(text.substr(0, start.size()), start);
}

// An identifier that is one word of a plan's line, and no comment: "La Rochelle" is LaRochelle.
std::string CleanIdent(std::string_view text) {
    std::string ident;
    for (const char c : text) {
        const bool leadsComment = ident.empty() && c == ';';
        if (c > ' ' && c <= '~' && !leadsComment && ident.size() < kMaxIdentLength) {
            ident += c;
        }
    }
    return ident;
}

// ---- coordinates ----

// Takes a whole number and, after a point, its fraction off the front. False without a digit.
bool TakeNumber(std::string_view& text, std::int32_t& whole, double& fraction) {
    text = Trimmed(text);
    std::size_t end = 0;
    const auto passDigits = [&] {
        while (end < text.size() && text[end] >= '0' && text[end] <= '9') {
            ++end;
        }
    };
    passDigits();
    const std::size_t wholeEnd = end;
    if (end < text.size() && text[end] == '.') {
        ++end;
        passDigits();
    }
    whole = ToInteger(text.substr(0, wholeEnd));
    fraction = ToNumber(text.substr(wholeEnd, end - wholeEnd));
    text.remove_prefix(end);
    return wholeEnd > 0;
}

// Steps over what stands between two numbers of a coordinate: degree sign in either encoding,
// star, apostrophe, quotation mark, blanks.
void SkipMarks(std::string_view& text) {
    while (!text.empty() && !(text.front() >= '0' && text.front() <= '9')) {
        text.remove_prefix(1);
    }
}

struct Sexagesimal {
    char hemisphere = 'N';
    std::int32_t degrees = 0;
    std::int32_t minutes = 0;
    std::int32_t seconds = 0;
};

// "N54\xB0 39' 14.04\"", "N52* 40.61'"
bool ReadSexagesimal(std::string_view text, std::string_view letters, Sexagesimal& value) {
    const char letter = text.empty() ? ' ' : ToUpper(text.substr(0, 1)).front();
    if (letters.find(letter) == kNpos) {
        return false;
    }
    value.hemisphere = letter;
    text.remove_prefix(1);
    double fraction = 0;
    if (!TakeNumber(text, value.degrees, fraction)) {
        return false;
    }
    SkipMarks(text);
    double minuteFraction = 0;
    if (TakeNumber(text, value.minutes, minuteFraction)) {
        SkipMarks(text);
        if (!TakeNumber(text, value.seconds, fraction)) {
            value.seconds = static_cast<std::int32_t>(minuteFraction * 60 + kLeastSecond);
        }
    }
    return value.minutes < 60 && value.seconds < 60;
}

bool ReadDecimal(std::string_view text, double limit, double& value) {
    const bool isNumber = !text.empty() && text.find_first_not_of("+-.0123456789") == kNpos;
    value = isNumber ? ToNumber(text) : limit + 1;
    return std::abs(value) <= limit;
}

bool ReadPosition(std::string_view latitudeText, std::string_view longitudeText,
                  SimWaypoint& waypoint) {
    latitudeText = Trimmed(latitudeText);
    longitudeText = Trimmed(longitudeText);
    Sexagesimal north;
    Sexagesimal east;
    if (!ReadSexagesimal(latitudeText, "NS", north) ||
        !ReadSexagesimal(longitudeText, "EW", east)) {
        return ReadDecimal(latitudeText, 90, waypoint.latitude) &&
               ReadDecimal(longitudeText, 180, waypoint.longitude);
    }
    if (north.degrees > 90 || east.degrees > 180) {
        return false;
    }
    ParseLatLon(Format("N%02d:%02d:%02d", north.degrees, north.minutes, north.seconds),
                Format("E%03d:%02d:%02d", east.degrees, east.minutes, east.seconds),
                waypoint.latitude, waypoint.longitude);
    if (north.hemisphere == 'S') {
        waypoint.latitude = -waypoint.latitude;
    }
    if (east.hemisphere == 'W') {
        waypoint.longitude = -waypoint.longitude;
    }
    return std::abs(waypoint.latitude) <= 90 && std::abs(waypoint.longitude) <= 180;
}

// ---- types ----

struct TypeRow {
    std::string_view word;    // in the XML form
    std::string_view letter;  // in the key form
    std::string_view type;
};

constexpr std::array<TypeRow, 4> kTypes = {{
    {"Airport", "A", "APT"},
    {"Intersection", "I", "INT"},
    {"VOR", "V", "VOR"},
    {"NDB", "N", "NDB"},
}};

std::string_view TypeOf(std::string_view text, std::string_view TypeRow::*column) {
    for (const TypeRow& row : kTypes) {
        if (EqualsIgnoreCase(text, row.*column)) {
            return row.type;
        }
    }
    return kUntyped;
}

// ---- XML form ----

std::string WithoutComments(std::string_view text) {
    constexpr std::string_view kOpen = "<!--";
    constexpr std::string_view kClose = "-->";
    std::string kept;
    while (!text.empty()) {
        const std::size_t open = text.find(kOpen);
        kept += text.substr(0, open);
        const std::size_t close = open == kNpos ? kNpos : text.find(kClose, open);
        text = close == kNpos ? std::string_view{} : text.substr(close + kClose.size());
    }
    return kept;
}

std::string_view ElementText(std::string_view text, std::string_view name) {
    const std::string opening = "<" + std::string(name) + ">";
    const std::size_t start = text.find(opening);
    if (start == kNpos) {
        return {};
    }
    const std::string_view rest = text.substr(start + opening.size());
    const std::size_t end = rest.find('<');
    return end == kNpos ? std::string_view{} : Trimmed(rest.substr(0, end));
}

std::string_view QuotedId(std::string_view element) {
    const std::string_view tag = element.substr(0, element.find('>'));
    const std::size_t open = tag.find_first_of("\"'");
    if (open == kNpos) {
        return {};
    }
    const std::size_t close = tag.find(tag[open], open + 1);
    return close == kNpos ? std::string_view{} : tag.substr(open + 1, close - open - 1);
}

void AddXmlWaypoint(std::string_view element, SimPlan& plan) {
    SimWaypoint waypoint;
    waypoint.type = TypeOf(ElementText(element, "ATCWaypointType"), &TypeRow::word);
    waypoint.ident = CleanIdent(QuotedId(element));
    // Later planners name an airport in words; its code stands beside.
    const std::string code = CleanIdent(ElementText(element, "ICAOIdent"));
    if (!code.empty() && (waypoint.ident.empty() || waypoint.type == "APT")) {
        waypoint.ident = code;
    }
    const std::string_view position = ElementText(element, "WorldPosition");
    const std::size_t comma = position.find(',');
    const std::string_view rest = comma == kNpos ? "" : position.substr(comma + 1);
    if (ReadPosition(position.substr(0, comma), rest.substr(0, rest.find(',')), waypoint)) {
        plan.waypoints.push_back(waypoint);
    } else {
        ++plan.leftOut;
    }
}

SimPlan ReadXmlPlan(std::string_view document) {
    constexpr std::string_view kWaypoint = "<ATCWaypoint id=";
    SimPlan plan;
    const std::string text = WithoutComments(document);
    std::size_t start = text.find(kWaypoint);
    while (start != kNpos && !plan.IsFull()) {
        const std::size_t next = text.find(kWaypoint, start + kWaypoint.size());
        const std::string_view element = std::string_view(text).substr(start, next - start);
        AddXmlWaypoint(element.substr(0, element.find("</ATCWaypoint>")), plan);
        start = next;
    }
    return plan;
}

// ---- key form ----

bool LooksLikeLatitude(std::string_view field) {
    return field.size() > 1 && (field[0] == 'N' || field[0] == 'S') && field[1] >= '0' &&
           field[1] <= '9';
}

// "EGSH, A, N52* 40.61', E001* 17.07', +000000.00"; the longer lines of saved flights have region,
// identifier, airway and name before the type.
void AddKeyWaypoint(std::string_view value, SimPlan& plan) {
    std::vector<std::string_view> fields;
    constexpr std::size_t kMaxFields = 12;
    while (fields.size() < kMaxFields) {
        const std::size_t comma = value.find(',');
        fields.push_back(Trimmed(value.substr(0, comma)));
        if (comma == kNpos) {
            break;
        }
        value.remove_prefix(comma + 1);
    }
    constexpr std::size_t kShortFormLatitude = 2;
    const auto found = std::find_if(fields.begin(), fields.end(), LooksLikeLatitude);
    const auto latitude = static_cast<std::size_t>(found - fields.begin());
    SimWaypoint waypoint;
    if (latitude + 1 >= fields.size() || latitude < kShortFormLatitude ||
        !ReadPosition(fields[latitude], fields[latitude + 1], waypoint)) {
        ++plan.leftOut;
        return;
    }
    waypoint.ident = CleanIdent(fields[latitude > kShortFormLatitude ? 1 : 0]);
    waypoint.type = TypeOf(fields[latitude - 1], &TypeRow::letter);
    plan.waypoints.push_back(waypoint);
}

SimPlan ReadKeyPlan(std::string_view text) {
    constexpr std::string_view kWaypoint = "waypoint.";
    constexpr std::size_t kLineLimit = 1024;
    struct NumberedLine {
        std::int32_t number;
        std::string_view value;
    };
    std::vector<NumberedLine> lines;
    LineReader reader(text, kLineLimit);
    std::string_view line;
    while (reader.Next(line) && lines.size() < kMaxWaypoints) {
        line = Trimmed(line);
        const std::size_t equals = line.find('=');
        if (StartsWithIgnoreCase(line, kWaypoint) && equals != kNpos) {
            lines.push_back({ToInteger(line.substr(kWaypoint.size())), line.substr(equals + 1)});
        }
    }
    std::stable_sort(lines.begin(), lines.end(), [](const NumberedLine& a, const NumberedLine& b) {
        return a.number < b.number;
    });
    SimPlan plan;
    for (const NumberedLine& numbered : lines) {
        AddKeyWaypoint(numbered.value, plan);
    }
    return plan;
}

}  // namespace

ConvertedPlan ConvertSimPlan(std::string_view text) {
    const bool isXml = text.find("<ATCWaypoint") != kNpos;
    const SimPlan plan = isXml ? ReadXmlPlan(text) : ReadKeyPlan(text);
    ConvertedPlan converted;
    converted.leftOut = plan.leftOut;
    if (plan.waypoints.empty()) {
        return converted;
    }
    converted.text = "[FlightPlan]\n";
    std::int32_t unnamed = 0;
    for (const SimWaypoint& waypoint : plan.waypoints) {
        const std::string ident =
            waypoint.ident.empty() ? Format("WPT%02d", ++unnamed) : waypoint.ident;
        const std::string type(waypoint.type);
        converted.text += Format("%-8s %-3.5f %-3.5f  %s\n", ident.c_str(), waypoint.latitude,
                                 waypoint.longitude, type.c_str());
    }
    return converted;
}

}  // namespace avq1
