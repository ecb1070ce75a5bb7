// Routes as text, as people paste them: "KBOS/04R BLZZR6 BLZZR N0450F320 T608 ALB DCT 4230N07130W
// KBUF". What a word is, the data says; without data its shape does.
#include <algorithm>
#include <cmath>
#include <utility>

#include "avqdata/plan_resolve.h"
#include "avqdata/text_tools.h"
#include "base/text.h"

namespace avqdata {
namespace {

using avq1::PlanWaypoint;

constexpr std::size_t kLongestRoute = 4096;
constexpr std::string_view kCapitals = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr std::string_view kDigits = "0123456789";

bool AllOf(std::string_view text, std::string_view allowed) {
    return text.find_first_not_of(allowed) == std::string_view::npos;
}

bool IsName(std::string_view word) {
    return AllOf(word, "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789");
}

// Matches "FLDDD": D a digit, other characters themselves.
bool HasShape(std::string_view word, std::string_view shape) {
    return word.size() == shape.size() &&
           std::equal(word.begin(), word.end(), shape.begin(), [](char c, char s) {
               return s == 'D' ? kDigits.find(c) != std::string_view::npos : c == s;
           });
}

// ---- positions ----

// "45N", "4530N", "453015N" and so on with the hemisphere behind, or "N49570" in front.
std::optional<double> RouteCoordinate(std::string_view digits, char hemisphere,
                                      std::size_t degreeDigits, bool isTenths) {
    if (digits.size() < degreeDigits || !AllOf(digits, kDigits)) {
        return std::nullopt;
    }
    const auto part = [&](std::size_t from, std::size_t length) {
        return static_cast<double>(avq1::ToInteger(digits.substr(from, length)));
    };
    const std::size_t rest = digits.size() - degreeDigits;
    if (rest != 0 && rest != 2 && rest != 4 && !(isTenths && rest == 3)) {
        return std::nullopt;
    }
    const double minutes = rest >= 2 ? part(degreeDigits, 2) : 0;
    const double seconds = rest == 4   ? part(degreeDigits + 2, 2)
                           : rest == 3 ? part(degreeDigits + 2, 1) * 6
                                       : 0;
    const double value = part(0, degreeDigits) + minutes / 60 + seconds / 3600;
    if (minutes >= 60 || seconds >= 60) {
        return std::nullopt;
    }
    return hemisphere == 'S' || hemisphere == 'W' ? -value : value;
}

}  // namespace

std::optional<avq1::LatLon> RoutePosition(std::string_view word) {
    const std::size_t northSouth = word.find_first_of("NS");
    const std::size_t eastWest = word.find_first_of("EW");
    if (northSouth == std::string_view::npos || eastWest == std::string_view::npos ||
        northSouth > eastWest) {
        return std::nullopt;
    }
    const bool isInFront = northSouth == 0;
    const std::string_view north =
        isInFront ? word.substr(1, eastWest - 1) : word.substr(0, northSouth);
    const std::string_view east = isInFront
                                      ? word.substr(eastWest + 1)
                                      : word.substr(northSouth + 1, eastWest - northSouth - 1);
    if (!isInFront && eastWest + 1 != word.size()) {
        return std::nullopt;
    }
    const std::optional<double> latitude = RouteCoordinate(north, word[northSouth], 2, isInFront);
    const std::optional<double> longitude = RouteCoordinate(east, word[eastWest], 3, isInFront);
    if (!latitude || !longitude || !IsPosition({*latitude, *longitude})) {
        return std::nullopt;
    }
    return avq1::LatLon{*latitude, *longitude};
}

namespace {

// ---- words that are no points ----

// Feet of "F350", "A045" (hundreds of feet), "S1130", "M0840" (tens of metres); 0 for none.
int LevelFt(std::string_view word) {
    constexpr double kFeetOfTenMetres = 32.8084;
    if (HasShape(word, "FDDD") || HasShape(word, "ADDD")) {
        return avq1::ToInteger(word.substr(1)) * 100;
    }
    if (HasShape(word, "SDDDD") || HasShape(word, "MDDDD")) {
        return Rounded(avq1::ToInteger(word.substr(1)) * kFeetOfTenMetres);
    }
    return HasShape(word, "FLDDD") ? avq1::ToInteger(word.substr(2)) * 100 : 0;
}

// "N0450F350", "M082F350", "N0110VFR", "N0450", "FL350". False for another word.
bool IsSpeedAndLevel(std::string_view word, int& levelFt) {
    levelFt = 0;
    for (const std::string_view shape : {"NDDDD", "KDDDD", "MDDD"}) {
        const std::string_view level = word.substr(std::min(shape.size(), word.size()));
        if (HasShape(word.substr(0, shape.size()), shape)) {
            levelFt = LevelFt(level);
            const bool isLone = level.empty() && shape != "MDDD";  // M082 may be an airway
            return isLone || level == "VFR" || levelFt != 0;
        }
    }
    levelFt = HasShape(word, "FLDDD") ? LevelFt(word) : 0;
    return levelFt != 0;
}

bool IsFiller(std::string_view word) {
    constexpr std::array<std::string_view, 7> kFillers{"SID", "STAR", "IFR", "VFR",
                                                       "OAT", "GAT",  "C"};
    return std::find(kFillers.begin(), kFillers.end(), word) != kFillers.end() ||
           AllOf(word, kDigits);
}

bool IsAirwayShape(std::string_view word) {
    const std::size_t letters = std::min(word.find_first_of(kDigits), word.size());
    const std::size_t digitsEnd = std::min(word.find_first_not_of(kDigits, letters), word.size());
    const std::size_t digits = digitsEnd - letters;
    const std::size_t tail = word.size() - digitsEnd;
    return letters >= 1 && letters <= 2 && digits >= 1 && digits <= 4 && tail <= 1;
}

// "BLZZR6", "GIVMI6Q"
bool IsProcedureShape(std::string_view word) {
    const std::size_t letters = std::min(word.find_first_of(kDigits), word.size());
    const std::size_t rest = word.size() - letters;
    return letters >= 3 && letters <= 6 && rest >= 1 && rest <= 2 && word.size() >= 4;
}

// ---- reading ----

struct RouteReader {
    const PlanSource& source;
    ExchangePlan& plan;
    std::vector<std::string> words;
    std::vector<RoutePart> parts;
    std::string airway;  // that the next point is reached by
    std::size_t word = 0;
    std::size_t ownPoints = 0;

