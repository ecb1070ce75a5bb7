// The small readers under the importers: numbers, tokens, dates, lines, compressed files, tables.
#include <gtest/gtest.h>
#include <zlib.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <tuple>
#include <vector>

#include "avqdata/csv_table.h"
#include "avqdata/cycle.h"
#include "avqdata/points_by_name.h"
#include "avqdata/source_file.h"
#include "avqdata/text_tools.h"
#include "support/temp_sim_folder.h"

namespace avqdata {
namespace {

TEST(TextTools, NumbersAreWholeTextsOrNothing) {
    EXPECT_EQ(Number(" -077.5 "), -77.5);
    EXPECT_EQ(Number("+3"), 3.0);
    for (const char* text : {"", "12x", "1e999", "nan", "inf"}) {
        EXPECT_EQ(Number(text), std::nullopt) << text;
    }
    EXPECT_TRUE(Position("90", "-180"));
    EXPECT_FALSE(Position("90.1", "0"));
    EXPECT_FALSE(Position("0", "180.5"));
}

TEST(TextTools, TokensAreOnePlainWord) {
    EXPECT_EQ(Token("São Paulo / Guarulhos (Intl)"), "Sao_Paulo_Guarulhos_Intl");
    EXPECT_EQ(Token("Łódź Žilina Þórshöfn"), "Lodz_Zilina_Torshofn");
    EXPECT_EQ(Token("東京"), "-");
    EXPECT_EQ(Token("\xFF\xC3"), "-");  // no UTF-8 at all
    EXPECT_EQ(Token(std::string(500, 'A')).size(), 60U);
}

TEST(TextTools, FixedWritesAsPrintfDoesButNoMinusZero) {
    EXPECT_EQ(Fixed(-0.0000001, 5), "0.00000");
    EXPECT_EQ(Fixed(-0.00001, 5), "-0.00001");
    for (const double whole : {0.0, 7.0, -77.0, 1e15}) {
        for (const double part :
             {0.0, 0.0000005, 0.0499995, 0.05, 0.095, 0.1234565, 0.5, 0.99995}) {
            const double value = whole + part;
            for (int decimals = 0; decimals < 8; ++decimals) {
                std::array<char, 100> text{};
                std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
                const double rounded = std::strtod(text.data(), nullptr);
                EXPECT_EQ(Fixed(value, decimals), text.data());
                EXPECT_EQ(RoundedAsWritten({value, 0}, decimals).latitude, rounded);
            }
        }
    }
    EXPECT_EQ(Kilohertz(365.0), "365");
    EXPECT_EQ(Kilohertz(365.5), "365.5");
}

TEST(PointsByName, OneNameStandsForManyPlaces) {
    PointsByName points;  // grows while they come in
    for (int i = 0; i < 300; ++i) {
        points.Add("P" + std::to_string(i % 100), {0.1 * i, 5});
    }
    std::vector<double> latitudes;
    points.ForEach("P30", [&](const LatLon& at) {
        latitudes.push_back(at.latitude);
        return latitudes.size() < 2;
    });
    EXPECT_EQ(latitudes, (std::vector{0.1 * 230, 0.1 * 130}));  // the latest first, until told
    for (const auto& [latitude, withinNm, nearest] :
         {std::tuple(12.9, 7.0, 13.0), {12.9, 5.0, 0.0}, {17.9, 400.0, 13.0}, {23.0, 1.0, 23.0}}) {
        const LatLon* const found = Nearest(points, "P30", {latitude, 5}, withinNm);
        EXPECT_NEAR(found == nullptr ? 0 : found->latitude, nearest, 1e-9) << latitude;
    }
    EXPECT_EQ(Nearest(points, "P300", {0, 5}, 9999), nullptr);
}

TEST(Cycle, DatesAndCyclesBelongTogether) {
    EXPECT_EQ(CycleOfDate(2023, 9, 7), 2309);
    EXPECT_EQ(CycleOfDate(2023, 10, 4), 2309);
    EXPECT_EQ(CycleOfDate(2023, 10, 5), 2310);
    EXPECT_EQ(CycleOfDate(2020, 12, 31), 2014);  // a year of fourteen cycles
    EXPECT_EQ(CycleOfDate(2023, 2, 30), std::nullopt);
    EXPECT_EQ(CycleLine(2309), ";AIRAC cycle : 2309 (07-SEP-2023 to 05-OCT-2023)");
    EXPECT_EQ(CycleLine(801), ";AIRAC cycle : 0801 (17-JAN-2008 to 14-FEB-2008)");
    EXPECT_EQ(CycleLine(2014), ";AIRAC cycle : 2014 (31-DEC-2020 to 28-JAN-2021)");
    EXPECT_EQ(CycleLine(2314), "");  // 2023 has thirteen
    EXPECT_EQ(CycleOfLine(CycleLine(2309)), 2309);
    EXPECT_EQ(CycleOfLine(";AIRAC cycle : 2314 (07-SEP-2023 to 05-OCT-2023)"), 0);
    EXPECT_EQ(CycleOfLine(";AIRAC cycle :"), 0);
}

TEST(SourceFile, CompressedLinesComeWholeAndACutFileIsAnError) {
    const avq1::test::TempSimFolder folder;
    const std::string path = (folder.root() / "source.gz").string();
    std::string text;
    for (int i = 0; i < 100000; ++i) {
        text += "line " + std::to_string(i * 7919) + (i < 99999 ? "\r\n" : "");
    }
    gzFile file = gzopen(path.c_str(), "wb");
    gzwrite(file, text.data(), static_cast<unsigned>(text.size()));
    gzclose(file);
    std::string_view line;
    int count = 0;
    LineSource whole = LineSource::OfFile(path, {});
    for (; whole.Next(line); ++count) {
        ASSERT_EQ(line, "line " + std::to_string(count * 7919));
    }
    EXPECT_EQ(count, 100000);
    EXPECT_EQ(whole.Error(), "");

    std::filesystem::resize_file(path, std::filesystem::file_size(path) / 2);
    std::string error;
    EXPECT_FALSE(ReadSourceFile(path, text, error));
    EXPECT_NE(error.find("cut short"), std::string::npos) << error;
    EXPECT_EQ(text, "");
    LineSource cut = LineSource::OfFile(path, {});
    while (cut.Next(line)) {
    }
    EXPECT_NE(cut.Error().find("cut short"), std::string::npos) << cut.Error();
}

// Neither a file without line ends nor a small one that unpacks to much is read to its end.
TEST(SourceFile, EndlessLinesAndContentsAreRefused) {
    const avq1::test::TempSimFolder folder;
    const std::string path = (folder.root() / "zeros.gz").string();
    const std::string zeros(kLongestSourceLine * 8, '\0');
    gzFile file = gzopen(path.c_str(), "wb");
    gzwrite(file, "short\n", 6);
    gzwrite(file, zeros.data(), static_cast<unsigned>(zeros.size()));
    gzclose(file);
    LineSource lines = LineSource::OfFile(path, {});
    std::string_view line;
    EXPECT_TRUE(lines.Next(line));
    EXPECT_FALSE(lines.Next(line));
    EXPECT_TRUE(lines.Error().starts_with("zeros.gz:2: a line of more than 65536"))
        << lines.Error();
    EXPECT_FALSE(lines.Next(line));
    std::string text;
    std::string error;
    EXPECT_FALSE(ReadSourceFile(path, text, error, kLongestSourceLine));
    EXPECT_NE(error.find("is too large"), std::string::npos) << error;
    EXPECT_EQ(text, "");
    EXPECT_TRUE(ReadSourceFile(path, text, error)) << error;
}

TEST(CsvTable, ColumnsComeByName) {
    std::vector<std::string> rows;
    std::string error;
    const bool read = ReadCsv(
        "\xEF\xBB\xBF\"b\",c,a\r\n\"1,\"\"x\"\"\n2\",3,4\r\n5\n", {"a", "b", "?none"},
        [&](const CsvRow& row) {
            rows.push_back(std::to_string(row.number) + "|" + row[0] + "|" + row[1] + "|" + row[2]);
        },
        error);
    EXPECT_TRUE(read) << error;
    EXPECT_EQ(rows, (std::vector<std::string>{"2|4|1,\"x\"\n2|", "3||5|"}));
    EXPECT_FALSE(ReadCsv(
        "x,y\n1,2\n", {"a"}, [](const CsvRow&) { FAIL(); }, error));
    EXPECT_EQ(error, "has no column \"a\"");
    EXPECT_FALSE(ReadCsv(
        "a\n1\n\"2\n", {"a"}, [](const CsvRow&) {}, error));
    EXPECT_NE(error.find("a quoted field does not end"), std::string::npos) << error;
    EXPECT_FALSE(ReadCsv(
        "", {"a"}, [](const CsvRow&) { FAIL(); }, error));
}

}  // namespace
}  // namespace avqdata
