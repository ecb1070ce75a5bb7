#include "avqdata/airspace.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>

#include "avqdata/arinc.h"
#include "avqdata/limits.h"
#include "avqdata/outline_union.h"
#include "avqdata/text_tools.h"
#include "base/text.h"

namespace avqdata {
namespace {

// The classes in the order in which they get room on the map: what a flight is planned around and
// talks to. Only the United States have over five hundred of class D.
constexpr std::array<std::string_view, 19> kClasses{
    "CLASS_B", "CLASS_C",    "TMA",        "CTR",     "ARTCC",  "FIR", "CLASS_D",
    "CLASS_A", "PROHIBITED", "RESTRICTED", "WARNING", "DANGER", "NSA", "MOA",
    "ALERT",   "CLASS_E2",   "CLASS_E",    "CLASS_F", "CLASS_G"};

struct ClassWord {
    std::string_view word;
    const char* airspaceClass;
};
constexpr std::array<ClassWord, 26> kClassWords{{
    {"P", "PROHIBITED"}, {"GP", "PROHIBITED"}, {"R", "RESTRICTED"}, {"Q", "DANGER"},
    {"W", "WARNING"},    {"UIR", "FIR"},       {"CTA", "TMA"},      {"MTA", "TMA"},
    {"A", "CLASS_A"},    {"B", "CLASS_B"},     {"C", "CLASS_C"},    {"D", "CLASS_D"},
    {"E", "CLASS_E"},    {"F", "CLASS_F"},     {"G", "CLASS_G"},    {"1", "RESTRICTED"},
    {"2", "DANGER"},     {"3", "PROHIBITED"},  {"4", "CTR"},        {"5", "TMZ"},
    {"6", "RMZ"},        {"7", "TMA"},         {"8", "TRA"},        {"9", "TSA"},
    {"10", "FIR"},       {"11", "FIR"},
}};

LatLon PointFrom(const LatLon& centre, double courseTrue, double distanceNm) {
    LatLon at;
    avq1::PointAtDistance(centre.latitude, centre.longitude, courseTrue, distanceNm, at.latitude,
                          at.longitude);
    return at;
}

// How far a point lies from the straight line between two others; flat earth is near enough.
double OffLineNm(const LatLon& point, const LatLon& from, const LatLon& to) {
    const double shrink = std::cos(point.latitude * avq1::kDegToRad);
    const double toEast = TurnDeg(from.longitude, to.longitude) * shrink;
    const double toNorth = to.latitude - from.latitude;
    const double east = TurnDeg(from.longitude, point.longitude) * shrink;
    const double north = point.latitude - from.latitude;
    const double square = toEast * toEast + toNorth * toNorth;
    const double along =
        square > 0 ? std::clamp((east * toEast + north * toNorth) / square, 0.0, 1.0) : 0.0;
    return std::hypot(east - along * toEast, north - along * toNorth) * 60.0;
}

bool IsWanted(const ImportOptions& options, const std::string& airspaceClass) {
    return options.classes.empty() ||
           std::any_of(options.classes.begin(), options.classes.end(),
                       [&](const std::string& name) {
                           return avq1::EqualsIgnoreCase(name, airspaceClass);
                       });
}

bool SamePoints(const std::vector<LatLon>& a, const std::vector<LatLon>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const LatLon& x, const LatLon& y) {
        return x.latitude == y.latitude && x.longitude == y.longitude;
    });
}

// As many points as the module reads, at most.
void Thin(const ImportContext& context, AirspaceOutline& outline) {
    constexpr double kFirstToleranceNm = 0.02;
    if (context.options.simplifyNm > 0) {
        outline.points = Simplify(outline.points, context.options.simplifyNm);
    }
    if (outline.points.size() <= kMostBoundaryPoints) {
        return;
    }
    context.report.Add(Topic::Changed, "outlines thinned to the points that are read",
                       outline.ident);
    for (double tolerance = kFirstToleranceNm; outline.points.size() > kMostBoundaryPoints;
         tolerance *= 2) {
        outline.points = Simplify(outline.points, tolerance);
    }
}

