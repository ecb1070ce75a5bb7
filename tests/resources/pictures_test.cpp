// The painted bitmaps: every one the gauges need, at its size, with nothing that overlaps, sticks
// out or would turn transparent.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <set>
#include <string>

#include "cdu_gns/gns_keys.h"
#include "cdu_smiths/smiths_keys.h"
#include "host/gauge_table.h"
#include "resources/painter/bezels.h"
#include "resources/painter/inventory.h"
#include "resources/painter/pack.h"
#include "support/leak_suppressions.h"

namespace avq1 {
namespace {

struct ExpectedBitmap {
    int number;
    int width;
    int height;
};

constexpr ExpectedBitmap kExpected[] = {
    {0x2600, 326, 433}, {0x2601, 272, 314}, {0x2607, 501, 386}, {0x2611, 420, 159},
    {0x2612, 605, 234}, {0x2617, 292, 217}, {0x2618, 550, 433}, {0x2621, 280, 262},
    {0x2622, 384, 371}, {0x2624, 384, 371}, {0x2632, 500, 169}, {0x2634, 50, 49},
    {0x2640, 50, 49},   {0x2642, 50, 49},   {0x2644, 50, 49},   {0x2646, 50, 49},
    {0x2654, 50, 49},   {0x2656, 50, 49},   {0x2658, 50, 49},   {0x2662, 284, 233},
    {0x2663, 415, 640}, {0x2664, 415, 640}, {0x2666, 247, 294}, {0x2668, 281, 337},
    {0x2669, 281, 337}, {0x2670, 313, 212}, {0x2671, 313, 212}, {0x2698, 50, 49},
    {0x2700, 50, 49},
};

std::int32_t Read32(const std::string& bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 4; i-- > 0;) {
        value = value << 8U | static_cast<unsigned char>(bytes.at(at + i));
    }
    return static_cast<std::int32_t>(value);
}

// The pixel of a BMP file as 0xRRGGBB.
std::uint32_t BmpPixel(const std::string& bmp, int x, int y) {
    const int rowBytes = (Read32(bmp, 18) * 3 + 3) / 4 * 4;
    const auto at = static_cast<std::size_t>(54 + (Read32(bmp, 22) - 1 - y) * rowBytes + x * 3);
    const auto byte = [&](std::size_t offset) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(bmp.at(at + offset)));
    };
    return byte(2) << 16U | byte(1) << 8U | byte(0);
}

bool Overlaps(const PixelBox& a, const PixelBox& b) {
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height &&
           b.y < a.y + a.height;
}

// The smallest box around everything painted; width 0 when there is nothing.
PixelBox InkBox(const Painting& painting) {
    const std::vector<std::uint32_t> pixels = painting.Pixels();
    int left = painting.width(), top = painting.height(), right = -1, bottom = -1;
    for (int y = 0; y < painting.height(); ++y) {
        for (int x = 0; x < painting.width(); ++x) {
            if (pixels[static_cast<std::size_t>(y * painting.width() + x)] >> 24U != 0) {
                left = std::min(left, x);
                right = std::max(right, x);
                top = std::min(top, y);
                bottom = std::max(bottom, y);
            }
        }
    }
    return right < 0 ? PixelBox{} : PixelBox{left, top, right - left + 1, bottom - top + 1};
}

std::string BmpOf(const std::vector<BitmapPlan>& plans, const BitmapPlan& plan) {
    const auto painting = PaintBitmap(plans, plan);
    return EncodeBmp(painting->Pixels(), plan.size.x, plan.size.y, plan.role == BitmapRole::Screen);
}

class Pictures : public testing::Test {
  protected:
    const std::vector<BitmapPlan> plans = PlanBitmaps(GaugeTable());
};

TEST_F(Pictures, EveryBitmapOfTheGaugesIsPlannedAtItsSize) {
    for (const ExpectedBitmap& expected : kExpected) {
        const BitmapPlan* plan = FindPlan(plans, expected.number);
        ASSERT_NE(plan, nullptr) << std::hex << expected.number;
        EXPECT_EQ(plan->size.x, expected.width) << std::hex << expected.number;
        EXPECT_EQ(plan->size.y, expected.height) << std::hex << expected.number;
    }
    std::set<std::int32_t> numbers;
    for (const BitmapPlan& plan : plans) {
        EXPECT_TRUE(numbers.insert(plan.number).second) << std::hex << plan.number;
    }
    for (const GaugeRow& gauge : GaugeTable()) {
        EXPECT_TRUE(gauge.background == 0 || numbers.contains(gauge.background)) << gauge.name;
        EXPECT_TRUE(gauge.surface.resource == 0 || numbers.contains(gauge.surface.resource));
        for (const IconRow& icon : gauge.icons) {
            EXPECT_TRUE(numbers.contains(icon.resource)) << gauge.name;
        }
    }
}

TEST_F(Pictures, EveryBackgroundAndIconHasArtOfItsOwn) {
    for (const BitmapPlan& plan : plans) {
        if (plan.role == BitmapRole::Background) {
            EXPECT_TRUE(HasBezelArt(plan.number)) << std::hex << plan.number;
        } else if (plan.role == BitmapRole::Icon) {
            EXPECT_NE(FindIconArt(plan.number), nullptr) << std::hex << plan.number;
        }
    }
}