    bool IsLast() const { return word + 1 == words.size(); }
    std::string Where() const {
        return std::string(source.name) + ": word " + std::to_string(word + 1) + ", ";
    }
};

void AddPart(PlanWaypoint entry, bool isPlaced, RouteReader& reader) {
    entry.via = std::exchange(reader.airway, {});
    reader.parts.push_back({std::move(entry), isPlaced, true, reader.Where(), -1, 0});
}

void AddPosition(const avq1::LatLon& at, std::string_view word, RouteReader& reader) {
    constexpr std::size_t kLongestName = 10;  // that every form takes
    PlanWaypoint entry;
    ++reader.ownPoints;
    entry.ident = word.size() <= kLongestName
                      ? std::string(word)
                      : avq1::Format("WPT%02d", static_cast<int>(reader.ownPoints));
    entry.type = "WPT";
    entry.latitude = at.latitude;
    entry.longitude = at.longitude;
    AddPart(std::move(entry), true, reader);
}

// "GDM270030": 30 nm from the place on the magnetic bearing 270.
bool AddBearingDistance(std::string_view word, RouteReader& reader) {
    constexpr std::size_t kTail = 6;
    if (word.size() < kTail + 2 || word.size() > kTail + 5 ||
        !AllOf(word.substr(word.size() - kTail), kDigits) ||
        !AllOf(word.substr(0, word.size() - kTail), kCapitals)) {
        return false;
    }
    const int bearing = avq1::ToInteger(word.substr(word.size() - kTail, 3));
    if (bearing > 360) {
        return false;
    }
    PlanWaypoint entry;
    entry.ident = word.substr(0, word.size() - kTail);
    AddPart(std::move(entry), false, reader);
    reader.parts.back().bearingMag = bearing;
    reader.parts.back().distanceNm = avq1::ToInteger(word.substr(word.size() - 3));
    return true;
}

std::string DestinationOf(const RouteReader& reader) {
    const std::string& last = reader.words.back();
    return last.substr(0, last.find('/'));
}

// A departure's name stands behind the first point, an arrival's before the last one.
bool TakeProcedure(const std::string& word, RouteReader& reader) {
    if (reader.parts.empty() || reader.IsLast()) {
        return false;
    }
    const PlanData* const data = reader.source.data;
    if (data != nullptr && (!data->Named(word).empty() || !data->AirwayPieces(word).empty())) {
        return false;
    }
    const bool isNext = reader.parts.size() == 1 && reader.plan.departure.procedure.empty();
    const bool isBeforeLast = reader.word + 2 == reader.words.size();
    const bool isShape = IsProcedureShape(word) && !IsAirwayShape(word);
    const bool departs =
        isNext && (isShape || (data != nullptr &&
                               HasDeparture(*data, reader.parts.front().entry.ident, word)));
    const bool arrives =
        !departs && ((isBeforeLast && isShape) ||
                     (data != nullptr && HasArrival(*data, DestinationOf(reader), word)));
    if (departs) {
        reader.plan.departure.procedure = word;
    } else if (arrives) {
        reader.plan.arrival.procedure = word;
    }
    return departs || arrives;
}

bool TakeAirway(const std::string& word, RouteReader& reader) {
    const PlanData* const data = reader.source.data;
    if (reader.parts.empty() || reader.IsLast()) {
        return false;
    }
    const bool isKnown = data != nullptr && !data->AirwayPieces(word).empty();
    const bool isPoint = data != nullptr && !data->Named(word).empty();
    if (!isKnown && (isPoint || !IsAirwayShape(word))) {
        return false;
    }
    if (!reader.airway.empty()) {  // "T608 J49": where the two meet
        AddPart({}, false, reader);
    }
    reader.airway = word;
    return true;
}

void TakeRunway(std::string_view text, RouteReader& reader) {
    const std::string runway = RunwayFix(text);
    if (!runway.empty()) {
        (reader.IsLast() ? reader.plan.arrival : reader.plan.departure).runway = runway;
    }
}

void TakeWord(const std::string& whole, RouteReader& reader) {
    const std::size_t slash = std::min(whole.find('/'), whole.size());
    const std::string word = whole.substr(0, slash);
    const std::string tail = whole.substr(std::min(slash + 1, whole.size()));
    int levelFt = 0;
    if (word == "DCT" || word == "DIRECT") {
        reader.airway.clear();
        return;
    }
    if (IsSpeedAndLevel(word, levelFt)) {
        reader.plan.cruiseAltitudeFt =
            reader.plan.cruiseAltitudeFt == 0 ? levelFt : reader.plan.cruiseAltitudeFt;
        return;
    }
    const std::optional<avq1::LatLon> at = RoutePosition(word);
    if (word.empty() || IsFiller(word) || TakeProcedure(word, reader) ||
        (!at && TakeAirway(word, reader))) {
        return;
    }
    const bool isKnown = reader.source.data != nullptr && !reader.source.data->Named(word).empty();
    if (at && !isKnown) {
        AddPosition(*at, word, reader);
    } else if (isKnown || !AddBearingDistance(word, reader)) {
        PlanWaypoint entry;
        entry.ident = CleanWord(word);
        AddPart(std::move(entry), false, reader);
    }
    if (IsSpeedAndLevel(tail, levelFt) && levelFt != 0) {
        reader.parts.back().entry.altitude = levelFt;
    } else if (reader.IsLast() || reader.parts.size() == 1) {
        TakeRunway(tail, reader);
    }
}

// Points between names are those of another spelling: "GDM..ALB" direct, "GDM.T608.ALB" along.
std::vector<std::string> RouteWords(std::string_view text) {
    std::string spaced;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text.substr(i).starts_with("..")) {
            spaced += " DCT ";
            ++i;
        } else {
            spaced += text[i] == '.' ? ' ' : text[i];
        }
    }
    std::vector<std::string> words;
    for (const std::string_view word : Words(spaced)) {
        words.emplace_back(word);
    }
    return words;
}