// Whether an airspace is not for the map; says why.
bool Drops(const AirspaceOutline& outline, const ImportContext& context) {
    const bool wanted = IsWanted(context.options, outline.airspaceClass);
    const bool nameless = Token(outline.ident) == "-";
    const char* reason = !wanted                     ? "airspaces of classes not asked for"
                         : outline.points.size() < 3 ? "airspaces without an outline"
                         : nameless                  ? "airspaces without a name"
                                                     : nullptr;
    if (reason != nullptr) {
        context.report.Add(Topic::Dropped, reason,
                           wanted ? outline.airspaceClass + " " + outline.ident : "");
    }
    return reason != nullptr;
}

// What joins into one outline what touches: all outlines of the same class and identifier.
std::vector<AirspaceOutline> JoinShelves(std::vector<AirspaceOutline>&& outlines, Report& report) {
    std::map<std::pair<std::string, std::string>, std::vector<std::size_t>> groups;
    for (std::size_t i = 0; i < outlines.size(); ++i) {
        groups[{outlines[i].airspaceClass, outlines[i].ident}].push_back(i);
    }
    std::vector<AirspaceOutline> joined;
    for (std::size_t i = 0; i < outlines.size(); ++i) {
        AirspaceOutline& outline = outlines[i];
        const std::vector<std::size_t>& group = groups[{outline.airspaceClass, outline.ident}];
        if (group.front() != i) {
            continue;
        }
        std::vector<Ring> shelves;
        for (const std::size_t member : group) {
            shelves.push_back(outlines[member].points);
        }
        std::vector<Ring> rings = group.size() > 1 ? OuterRings(shelves) : std::vector<Ring>{};
        if (rings.empty()) {
            if (group.size() > 1) {
                report.Add(Topic::Warning, "airspaces whose shelves could not be joined",
                           outline.airspaceClass + " " + outline.ident);
            }
            rings = std::move(shelves);
        }
        report.AddCount(Topic::Changed, "shelves of airspaces, in one outline with others",
                        group.size() - std::min(group.size(), rings.size()));
        for (Ring& ring : rings) {
            joined.push_back(
                {outline.airspaceClass, outline.label, outline.ident, std::move(ring)});
        }
    }
    return joined;
}

}  // namespace

std::string AirspaceClass(std::string_view word) {
    const std::string name = avq1::ToUpper(Trim(word));
    const auto* const row = std::find_if(kClassWords.begin(), kClassWords.end(),
                                         [&](const ClassWord& r) { return r.word == name; });
    return name.empty() ? "OTHER" : row != kClassWords.end() ? row->airspaceClass : Token(name);
}

bool HasShelves(std::string_view airspaceClass) {
    return airspaceClass.starts_with("CLASS_") || airspaceClass == "CTR" || airspaceClass == "TMA";
}

std::string NameOfShelf(std::string_view name) {
    std::vector<std::string_view> words = Words(name);
    constexpr std::array<std::string_view, 5> kBeforeNumber{"CLASS", "AREA", "SECTOR", "PART",
                                                            "SHELF"};
    const auto endsInNumber = [&] {  // "C", "2", "1A"
        const std::string_view last = words.back();
        return words.size() > 1 && (last.size() == 1 || (last.size() == 2 && last[0] <= '9'));
    };
    const auto isWord = [&](std::string_view word) {
        return avq1::EqualsIgnoreCase(words[words.size() - 2], word);
    };
    bool bare = true;
    while (!words.empty() && endsInNumber()) {
        const bool named = words.size() > 2 && std::ranges::any_of(kBeforeNumber, isWord);
        if (!named && !bare) {
            break;
        }
        bare = false;
        words.resize(words.size() - (named ? 2 : 1));
        if (!named) {
            break;
        }
    }
    std::string text;
    for (const std::string_view word : words) {
        text += (text.empty() ? "" : " ") + std::string(word);
    }
    return text;
}

int RankOfBoundary(std::string_view ident) {
    constexpr std::string_view kOther = "OTHER_";
    const auto isOfClass = [&](std::string_view name) {
        return ident.starts_with(name) && ident.substr(name.size()).starts_with('_');
    };
    const auto* const found = std::find_if(kClasses.begin(), kClasses.end(), isOfClass);
    const bool last = ident.starts_with(kOther) || ident.starts_with("CLASS_E");
    return found != kClasses.end() ? static_cast<int>(found - kClasses.begin()) + 1
           : last                  ? static_cast<int>(kClasses.size()) + 1
                                   : 0;
}