TEST_F(Pictures, BmpFilesHaveTrueHeaders) {
    for (const BitmapPlan& plan : plans) {
        const std::string bmp = BmpOf(plans, plan);
        const auto rowBytes = static_cast<std::size_t>((plan.size.x * 3 + 3) / 4 * 4);
        SCOPED_TRACE(BitmapFileName(plan.number));
        ASSERT_EQ(bmp.size(), 54 + rowBytes * static_cast<std::size_t>(plan.size.y));
        EXPECT_EQ(bmp.substr(0, 2), "BM");
        EXPECT_EQ(static_cast<std::size_t>(Read32(bmp, 2)), bmp.size());
        EXPECT_EQ(Read32(bmp, 10), 54);
        EXPECT_EQ(Read32(bmp, 14), 40);
        EXPECT_EQ(Read32(bmp, 18), plan.size.x);
        EXPECT_EQ(Read32(bmp, 22), plan.size.y) << "bottom-up";
        EXPECT_EQ(Read32(bmp, 26), 1 | 24 << 16) << "one plane, 24 bits";
        EXPECT_EQ(Read32(bmp, 30), 0) << "uncompressed";
    }
}

TEST(Bmp, KeepsColoursAndRowsAndMarksTransparency) {
    // Two rows of three: red, half blue, transparent / opaque black, faint white, green.
    const std::uint32_t pixels[] = {0xFFFF0000, 0x80000080, 0x00000000,
                                    0xFF000000, 0x40404040, 0xFF00FF00};
    const std::string art = EncodeBmp(pixels, 3, 2, false);
    const std::uint32_t expected[] = {0xFF0000, 0x0000FF, 0x000000, 0x010101, 0x000000, 0x00FF00};
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(BmpPixel(art, i % 3, i / 3), expected[i]) << i;
    }
    EXPECT_EQ(BmpPixel(EncodeBmp(pixels, 3, 2, true), 0, 1), 0x000000U) << "a screen stays black";
}

TEST_F(Pictures, BackgroundsAreOpaqueAndScreensBlack) {
    for (const BitmapPlan& plan : plans) {
        if (plan.role == BitmapRole::Icon) {
            continue;
        }
        const std::string bmp = BmpOf(plans, plan);
        int black = 0;
        for (int y = 0; y < plan.size.y; ++y) {
            for (int x = 0; x < plan.size.x; ++x) {
                black += BmpPixel(bmp, x, y) == 0 ? 1 : 0;
            }
        }
        EXPECT_EQ(black, plan.role == BitmapRole::Screen ? plan.size.x * plan.size.y : 0)
            << std::hex << plan.number;
    }
}

