// The map symbols: in their place and colours, and told apart by shape alone.
#include "drawing/symbols.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "drawing/palette.h"
#include "support/picture.h"

namespace avq1 {
namespace {

using test::Picture;

constexpr int kSize = 60;
constexpr int kScale = 2;
constexpr int kCodes[] = {1,  2,  3,  4,  5,  11, 12, 20, 30, 31,
                          40, 50, 60, 61, 62, 63, 70, 71, 72, 73};

std::unique_ptr<Picture> Drawn(const Symbol& symbol) {
    auto picture = std::make_unique<Picture>(kSize * kScale, kSize * kScale);
    Surface surface(picture->Target(), kSize, kSize, true);
    surface.canvas().Clear(colour::Clear);
    DrawSymbol(surface, kSize / 2, kSize / 2, symbol);
    return picture;
}

// Pixels that differ in whether anything is drawn, whatever its colour.
int ShapeDifference(const Picture& a, const Picture& b) {
    int different = 0;
    for (std::size_t i = 0; i < a.pixels().size(); ++i) {
        different += (a.pixels()[i] >> 24 > 100) != (b.pixels()[i] >> 24 > 100);
    }
    return different;
}

TEST(Symbols, AreToldApartByShape) {
    std::vector<std::unique_ptr<Picture>> drawn;
    for (const int code : kCodes) {
        drawn.push_back(Drawn({static_cast<SymbolCode>(code)}));
        EXPECT_FALSE(drawn.back()->IsClear()) << code;
    }
    Symbol ndbStation{SymbolCode::Station};
    ndbStation.style = SymbolStyle::Ndb;
    EXPECT_GT(ShapeDifference(*Drawn(ndbStation), *Drawn({SymbolCode::Station})), 30);
    for (std::size_t i = 0; i < drawn.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            EXPECT_GT(ShapeDifference(*drawn[i], *drawn[j]), 30) << kCodes[i] << " " << kCodes[j];
        }
    }
    EXPECT_TRUE(Drawn({static_cast<SymbolCode>(99)})->IsClear());
}

TEST(Symbols, HaveTheColourAndSizeAskedFor) {
    for (const int code : kCodes) {
        Symbol symbol{static_cast<SymbolCode>(code)};
        const auto own = Drawn(symbol);
        symbol.style = SymbolStyle::Magenta;
        const auto picture = Drawn(symbol);
        EXPECT_GT(std::count(picture->pixels().begin(), picture->pixels().end(), colour::Magenta),
                  4)
            << code;
        symbol.sizeX = 1.5;
        EXPECT_GT(ShapeDifference(*Drawn(symbol), *own), 10) << code;
    }
}

TEST(Symbols, VariantsFillOutlinesAndPointTrends) {
    for (const SymbolCode code :
         {SymbolCode::Station, SymbolCode::Fix, SymbolCode::Airport, SymbolCode::PlanWaypoint}) {
        Symbol filled{code};
        filled.variant = 1;
        const int middle = kSize * kScale / 2;
        EXPECT_EQ(Drawn({code})->At(middle, middle), 0u) << static_cast<int>(code);
        EXPECT_NE(Drawn(filled)->At(middle, middle), 0u) << static_cast<int>(code);
    }
    Symbol traffic{SymbolCode::TrafficAdvisory};
    const auto leansUp = [&](std::int32_t variant) {  // pixels of the arrow, below counted off
        traffic.variant = variant;
        const auto picture = Drawn(traffic);
        const int half = kSize / 2;
        int pixels = 0;
        for (int y = -6 * kScale; y < 6 * kScale; ++y) {
            for (int x = (half + 6) * kScale; x < (half + 13) * kScale; ++x) {
                pixels += picture->At(x, half * kScale + y) == 0 ? 0 : y < 0 ? 1 : -1;
            }
        }
        return pixels;
    };
    EXPECT_GT(leansUp(kClimbing), 0);
    EXPECT_LT(leansUp(kDescending), 0);
    EXPECT_EQ(leansUp(0), 0);
}

TEST(Symbols, LabelsAreSmallerAtTheNearOddRanges) {
    for (const auto& [rangeNm, sizePx] : {std::pair{0.5, 8.0}, {12.5, 8.0}, {5.0, 9.0}}) {
        Symbol symbol{SymbolCode::TopOfClimb};
        symbol.rangeNm = rangeNm;
        Drawn(symbol);
        ASSERT_NE(Picture::Find("T/C"), nullptr);
        EXPECT_EQ(Picture::Find("T/C")->pixelSize, sizePx * kScale) << rangeNm;
    }
}

}  // namespace
}  // namespace avq1