std::vector<LatLon> ArcPoints(const LatLon& centre, const LatLon& from, const LatLon& to,
                              bool clockwise, double offNm) {
    const double start = CourseTrue(centre, from);
    const double end = CourseTrue(centre, to);
    double sweep = clockwise ? Normalized(end - start) : -Normalized(start - end);
    if (std::abs(sweep) < 1e-6) {
        sweep = clockwise ? 360.0 : -360.0;
    }
    const double startNm = DistanceNm(centre, from);
    const double endNm = DistanceNm(centre, to);
    const double radiusNm = std::max({startNm, endNm, offNm});
    const double stepDeg = 2 * std::acos(1 - offNm / radiusNm) * avq1::kRadToDeg;
    const int steps = std::max(1, static_cast<int>(std::ceil(std::abs(sweep) / stepDeg)));
    std::vector<LatLon> points{from};
    for (int i = 1; i < steps; ++i) {
        const double part = static_cast<double>(i) / steps;
        points.push_back(PointFrom(centre, Normalized(start + sweep * part),
                                   startNm + (endNm - startNm) * part));
    }
    points.push_back(to);
    return points;
}

std::vector<LatLon> CirclePoints(const LatLon& centre, double radiusNm) {
    const LatLon north = PointFrom(centre, 0, radiusNm);
    return ArcPoints(centre, north, north, true);
}

std::vector<LatLon> Simplify(const std::vector<LatLon>& outline, double toleranceNm) {
    if (outline.size() < 4) {
        return outline;
    }
    // From both ends inward: keep the farthest point, look at both halves. A list instead of
    // recursion, because outlines can be long and crooked.
    std::vector<bool> kept(outline.size(), false);
    kept.front() = kept.back() = true;
    std::vector<std::pair<std::size_t, std::size_t>> spans{{0, outline.size() - 1}};
    while (!spans.empty()) {
        const auto [first, last] = spans.back();
        spans.pop_back();
        std::size_t farthest = first;
        double farthestNm = toleranceNm;
        for (std::size_t i = first + 1; i < last; ++i) {
            const double nm = OffLineNm(outline[i], outline[first], outline[last]);
            if (nm > farthestNm) {
                farthest = i;
                farthestNm = nm;
            }
        }
        if (farthest != first) {
            kept[farthest] = true;
            spans.emplace_back(first, farthest);
            spans.emplace_back(farthest, last);
        }
    }
    std::vector<LatLon> simple;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        if (kept[i]) {
            simple.push_back(outline[i]);
        }
    }
    return simple.size() < 4 ? outline : simple;
}

void AddOutlines(std::vector<AirspaceOutline>&& outlines, const ImportContext& context,
                 Dataset& data) {
    std::erase_if(outlines,
                  [&](const AirspaceOutline& outline) { return Drops(outline, context); });
    outlines = JoinShelves(std::move(outlines), context.report);
    std::map<std::string, int> ordinals;
    std::multimap<std::size_t, const std::vector<LatLon>*> known;  // by point count
    std::vector<Boundary> added;
    added.reserve(outlines.size());  // `known` points into it
    for (AirspaceOutline& outline : outlines) {
        Thin(context, outline);
        const auto [first, last] = known.equal_range(outline.points.size());
        if (std::any_of(first, last, [&](const auto& have) {
                return SamePoints(*have.second, outline.points);
            })) {
            context.report.Add(Topic::Dropped, "airspaces with the outline of another",
                               outline.ident);
            continue;
        }
        std::string ident = outline.airspaceClass + "_" + Token(outline.ident);
        const int ordinal = ++ordinals[ident];
        ident += ordinal > 1 ? "_" + std::to_string(ordinal) : "";
        added.push_back(
            {std::move(ident), Token(outline.label).substr(0, 3), std::move(outline.points)});
        known.emplace(added.back().points.size(), &added.back().points);
    }
    data.boundaries.insert(data.boundaries.end(), std::make_move_iterator(added.begin()),
                           std::make_move_iterator(added.end()));
}

// ---- ARINC 424 ----

