#include "avqdata/check.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <set>

#include "avqdata/clean.h"
#include "avqdata/cycle.h"
#include "avqdata/limits.h"
#include "avqdata/points_by_name.h"
#include "avqdata/source_file.h"
#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

constexpr double kRoundingNm = 0.01;  // of positions in the files
constexpr double kResolveNm = 1.0;    // a table's point this near is the one a file means

using Row = std::vector<std::string_view>;

struct CheckedAirport {
    LatLon at;
    std::map<std::string, LatLon, std::less<>> thresholds;  // by designator
};

struct Checker {
    const FolderTexts& texts;
    Report& report;
    PointsByName points;  // stations, fixes and airports
    std::map<std::string, CheckedAirport, std::less<>> airports;
};

struct Line {
    const LineSource& lines;
    std::string_view text;
    Row words;
};

void Fault(Checker& checker, const Line& line, std::string_view kind, std::string_view detail) {
    checker.report.Add(Topic::Fault, kind,
                       AtLine(line.lines.Name(), line.lines.LineNumber(), detail));
}

void Warn(Checker& checker, const Line& line, std::string_view kind, std::string_view detail) {
    checker.report.Add(Topic::Warning, kind,
                       AtLine(line.lines.Name(), line.lines.LineNumber(), detail));
}

// What a file's lines have in common: their greatest length, the sign that opens a comment.
struct FileForm {
    FileRole role;
    std::size_t longest;
    std::string_view comments;
};

template <typename OnLine>
void WalkLines(Checker& checker, const FileForm& form, OnLine onLine) {
    LineSource lines = LineSource::OfText(checker.texts[form.role], kFileNames[form.role]);
    Line line{lines, {}, {}};
    while (lines.Next(line.text)) {
        if (line.text.size() > form.longest) {
            Fault(checker, line, "lines longer than their reader takes",
                  std::to_string(line.text.size()) + " characters");
            continue;
        }
        SplitWords(line.text, line.words);
        const bool comment =
            !line.text.empty() && form.comments.find(line.text.front()) != std::string_view::npos;
        if (!line.words.empty() && !comment) {
            onLine(line);
        }
    }
}

std::optional<LatLon> CheckPosition(Checker& checker, const Line& line, std::size_t first) {
    if (line.words.size() < first + 2) {
        Fault(checker, line, "lines with too few fields", line.text.substr(0, 60));
        return std::nullopt;
    }
    const std::optional<LatLon> at = Position(line.words[first], line.words[first + 1]);
    if (!at) {
        Fault(checker, line, "positions that are none",
              std::string(line.words[first]) + " " + std::string(line.words[first + 1]));
    }
    return at;
}

// Lines with equal keys must stand together. Notes a key that comes back.
struct Grouping {
    std::string current;
    std::set<std::string> seen;

    bool IsSplit(std::string_view key) {
        if (key == current) {
            return false;
        }
        current = key;
        return !seen.insert(current).second;
    }
};

void CheckCapacity(Checker& checker, FileRole role, const char* kind, std::size_t count,
                   std::size_t most) {
    if (count > most) {
        checker.report.Add(Topic::Fault, kind,
                           std::string(kFileNames[role]) + ": " + std::to_string(count) +
                               ", room is for " + std::to_string(most));
    }
}

// ---- points ----

void CheckCycleLine(Checker& checker, const Line& line) {
    const Row& words = line.words;
    const bool whole = words.size() == 7 && words[3].size() == 4 &&
                       WholeNumber(words[3]).value_or(-1) >= 0 && words[4].starts_with('(') &&
                       words[6].ends_with(')');
    const std::optional<int> first = whole ? DayOfText(words[4].substr(1)) : std::nullopt;
    const std::optional<int> last =
        whole ? DayOfText(words[6].substr(0, words[6].size() - 1)) : std::nullopt;
    if (!first || !last || *first >= *last) {
        Fault(checker, line,
              "cycle lines that do not read like ;AIRAC cycle : 2309 (07-SEP-2023 to 05-OCT-2023)",
              line.text.substr(0, 80));
    }
}

void CheckNavaidLine(Checker& checker, const Line& line) {
    const std::optional<LatLon> at = CheckPosition(checker, line, 2);
    if (!at) {
        return;
    }
    checker.points.Add(line.words[0], *at);
    const std::optional<double> frequency =
        line.words.size() > 5 ? Number(line.words[5]) : std::nullopt;
    if (!frequency) {
        Fault(checker, line, "navaids without a frequency", line.words[0]);
        return;
    }
    if (!IsFrequency(line.words[4] == "VOR", frequency)) {
        Fault(checker, line, "frequencies out of range",
              std::string(line.words[0]) + " " + std::string(line.words[5]));
    }
}

