#include "base/text.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <limits>
#include <system_error>

namespace avq1 {
namespace {

constexpr char UpperChar(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}

// Leading white space and a plus sign are allowed by the standard conversions but not by
// from_chars. A plus before another sign makes the text malformed.
std::string_view NumberStart(std::string_view text) {
    while (!text.empty() && IsSpace(text.front())) {
        text.remove_prefix(1);
    }
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
        if (!text.empty() && text.front() == '-') {
            return {};
        }
    }
    return text;
}

// A number outside a double's range: the largest double of its sign, or 0 when it is too small.
double OutOfRangeNumber(std::string_view digits) {
    const bool negative = digits.front() == '-';
    if (negative) {
        digits.remove_prefix(1);
    }
    const std::size_t exponent = digits.find_first_of("eE");
    const std::string_view mantissa = digits.substr(0, exponent);
    bool tiny =
        mantissa.substr(0, mantissa.find('.')).find_first_not_of('0') == std::string_view::npos;
    if (exponent != std::string_view::npos) {
        tiny = digits.substr(exponent).find('-') != std::string_view::npos;
    }
    const double largest = std::numeric_limits<double>::max();
    return tiny ? 0.0 : (negative ? -largest : largest);
}

// Digits at the front of eight characters, taken together because a loop over so few characters
// ends where a processor cannot foresee it.
struct DigitGroup {
    std::uint64_t value = 0;
    int count = 0;
};

DigitGroup ReadDigitGroup(const char* p) {
    std::uint64_t characters = 0;
    std::memcpy(&characters, p, sizeof characters);
    const std::uint64_t values = characters ^ 0x3030303030303030U;  // digits become 0 to 9
    // The lowest set bit marks the first character above 9.
    const std::uint64_t others = ((values + 0x7676767676767676U) | values) & 0x8080808080808080U;
    DigitGroup group;
    group.count = std::countr_zero(others) / 8;
    // Shifted so that the last digit comes last, behind zeros; then neighbours are joined.
    std::uint64_t joined = group.count == 0 ? 0 : values << (64 - 8 * group.count);
    joined = (joined * 10 + (joined >> 8)) & 0x00FF00FF00FF00FFU;
    joined = (joined * 100 + (joined >> 16)) & 0x0000FFFF0000FFFFU;
    group.value = (joined * 10000 + (joined >> 32)) & 0xFFFFFFFFU;
    return group;
}

// The common case inside a file: at most seven digits, a point, at most eight decimals. Digits
// and power of ten are then exact in a double, so one division rounds correctly. Returns where
// the number ends, or null for anything else: a number followed by more than white space or
// close to the end of the text included.
const char* ReadPlainDecimal(const char* const start, const char* const end, double& value) {
    static constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8};
    static constexpr double kSigns[] = {1.0, -1.0};
    constexpr std::ptrdiff_t kLongest = 18;  // sign, digits, point, decimals, what follows
    constexpr std::ptrdiff_t kMostWholes = 7;
    if (end - start < kLongest) {
        return nullptr;
    }
    // The end comes from a search of its own, so that work on what follows need not wait for the
    // digits' value.
    const std::uint64_t firstLow = MarkLowCharacters(start);
    const std::uint64_t secondLow = MarkLowCharacters(start + 8);
    const int length =
        firstLow != 0 ? std::countr_zero(firstLow) / 8 : 8 + std::countr_zero(secondLow) / 8;
    const std::ptrdiff_t negative = *start == '-' ? 1 : 0;
    const DigitGroup wholes = ReadDigitGroup(start + negative);
    const char* const point = start + negative + wholes.count;
    if (wholes.count > kMostWholes || *point != '.') {
        return nullptr;
    }
    const DigitGroup decimals = ReadDigitGroup(point + 1);
    if (wholes.count + decimals.count == 0 || point + 1 + decimals.count != start + length ||
        !IsSpace(start[length])) {
        return nullptr;
    }
    const double power = kPowersOfTen[decimals.count];
    const double digits =
        static_cast<double>(wholes.value) * power + static_cast<double>(decimals.value);
    value = digits * kSigns[negative] / power;
    return start + length;
}

}  // namespace