namespace {

// The class of a controlled airspace, else its type; the type of a restricted one.
std::string ClassOfRecord(std::string_view record, bool restricted) {
    struct TypeRow {
        char letter;
        const char* airspaceClass;
    };
    constexpr std::array<TypeRow, 6> kRestricted{{{'P', "PROHIBITED"},
                                                  {'R', "RESTRICTED"},
                                                  {'W', "WARNING"},
                                                  {'D', "DANGER"},
                                                  {'M', "MOA"},
                                                  {'A', "ALERT"}}};
    constexpr std::array<TypeRow, 5> kControlled{
        {{'A', "CLASS_C"}, {'T', "CLASS_B"}, {'Z', "CTR"}, {'M', "TMA"}, {'C', "TMA"}}};
    const std::string_view letter = Raw(record, 17, 17);
    if (!restricted && letter[0] >= 'A' && letter[0] <= 'G') {
        return AirspaceClass(letter);
    }
    const char type = Raw(record, 9, 9)[0];
    const auto find = [&](const auto& rows) -> std::string {
        const auto row = std::ranges::find(rows, type, &TypeRow::letter);
        return row != rows.end() ? row->airspaceClass : "OTHER";
    };
    return restricted ? find(kRestricted) : find(kControlled);
}

}  // namespace

bool AddAirspaceRecord(std::string_view record, AirspaceRecords& airspaces) {
    const char continuation = Raw(record, 25, 25)[0];
    if (continuation != '0' && continuation != '1') {
        return true;  // hours and agencies
    }
    const bool restricted = Raw(record, 6, 6) == "R";
    AirspaceRecord entry;
    entry.via = Column(record, 31, 32);
    if (entry.via.empty()) {
        return false;
    }
    const std::optional<LatLon> at = ArincPosition(record, 33);
    const std::optional<LatLon> centre = ArincPosition(record, 52);
    entry.hasPoint = at.has_value();
    entry.at = at.value_or(LatLon{});
    entry.centre = centre.value_or(LatLon{});
    entry.radiusNm = ArincTenths(Column(record, 71, 74)).value_or(0);
    const bool needsCentre = entry.via[0] == 'C' || entry.via[0] == 'L' || entry.via[0] == 'R';
    if ((needsCentre && !centre) || (entry.via[0] != 'C' && !at) ||
        (entry.via[0] == 'C' && entry.radiusNm <= 0)) {
        return false;
    }
    AirspaceEntry& airspace = airspaces[std::string(Raw(record, 5, 20))];
    if (airspace.records.empty()) {
        const std::string name(restricted ? Column(record, 10, 19) : Column(record, 10, 14));
        // A four-letter airport code says more in its last three letters.
        airspace.label = name.size() == 4 && !restricted ? name.substr(1) : name;
        airspace.airspaceClass = ClassOfRecord(record, restricted);
    }
    airspace.records.push_back(std::move(entry));
    return true;
}

void BuildAirspaces(const AirspaceRecords& airspaces, const ImportContext& context, Dataset& data) {
    std::vector<AirspaceOutline> outlines;
    for (const auto& [key, airspace] : airspaces) {
        AirspaceOutline outline{airspace.airspaceClass, airspace.label, airspace.label, {}};
        const std::vector<AirspaceRecord>& records = airspace.records;
        for (std::size_t i = 0; i < records.size(); ++i) {
            const AirspaceRecord& record = records[i];
            const AirspaceRecord& next = records[(i + 1) % records.size()];
            std::vector<LatLon> points{record.at};
            if (record.via[0] == 'C') {
                points = CirclePoints(record.centre, record.radiusNm);
            } else if ((record.via[0] == 'L' || record.via[0] == 'R') && next.hasPoint &&
                       records.size() > 1) {
                points = ArcPoints(record.centre, record.at, next.at, record.via[0] == 'R');
                points.pop_back();
            }
            outline.points.insert(outline.points.end(), points.begin(), points.end());
        }
        const bool closed = !records.empty() && records.back().via.ends_with('E');
        if (!closed) {
            context.report.Add(Topic::Unresolved, "airspaces whose outline does not end",
                               outline.airspaceClass + " " + outline.label);
            continue;
        }
        if (records.back().via[0] != 'C') {
            outline.points.push_back(records.front().at);
        }
        outlines.push_back(std::move(outline));
    }
    AddOutlines(std::move(outlines), context, data);
}

}  // namespace avqdata
