// The painted bitmaps: every one the gauges need, at its size, with nothing that overlaps, sticks
// out or would turn transparent.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
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

TEST_F(Pictures, BackgroundsAreOpaqueAndScreensBlack) {
    for (const BitmapPlan& plan : plans) {
        const std::string bmp = BmpOf(plans, plan);
        const int black = CountPixels({0, 0, plan.size.x, plan.size.y},
                                      [&](int x, int y) { return BmpPixel(bmp, x, y) == 0; });
        const bool screen = plan.role == BitmapRole::Screen;
        EXPECT_TRUE(plan.role == BitmapRole::Icon ||
                    black == (screen ? plan.size.x * plan.size.y : 0))
            << BitmapFileName(plan.number);
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

TEST_F(Pictures, EveryKeyOfABackgroundShowsSomething) {
    // Painted with and without its keys, a background differs inside every key.
    for (const BitmapPlan& plan : plans) {
        if (plan.role != BitmapRole::Background) {
            continue;
        }
        BitmapPlan bare = plan;
        bare.keys.clear();
        const std::string with = BmpOf(plans, plan);
        const std::string without = BmpOf(plans, bare);
        for (const KeyArea& key : plan.keys) {
            PixelBox seen = key.box;
            seen.width = std::min(seen.width, plan.size.x - seen.x);
            const int changed = CountPixels(seen, [&](int x, int y) {
                return BmpPixel(with, x, y) != BmpPixel(without, x, y);
            });
            EXPECT_EQ(changed > 20, key.art != KeyArt::None)
                << BitmapFileName(plan.number) << " " << key.label;
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

TEST_F(Pictures, IconsChangeWhatTheBackgroundShows) {
    for (const BitmapPlan& plan : plans) {
        const std::string under = plan.icons.empty() ? "" : BmpOf(plans, plan);
        for (const IconPlace& place : plan.icons) {
            const BitmapPlan* icon = FindPlan(plans, place.number);
            ASSERT_NE(icon, nullptr);
            const std::string art = BmpOf(plans, *icon);
            const int changed = CountPixels({0, 0, icon->size.x, icon->size.y}, [&](int x, int y) {
                const std::uint32_t pixel = BmpPixel(art, x, y);
                return pixel != 0 && pixel != BmpPixel(under, place.box.x + x, place.box.y + y);
            });
            EXPECT_GT(changed, icon->size.x * icon->size.y / 20)
                << BitmapFileName(place.number) << " on " << BitmapFileName(plan.number);
        }
    }
}

TEST_F(Pictures, SelectorPointersAimAtTheirPositions) {
    const BitmapPlan* panel = FindPlan(plans, 0x2670);
    ASSERT_NE(panel, nullptr);
    std::int32_t number = 0x2673;
    for (const std::string_view position :
         {"VOR", "NAV", "EXP VOR", "EXP NAV", "MAP", "CTR", "10", "40", "80", "160", "320"}) {
        SCOPED_TRACE(position);
        const BitmapPlan* icon = FindPlan(plans, number);
        const auto key = std::ranges::find(panel->keys, position, &KeyArea::label);
        const auto place = std::ranges::find(panel->icons, number++, &IconPlace::number);
        ASSERT_TRUE(icon != nullptr && key != panel->keys.end() && place != panel->icons.end());
        // The white of the pointer, away from the button in the middle.
        const double centre = icon->size.x / 2.0;
        const std::string art = BmpOf(plans, *icon);
        double sumX = 0;
        double sumY = 0;
        CountPixels({0, 0, icon->size.x, icon->size.y}, [&](int x, int y) {
            const double dx = x + 0.5 - centre;
            const double dy = y + 0.5 - centre;
            const bool pointer =
                std::hypot(dx, dy) > centre * 0.6 && (BmpPixel(art, x, y) & 0xFF) > 0xC0;
            sumX += pointer ? dx : 0;
            sumY += pointer ? dy : 0;
            return pointer;
        });
        ASSERT_GT(std::hypot(sumX, sumY), 0);
        const double toX = key->box.x + key->box.width / 2.0 - place->box.x - centre;
        const double toY = key->box.y + key->box.height / 2.0 - place->box.y - centre;
        const double offBy = std::atan2(sumX * toY - sumY * toX, sumX * toX + sumY * toY);
        EXPECT_LT(std::abs(offBy), 0.12) << "radians";
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
