#include "navdb/navdata_text.h"

#include <algorithm>
#include <array>

#include "base/messages.h"
#include "base/text.h"

namespace avq1 {
namespace {

// Far shorter than a real line, so that one reservation is enough; memory that is reserved but
// never written costs nothing.
constexpr std::size_t kShortLineLength = 16;

constexpr char kComment = ';';

// What a table says about its size: its capacity, the count at which it warns, its message.
struct TableLimit {
    std::int32_t capacity;
    std::int32_t warningCount;
    const char* warningFormat;
};

constexpr TableLimit kIntersectionLimit{kIntersectionCapacity, kIntersectionCapacity - 2,
                                        "Ints '%d' approaching struct_limit"};
constexpr TableLimit kAirwayFixLimit{kAirwayFixCapacity, kAirwayFixCapacity - 2,
                                     "Ints '%d' approaching struct_limit"};
constexpr TableLimit kAirportLimit{kAirportCapacity, kAirportCapacity - 2,
                                   "Apts '%d' approaching struct_limit"};
// The navaids' warning comes well before their table is full.
constexpr TableLimit kNavaidLimit{kNavaidCapacity, 9998, "Navs '%d' approaching struct_limit"};

// Steps to the next field, or to the line feed when the line has no more: `rest` reaches beyond the
// line. Walking on from field to field finds most line ends for nothing.
void SkipToField(std::string_view& rest) {
    std::size_t blanks = 0;
    while (blanks < rest.size() && IsSpace(rest[blanks]) && rest[blanks] != '\n') {
        ++blanks;
    }
    rest.remove_prefix(blanks);
}

// The next field of the line at the front of `rest`: empty or 0 when the line has no more.
std::string_view NextField(std::string_view& rest) {
    SkipToField(rest);
    return rest.starts_with('\n') ? std::string_view{} : NextWord(rest);
}

double NextNumberField(std::string_view& rest) {
    SkipToField(rest);
    return rest.starts_with('\n') ? 0.0 : NextNumber(rest);
}

// Walks the lines of `text` and appends what `readLine` makes of each; `readLine` takes its
// fields off the front of what it is given and returns false for a line that is no record.
template <typename ReadLine>
void ReadRecords(std::string_view text, PointTable& table, const TableLimit& limit,
                 ReadLine readLine) {
    const auto capacity = static_cast<std::size_t>(limit.capacity);
    table.records.reserve(std::min(capacity, text.size() / kShortLineLength) + 2);
    LineReader lines(text, kNavdataLineLength);
    while (table.count < limit.capacity) {
        const std::string_view ahead = lines.Ahead();
        if (ahead.empty()) {
            break;
        }
        std::string_view rest = ahead;
        // Written in place: a world's records are tens of megabytes to copy.
        const bool isRecord = readLine(rest, table.records.emplace_back());
        lines.Skip(ahead.size() - rest.size());
        if (!isRecord) {
            table.records.pop_back();
            continue;
        }
        ++table.count;
        if (table.count == limit.warningCount) {
            AppendMessage(Format(limit.warningFormat, table.count));
        }
    }
}

// The `count` characters of a word from the one numbered `first`, counted from 1.
std::string_view Characters(std::string_view word, std::size_t first, std::size_t count) {
    return first <= word.size() ? word.substr(first - 1, count) : std::string_view{};
}

// Whether the line's text before its first blank equals `ident` when it is upper-cased.
bool LineHasIdent(std::string_view line, std::string_view ident) {
    if (line.size() < ident.size()) {
        return false;
    }
    const bool ends = line.size() == ident.size() || line[ident.size()] == ' ' ||
                      line[ident.size()] == '\t' || line[ident.size()] == '\r';
    return ends && std::equal(ident.begin(), ident.end(), line.begin(), [](char want, char have) {
               return want == (have >= 'a' && have <= 'z' ? static_cast<char>(have - 32) : have);
           });
}

void FillAirportDetail(std::string_view line, std::string_view ident, AirportDetail& detail,
                       std::string& elevationText) {
    constexpr std::size_t kFirstRunway = 5;
    constexpr std::size_t kMostRunwayTokens = 20;
    const std::string upperLine = ToUpper(line);
    std::array<std::string_view, kFirstRunway + kMostRunwayTokens> words;
    const std::size_t count = SplitWords(upperLine, words);
    detail.ident = ident;
    detail.name = words[1];
    elevationText = words[2];
    detail.elevationFt = ToNumber(words[2]);
    detail.latitude = ToNumber(words[3]);
    detail.longitude = ToNumber(words[4]);
    detail.runways.clear();
    for (std::size_t i = kFirstRunway; i < count; ++i) {
        detail.runways.push_back(ParseRunwayToken(words[i]));
    }
}

// What the lines of fixes and navaids begin with; false for a comment.
bool ReadNamedPlace(std::string_view& rest, PointRecord& record) {
    if (rest.starts_with(kComment)) {
        return false;
    }
    record.ident = NextField(rest);
    record.name = NextField(rest);
    record.latitude = NextNumberField(rest);
    record.longitude = NextNumberField(rest);
    return true;
}

}  // namespace

void ReadIntersections(std::string_view text, PointTable& table) {
    ReadRecords(text, table, kIntersectionLimit, [](std::string_view& rest, PointRecord& record) {
        if (!ReadNamedPlace(rest, record)) {
            return false;
        }
        record.kind = PointKind::Intersection;
        return !record.ident.empty();
    });
}

void ReadAirwayFixes(std::string_view text, PointTable& table) {
    // Shorter identifiers are navaids and airports, which have tables of their own.
    constexpr std::size_t kShortestFixIdent = 4;
    ReadRecords(text, table, kAirwayFixLimit, [](std::string_view& rest, PointRecord& record) {
        if (rest.starts_with(kComment)) {
            return false;
        }
        NextField(rest);  // the airway
        NextField(rest);  // its sequence
        record.ident = NextField(rest);
        if (record.ident.size() < kShortestFixIdent) {
            return false;
        }
        record.name = record.ident;
        record.latitude = NextNumberField(rest);
        record.longitude = NextNumberField(rest);
        record.kind = PointKind::Intersection;
        return true;
    });
}

void ReadAirports(std::string_view text, PointTable& table) {
    // This file has no comments: a leading semicolon belongs to the identifier.
    ReadRecords(text, table, kAirportLimit, [](std::string_view& rest, PointRecord& record) {
        record.ident = NextField(rest);
        record.name = NextField(rest);
        record.elevation = NextField(rest);
        record.latitude = NextNumberField(rest);
        record.longitude = NextNumberField(rest);
        record.kind = PointKind::Airport;
        return !record.ident.empty();
    });
}

void ReadNavaids(std::string_view text, PointTable& table) {
    ReadRecords(text, table, kNavaidLimit, [](std::string_view& rest, PointRecord& record) {
        if (!ReadNamedPlace(rest, record)) {
            return false;
        }
        record.kind = NextField(rest) == "VOR" ? PointKind::Vor : PointKind::Navaid;
        record.frequency = NextField(rest);
        return !record.ident.empty();
    });
}

void ReadCycleText(std::string_view text, std::string& cycle, std::string& validity) {
    constexpr std::size_t kMaxLineLength = 300;
    LineReader lines(text, kMaxLineLength);
    std::string_view line;
    while (lines.Next(line)) {
        std::array<std::string_view, 7> words;
        SplitWords(line, words);
        if (words[0] != ";AIRAC") {
            continue;
        }
        const std::string_view start = words[4];  // "(17-JAN-2008"
        const std::string_view end = words[6];    // "14-FEB-2008)"
        cycle = "AIRAC";
        cycle += words[3];
        validity = Characters(start, 5, 3);
        validity += Characters(start, 2, 2);
        validity += Characters(end, 4, 3);
        validity += Characters(end, 1, 2);
        validity += '/';
        validity += Characters(end, 10, 2);
        return;
    }
}

Runway ParseRunwayToken(std::string_view token) {
    std::string fields(token);
    std::replace(fields.begin(), fields.end(), '_', ' ');
    std::array<std::string_view, 8> words;
    SplitWords(std::string_view(fields), words);
    Runway runway;
    runway.ident = words[0];
    runway.length = ToInteger(words[1]);
    runway.latitude = ToNumber(words[2]);
    runway.longitude = ToNumber(words[3]);
    runway.heading = ToNumber(words[4]);
    runway.field6 = words[5];
    runway.field7 = words[6];
    runway.field8 = ToNumber(words[7]);
    runway.reciprocalHeading = runway.heading + 180.0;
    if (runway.reciprocalHeading >= 360.0) {
        runway.reciprocalHeading -= 360.0;
    }
    return runway;
}

bool ReadAirportDetail(std::string_view text, std::string_view ident, AirportDetail& detail,
                       std::string& elevationText) {
    if (ident.empty() || ident.find(' ') != std::string_view::npos) {
        return false;
    }
    LineReader lines(text, kNavdataLineLength);
    std::string_view line;
    while (lines.Next(line)) {
        if (LineHasIdent(line, ident)) {
            FillAirportDetail(line, ident, detail, elevationText);
            return true;
        }
    }
    return false;
}

}  // namespace avq1
