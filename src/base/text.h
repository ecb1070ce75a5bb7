// base/text.h - reading the system's text files: words, numbers, lines, letter case.
//
// Numbers follow the standard text-to-number conversions: the longest leading number counts, a
// malformed one reads as 0; results are always finite. Letter case means ASCII letters only.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace avq1 {

double ToNumber(std::string_view text);
std::int32_t ToInteger(std::string_view text);  // leading decimal integer, clamped to 32 bits

// The whole part of a number that may come from a file: clamped to 32 bits, 0 for a NaN.
std::int32_t TruncateToInteger(double value);

std::string ToUpper(std::string_view text);
bool EqualsIgnoreCase(std::string_view a, std::string_view b);

constexpr bool IsSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// Eight characters as a number, the first one lowest, with the top bit of each character up to and
// including the blank set. Above the lowest such character bits may be set for others too.
inline std::uint64_t MarkLowCharacters(const char* p) {
    static_assert(std::endian::native == std::endian::little);
    std::uint64_t characters = 0;
    std::memcpy(&characters, p, sizeof characters);
    return (characters - 0x2121212121212121U) & ~characters & 0x8080808080808080U;
}

// The end of the word at `p`: eight characters at a time, because word lengths vary too much for
// a processor to foresee where a character loop ends.
inline const char* WordEnd(const char* p, const char* const end) {
    while (end - p >= 8) {
        const std::uint64_t low = MarkLowCharacters(p);
        p += std::countr_zero(low) / 8;
        if (low != 0) {
            if (IsSpace(*p)) {
                return p;
            }
            ++p;  // some other control character
        }
    }
    while (p != end && !IsSpace(*p)) {
        ++p;
    }
    return p;
}

// Takes the next word (run of non-white-space) off the front of `rest`; empty when there is none.
// Inline: a world database is over a million words.
inline std::string_view NextWord(std::string_view& rest) {
    const char* start = rest.data();
    const char* const end = start + rest.size();
    while (start != end && IsSpace(*start)) {
        ++start;
    }
    const char* const wordEnd = WordEnd(start, end);
    rest = std::string_view(wordEnd, static_cast<std::size_t>(end - wordEnd));
    return {start, static_cast<std::size_t>(wordEnd - start)};
}

// The next word as a number, in one pass over its characters: ToNumber(NextWord(rest)).
double NextNumber(std::string_view& rest);

// Splits at white space into at most `N` words; returns how many were found.
template <std::size_t N>
std::size_t SplitWords(std::string_view text, std::array<std::string_view, N>& words) {
    std::size_t count = 0;
    while (count < N) {
        const std::string_view word = NextWord(text);
        if (word.empty()) {
            break;
        }
        words[count++] = word;
    }
    for (std::size_t i = count; i < N; ++i) {
        words[i] = {};
    }
    return count;
}

// Walks a file's text line by line. A line longer than the limit comes in pieces, each one a line
// of its own. Line ends are LF or CRLF, and belong to no line; a UTF-8 byte-order mark at the
// start is skipped.
class LineReader {
  public:
    LineReader(std::string_view text, std::size_t maxLineLength);
    bool Next(std::string_view& line);  // false at the end

    // For readers that look beyond the line: what lies ahead, the next line and more, cut to a
    // line's greatest length (empty at the end), and the step over that line.
    std::string_view Ahead() const { return rest_.substr(0, maxLineLength_); }
    void Skip() { EndLine(); }

  private:
    std::size_t EndLine();         // steps over a line and returns its length
    std::size_t EndUnusualLine();  // the same for a line without end or with a longer one

    std::string_view rest_;
    std::size_t maxLineLength_;
};

// Inline: a world database is two hundred thousand lines.
inline std::size_t LineReader::EndLine() {
    const std::size_t reach = std::min(rest_.size(), maxLineLength_ + 1);
    const void* const lineFeed = std::memchr(rest_.data(), '\n', reach);
    if (lineFeed == nullptr) {
        return EndUnusualLine();
    }
    const char* const start = rest_.data();
    const auto length = static_cast<std::size_t>(static_cast<const char*>(lineFeed) - start);
    rest_.remove_prefix(length + 1);
    return length - (length > 0 && start[length - 1] == '\r' ? 1 : 0);
}

// "key=value" as the settings and aircraft files write it: blanks do not separate, the first "="
// does. `key` keeps a blank before "=" (so such a line matches no key). False for comments (";"
// first) and lines without a value.
bool SplitSetting(std::string_view line, std::string_view& key, std::string_view& value);

// printf into a string.
[[gnu::format(printf, 1, 2)]] std::string Format(const char* format, ...);

}  // namespace avq1