// Capitals, digits and the marks between them, two words at least, no number first.
bool IsRouteText(std::string_view text) {
    if (text.size() > kLongestRoute ||
        !AllOf(text, "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/. \t\r\n")) {
        return false;
    }
    const std::vector<std::string> words = RouteWords(text);
    return words.size() >= 2 && !AllOf(words.front(), kDigits);
}

void ReadRouteText(const PlanSource& source, ExchangePlan& plan) {
    RouteReader reader{source, plan, RouteWords(source.text), {}, {}, 0, 0};
    for (; reader.word < reader.words.size(); ++reader.word) {
        TakeWord(reader.words[reader.word], reader);
    }
    PlaceRoute(source, std::move(reader.parts), plan);
}

// ---- writing ----

// "423000N0713000W"
std::string PositionWord(const PlanWaypoint& entry) {
    const long latitude = std::lround(std::abs(entry.latitude) * 3600);
    const long longitude = std::lround(std::abs(entry.longitude) * 3600);
    return avq1::Format("%02ld%02ld%02ld%c%03ld%02ld%02ld%c", latitude / 3600, latitude / 60 % 60,
                        latitude % 60, entry.latitude < 0 ? 'S' : 'N', longitude / 3600,
                        longitude / 60 % 60, longitude % 60, entry.longitude < 0 ? 'W' : 'E');
}

