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
    double exact = 0;  // degrees, with the fractions of what stands last
};

// The smallest unit that is written, as whole units of the next smaller one.
std::int32_t Sixtieths(double fraction) {
    return static_cast<std::int32_t>(fraction * 60 + kLeastSecond);
}

// "N54\xB0 39' 14.04\"", "N52* 40.61'"
bool ReadSexagesimal(std::string_view text, std::string_view letters, Sexagesimal& value) {
    const char letter = text.empty() ? ' ' : ToUpper(text.substr(0, 1)).front();
    if (letters.find(letter) == kNpos) {
        return false;
    }
    value.hemisphere = letter;
    text.remove_prefix(1);
    double degreeFraction = 0;
    double minuteFraction = 0;
    double secondFraction = 0;
    if (!TakeNumber(text, value.degrees, degreeFraction)) {
        return false;
    }
    SkipMarks(text);
    if (!TakeNumber(text, value.minutes, minuteFraction)) {
        value.minutes = Sixtieths(degreeFraction);
        minuteFraction = std::max(degreeFraction * 60 - value.minutes, 0.0);
    }
    SkipMarks(text);
    const bool hasSeconds = TakeNumber(text, value.seconds, secondFraction);
    if (!hasSeconds) {
        value.seconds = Sixtieths(minuteFraction);
    }
    const double seconds = hasSeconds ? value.seconds + secondFraction : minuteFraction * 60;
    value.exact = value.degrees + (value.minutes + seconds / 60) / 60;
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
        const bool isDecimal = ReadDecimal(latitudeText, 90, waypoint.latitude) &&
                               ReadDecimal(longitudeText, 180, waypoint.longitude);
        waypoint.exact = {waypoint.latitude, waypoint.longitude};
        return isDecimal;
    }
    ParseLatLon(Format("N%02d:%02d:%02d", north.degrees, north.minutes, north.seconds),
                Format("E%03d:%02d:%02d", east.degrees, east.minutes, east.seconds),
                waypoint.latitude, waypoint.longitude);
    waypoint.exact = {north.exact, east.exact};
    if (north.hemisphere == 'S') {
        waypoint.latitude = -waypoint.latitude;
        waypoint.exact.latitude = -waypoint.exact.latitude;
    }
    if (east.hemisphere == 'W') {
        waypoint.longitude = -waypoint.longitude;
        waypoint.exact.longitude = -waypoint.exact.longitude;
    }
    return std::abs(waypoint.exact.latitude) <= 90 && std::abs(waypoint.exact.longitude) <= 180;
}