void CheckNavaids(Checker& checker) {
    std::size_t count = 0;
    bool hasCycle = false;
    Grouping letters;
    LineSource lines = LineSource::OfText(checker.texts[kNavaidFile], kFileNames[kNavaidFile]);
    Line cycleLine{lines, {}, {}};
    while (!hasCycle && lines.Next(cycleLine.text)) {
        cycleLine.words = Words(cycleLine.text);
        hasCycle = !cycleLine.words.empty() && cycleLine.words[0] == ";AIRAC";
    }
    if (hasCycle) {
        CheckCycleLine(checker, cycleLine);
    } else if (!checker.texts[kNavaidFile].empty()) {
        checker.report.Add(Topic::Warning, "files without a cycle line", kFileNames[kNavaidFile]);
    }
    WalkLines(checker, {kNavaidFile, kLongestLine, ";"}, [&](const Line& line) {
        ++count;
        if (letters.IsSplit(line.words[0].substr(0, 1))) {
            Fault(checker, line, "navaids apart from others of their first letter", line.words[0]);
        }
        CheckNavaidLine(checker, line);
    });
    CheckCapacity(checker, kNavaidFile, "tables that are too long", count, kMostStations);
    CheckCapacity(checker, kNavaidFile, "letter groups that are too many", letters.seen.size(),
                  kMostLetterGroups);
}

void CheckFixes(Checker& checker) {
    std::size_t count = 0;
    WalkLines(checker, {kFixFile, kLongestLine, ";"}, [&](const Line& line) {
        ++count;
        if (const std::optional<LatLon> at = CheckPosition(checker, line, 2)) {
            checker.points.Add(line.words[0], *at);
        }
    });
    CheckCapacity(checker, kFixFile, "tables that are too long", count, kMostFixes);
}

// ---- airports ----

void CheckRunway(Checker& checker, const Line& line, std::string_view token,
                 CheckedAirport& airport) {
    const std::vector<std::string> fields = SplitList(token, '_');
    const std::string what = std::string(line.words[0]) + " " + std::string(token.substr(0, 60));
    const bool whole =
        fields.size() == 8 && std::none_of(fields.begin(), fields.end(),
                                           [](const std::string& field) { return field.empty(); });
    const std::optional<LatLon> at = whole ? Position(fields[2], fields[3]) : std::nullopt;
    const std::optional<double> length = whole ? Number(fields[1]) : std::nullopt;
    const std::optional<double> heading = whole ? Number(fields[4]) : std::nullopt;
    const std::optional<double> course = whole ? Number(fields[7]) : std::nullopt;
    if (!at || !length || !heading || !course) {
        Fault(checker, line, "runways without eight good sub-fields", what);
        return;
    }
    if (*length < kShortestRunwayFt || *length > kLongestRunwayFt || *heading < 0 ||
        *heading > 360 || *course < 0 || *course > 360) {
        Fault(checker, line, "runways with a length or direction out of range", what);
    }
    if (DistanceNm(*at, airport.at) > kFarthestRunwayNm + kRoundingNm) {
        Fault(checker, line, "runways far from their airport", what);
    }
    if (IsRunwayIdent(fields[0]) &&
        std::abs(TurnDeg(*heading, WholeNumber(fields[0].substr(0, 2)).value_or(0) * 10.0)) > 40) {
        Warn(checker, line, "runway directions that do not fit their numbers", what);
    }
    if (!airport.thresholds.emplace(fields[0], *at).second) {
        Fault(checker, line, "runways listed twice", what);
    }
}

void CheckAirports(Checker& checker) {
    constexpr std::size_t kFirstRunway = 5;
    std::size_t count = 0;
    WalkLines(checker, {kAirportFile, kLongestAirportLine, ""}, [&](const Line& line) {
        ++count;
        const std::string ident(line.words[0]);
        if (ident.starts_with(';')) {
            Warn(checker, line, "comments in the airport file, which the module takes for airports",
                 line.text.substr(0, 60));
            return;
        }
        const std::optional<LatLon> at = CheckPosition(checker, line, 3);
        if (!at) {
            return;
        }
        const std::optional<double> elevation = Number(line.words[2]);
        if (!elevation || *elevation < kLowestAirportFt || *elevation > kHighestAirportFt) {
            Fault(checker, line, "airports without an elevation", ident);
        }
        checker.points.Add(ident, *at);
        const auto [airport, isNew] = checker.airports.try_emplace(ident);
        if (!isNew) {
            Fault(checker, line, "airports listed twice: only the first is loaded", ident);
            return;
        }
        if (line.words.size() > kFirstRunway + kMostRunways) {
            Fault(checker, line, "airports with more runways than are read", ident);
        }
        airport->second.at = *at;
        for (std::size_t i = kFirstRunway; i < line.words.size(); ++i) {
            CheckRunway(checker, line, line.words[i], airport->second);
        }
    });
    CheckCapacity(checker, kAirportFile, "tables that are too long", count, kMostAirports);
}