std::string WordFor(const PlanWaypoint& entry) {
    return entry.type == "WPT" ? PositionWord(entry) : entry.ident;
}

std::string RunwayTail(const TerminalChoice& choice) {
    return choice.runway.empty() ? std::string() : "/" + choice.runway.substr(2);
}

bool WriteRouteText(const PlanFormat&, const ExchangePlan& plan, std::string& text,
                    std::string& error) {
    std::vector<const PlanWaypoint*> placed;
    for (const PlanWaypoint& entry : plan.entries) {
        if (avq1::HasPosition(entry)) {
            placed.push_back(&entry);
            const bool isWord =
                entry.type == "WPT" || (IsName(entry.ident) && !IsFiller(entry.ident));
            if (!isWord || !IsName(AirwayOf(entry))) {
                error = entry.ident + ": is no word of a route, which are capitals and digits";
                return false;
            }
        }
    }
    const TerminalChoice& from = plan.departure;
    const TerminalChoice& to = plan.arrival;
    for (const std::string* name :
         {&from.procedure, &from.transition, &to.procedure, &to.transition}) {
        if (!IsName(*name)) {
            error = *name + ": a route's words are capital letters and digits only";
            return false;
        }
    }
    text = WordFor(*placed.front()) + RunwayTail(from);
    text += from.procedure.empty() ? "" : " " + from.procedure;
    text +=
        from.transition.empty() || from.transition == placed[1]->ident ? "" : " " + from.transition;
    for (std::size_t i = 1; i < placed.size(); ++i) {
        const bool isOwn = placed[i]->type == "WPT";  // on no airway
        const std::string airway(isOwn ? std::string_view{} : AirwayOf(*placed[i]));
        const bool isLast = i + 1 == placed.size();
        if (!airway.empty() && !isLast && AirwayOf(*placed[i + 1]) == airway &&
            placed[i + 1]->type != "WPT") {
            continue;  // on the way to where the airway is left
        }
        const bool isNamed =
            (i == 1 && !from.procedure.empty()) || (isLast && !to.procedure.empty());
        if (isLast && !to.procedure.empty()) {
            const bool isJoint = to.transition.empty() || to.transition == placed[i - 1]->ident;
            text += (isJoint ? "" : " DCT " + to.transition) + " " + to.procedure;
        }
        text += !airway.empty() ? " " + airway : isNamed ? "" : " DCT";
        text += " " + WordFor(*placed[i]);
    }
    text += RunwayTail(to) + "\n";
    if (text.size() > kLongestRoute) {
        error = "is longer than any route that is read";
        text.clear();
        return false;
    }
    return true;
}

}  // namespace

const PlanFormat kRouteTextPlanFormat{
    .name = "route",
    .title = "route text",
    .extensions = "txt",
    .sniff = IsRouteText,
    .read = ReadRouteText,
    .write = WriteRouteText,
    .carries = kCarriesAirways | kCarriesEndAirways | kCarriesTerminal,
    .typeNames = kPlanTypes,
    .longestIdent = 7,
    .longestPointIdent = 16,
    .endsAreAirports = false,
    .mostEntries = 1000,
};

}  // namespace avqdata