// A planned height; planners write 0 where they have none.
double PlannedHeight(std::string_view text) {
    constexpr double kHighest = 100000;
    const double feet = ToNumber(text);
    return feet != 0 && std::abs(feet) <= kHighest ? feet : kUnset;
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

// Blanks in their place: what is behind them stays where it is.
std::string WithoutComments(std::string_view document) {
    constexpr std::string_view kOpen = "<!--";
    constexpr std::string_view kClose = "-->";
    std::string text(document);
    std::size_t open = text.find(kOpen);
    while (open != kNpos) {
        const std::size_t close = text.find(kClose, open);
        const std::size_t end = close == kNpos ? text.size() : close + kClose.size();
        std::fill(text.begin() + static_cast<std::ptrdiff_t>(open),
                  text.begin() + static_cast<std::ptrdiff_t>(end), ' ');
        open = text.find(kOpen, end);
    }
    return text;
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

struct ProcedureElement {
    std::string_view name;
    std::string_view procedure;
};
constexpr std::array<ProcedureElement, 3> kProcedureElements = {{
    {"DepartureFP", "SID"},
    {"ArrivalFP", "STAR"},
    {"ApproachTypeFP", "APPR"},
}};

void ReadRoute(std::string_view element, SimWaypoint& waypoint) {
    waypoint.airway = CleanIdent(ElementText(element, "ATCAirway"));
    for (const ProcedureElement& row : kProcedureElements) {
        const std::string name = CleanIdent(ElementText(element, row.name));
        if (!name.empty() && waypoint.type != "APT") {
            waypoint.airway = name;
            waypoint.procedure = row.procedure;
        }
    }
    const double speed = ToNumber(ElementText(element, "SpeedMaxFP"));
    constexpr double kFastest = 2000;
    waypoint.speed = speed > 0 && speed < kFastest ? speed : kUnset;
}

// Latitude, longitude and height, separated by commas.
bool ReadPlace(std::string_view text, SimWaypoint& waypoint) {
    std::array<std::string_view, 3> parts;
    for (std::string_view& part : parts) {
        const std::size_t comma = std::min(text.find(','), text.size());
        part = text.substr(0, comma);
        text.remove_prefix(std::min(comma + 1, text.size()));
    }
    waypoint.altitude = PlannedHeight(Trimmed(parts[2]));
    return ReadPosition(parts[0], parts[1], waypoint);
}

// What the waypoint tells of the runway and the procedures at the route's ends.
void ReadTerminal(std::string_view element, bool isFirst, SimPlan& plan) {
    const std::string departure = CleanIdent(ElementText(element, "DepartureFP"));
    const std::string arrival = CleanIdent(ElementText(element, "ArrivalFP"));
    const std::string approach = CleanIdent(ElementText(element, "ApproachTypeFP"));
    const std::string runway = SimRunway(ElementText(element, "RunwayNumberFP"),
                                         ElementText(element, "RunwayDesignatorFP"));
    const bool departs = !departure.empty() || (isFirst && arrival.empty() && approach.empty());
    SimTerminal& end = departs ? plan.departure : plan.arrival;
    const std::string& procedure = departs ? departure : arrival;
    end.runway = runway.empty() ? end.runway : runway;
    end.procedure = procedure.empty() ? end.procedure : procedure;
    if (!departs && !approach.empty()) {
        end.approach = approach;
        end.approachSuffix = CleanIdent(ElementText(element, "SuffixFP"));
    }
}

bool ReadXmlWaypoint(std::string_view element, SimWaypoint& waypoint) {
    waypoint.type = TypeOf(ElementText(element, "ATCWaypointType"), &TypeRow::word);
    waypoint.ident = CleanIdent(QuotedId(element));
    // Later planners name an airport in words; its code stands beside.
    const std::string code = CleanIdent(ElementText(element, "ICAOIdent"));
    if (!code.empty() && (waypoint.ident.empty() || waypoint.type == "APT")) {
        waypoint.ident = code;
    }
    ReadRoute(element, waypoint);
    return ReadPlace(ElementText(element, "WorldPosition"), waypoint);
}

// The next opening tag of a waypoint, whatever its attributes; npos without one.
std::size_t FindWaypoint(std::string_view text, std::size_t from) {
    constexpr std::string_view kWaypoint = "<ATCWaypoint";
    std::size_t start = text.find(kWaypoint, from);
    while (start != kNpos) {
        const std::size_t end = start + kWaypoint.size();
        if (end == text.size() || text[end] == '>' || IsSpace(text[end])) {
            return start;
        }
        start = text.find(kWaypoint, end);
    }
    return kNpos;
}

SimPlan ReadXmlPlan(std::string_view document) {
    SimPlan plan;
    const std::string text = WithoutComments(document);
    plan.cruisingAltitudeFt = ToInteger(ElementText(text, "CruisingAlt"));
    std::size_t start = FindWaypoint(text, 0);
    while (start != kNpos && !plan.IsFull()) {
        const std::size_t next = FindWaypoint(text, start + 1);
        std::string_view element = std::string_view(text).substr(start, next - start);
        element = element.substr(0, element.find("</ATCWaypoint>"));
        SimWaypoint waypoint;
        if (ReadXmlWaypoint(element, waypoint)) {
            ReadTerminal(element, plan.waypoints.empty(), plan);
            plan.waypoints.push_back(waypoint);
        } else {
            plan.leftOutAt.push_back(start);
        }
        start = next;
    }
    return plan;
}

// ---- key form ----

bool LooksLikeCoordinate(std::string_view field, std::string_view letters) {
    return field.size() > 1 && letters.find(field[0]) != kNpos && field[1] >= '0' &&
           field[1] <= '9';
}

// "EGSH, A, N52* 40.61', E001* 17.07', +000000.00"; the longer lines of saved flights have region,
// identifier, airport and name before the type. An airway may stand behind the height.
bool ReadKeyWaypoint(std::string_view value, SimWaypoint& waypoint) {
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
    std::size_t latitude = 0;  // the last pair that looks right: N07 and S50 are airports
    for (std::size_t i = kShortFormLatitude; i + 1 < fields.size(); ++i) {
        const bool isPosition =
            LooksLikeCoordinate(fields[i], "NS") && LooksLikeCoordinate(fields[i + 1], "EW");
        latitude = isPosition ? i : latitude;
    }
    if (latitude == 0 || !ReadPosition(fields[latitude], fields[latitude + 1], waypoint)) {
        return false;
    }
    fields.resize(kMaxFields + 2);
    waypoint.ident = CleanIdent(fields[latitude > kShortFormLatitude ? 1 : 0]);
    waypoint.type = TypeOf(fields[latitude - 1], &TypeRow::letter);
    waypoint.altitude = PlannedHeight(fields[latitude + 2]);
    waypoint.airway = CleanIdent(fields[latitude + 3]);
    return true;
}

SimPlan ReadKeyPlan(std::string_view text) {
    constexpr std::string_view kWaypoint = "waypoint.";
    constexpr std::string_view kCruise = "cruising_altitude";
    constexpr std::size_t kLineLimit = 1024;
    struct NumberedLine {
        std::int32_t number;
        std::string_view value;
    };
    SimPlan plan;
    std::vector<NumberedLine> lines;
    LineReader reader(text, kLineLimit);
    std::string_view line;
    while (reader.Next(line) && lines.size() < kMaxWaypoints) {
        line = Trimmed(line);
        const std::size_t equals = line.find('=');
        const std::string_view value = equals == kNpos ? "" : line.substr(equals + 1);
        if (EqualsIgnoreCase(Trimmed(line.substr(0, equals)), kCruise)) {
            plan.cruisingAltitudeFt = ToInteger(Trimmed(value));
        } else if (StartsWithIgnoreCase(line, kWaypoint) && equals != kNpos) {
            lines.push_back({ToInteger(line.substr(kWaypoint.size())), value});
        }
    }
    std::stable_sort(lines.begin(), lines.end(), [](const NumberedLine& a, const NumberedLine& b) {
        return a.number < b.number;
    });
    for (const NumberedLine& numbered : lines) {
        SimWaypoint waypoint;
        if (ReadKeyWaypoint(numbered.value, waypoint)) {
            plan.waypoints.push_back(waypoint);
        } else {
            plan.leftOutAt.push_back(static_cast<std::size_t>(numbered.value.data() - text.data()));
        }
    }
    return plan;
}

}  // namespace

bool SimPlan::IsFull() const {
    return waypoints.size() >= kMaxWaypoints;
}

bool ReadSimPosition(std::string_view text, LatLon& at, double& altitude) {
    SimWaypoint waypoint;
    const bool isPlace = ReadPlace(text, waypoint);
    at = waypoint.exact;
    altitude = waypoint.altitude;
    return isPlace;
}

std::string SimRunway(std::string_view number, std::string_view designator) {
    constexpr std::int32_t kMostRunway = 36;
    constexpr std::string_view kSides = "LRC";
    const std::int32_t value = ToInteger(number);
    if (value < 1 || value > kMostRunway) {
        return {};
    }
    const std::string side = ToUpper(designator.substr(0, 1));
    const bool isSide = !side.empty() && kSides.find(side.front()) != kNpos;
    return Format("%02d", value) + (isSide ? side : std::string());
}

SimPlan ReadSimPlan(std::string_view text) {
    const bool isXml = text.find("<ATCWaypoint") != kNpos;
    SimPlan plan = isXml ? ReadXmlPlan(text) : ReadKeyPlan(text);
    std::int32_t unnamed = 0;
    for (SimWaypoint& waypoint : plan.waypoints) {
        if (waypoint.ident.empty()) {
            waypoint.ident = Format("WPT%02d", ++unnamed);
        }
    }
    return plan;
}

ConvertedPlan ConvertSimPlan(std::string_view text) {
    const SimPlan plan = ReadSimPlan(text);
    ConvertedPlan converted;
    converted.leftOut = static_cast<std::int32_t>(plan.leftOutAt.size());
    if (plan.waypoints.empty()) {
        return converted;
    }
    converted.text = "[FlightPlan]\n";
    for (const SimWaypoint& waypoint : plan.waypoints) {
        const std::string type(waypoint.type);
        converted.text += Format("%-8s %-3.5f %-3.5f  %s\n", waypoint.ident.c_str(),
                                 waypoint.latitude, waypoint.longitude, type.c_str());
    }
    return converted;
}

}  // namespace avq1
