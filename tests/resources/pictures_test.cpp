// The painted bitmaps: every one the gauges need, at its size, with nothing that overlaps, sticks
// out or would turn transparent.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <set>
#include <string>

#include "cdu_gns/gns.h"
#include "cdu_gns/mcu.h"
#include "cdu_smiths/smiths_keys.h"
#include "host/gauge_table.h"
#include "resources/painter/bezels.h"
#include "resources/painter/inventory.h"
#include "resources/painter/pack.h"
#include "support/leak_suppressions.h"

namespace avq1 {
namespace {

std::uint32_t ByteOf(const std::string& bytes, std::size_t at) {
    return static_cast<unsigned char>(bytes.at(at));
}

std::int32_t Read32(const std::string& bytes, std::size_t at) {
    return static_cast<std::int32_t>(ByteOf(bytes, at) | ByteOf(bytes, at + 1) << 8U |
                                     ByteOf(bytes, at + 2) << 16U | ByteOf(bytes, at + 3) << 24U);
}

// The pixel of a BMP file as 0xRRGGBB.
std::uint32_t BmpPixel(const std::string& bmp, int x, int y) {
    const int rowBytes = (Read32(bmp, 18) * 3 + 3) / 4 * 4;
    const auto at = static_cast<std::size_t>(54 + (Read32(bmp, 22) - 1 - y) * rowBytes + x * 3);
    return ByteOf(bmp, at + 2) << 16U | ByteOf(bmp, at + 1) << 8U | ByteOf(bmp, at);
}

bool Overlaps(const PixelBox& a, const PixelBox& b) {
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height &&
           b.y < a.y + a.height;
}

// How many pixels of the box this is true for.
template <typename Test>
int CountPixels(const PixelBox& box, const Test& test) {
    int count = 0;
    for (int y = box.y; y < box.y + box.height; ++y) {
        for (int x = box.x; x < box.x + box.width; ++x) {
            count += test(x, y) ? 1 : 0;
        }
    }
    return count;
}

std::string BmpOf(const std::vector<BitmapPlan>& plans, const BitmapPlan& plan) {
    const auto painting = PaintBitmap(plans, plan);
    return EncodeBmp(painting->Pixels(), plan.size.x, plan.size.y, plan.role == BitmapRole::Screen);
}

class Pictures : public testing::Test {
  protected:
    const std::vector<BitmapPlan> plans = PlanBitmaps(GaugeTable());
};

TEST_F(Pictures, EveryBitmapOfTheGaugesIsPlannedOnceWithArtOfItsOwn) {
    std::set<std::int32_t> numbers;
    for (const BitmapPlan& plan : plans) {
        SCOPED_TRACE(BitmapFileName(plan.number));
        EXPECT_TRUE(numbers.insert(plan.number).second) << "twice";
        EXPECT_EQ(plan.role == BitmapRole::Background, HasBezelArt(plan.number));
        EXPECT_EQ(plan.role == BitmapRole::Icon, FindIconArt(plan.number) != nullptr);
    }
}

constexpr int kCellPx = 4;
constexpr double kLevels = 60;  // of brightness, from 'A' on

// A letter of brightness for every cell; the colours weigh differently, so that one is not taken
// for another.
std::vector<std::string> Letters(const BitmapPlan& plan, const std::string& bmp) {
    std::vector<std::string> rows;
    for (int top = 0; top < plan.size.y; top += kCellPx) {
        rows.emplace_back();
        for (int left = 0; left < plan.size.x; left += kCellPx) {
            double sum = 0;
            const PixelBox cell{left, top, std::min(kCellPx, plan.size.x - left),
                                std::min(kCellPx, plan.size.y - top)};
            CountPixels(cell, [&](int x, int y) {
                const std::uint32_t pixel = BmpPixel(bmp, x, y);
                sum += 0.5 * (pixel >> 16U) + 0.3 * (pixel >> 8U & 0xFFU) + 0.2 * (pixel & 0xFFU);
                return true;
            });
            rows.back() += static_cast<char>('A' + kLevels * sum / 256 / cell.width / cell.height);
        }
    }
    return rows;
}

// The cells that are brighter or darker than they were by more than a level.
int CellsThatDiffer(const std::string& now, const std::string& kept) {
    int differing = std::abs(static_cast<int>(now.size()) - static_cast<int>(kept.size()));
    for (std::size_t i = 0; i < std::min(now.size(), kept.size()); ++i) {
        differing += std::abs(now[i] - kept[i]) > 1 ? 1 : 0;
    }
    return differing;
}

// bitmaps.txt is how they looked when somebody last looked at them.
TEST_F(Pictures, LookAsTheyDidWhenLastLookedAt) {
    const char* const path = AVQ1_SOURCE_DIR "/tests/resources/bitmaps.txt";
    const bool renew = std::getenv("AVQ1_RENEW_PICTURES") != nullptr;
    std::fstream file(path, renew ? std::ios::out : std::ios::in);
    for (const BitmapPlan& plan : plans) {
        std::vector<std::string> now = Letters(plan, BmpOf(plans, plan));
        now.insert(now.begin(), "# " + BitmapFileName(plan.number));
        int differing = 0;
        for (std::string line; const std::string& row : now) {
            if (renew) {
                file << row << '\n';
            } else {
                std::getline(file, line);
                differing += CellsThatDiffer(row, line);
            }
        }
        EXPECT_EQ(differing, 0) << now[0] << ": cells that differ";
    }
}

TEST(Bmp, HasATrueHeaderAndKeepsColoursAndRowsAndMarksTransparency) {
    // Two rows of three: red, half blue, transparent / opaque black, faint white, green.
    const std::uint32_t pixels[] = {0xFFFF0000, 0x80000080, 0x00000000,
                                    0xFF000000, 0x40404040, 0xFF00FF00};
    const std::string art = EncodeBmp(pixels, 3, 2, false);
    ASSERT_EQ(art.size(), 78U);
    EXPECT_EQ(art.substr(0, 2), "BM");
    // Bottom-up, one plane of 24 bits, uncompressed.
    const std::pair<std::size_t, std::int32_t> fields[] = {
        {2, 78}, {10, 54}, {14, 40}, {18, 3}, {22, 2}, {26, 1 | 24 << 16}, {30, 0}};
    for (const auto& [at, value] : fields) {
        EXPECT_EQ(Read32(art, at), value) << at;
    }
    const std::uint32_t expected[] = {0xFF0000, 0x0000FF, 0x000000, 0x010101, 0x000000, 0x00FF00};
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(BmpPixel(art, i % 3, i / 3), expected[i]) << i;
    }
    EXPECT_EQ(BmpPixel(EncodeBmp(pixels, 3, 2, true), 0, 1), 0x000000U) << "a screen stays black";
}

TEST_F(Pictures, LabelsStayInsideTheirKeys) {
    for (const BitmapPlan& plan : plans) {
        Painting measure(plan.size.x, plan.size.y);
        const std::vector<LabelLayout> labels = KeyLabels(measure.cairo(), plan);
        ASSERT_EQ(labels.size(), plan.keys.size());
        for (std::size_t i = 0; i < labels.size(); ++i) {
            if (labels[i].lines.empty()) {
                continue;
            }
            SCOPED_TRACE(BitmapFileName(plan.number) + " " + plan.keys[i].label);
            Painting sheet(plan.size.x, plan.size.y);
            DrawLabel(sheet.cairo(), labels[i], 0xFFFFFF);
            const std::vector<std::uint32_t> pixels = sheet.Pixels();
            const auto ink = [&](int x, int y) {
                return pixels[static_cast<std::size_t>(y * plan.size.x + x)] >> 24U != 0;
            };
            const int inside = CountPixels(plan.keys[i].box, ink);
            EXPECT_TRUE(labels[i].fits);
            EXPECT_GT(inside, 0);
            EXPECT_EQ(CountPixels({0, 0, plan.size.x, plan.size.y}, ink), inside);
            for (const IconPlace& icon : plan.icons) {
                EXPECT_TRUE(FindIconArt(icon.number)->kind != IconKind::Lamp ||
                            CountPixels(icon.box, ink) == 0)
                    << "a lamp hides the label";
            }
        }
    }
}

TEST_F(Pictures, LegendsStandClearOfKeysScreensAndIcons) {
    for (const Legend& legend : Legends()) {
        const BitmapPlan* plan = FindPlan(plans, legend.background);
        ASSERT_NE(plan, nullptr) << std::hex << legend.background;
        SCOPED_TRACE(BitmapFileName(plan->number) + " " + legend.text);
        EXPECT_TRUE(legend.room.x >= 0 && legend.room.x + legend.room.width <= plan->size.x);
        EXPECT_TRUE(legend.room.y >= 0 && legend.room.y + legend.room.height <= plan->size.y);
        EXPECT_FALSE(plan->screen.width > 0 && Overlaps(legend.room, plan->screen));
        for (const KeyArea& key : plan->keys) {
            EXPECT_FALSE(Overlaps(legend.room, key.box)) << key.label;
        }
        for (const IconPlace& icon : plan->icons) {
            EXPECT_FALSE(Overlaps(legend.room, icon.box)) << std::hex << icon.number;
        }
        Painting sheet(plan->size.x, plan->size.y);
        EXPECT_TRUE(LayOutLabel(sheet.cairo(), legend.text, legend.room, legend.largestPx).fits);
    }
}

TEST(UnitKeys, LieApartFromOneAnother) {
    // the areas of one unit's line keys share two rows
    const std::pair<std::span<const KeyArea>, int> units[] = {
        {kGnsKeys, 0}, {kSmithsKeys, 2}, {kMcuKeys, 0}};
    for (const auto& [keys, sharedRows] : units) {
        std::set<std::string> labels;
        for (const KeyArea& key : keys) {
            EXPECT_TRUE(labels.insert(key.label).second) << key.label << " twice";
            for (const KeyArea& other : keys) {
                PixelBox smaller = key.box;
                smaller.height -= sharedRows;
                EXPECT_TRUE(&key == &other || other.box.y < key.box.y ||
                            !Overlaps(smaller, other.box))
                    << key.label << " and " << other.label;
            }
        }
    }
}

}  // namespace
}  // namespace avq1