double ToNumber(std::string_view text) {
    double value = 0;
    const std::string_view start = NumberStart(text);
    const auto [end, error] = std::from_chars(start.data(), start.data() + start.size(), value);
    if (error == std::errc::result_out_of_range) {
        return OutOfRangeNumber(start.substr(0, static_cast<std::size_t>(end - start.data())));
    }
    return error == std::errc{} && std::isfinite(value) ? value : 0.0;
}

double NextNumber(std::string_view& rest) {
    while (!rest.empty() && IsSpace(rest.front())) {
        rest.remove_prefix(1);
    }
    const char* const end = rest.data() + rest.size();
    double value = 0;
    const char* const numberEnd = ReadPlainDecimal(rest.data(), end, value);
    if (numberEnd == nullptr) {
        return ToNumber(NextWord(rest));
    }
    rest = std::string_view(numberEnd, static_cast<std::size_t>(end - numberEnd));
    return value;
}

std::int32_t ToInteger(std::string_view text) {
    const std::string_view start = NumberStart(text);
    std::int32_t value = 0;
    const auto [end, error] = std::from_chars(start.data(), start.data() + start.size(), value);
    if (error == std::errc::result_out_of_range) {
        return start.front() == '-' ? std::numeric_limits<std::int32_t>::min()
                                    : std::numeric_limits<std::int32_t>::max();
    }
    return error == std::errc{} ? value : 0;
}

std::int32_t TruncateToInteger(double value) {
    if (std::isnan(value)) {
        return 0;
    }
    constexpr double kLowest = std::numeric_limits<std::int32_t>::min();
    constexpr double kHighest = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(value, kLowest, kHighest));
}

std::string ToUpper(std::string_view text) {
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(), UpperChar);
    return upper;
}

bool EqualsIgnoreCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return UpperChar(x) == UpperChar(y); });
}

LineReader::LineReader(std::string_view text, std::size_t maxLineLength)
    : rest_(text), maxLineLength_(std::max<std::size_t>(maxLineLength, 1)) {
    if (rest_.starts_with("\xEF\xBB\xBF")) {
        rest_.remove_prefix(3);
    }
}

bool LineReader::Next(std::string_view& line) {
    if (rest_.empty()) {
        return false;
    }
    const char* const start = rest_.data();
    line = std::string_view(start, EndLine());
    return true;
}

std::size_t LineReader::EndUnusualLine() {
    // A line that fills the limit may still be followed by a carriage return and a line feed.
    std::size_t length = std::min(rest_.size(), maxLineLength_);
    const bool ends = rest_.substr(length).starts_with("\r\n");
    rest_.remove_prefix(length + (ends ? 2 : 0));
    return length;
}

bool SplitSetting(std::string_view line, std::string_view& key, std::string_view& value) {
    if (line.starts_with(';')) {
        return false;
    }
    // Tabs and stray line ends do separate; blanks belong to the words.
    constexpr std::string_view kSeparators = "\t\n\v\f\r";
    const std::size_t equals = line.find('=');
    const auto takeWord = [&](std::size_t& at) {
        while (at < line.size() &&
               (at == equals || kSeparators.find(line[at]) != std::string_view::npos)) {
            ++at;
        }
        const std::size_t start = at;
        while (at < line.size() && at != equals &&
               kSeparators.find(line[at]) == std::string_view::npos) {
            ++at;
        }
        return line.substr(start, at - start);
    };
    std::size_t at = 0;
    const std::string_view firstWord = takeWord(at);
    const std::string_view secondWord = takeWord(at);
    if (secondWord.empty()) {
        return false;
    }
    key = firstWord;
    value = secondWord;
    return true;
}

std::string Format(const char* format, ...) {
    char shortText[256];
    va_list arguments;
    va_list again;
    va_start(arguments, format);
    va_copy(again, arguments);
    const int length = std::vsnprintf(shortText, sizeof shortText, format, arguments);
    va_end(arguments);
    std::string text;
    if (length >= 0 && static_cast<std::size_t>(length) < sizeof shortText) {
        text.assign(shortText, static_cast<std::size_t>(length));
    } else if (length >= 0) {
        text.resize(static_cast<std::size_t>(length) + 1);
        std::vsnprintf(text.data(), text.size(), format, again);
        text.pop_back();
    }
    va_end(again);
    return text;
}

}  // namespace avq1