// ---- what refers to points ----

bool IsKnown(const Checker& checker, std::string_view ident, const LatLon& at, double withinNm) {
    return Nearest(checker.points, ident, at, withinNm) != nullptr;
}

void CheckAirways(Checker& checker) {
    constexpr double kLongestLegNm = 1500;
    std::size_t tableFixes = 0;
    std::size_t ofName = 0;
    Grouping names;
    int previousSequence = 0;
    std::optional<LatLon> previous;
    WalkLines(checker, {kAirwayFile, kLongestAirwayLine, ";"}, [&](const Line& line) {
        const bool sameAirway = names.current == line.words[0];
        if (names.IsSplit(line.words[0])) {
            Fault(checker, line, "airways whose lines do not stand together", line.words[0]);
        }
        ofName = sameAirway ? ofName + 1 : 1;
        if (ofName == kMostFixesOfAirway + 1) {
            Fault(checker, line, "airways with more fixes than a look-up lists", line.words[0]);
        }
        const std::optional<LatLon> at = CheckPosition(checker, line, 3);
        if (!at) {
            return;
        }
        const int sequence = WholeNumber(line.words[1]).value_or(previousSequence + 1);
        const bool samePiece = sameAirway && sequence > previousSequence;
        const auto what = [&] {
            return std::string(line.words[0]) + " " + std::string(line.words[2]);
        };
        if (samePiece && previous && DistanceNm(*previous, *at) > kLongestLegNm) {
            Warn(checker, line, "airway legs of more than 1500 nm", what());
        }
        previousSequence = sequence;
        previous = at;
        tableFixes += line.words[2].size() >= kShortestFix ? 1 : 0;
        if (!IsKnown(checker, line.words[2], *at, kResolveNm)) {
            Fault(checker, line, "airway fixes that are not in the tables", what());
        }
    });
    CheckCapacity(checker, kAirwayFile, "tables that are too long", tableFixes, kMostAirwayFixes);
}

// One airport's section of a procedure file while it is read.
struct SectionState {
    bool open = false;
    std::string airport;
    std::map<std::string, std::size_t> legs;  // by procedure
    std::set<std::string> types;              // of approaches
};

struct ProcedureForm {
    FileRole role;
    std::size_t mostProcedures;
    std::size_t legFields;
};

void CloseSection(Checker& checker, const ProcedureForm& form, SectionState& state) {
    const auto complain = [&](const char* kind, const std::string& detail) {
        checker.report.Add(Topic::Fault, kind,
                           std::string(kFileNames[form.role]) + ": " + state.airport + detail);
    };
    if (state.legs.size() > form.mostProcedures) {
        complain("airports with more procedures than are read", "");
    }
    if (state.types.size() > kMostApproachTypes) {
        complain("airports with more approach types than are read", "");
    }
    for (const auto& [name, legs] : state.legs) {
        if (legs > kMostLegs) {
            complain("procedures with more legs than are read", " " + name);
        } else if (legs == 0) {
            complain("procedures without a leg", " " + name);
        }
    }
    state.legs.clear();
    state.types.clear();
}

void OpenSection(Checker& checker, const Line& line, std::set<std::string>& seen,
                 SectionState& state) {
    const std::size_t close = line.text.find(']');
    state.airport = line.text.substr(1, std::min(close, line.text.size()) - 1);
    state.open = true;
    if (close == std::string_view::npos || state.airport.empty()) {
        Fault(checker, line, "section lines that are none", line.text.substr(0, 60));
    } else if (!seen.insert(state.airport).second) {
        Fault(checker, line, "sections listed twice: only the first is read", state.airport);
    } else if (!checker.airports.contains(state.airport)) {
        Warn(checker, line, "procedures of airports that are not in the airport file",
             state.airport);
    }
}

void CheckRunwayList(Checker& checker, const Line& line, std::string_view list,
                     const SectionState& state) {
    const auto airport = checker.airports.find(state.airport);
    if (airport == checker.airports.end() || list == "---") {
        return;
    }
    for (const std::string& runway : SplitList(list, ',')) {
        if (!airport->second.thresholds.contains(runway)) {
            Warn(checker, line, "procedures for runways that the airport does not list",
                 state.airport + " " + runway);
        }
    }
}

