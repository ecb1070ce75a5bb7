#include "avqdata/text_tools.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <system_error>

#include "base/text.h"

namespace avqdata {
namespace {

bool IsAlphanumeric(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// The letters U+00C0 to U+017F without their accents; '?' for signs that are no letters.
constexpr std::string_view kPlainLatin =
    "AAAAAAACEEEEIIIIDNOOOOO?OUUUUYTsaaaaaaaceeeeiiiidnooooo?ouuuuyty"
    "AaAaAaCcCcCcCcDdDdEeEeEeEeEeGgGgGgGgHhHhIiIiIiIiIiIiJjKkkLlLlLlLlLlNnNnNnnNnOoOoOoOoRrRrRrSsSs"
    "SsSsTtTtTtUuUuUuUuUuUuWwYyYZzZzZzs";
static_assert(kPlainLatin.size() >= 0x180 - 0xC0);

// The character at the front of `rest`, taken off it: ASCII, or '?' for what has no plain form.
char NextPlain(std::string_view& rest) {
    const auto first = static_cast<unsigned char>(rest.front());
    rest.remove_prefix(1);
    if (first < 0x80) {
        return static_cast<char>(first);
    }
    if (first < 0xC3 || first > 0xC5 || rest.empty()) {
        return '?';
    }
    const auto second = static_cast<unsigned char>(rest.front());
    if ((second & 0xC0) != 0x80) {
        return '?';
    }
    rest.remove_prefix(1);
    const std::size_t code = (first & 0x1FU) << 6U | (second & 0x3FU);
    return code >= 0xC0 ? kPlainLatin[code - 0xC0] : '?';
}

constexpr std::array<std::uint64_t, 7> kPowers{1, 10, 100, 1000, 10000, 100000, 1000000};

// How many units of the last decimal a value is, where that is beyond doubt: the number is small
// and no half, so that multiplying and rounding give what writing it in decimals does.
std::optional<std::int64_t> UnitsOf(double value, int decimals) {
    constexpr double kMost = 1e12;  // where a product is off by less than kDoubt
    constexpr double kDoubt = 0.001;
    if (decimals < 0 || decimals >= static_cast<int>(kPowers.size())) {
        return std::nullopt;
    }
    const double units = std::abs(value) * static_cast<double>(kPowers[decimals]);
    if (!(units < kMost)) {
        return std::nullopt;
    }
    const auto whole = static_cast<std::int64_t>(units);
    const double rest = units - static_cast<double>(whole);
    if (std::abs(rest - 0.5) < kDoubt) {
        return std::nullopt;
    }
    const std::int64_t nearest = whole + (rest > 0.5 ? 1 : 0);
    return value < 0 ? -nearest : nearest;
}

template <typename Value>
std::optional<Value> Parse(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    Value value{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc{} || stop != end || text.empty()) {
        return std::nullopt;
    }
    return value;
}

}  // namespace

std::string_view Trim(std::string_view text) {
    while (!text.empty() && avq1::IsSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && avq1::IsSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

void SplitWords(std::string_view line, std::vector<std::string_view>& words) {
    words.clear();
    for (std::string_view word = avq1::NextWord(line); !word.empty(); word = avq1::NextWord(line)) {
        words.push_back(word);
    }
}

std::vector<std::string_view> Words(std::string_view line) {
    std::vector<std::string_view> words;
    SplitWords(line, words);
    return words;
}

std::string_view NextPart(std::string_view& rest, char separator) {
    const std::size_t end = std::min(rest.find(separator), rest.size());
    const std::string_view part = Trim(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return part;
}

std::vector<std::string> SplitList(std::string_view text, char separator) {
    std::vector<std::string> parts;
    while (!text.empty()) {
        parts.emplace_back(NextPart(text, separator));
    }
    return parts;
}

std::optional<double> Number(std::string_view text) {
    const std::optional<double> value = Parse<double>(Trim(text));
    return value && std::isfinite(*value) ? value : std::nullopt;
}

std::optional<int> WholeNumber(std::string_view text) {
    return Parse<int>(Trim(text));
}

bool IsPosition(const avq1::LatLon& at) {
    return std::abs(at.latitude) <= 90.0 && std::abs(at.longitude) <= 180.0;
}

std::optional<avq1::LatLon> Position(std::string_view latitude, std::string_view longitude) {
    const std::optional<double> lat = Number(latitude);
    const std::optional<double> lon = Number(longitude);
    if (!lat || !lon || !IsPosition({*lat, *lon})) {
        return std::nullopt;
    }
    return avq1::LatLon{*lat, *lon};
}

avq1::LatLon RoundedAsWritten(const avq1::LatLon& at, int decimals) {
    const auto rounded = [&](double value) {
        const std::optional<std::int64_t> units = UnitsOf(value, decimals);
        return units ? static_cast<double>(*units) / static_cast<double>(kPowers[decimals])
                     : Number(Fixed(value, decimals)).value_or(0);
    };
    return {rounded(at.latitude), rounded(at.longitude)};
}

std::string Token(std::string_view text) {
    constexpr std::size_t kLongest = 60;
    std::string token;
    bool gap = false;
    while (!text.empty() && token.size() < kLongest) {
        const char c = NextPlain(text);
        if (!IsAlphanumeric(c)) {
            gap = !token.empty();
            continue;
        }
        if (gap) {
            token += '_';
            gap = false;
        }
        token += c;
    }
    return token.empty() ? "-" : token;
}

bool IsIdent(std::string_view text) {
    constexpr std::size_t kLongest = 16;
    return !text.empty() && text.size() <= kLongest &&
           std::all_of(text.begin(), text.end(),
                       [](char c) { return IsAlphanumeric(c) || c == '-' || c == '_'; });
}

bool IsIcaoCode(std::string_view text) {
    return text.size() == 4 &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
}

bool IsRunwayIdent(std::string_view text) {
    if (text.size() < 2 || text.size() > 3) {
        return false;
    }
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const std::optional<int> number = WholeNumber(text.substr(0, 2));
    const bool side = text.size() == 2 || text[2] == 'L' || text[2] == 'R' || text[2] == 'C';
    return number && isDigit(text[0]) && isDigit(text[1]) && *number >= 1 && *number <= 36 && side;
}

bool IsRunwayFix(std::string_view text) {
    return text.starts_with("RW") && IsRunwayIdent(text.substr(2));
}

std::string RunwayName(std::string_view text) {
    const std::string name(Trim(text));
    const bool oneDigit = !name.empty() && name[0] >= '1' && name[0] <= '9' &&
                          (name.size() == 1 || name[1] < '0' || name[1] > '9');
    return oneDigit ? "0" + name : name;
}

std::string Printable(std::string_view text) {
    std::string shown(text);
    std::replace_if(
        shown.begin(), shown.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    return shown;
}

void AppendCells(const std::vector<std::string>& cells, bool toTheRight,
                 std::vector<std::string>& lines) {
    std::size_t width = 0;
    for (const std::string& cell : cells) {
        width = std::max(width, cell.size());
    }
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::string pad(width - cells[i].size(), ' ');
        lines[i] += lines[i].empty() ? "" : "  ";
        lines[i] += toTheRight ? pad + cells[i] : cells[i] + pad;
    }
}

void AppendFixed(std::string& text, double value, int decimals) {
    std::array<char, 400> room{};  // for any double
    char* const first = room.data();
    const std::optional<std::int64_t> units = UnitsOf(value, decimals);
    if (units) {
        const std::uint64_t size = static_cast<std::uint64_t>(std::abs(*units));
        const std::uint64_t power = kPowers[decimals];
        text.append(*units < 0 ? "-" : "");
        text.append(first, std::to_chars(first, first + room.size(), size / power).ptr);
        if (decimals > 0) {  // a one in front keeps the zeros behind the point
            char* const end = std::to_chars(first, first + room.size(), power + size % power).ptr;
            *first = '.';
            text.append(first, end);
        }
        return;
    }
    const char* const end =
        std::to_chars(first, first + room.size(), value, std::chars_format::fixed, decimals).ptr;
    const std::string_view result(first, static_cast<std::size_t>(end - first));
    const bool zero = result.find_first_not_of("-0.") == std::string_view::npos;
    text.append(result.substr(zero && result.starts_with('-') ? 1 : 0));
}

std::string Fixed(double value, int decimals) {
    std::string text;
    AppendFixed(text, value, decimals);
    return text;
}

std::string Megahertz(double megahertz) {
    return Fixed(megahertz, 2);
}

std::string Kilohertz(double kilohertz) {
    const bool whole = std::abs(kilohertz - std::round(kilohertz)) < 0.05;
    return Fixed(kilohertz, whole ? 0 : 1);
}

int Rounded(double value) {
    constexpr double kMost = 1e9;
    return static_cast<int>(std::lround(std::clamp(value, -kMost, kMost)));
}

double Normalized(double degrees) {
    return avq1::PositiveModulo(degrees, 360.0);
}

double DistanceNm(const avq1::LatLon& a, const avq1::LatLon& b) {
    return avq1::GreatCircleDistanceNm(a.latitude, a.longitude, b.latitude, b.longitude);
}

double CourseTrue(const avq1::LatLon& a, const avq1::LatLon& b) {
    const double latitude1 = a.latitude * avq1::kDegToRad;
    const double latitude2 = b.latitude * avq1::kDegToRad;
    const double across = (b.longitude - a.longitude) * avq1::kDegToRad;
    const double y = std::sin(across) * std::cos(latitude2);
    const double x = std::cos(latitude1) * std::sin(latitude2) -
                     std::sin(latitude1) * std::cos(latitude2) * std::cos(across);
    return Normalized(std::atan2(y, x) * avq1::kRadToDeg);
}

double TurnDeg(double first, double second) {
    return avq1::PositiveModulo(second - first + 180.0, 360.0) - 180.0;
}

}  // namespace avqdata
