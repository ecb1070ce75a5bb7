#include "navdb/navdata_text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

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

// The next field of the line at the front of `rest`, which reaches beyond the line: empty when the
// line has no more. Walking on from field to field finds most line ends for nothing.
[[gnu::always_inline]] inline std::string_view NextField(std::string_view& rest) {
    const char* start = rest.data();
    const char* const end = start + rest.size();
    while (start != end && IsSpace(*start) && *start != '\n') {
        ++start;
    }
    const char* const fieldEnd = WordEnd(start, end);  // none at a line feed
    rest = std::string_view(fieldEnd, static_cast<std::size_t>(end - fieldEnd));
    return {start, static_cast<std::size_t>(fieldEnd - start)};
}

double NextNumberField(std::string_view& rest) {
    while (!rest.empty() && IsSpace(rest.front()) && rest.front() != '\n') {
        rest.remove_prefix(1);
    }
    return rest.starts_with('\n') ? 0.0 : NextNumber(rest);
}

// Appends the lines of `text` to `table`. `takeIdent` takes the identifier, and what stands before
// it, off the front of what it is given, and returns none for a line that is no record.
template <typename TakeIdent>
void ReadLines(std::string_view text, LineForm form, const TableLimit& limit, PointTable& table,
               TakeIdent takeIdent) {
    static_assert(kNavdataLineLength <= std::numeric_limits<std::uint16_t>::max());
    table.Reserve(
        std::min(static_cast<std::size_t>(limit.capacity), text.size() / kShortLineLength) + 1);
    LineReader lines(text, kNavdataLineLength);
    while (table.count < limit.capacity) {
        std::string_view rest = lines.Ahead();
        if (rest.empty()) {
            break;
        }
        // The line's end is sought first, not from its last field on: a processor then begins with
        // the next line while it is still at this one's fields.
        lines.Skip();
        const std::string_view ident = takeIdent(rest);
        if (ident.empty()) {
            continue;
        }
        table.Append({ident.data(), static_cast<std::uint16_t>(ident.size()),
                      static_cast<std::uint16_t>(rest.size()), form});
        if (table.count == limit.warningCount) {
            AppendMessage(Format(limit.warningFormat, table.count));
        }
    }
}

// The first field, but for comments.
std::string_view TakeFirst(std::string_view& rest) {
    return rest.starts_with(kComment) ? std::string_view{} : NextField(rest);
}

// The third field, but for comments and short identifiers: those are navaids and airports, which
// have tables of their own.
std::string_view TakeAirwayFix(std::string_view& rest) {
    constexpr std::size_t kShortestFixIdent = 4;
    if (rest.starts_with(kComment)) {
        return {};
    }
    NextField(rest);  // the airway
    NextField(rest);  // its sequence
    const std::string_view ident = NextField(rest);
    return ident.size() < kShortestFixIdent ? std::string_view{} : ident;
}

LatLon ReadPosition(std::string_view& rest) {
    LatLon position;
    position.latitude = NextNumberField(rest);
    position.longitude = NextNumberField(rest);
    return position;
}

void SkipFields(std::string_view& rest, int count) {
    for (; count > 0; --count) {
        NextField(rest);
    }
}

PointKind KindOf(LineForm form) {
    return form == LineForm::Airport ? PointKind::Airport : PointKind::Intersection;
}

void ReadStation(std::string_view& rest, PointRecord& record) {
    record.kind = NextField(rest) == "VOR" ? PointKind::Vor : PointKind::Navaid;
    record.frequency = NextField(rest);
}

std::string_view BehindIdent(const PointLine& line) {
    return {line.ident + line.identLength, line.restLength};
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

}  // namespace

PointRecord PointTable::operator[](std::int32_t index) const {
    const PointLine& line = lines_[index];
    std::string_view rest = BehindIdent(line);
    PointRecord record;
    record.ident = Ident(index);
    record.kind = KindOf(line.form);
    record.name = line.form == LineForm::AirwayFix ? record.ident : NextField(rest);
    if (line.form == LineForm::Airport) {
        record.elevation = NextField(rest);
    }
    const LatLon position = ReadPosition(rest);
    record.latitude = position.latitude;
    record.longitude = position.longitude;
    if (line.form == LineForm::Navaid) {
        ReadStation(rest, record);
    }
    return record;
}

PointRecord PointTable::Listed(std::int32_t index) {
    const PointLine& line = lines_[index];
    const LatLon& position = Positions()[index];
    PointRecord record;
    record.ident = Ident(index);
    record.latitude = position.latitude;
    record.longitude = position.longitude;
    record.kind = KindOf(line.form);
    if (line.form == LineForm::Navaid) {
        std::string_view rest = BehindIdent(line);
        SkipFields(rest, 3);  // the name and the position
        ReadStation(rest, record);
    }
    return record;
}

const std::vector<LatLon>& PointTable::Positions() {
    positions_.reserve(lines_.size());
    for (std::size_t i = positions_.size(); i < lines_.size(); ++i) {
        const LineForm form = lines_[i].form;
        std::string_view rest = BehindIdent(lines_[i]);
        SkipFields(rest, form == LineForm::Airport ? 2 : form == LineForm::AirwayFix ? 0 : 1);
        positions_.push_back(ReadPosition(rest));
    }
    return positions_;
}

void ReadIntersections(std::string_view text, PointTable& table) {
    ReadLines(text, LineForm::Intersection, kIntersectionLimit, table,
              [](std::string_view& rest) { return TakeFirst(rest); });
}

void ReadAirwayFixes(std::string_view text, PointTable& table) {
    ReadLines(text, LineForm::AirwayFix, kAirwayFixLimit, table,
              [](std::string_view& rest) { return TakeAirwayFix(rest); });
}

void ReadAirports(std::string_view text, PointTable& table) {
    // This file has no comments: a leading semicolon belongs to the identifier.
    ReadLines(text, LineForm::Airport, kAirportLimit, table,
              [](std::string_view& rest) { return NextField(rest); });
}

void ReadNavaids(std::string_view text, PointTable& table) {
    ReadLines(text, LineForm::Navaid, kNavaidLimit, table,
              [](std::string_view& rest) { return TakeFirst(rest); });
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
