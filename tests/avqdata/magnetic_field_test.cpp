// The magnetic field against the values of the agency that publishes the model.
#include "magneticfield/magnetic_field.h"

#include <gtest/gtest.h>

#include <cmath>

#include "avqdata/csv_table.h"
#include "avqdata/source_file.h"
#include "avqdata/text_tools.h"

namespace magneticfield {
namespace {

struct Row {
    double year, heightKm, latitude, longitude, northNt, eastNt, downNt;
};

void Expect(const Row& row) {
    constexpr double kWithinNt = 0.01;
    const FieldVector field = FieldAt(row.latitude, row.longitude, row.heightKm, row.year);
    SCOPED_TRACE(std::to_string(row.latitude) + " " + std::to_string(row.longitude));
    EXPECT_NEAR(field.northNt, row.northNt, kWithinNt);
    EXPECT_NEAR(field.eastNt, row.eastNt, kWithinNt);
    EXPECT_NEAR(field.downNt, row.downNt, kWithinNt);
}

TEST(MagneticField, IsTheModels) {
    for (const Row& row : {Row{2025.0, 28, 89, -121, -255.388723, -1482.460628, 56194.288771},
                           Row{2025.0, 48, 80, -96, 1875.982280, -1079.269389, 55623.044051},
                           Row{2025.0, 65, 43, 93, 24299.852822, 210.517066, 50037.923998}}) {
        Expect(row);
    }
    EXPECT_NEAR(Variation(42.4, -71.0, 2025), -13.9, 0.2);
    EXPECT_EQ(Variation(90, 30, 2025), Variation(89.99995, 30, 2025));
    EXPECT_EQ(Variation(50, 8, 1900), Variation(50, 8, 2010));
    EXPECT_EQ(Variation(50, 8, 2100), Variation(50, 8, 2035));
}

TEST(MagneticField, AgreesWithEveryPublishedValue) {
    std::string text;
    std::string error;
    if (!avqdata::ReadSourceFile(AVQ1_SOURCE_DIR "/../shared/data/wmm/test_values_2025.csv", text,
                                 error)) {
        GTEST_SKIP() << error;
    }
    int rows = 0;
    const std::vector<std::string> columns{"date", "alt", "lat", "lon", "x", "y", "z", "decl"};
    const bool read = avqdata::ReadCsv(
        text, columns,
        [&](const avqdata::CsvRow& row) {
            const auto value = [&](std::size_t i) { return *avqdata::Number(row[i]); };
            Expect({value(0), value(1), value(2), value(3), value(4), value(5), value(6)});
            const FieldVector field = FieldAt(value(2), value(3), value(1), value(0));
            EXPECT_NEAR(std::atan2(field.eastNt, field.northNt) * 57.29577951308232, value(7),
                        0.01);
            ++rows;
        },
        error);
    EXPECT_TRUE(read) << error;
    EXPECT_EQ(rows, 100);
}

}  // namespace
}  // namespace magneticfield
