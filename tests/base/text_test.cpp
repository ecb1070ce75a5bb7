#include "base/text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <vector>

namespace avq1 {
namespace {

TEST(Numbers, FollowTheStandardConversions) {
    constexpr double kLargest = std::numeric_limits<double>::max();
    const std::pair<const char*, double> cases[] = {
        {" \t+5.5", 5.5}, {"-.25", -0.25}, {"1.2.3", 1.2},      {"1e", 1.0},     {"2e-2x", 0.02},
        {"", 0.0},        {"-", 0.0},      {".", 0.0},          {"+-5", 0.0},    {"inf", 0.0},
        {"5.", 5.0},      {"12abc", 12.0}, {"1e999", kLargest}, {"1e-999", 0.0}, {"1 2", 1.0}};
    for (const auto& [number, value] : cases) {
        EXPECT_EQ(ToNumber(number), value) << number;
        // The way for numbers inside a file, with text after them, takes the same characters.
        for (const char* after : {"", " ", "\n", " 12345678 next words", "x more than a number"}) {
            const std::string text = std::string(number) + after;
            std::string_view rest = text;
            std::string_view words = text;
            EXPECT_EQ(NextNumber(rest), ToNumber(NextWord(words))) << text;
            EXPECT_EQ(rest, words) << text;
        }
    }
    EXPECT_EQ(ToNumber("123456789012345678901234567890"), 123456789012345678901234567890.0);
}

TEST(Numbers, ShortDecimalsAreRoundedAsTheRuntimeRoundsThem) {
    // The quick way for plain decimals must not differ in the last bit.
    std::uint64_t random = 88172645463325252U;
    for (int i = 0; i < 200000; ++i) {
        random ^= random << 13;
        random ^= random >> 7;
        random ^= random << 17;
        const std::string text = Format(
            "%s%d.%0*d", random & 1 ? "-" : "",
            static_cast<int>(random >> 8 & 255) * (random & 2 ? 1 : 40000),
            static_cast<int>(1 + (random >> 20) % 9), static_cast<int>((random >> 33) % 100000000));
        const std::string inFile = text + "\tand the rest of the line";
        std::string_view rest = inFile;
        ASSERT_EQ(NextNumber(rest), std::strtod(text.c_str(), nullptr)) << text;
        ASSERT_EQ(ToNumber(text), std::strtod(text.c_str(), nullptr)) << text;
    }
}

TEST(Numbers, WholeNumbersAreClamped) {
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    const std::pair<const char*, std::int32_t> cases[] = {
        {" +7", 7}, {"-8x", -8}, {"3.9", 3}, {"", 0}, {"+-1", 0}, {"-99999999999", -kMost - 1}};
    for (const auto& [text, value] : cases) {
        EXPECT_EQ(ToInteger(text), value) << text;
    }
    EXPECT_EQ(TruncateToInteger(-3.99), -3);
    EXPECT_EQ(TruncateToInteger(1e300), kMost);
    EXPECT_EQ(TruncateToInteger(std::nan("")), 0);
}

TEST(Words, SplitAtAnyWhiteSpaceIntoAFixedCount) {
    using Expected = std::array<std::string_view, 3>;
    Expected words;
    EXPECT_EQ(SplitWords("1 2 3 4", words), 3U);
    EXPECT_EQ(SplitWords("  a\tbb \r\n", words), 2U);
    EXPECT_EQ(words, (Expected{"a", "bb", ""}));
    EXPECT_TRUE(EqualsIgnoreCase("WptChgDist", "WPTCHGDIST"));
    EXPECT_FALSE(EqualsIgnoreCase("Wpt", "WptC"));
    EXPECT_EQ(ToUpper("k\xe9ks-1"), "K\xe9KS-1");
}

// A long word crosses the eight-character steps of the word walk at every offset.
TEST(Words, EndWhereTheyEndAtEveryLengthAndOffset) {
    for (std::size_t length = 1; length < 40; ++length) {
        for (const char* after : {"", " ", "\tx", "\r\n", " yyyyyyyyyyyy"}) {
            const std::string word = std::string(length - 1, '\x01') + '\xff';
            const std::string text = word + after;
            std::string_view rest = text;
            EXPECT_EQ(NextWord(rest), word);
            EXPECT_EQ(rest, after);
        }
    }
}

std::vector<std::string> Lines(std::string_view text, std::size_t limit) {
    LineReader reader(text, limit);
    std::vector<std::string> lines;
    std::string_view line;
    while (reader.Next(line)) {
        lines.emplace_back(line);
    }
    return lines;
}

TEST(LineReader, TakesLineEndsAndLimitsAsToldByItsHeader) {
    using Expected = std::vector<std::string>;
    EXPECT_EQ(Lines("", 10), Expected{});
    EXPECT_EQ(Lines("a\r\n\r\nb\r\n", 10), (Expected{"a", "", "b"}));
    EXPECT_EQ(Lines("\xEF\xBB\xBF;x\n\xEF\xBB\xBFy", 10), (Expected{";x", "\xEF\xBB\xBFy"}));
    EXPECT_EQ(Lines("12345\r\n678", 5), (Expected{"12345", "678"}));
    EXPECT_EQ(Lines("12345678901", 5), (Expected{"12345", "67890", "1"}));
    EXPECT_EQ(Lines(std::string_view("a\0b\nc", 5), 10), (Expected{std::string("a\0b", 3), "c"}));
}

TEST(SplitSetting, ReadsTheKeyValueForm) {
    const struct {
        const char* line;
        bool taken;
        const char *key, *value;
    } cases[] = {{"VnavSetSpd =2", true, "VnavSetSpd ", "2"},
                 {"a=b=c\r", true, "a", "b=c"},
                 {";a=b", false, "", ""},
                 {"a=", false, "", ""},
                 {"=b", false, "", ""},
                 {"alone", false, "", ""}};
    for (const auto& c : cases) {
        std::string_view key;
        std::string_view value;
        EXPECT_EQ(SplitSetting(c.line, key, value), c.taken) << c.line;
        EXPECT_EQ(key, c.key) << c.line;
        EXPECT_EQ(value, c.value) << c.line;
    }
}

TEST(Format, HoldsAnyLength) {
    const std::string longText(1000, 'x');
    EXPECT_EQ(Format("%s-%03d", longText.c_str(), 7), longText + "-007");
}

}  // namespace
}  // namespace avq1