// A runway's fix is its threshold; one that the airport does not list lies at the airport at least.
bool IsAtRunway(const Checker& checker, std::string_view airport, std::string_view runway,
                const LatLon& at) {
    const auto found = checker.airports.find(airport);
    if (found == checker.airports.end()) {
        return true;  // the section has its warning
    }
    const auto threshold = found->second.thresholds.find(runway);
    return threshold != found->second.thresholds.end()
               ? DistanceNm(threshold->second, at) < kResolveNm
               : DistanceNm(found->second.at, at) < kFarthestRunwayNm + kRoundingNm;
}

void CheckLegPosition(Checker& checker, const Line& line, const SectionState& state,
                      std::string_view fix, std::size_t first) {
    const std::optional<LatLon> at = CheckPosition(checker, line, first);
    if (!at) {
        return;
    }
    if (IsRunwayFix(fix)) {
        if (!IsAtRunway(checker, state.airport, fix.substr(2), *at)) {
            Fault(checker, line, "runway fixes far from their runway",
                  state.airport + " " + std::string(fix));
        }
    } else if (!IsKnown(checker, fix, *at, kResolveNm)) {
        Fault(checker, line, "procedure fixes that are not in the tables", fix);
    }
}

void CheckProcedureLine(Checker& checker, const ProcedureForm& form, const Line& line,
                        SectionState& state) {
    const Row& words = line.words;
    if (form.role != kApproachFile && words[0] == "T") {
        const std::string name(words.size() > 1 ? words[1] : std::string_view{});
        if (name.empty() || !state.legs.try_emplace(name, 0).second) {
            Fault(checker, line, "procedure headers without a name of their own", name);
        }
        if (words.size() > 3) {
            CheckRunwayList(checker, line, words[3], state);
        }
        return;
    }
    if (words.size() < form.legFields) {
        Fault(checker, line, "lines with too few fields", line.text.substr(0, 60));
        return;
    }
    if (form.role == kApproachFile) {
        ++state.legs[std::string(words[0])];
        state.types.insert(std::string(words[1]));
        CheckLegPosition(checker, line, state, words[2], 5);
        if (IsRunwayIdent(words[0])) {
            CheckRunwayList(checker, line, words[0], state);
        }
        return;
    }
    const std::string name(words[0].substr(0, words[0].find('.')));
    if (!state.legs.contains(name)) {
        Fault(checker, line, "legs before their procedure's header", name);
    }
    ++state.legs[name];
    CheckLegPosition(checker, line, state, words[1], 4);
    CheckRunwayList(checker, line, words[3], state);
}

void CheckProcedures(Checker& checker, const ProcedureForm& form) {
    std::set<std::string> seen;
    SectionState state;
    WalkLines(checker, {form.role, kLongestLine, "*;"}, [&](const Line& line) {
        if (line.text.starts_with('[')) {
            CloseSection(checker, form, state);
            OpenSection(checker, line, seen, state);
        } else if (!state.open) {
            Fault(checker, line, "lines before the first section", line.text.substr(0, 60));
        } else {
            CheckProcedureLine(checker, form, line, state);
        }
    });
    CloseSection(checker, form, state);
}

void CheckBoundaries(Checker& checker) {
    std::size_t count = 0;
    std::size_t points = 0;
    Grouping idents;
    WalkLines(checker, {kBoundaryFile, kLongestBoundaryLine, ";"}, [&](const Line& line) {
        const bool same = idents.current == line.words[0];
        if (idents.IsSplit(line.words[0])) {
            Warn(checker, line, "boundaries that come again and are drawn as others",
                 line.words[0]);
        }
        count += same ? 0 : 1;
        points = same ? points + 1 : 1;
        if (points == kMostBoundaryPoints + 1) {
            Fault(checker, line, "boundaries with more points than are read", line.words[0]);
        }
        CheckPosition(checker, line, 2);
    });
    CheckCapacity(checker, kBoundaryFile, "tables that are too long", count, kMostBoundaries);
}

}  // namespace

void CheckFolder(const FolderTexts& texts, Report& report) {
    constexpr std::array<ProcedureForm, 3> kProcedureForms{{
        {kSidFile, kMostSids, 6},
        {kStarFile, kMostStars, 6},
        {kApproachFile, kMostApproaches, 7},
    }};
    std::size_t lines = 0;
    for (const FileRole role : {kNavaidFile, kFixFile, kAirportFile}) {
        lines += static_cast<std::size_t>(std::count(texts[role].begin(), texts[role].end(), '\n'));
    }
    Checker checker{texts, report, PointsByName(lines), {}};
    CheckNavaids(checker);
    CheckFixes(checker);
    CheckAirports(checker);
    CheckAirways(checker);
    for (const ProcedureForm& form : kProcedureForms) {
        CheckProcedures(checker, form);
    }
    CheckBoundaries(checker);
    if (texts[kAirportFile].empty()) {
        report.Add(Topic::Warning, "files that are missing or empty", kFileNames[kAirportFile]);
    }
}

}  // namespace avqdata