TEST_F(Pictures, LabelsStayInsideTheirKeys) {
    for (const BitmapPlan& plan : plans) {
        Painting measure(plan.size.x, plan.size.y);
        const std::vector<LabelLayout> labels = KeyLabels(measure.cairo(), plan);
        ASSERT_EQ(labels.size(), plan.keys.size());
        for (std::size_t i = 0; i < labels.size(); ++i) {
            const KeyArea& key = plan.keys[i];
            SCOPED_TRACE(BitmapFileName(plan.number) + " " + key.label);
            if (labels[i].lines.empty()) {
                continue;
            }
            Painting sheet(plan.size.x, plan.size.y);
            DrawLabel(sheet.cairo(), labels[i], 0xFFFFFF);
            const PixelBox ink = InkBox(sheet);
            EXPECT_TRUE(labels[i].fits);
            EXPECT_GT(ink.width, 0);
            EXPECT_GE(ink.x, key.box.x);
            EXPECT_GE(ink.y, key.box.y);
            EXPECT_LE(ink.x + ink.width, key.box.x + key.box.width);
            EXPECT_LE(ink.y + ink.height, key.box.y + key.box.height);
            for (const IconPlace& icon : plan.icons) {
                const bool isLamp = FindIconArt(icon.number)->kind == IconKind::Lamp;
                EXPECT_FALSE(isLamp && Overlaps(ink, icon.box)) << "a lamp hides the label";
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
            int changed = 0;
            const int right = std::min(key.box.x + key.box.width, plan.size.x);
            for (int y = key.box.y; y < key.box.y + key.box.height; ++y) {
                for (int x = key.box.x; x < right; ++x) {
                    changed += BmpPixel(with, x, y) != BmpPixel(without, x, y) ? 1 : 0;
                }
            }
            const bool shown = key.art != KeyArt::None;
            EXPECT_EQ(changed > 20, shown) << BitmapFileName(plan.number) << " " << key.label;
        }
    }
}

TEST_F(Pictures, LegendsStandClearOfKeysScreensAndIcons) {
    for (const Legend& legend : Legends()) {
        const BitmapPlan* plan = FindPlan(plans, legend.background);
        ASSERT_NE(plan, nullptr) << std::hex << legend.background;
        SCOPED_TRACE(BitmapFileName(plan->number) + " " + legend.text);
        EXPECT_LE(legend.room.x + legend.room.width, plan->size.x);
        EXPECT_LE(legend.room.y + legend.room.height, plan->size.y);
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
        for (const IconPlace& place : plan.icons) {
            const BitmapPlan* icon = FindPlan(plans, place.number);
            ASSERT_NE(icon, nullptr);
            SCOPED_TRACE(BitmapFileName(place.number) + " on " + BitmapFileName(plan.number));
            const std::string art = BmpOf(plans, *icon);
            const std::string under = BmpOf(plans, plan);
            int changed = 0;
            for (int y = 0; y < icon->size.y; ++y) {
                for (int x = 0; x < icon->size.x; ++x) {
                    const std::uint32_t pixel = BmpPixel(art, x, y);
                    changed +=
                        pixel != 0 && pixel != BmpPixel(under, place.box.x + x, place.box.y + y);
                }
            }
            EXPECT_GT(changed, icon->size.x * icon->size.y / 20) << "pixels that differ";
        }
    }
}

TEST_F(Pictures, SelectorIconsAllDiffer) {
    std::map<std::string, std::int32_t> seen;
    for (const BitmapPlan& plan : plans) {
        if (plan.role == BitmapRole::Icon || plan.size.x == 50) {
            const auto [at, isNew] = seen.emplace(BmpOf(plans, plan), plan.number);
            EXPECT_TRUE(isNew) << std::hex << plan.number << " looks like " << at->second;
        }
    }
}

TEST_F(Pictures, SelectorPointersAimAtTheirPositions) {
    constexpr struct {
        std::int32_t icon;
        const char* position;
    } kAims[] = {{0x2673, "VOR"}, {0x2674, "NAV"}, {0x2675, "EXP VOR"}, {0x2676, "EXP NAV"},
                 {0x2677, "MAP"}, {0x2678, "CTR"}, {0x2679, "10"},      {0x267A, "40"},
                 {0x267B, "80"},  {0x267C, "160"}, {0x267D, "320"}};
    const BitmapPlan* panel = FindPlan(plans, 0x2670);
    ASSERT_NE(panel, nullptr);
    for (const auto& aim : kAims) {
        SCOPED_TRACE(aim.position);
        const BitmapPlan* icon = FindPlan(plans, aim.icon);
        const auto key =
            std::find_if(panel->keys.begin(), panel->keys.end(), [&](const KeyArea& candidate) {
                return std::strcmp(candidate.label, aim.position) == 0;
            });
        const auto place =
            std::find_if(panel->icons.begin(), panel->icons.end(),
                         [&](const IconPlace& candidate) { return candidate.number == aim.icon; });
        ASSERT_TRUE(icon != nullptr && key != panel->keys.end() && place != panel->icons.end());
        // The white of the pointer, away from the button in the middle.
        const double centre = icon->size.x / 2.0;
        const std::string art = BmpOf(plans, *icon);
        double sumX = 0;
        double sumY = 0;
        for (int y = 0; y < icon->size.y; ++y) {
            for (int x = 0; x < icon->size.x; ++x) {
                const double dx = x + 0.5 - centre;
                const double dy = y + 0.5 - centre;
                if (std::hypot(dx, dy) > centre * 0.6 && (BmpPixel(art, x, y) & 0xFF) > 0xC0) {
                    sumX += dx;
                    sumY += dy;
                }
            }
        }
        ASSERT_GT(std::hypot(sumX, sumY), 0);
        const double toX = key->box.x + key->box.width / 2.0 - place->box.x - centre;
        const double toY = key->box.y + key->box.height / 2.0 - place->box.y - centre;
        const double offBy = std::atan2(sumX * toY - sumY * toX, sumX * toX + sumY * toY);
        EXPECT_LT(std::abs(offBy), 0.12) << "radians";
    }
}

TEST(UnitKeys, LieOnTheUnitApartFromOneAnother) {
    struct Unit {
        std::span<const KeyArea> keys;
        PixelPoint size;
        int overhang;  // the right line keys may reach this far over the edge
    };
    constexpr int kSharedRows = 2;  // the Smiths-style line keys' areas overlap by two rows
    for (const Unit& unit : {Unit{kGnsKeys, {550, 433}, 0}, Unit{kSmithsKeys, {415, 640}, 10}}) {
        std::set<std::string> labels;
        for (const KeyArea& key : unit.keys) {
            EXPECT_TRUE(labels.insert(key.label).second) << key.label << " twice";
            EXPECT_GE(std::min(key.box.x, key.box.y), 0) << key.label;
            EXPECT_LE(key.box.x + key.box.width, unit.size.x + unit.overhang) << key.label;
            EXPECT_LE(key.box.y + key.box.height, unit.size.y) << key.label;
            for (const KeyArea& other : unit.keys) {
                PixelBox smaller = key.box;
                smaller.height -= kSharedRows;
                EXPECT_TRUE(&key == &other || other.box.y < key.box.y ||
                            !Overlaps(smaller, other.box))
                    << key.label << " and " << other.label;
            }
        }
    }
}

}  // namespace
}  // namespace avq1
