#include "resources/painter/bezels.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>

namespace avq1 {
namespace {

constexpr Finish kCharcoal{0x4A4D51, 0x2B2D30, 0x3A3D41, 0x191A1C, 0xD8DADA};
constexpr Finish kGrey{0x7E8285, 0x5A5E61, 0x45494D, 0x222427, 0xF0F0EC};
constexpr Finish kBrown{0x86705A, 0x5C4B3A, 0x4A443E, 0x26221E, 0xF4EFE4};
constexpr Finish kButton{0x5A5D60, 0x3B3D40, 0x3C4044, 0x1A1B1D, 0xE8E8E4};

constexpr Rgb kKeyText = 0xF2F2EC;
constexpr Rgb kGreenLamp = 0x2FE05A;
constexpr Rgb kWhiteLamp = 0xF4F1D8;
constexpr Rgb kAmberLamp = 0xFFB020;

struct BezelArt {
    std::int32_t number;
    const Finish* finish;
    double screwRadius;  // 0 = no screws
};

constexpr BezelArt kBezelArts[] = {
    {0x2600, &kCharcoal, 5}, {0x2607, &kGrey, 6},     {0x2612, &kCharcoal, 6},
    {0x2618, &kCharcoal, 6}, {0x2622, &kCharcoal, 6}, {0x2624, &kCharcoal, 6},
    {0x2632, &kCharcoal, 6}, {0x2634, &kButton, 0},   {0x2640, &kButton, 0},
    {0x2642, &kButton, 0},   {0x2644, &kButton, 0},   {0x2646, &kButton, 0},
    {0x2654, &kButton, 0},   {0x2656, &kButton, 0},   {0x2658, &kButton, 0},
    {0x2663, &kBrown, 6},    {0x2664, &kGrey, 6},     {0x2668, &kGrey, 4},
    {0x2669, &kBrown, 4},    {0x2670, &kGrey, 5},     {0x2671, &kBrown, 5},
    {0x2698, &kButton, 0},   {0x2700, &kButton, 0},
};

constexpr Legend kLegends[] = {
    {0x2600, "AVQ1", {133, 8, 60, 16}, 12},
    {0x2607, "AVQ1", {200, 5, 100, 17}, 13},
    {0x2612, "AVQ1", {420, 50, 120, 30}, 18},
    {0x2612, "MULTIFUNCTION DISPLAY CONTROL", {350, 90, 245, 20}, 11},
    {0x2618, "AVQ1", {246, 12, 90, 26}, 16},
    {0x2622, "AVQ1", {142, 326, 100, 24}, 14},
    {0x2624, "AVQ1", {142, 326, 100, 24}, 14},
    {0x2632, "AVQ1", {195, 12, 110, 22}, 13},
    {0x2663, "AVQ1", {157, 6, 100, 22}, 14},
    {0x2664, "AVQ1", {157, 6, 100, 22}, 14},
    {0x2668, "AVQ1", {110, 4, 60, 13}, 10},
    {0x2669, "AVQ1", {110, 4, 60, 13}, 10},
    {0x2670, "AVQ1", {22, 24, 70, 22}, 14},
    {0x2671, "AVQ1", {22, 24, 70, 22}, 14},
    {0x2670, "EFIS CONTROL", {16, 52, 84, 18}, 10},
    {0x2671, "EFIS CONTROL", {16, 52, 84, 18}, 10},
};

constexpr IconArt kIconArts[] = {
    {0x2636, IconKind::Lamp, kGreenLamp, ""},    {0x2638, IconKind::LitKey, kGreenLamp, ""},
    {0x2660, IconKind::LitKey, kGreenLamp, ""},  {0x2665, IconKind::LitFrame, kWhiteLamp, ""},
    {0x2672, IconKind::Sign, kAmberLamp, "MSG"}, {0x2673, IconKind::ModeSelector, 0, "1"},
    {0x2674, IconKind::ModeSelector, 0, "2"},    {0x2675, IconKind::ModeSelector, 0, "3"},
    {0x2676, IconKind::ModeSelector, 0, "4"},    {0x2677, IconKind::ModeSelector, 0, "5"},
    {0x2678, IconKind::ModeSelector, 0, "6"},    {0x2679, IconKind::RangeSelector, 0, "10"},
    {0x267A, IconKind::RangeSelector, 0, "40"},  {0x267B, IconKind::RangeSelector, 0, "80"},
    {0x267C, IconKind::RangeSelector, 0, "160"}, {0x267D, IconKind::RangeSelector, 0, "320"},
};
// The positions without a picture: the knob painted on the background points at them.
constexpr const char* kBareModePosition = "7";
constexpr const char* kBareRangePosition = "20";

const BezelArt* FindBezelArt(std::int32_t number) {
    const auto* found = std::find_if(std::begin(kBezelArts), std::end(kBezelArts),
                                     [&](const BezelArt& art) { return art.number == number; });
    return found == std::end(kBezelArts) ? nullptr : found;
}

const Finish& FinishOf(std::int32_t background) {
    const BezelArt* art = FindBezelArt(background);
    return art == nullptr ? kCharcoal : *art->finish;
}

PixelPoint Centre(const PixelBox& box) {
    return {box.x + box.width / 2, box.y + box.height / 2};
}

bool Overlaps(const PixelBox& a, const PixelBox& b) {
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height &&
           b.y < a.y + a.height;
}

bool Contains(const PixelBox& box, const PixelPoint& point) {
    return point.x >= box.x && point.x < box.x + box.width && point.y >= box.y &&
           point.y < box.y + box.height;
}

IconKind KindOf(std::int32_t icon) {
    const IconArt* art = FindIconArt(icon);
    return art == nullptr ? IconKind::Lamp : art->kind;
}

bool IsNumber(std::string_view text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// The selector positions around a knob: range positions have their range as label, the others are
// mode positions, known by their order, from 1.
const KeyArea* FindPosition(const BitmapPlan& background, IconKind kind, std::string_view name) {
    int mode = 0;
    for (const KeyArea& key : background.keys) {
        if (key.art != KeyArt::Position) {
            continue;
        }
        if (IsNumber(key.label)) {
            if (kind == IconKind::RangeSelector && name == key.label) {
                return &key;
            }
        } else if (kind == IconKind::ModeSelector && name == std::to_string(++mode)) {
            return &key;
        }
    }
    return nullptr;
}

double PointerDegrees(const BitmapPlan& background, const PixelBox& knob, IconKind kind,
                      std::string_view name) {
    const KeyArea* position = FindPosition(background, kind, name);
    if (position == nullptr) {
        return 0;
    }
    const PixelPoint from = Centre(knob);
    const PixelPoint to = Centre(position->box);
    return std::atan2(to.x - from.x, from.y - to.y) * 180.0 / std::numbers::pi;
}

// A key in the middle of a selector knob is painted on top of the knob, not under it.
bool IsInSelector(const BitmapPlan& background, const KeyArea& key) {
    return std::any_of(background.icons.begin(), background.icons.end(), [&](const auto& icon) {
        return KindOf(icon.number) == IconKind::RangeSelector &&
               Contains(icon.box, Centre(key.box)) && key.art == KeyArt::Cap;
    });
}

// The part of a key that lies on the bitmap, with a little air around line keys whose areas touch.
PixelBox PaintedBox(const BitmapPlan& background, const KeyArea& key) {
    PixelBox box = key.box;
    box.width = std::min(box.width, background.size.x - 3 - box.x);
    if (key.art == KeyArt::LineKey) {
        const int airY = box.height > 30 ? 5 : 0;
        const int airX = box.width > 30 ? 3 : 0;
        box = {box.x + airX, box.y + airY, box.width - 2 * airX, box.height - 2 * airY};
    }
    return box;
}

// Arrow keys show an arrow instead of a word.
int ArrowDegrees(std::string_view label) {
    constexpr struct {
        std::string_view label;
        int degrees;
    } kArrows[] = {{"UP", 0},     {"Up", 0},     {"RIGHT", 90}, {"Right", 90},
                   {"DOWN", 180}, {"Down", 180}, {"LEFT", 270}, {"Left", 270}};
    for (const auto& arrow : kArrows) {
        if (arrow.label == label) {
            return arrow.degrees;
        }
    }
    return -1;
}

void PaintArrow(cairo_t* cairo, const PixelBox& box, int degrees) {
    const double size = std::min(box.width, box.height) * 0.24;
    cairo_save(cairo);
    cairo_translate(cairo, box.x + box.width / 2.0, box.y + box.height / 2.0 - 0.5);
    cairo_rotate(cairo, degrees * std::numbers::pi / 180.0);
    SetColour(cairo, kKeyText);
    cairo_move_to(cairo, 0, -size);
    cairo_line_to(cairo, size, size * 0.8);
    cairo_line_to(cairo, -size, size * 0.8);
    cairo_close_path(cairo);
    cairo_fill(cairo);
    cairo_restore(cairo);
}

void PaintKey(cairo_t* cairo, const BitmapPlan& background, const KeyArea& key) {
    const Finish& finish = FinishOf(background.number);
    const PixelBox box = PaintedBox(background, key);
    switch (key.art) {
        case KeyArt::None:
            return;
        case KeyArt::LineKey:
            PaintLineKey(cairo, box, finish);
            return;
        case KeyArt::Cap:
            PaintKeyCap(cairo, box, finish);
            break;
        case KeyArt::Knob:
            PaintKnob(cairo, box, finish);
            break;
        case KeyArt::Position:
            break;
    }
    const int arrow = ArrowDegrees(key.label);
    if (key.art == KeyArt::Cap && arrow >= 0) {
        PaintArrow(cairo, box, arrow);
        return;
    }
    DrawLabel(cairo, KeyLabel(cairo, background, key),
              key.art == KeyArt::Position ? finish.legend : kKeyText);
}

void PaintSelectorAt(cairo_t* cairo, const BitmapPlan& background, const PixelBox& box,
                     IconKind kind, std::string_view position) {
    PaintSelector(cairo, box, PointerDegrees(background, box, kind, position));
    for (const KeyArea& key : background.keys) {
        if (IsInSelector(background, key) && Contains(box, Centre(key.box))) {
            PaintKey(cairo, background, key);
        }
    }
}

// What shows of an icon's place while the icon is hidden.
void PaintIconPlace(cairo_t* cairo, const BitmapPlan& background, const IconPlace& icon) {
    const IconArt* art = FindIconArt(icon.number);
    if (art == nullptr) {
        return;
    }
    switch (art->kind) {
        case IconKind::Lamp:
        case IconKind::Sign:
            PaintLamp(cairo, icon.box, art->colour, false);
            break;
        case IconKind::LitKey:
        case IconKind::LitFrame:
            break;  // the key itself
        case IconKind::ModeSelector:
            PaintSelectorAt(cairo, background, icon.box, art->kind, kBareModePosition);
            break;
        case IconKind::RangeSelector:
            PaintSelectorAt(cairo, background, icon.box, art->kind, kBareRangePosition);
            break;
    }
}

void PaintScrews(const Painting& painting, const BitmapPlan& plan, double radius) {
    const int inset = static_cast<int>(radius) + 5;
    const PixelPoint corners[] = {{inset, inset},
                                  {plan.size.x - inset, inset},
                                  {inset, plan.size.y - inset},
                                  {plan.size.x - inset, plan.size.y - inset}};
    int turn = 17;
    for (const PixelPoint& at : corners) {
        const int reach = static_cast<int>(radius) + 1;
        const PixelBox place{at.x - reach, at.y - reach, 2 * reach, 2 * reach};
        const bool taken = std::any_of(plan.keys.begin(), plan.keys.end(), [&](const KeyArea& key) {
            return Overlaps(key.box, place);
        });
        if (!taken && (plan.screen.width == 0 || !Overlaps(plan.screen, place))) {
            PaintScrew(painting.cairo(), at.x, at.y, radius, turn);
        }
        turn += 31;
    }
}

// The frame a screen's margins leave room for.
double RecessFrame(const BitmapPlan& plan) {
    int room =
        std::min({plan.screen.x, plan.screen.y, plan.size.x - plan.screen.x - plan.screen.width,
                  plan.size.y - plan.screen.y - plan.screen.height}) -
        6;
    for (const KeyArea& key : plan.keys) {
        if (key.art == KeyArt::None) {
            continue;
        }
        const int left = plan.screen.x - key.box.x - key.box.width;
        const int right = key.box.x - plan.screen.x - plan.screen.width;
        const int below = key.box.y - plan.screen.y - plan.screen.height;
        room = std::min(room, std::max({left, right, below, 3}) - 1);
    }
    return std::clamp(room, 3, 8);
}

void PaintBackground(const Painting& painting, const BitmapPlan& plan) {
    const Finish& finish = FinishOf(plan.number);
    cairo_t* cairo = painting.cairo();
    PaintPlate(painting, finish);
    const BezelArt* art = FindBezelArt(plan.number);
    if (art != nullptr && art->screwRadius > 0) {
        PaintScrews(painting, plan, art->screwRadius);
    }
    if (plan.screen.width > 0) {
        PaintRecess(cairo, plan.screen, RecessFrame(plan));
    }
    for (const IconPlace& icon : plan.icons) {
        if (KindOf(icon.number) == IconKind::LitFrame) {
            PaintLamp(cairo, icon.box, kWhiteLamp, false);
        }
    }
    for (const KeyArea& key : plan.keys) {
        if (!IsInSelector(plan, key)) {
            PaintKey(cairo, plan, key);
        }
    }
    for (const IconPlace& icon : plan.icons) {
        const auto sameBox = [&](const IconPlace& other) {
            return other.box.x == icon.box.x && other.box.y == icon.box.y;
        };
        // Pictures of one selector lie on one another: their place is painted once.
        if (&*std::find_if(plan.icons.begin(), plan.icons.end(), sameBox) == &icon) {
            PaintIconPlace(cairo, plan, icon);
        }
    }
    for (const Legend& legend : kLegends) {
        if (legend.background == plan.number) {
            DrawLabel(cairo, LayOutLabel(cairo, legend.text, legend.room, legend.largestPx),
                      finish.legend);
        }
    }
}

// The key an icon lights.
const KeyArea* KeyUnder(const BitmapPlan& background, const PixelBox& icon) {
    const auto found =
        std::find_if(background.keys.begin(), background.keys.end(),
                     [&](const KeyArea& key) { return Contains(key.box, Centre(icon)); });
    return found == background.keys.end() ? nullptr : &*found;
}

void PaintLitKey(cairo_t* cairo, const BitmapPlan& background, const KeyArea& key,
                 const PixelBox& icon, const IconArt& art) {
    const Finish& finish = FinishOf(background.number);
    Finish lit = finish;
    lit.keyTop = Shade(art.colour, -0.62);
    lit.keyBase = Shade(art.colour, -0.80);
    if (art.kind == IconKind::LitFrame) {
        PaintLamp(cairo, icon, art.colour, true);
        PaintKeyCap(cairo, PaintedBox(background, key), finish);
    } else {
        PaintKeyCap(cairo, icon, lit);
    }
    DrawLabel(cairo, KeyLabel(cairo, background, key),
              art.kind == IconKind::LitFrame ? kKeyText : Shade(art.colour, 0.45));
}

std::string Stacked(std::string_view text) {
    std::string stacked;
    for (const char letter : text) {
        stacked += stacked.empty() ? "" : "\n";
        stacked += letter;
    }
    return stacked;
}

// Paints in the coordinates of the background the icon belongs to.
void PaintIcon(cairo_t* cairo, const BitmapPlan& background, const IconPlace& icon) {
    const IconArt* art = FindIconArt(icon.number);
    if (art == nullptr) {
        PaintLamp(cairo, icon.box, kGreenLamp, true);
        return;
    }
    const KeyArea* key = KeyUnder(background, icon.box);
    switch (art->kind) {
        case IconKind::Lamp:
            PaintLamp(cairo, icon.box, art->colour, true);
            break;
        case IconKind::LitKey:
        case IconKind::LitFrame:
            if (key != nullptr) {
                PaintLitKey(cairo, background, *key, icon.box, *art);
            }
            break;
        case IconKind::Sign: {
            PaintLamp(cairo, icon.box, art->colour, true);
            const PixelBox room = LabelRoom(icon.box, {});
            const std::string text =
                icon.box.height > icon.box.width * 3 / 2 ? Stacked(art->text) : art->text;
            DrawLabel(cairo, LayOutLabel(cairo, text, room, LargestLabelPx(room, text)), 0x201400);
            break;
        }
        case IconKind::ModeSelector:
        case IconKind::RangeSelector:
            PaintSelectorAt(cairo, background, icon.box, art->kind, art->text);
            break;
    }
}

}  // namespace

std::span<const Legend> Legends() {
    return kLegends;
}

std::span<const IconArt> IconArts() {
    return kIconArts;
}

const IconArt* FindIconArt(std::int32_t number) {
    const auto* found = std::find_if(std::begin(kIconArts), std::end(kIconArts),
                                     [&](const IconArt& art) { return art.number == number; });
    return found == std::end(kIconArts) ? nullptr : found;
}

bool HasBezelArt(std::int32_t background) {
    return FindBezelArt(background) != nullptr;
}

LabelLayout KeyLabel(cairo_t* cairo, const BitmapPlan& background, const KeyArea& key) {
    if (key.art == KeyArt::None || key.art == KeyArt::LineKey || key.label[0] == '\0' ||
        (key.art == KeyArt::Cap && ArrowDegrees(key.label) >= 0)) {
        return {};
    }
    PixelBox box = PaintedBox(background, key);
    if (key.art == KeyArt::Knob) {
        // Only the knob's flat middle carries the caption.
        const int side = static_cast<int>(std::min(box.width, box.height) * 0.62);
        box = {box.x + (box.width - side) / 2, box.y + (box.height - side) / 2, side, side};
        return LayOutLabel(cairo, key.label, box, 11);
    }
    if (key.art == KeyArt::Position || box.width < 20) {
        return LayOutLabel(cairo, key.label, box, 11);
    }
    std::vector<PixelBox> lamps;
    for (const IconPlace& icon : background.icons) {
        if (KindOf(icon.number) == IconKind::Lamp) {
            lamps.push_back(icon.box);
        }
    }
    const PixelBox room = LabelRoom(box, lamps);
    return LayOutLabel(cairo, key.label, room, LargestLabelPx(room, key.label));
}

std::unique_ptr<Painting> PaintBitmap(std::span<const BitmapPlan> plans, const BitmapPlan& plan) {
    auto painting = std::make_unique<Painting>(plan.size.x, plan.size.y);
    cairo_t* cairo = painting->cairo();
    switch (plan.role) {
        case BitmapRole::Screen:
            SetColour(cairo, 0x000000);
            cairo_paint(cairo);
            break;
        case BitmapRole::Background:
            PaintBackground(*painting, plan);
            break;
        case BitmapRole::Icon: {
            const BitmapPlan* background = FindPlan(plans, plan.owner);
            if (background == nullptr) {
                break;
            }
            for (const IconPlace& icon : background->icons) {
                if (icon.number == plan.number) {
                    cairo_translate(cairo, -icon.box.x, -icon.box.y);
                    PaintIcon(cairo, *background, icon);
                    break;
                }
            }
            break;
        }
    }
    return painting;
}

}  // namespace avq1
