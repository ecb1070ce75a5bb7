#include "resources/painter/bezels.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>

#include "host/bitmaps.h"

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
    {bitmap::kMfd, &kCharcoal, 5},
    {bitmap::kMcu, &kGrey, 6},
    {bitmap::kMfdPanel, &kCharcoal, 6},
    {bitmap::kGns, &kCharcoal, 6},
    {bitmap::kEadi, &kCharcoal, 6},
    {bitmap::kEhsi, &kCharcoal, 6},
    {bitmap::kEhsiPanel, &kCharcoal, 6},
    {bitmap::kVnavButton, &kButton, 0},
    {bitmap::kEhsiPanelOpener, &kButton, 0},
    {bitmap::kTcasOpener, &kButton, 0},
    {bitmap::kGnsOpener, &kButton, 0},
    {bitmap::kMcuOpener, &kButton, 0},
    {bitmap::kMfdOpener, &kButton, 0},
    {bitmap::kMfdPanelOpener, &kButton, 0},
    {bitmap::kLnavButton, &kButton, 0},
    {bitmap::kSmithsBrown, &kBrown, 6},
    {bitmap::kSmiths, &kGrey, 6},
    {bitmap::kNd, &kGrey, 4},
    {bitmap::kNdBrown, &kBrown, 4},
    {bitmap::kEfisPanel, &kGrey, 5},
    {bitmap::kEfisPanelBrown, &kBrown, 5},
    {bitmap::kSmithsOpener, &kButton, 0},
    {bitmap::kEfisPanelOpener, &kButton, 0},
};

constexpr Legend kLegends[] = {
    {bitmap::kMfd, "AVQ1", {133, 8, 60, 16}, 12},
    {bitmap::kMcu, "AVQ1", {200, 5, 100, 17}, 13},
    {bitmap::kMfdPanel, "AVQ1", {420, 50, 120, 30}, 18},
    {bitmap::kMfdPanel, "MULTIFUNCTION DISPLAY CONTROL", {350, 90, 245, 20}, 11},
    {bitmap::kGns, "AVQ1", {246, 12, 90, 26}, 16},
    {bitmap::kEadi, "AVQ1", {142, 326, 100, 24}, 14},
    {bitmap::kEhsi, "AVQ1", {142, 326, 100, 24}, 14},
    {bitmap::kEhsiPanel, "AVQ1", {195, 12, 110, 22}, 13},
    {bitmap::kSmithsBrown, "AVQ1", {157, 6, 100, 22}, 14},
    {bitmap::kSmiths, "AVQ1", {157, 6, 100, 22}, 14},
    {bitmap::kNd, "AVQ1", {110, 4, 60, 13}, 10},
    {bitmap::kNdBrown, "AVQ1", {110, 4, 60, 13}, 10},
    {bitmap::kEfisPanel, "AVQ1", {22, 24, 70, 22}, 14},
    {bitmap::kEfisPanelBrown, "AVQ1", {22, 24, 70, 22}, 14},
    {bitmap::kEfisPanel, "EFIS CONTROL", {16, 52, 84, 18}, 10},
    {bitmap::kEfisPanelBrown, "EFIS CONTROL", {16, 52, 84, 18}, 10},
};

constexpr IconArt kIconArts[] = {
    {bitmap::kMcuLamp, IconKind::Lamp, kGreenLamp, ""},
    {bitmap::kVnavLit, IconKind::LitKey, kGreenLamp, ""},
    {bitmap::kLnavLit, IconKind::LitKey, kGreenLamp, ""},
    {bitmap::kSmithsExecLit, IconKind::LitFrame, kWhiteLamp, ""},
    {bitmap::kSmithsMessageLit, IconKind::Sign, kAmberLamp, "MSG"},
    {bitmap::kEfisMode1, IconKind::ModeSelector, 0, "1"},
    {bitmap::kEfisMode2, IconKind::ModeSelector, 0, "2"},
    {bitmap::kEfisMode3, IconKind::ModeSelector, 0, "3"},
    {bitmap::kEfisMode4, IconKind::ModeSelector, 0, "4"},
    {bitmap::kEfisMode5, IconKind::ModeSelector, 0, "5"},
    {bitmap::kEfisMode6, IconKind::ModeSelector, 0, "6"},
    {bitmap::kEfisRange10, IconKind::RangeSelector, 0, "10"},
    {bitmap::kEfisRange40, IconKind::RangeSelector, 0, "40"},
    {bitmap::kEfisRange80, IconKind::RangeSelector, 0, "80"},
    {bitmap::kEfisRange160, IconKind::RangeSelector, 0, "160"},
    {bitmap::kEfisRange320, IconKind::RangeSelector, 0, "320"},
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

constexpr int kWidestLineKeyPx = 30;
constexpr int kHighestLineKeyPx = 22;

// The part of a key that lies on the bitmap, with a little air around line keys whose areas touch.
PixelBox PaintedBox(const BitmapPlan& background, const KeyArea& key) {
    PixelBox box = key.box;
    box.width = std::min(box.width, background.size.x - 3 - box.x);
    if (key.art == KeyArt::LineKey) {
        const int width = std::min(box.width, kWidestLineKeyPx);
        const int height = std::min(box.height, kHighestLineKeyPx);
        return {box.x + (box.width - width) / 2, box.y + (box.height - height) / 2, width, height};
    }
    return box;
}

// Keys that show a symbol instead of their name.
enum class KeySymbol : std::uint8_t { None, Up, Right, Down, Left, DirectTo };

KeySymbol SymbolOf(const KeyArea& key) {
    constexpr struct {
        std::string_view label;
        KeySymbol symbol;
    } kSymbols[] = {{"UP", KeySymbol::Up},
                    {"RIGHT", KeySymbol::Right},
                    {"DOWN", KeySymbol::Down},
                    {"LEFT", KeySymbol::Left},
                    {"DIRECT", KeySymbol::DirectTo}};
    for (const auto& row : kSymbols) {
        if (key.art == KeyArt::Cap && row.label == key.label) {
            return row.symbol;
        }
    }
    return KeySymbol::None;
}

// A letter D with an arrow through it.
void PaintDirectTo(cairo_t* cairo, const PixelBox& box) {
    DrawLabel(cairo, LayOutLabel(cairo, "D", box, 19), kKeyText);
    const double y = box.y + box.height / 2.0;
    const double reach = box.width * 0.36;
    const double x = box.x + box.width / 2.0;
    cairo_rectangle(cairo, x - reach, y - 0.75, 2 * reach - 3, 1.5);
    cairo_fill(cairo);
    PaintArrow(cairo, x + reach - 3, y, 3.5, 90);
}

void PaintSymbol(cairo_t* cairo, const PixelBox& box, KeySymbol symbol) {
    if (symbol == KeySymbol::DirectTo) {
        PaintDirectTo(cairo, box);
        return;
    }
    const int quarters = static_cast<int>(symbol) - static_cast<int>(KeySymbol::Up);
    SetColour(cairo, kKeyText);
    PaintArrow(cairo, box.x + box.width / 2.0, box.y + box.height / 2.0 - 0.5,
               std::min(box.width, box.height) * 0.24, 90.0 * quarters);
}

bool IsUpright(const PixelBox& box) {
    return box.height > box.width * 3 / 2;
}

struct LabelPlace {
    PixelBox room;
    double largestPx = 0;  // 0 = no label
};

LabelPlace PlaceOf(const BitmapPlan& background, const KeyArea& key) {
    if (key.art == KeyArt::None || key.art == KeyArt::LineKey || key.label[0] == '\0' ||
        SymbolOf(key) != KeySymbol::None) {
        return {};
    }
    const PixelBox box = PaintedBox(background, key);
    if (key.art == KeyArt::Knob && IsUpright(box)) {
        return {{box.x + 2, box.y + box.height / 2 - 7, box.width - 4, 14}, 9};
    }
    if (key.art == KeyArt::Knob) {
        // Only the flat middle of the knob carries the caption.
        const int side = std::min(box.width, box.height);
        const int middle = side * 2 / 3;
        return {
            {box.x + (box.width - middle) / 2, box.y + (box.height - middle) / 2, middle, middle},
            std::min(12.0, std::round(side * 0.26))};
    }
    if (key.art == KeyArt::Position || box.width < 20) {
        return {box, 9};
    }
    std::vector<PixelBox> lamps;
    for (const IconPlace& icon : background.icons) {
        if (KindOf(icon.number) == IconKind::Lamp) {
            lamps.push_back(icon.box);
        }
    }
    const PixelBox room = LabelRoom(box, lamps);
    return {room, LargestLabelPx(room, key.label)};
}

// Key caps of about one size with words (not single letters) of as many lines look alike.
bool ShareFont(const KeyArea& a, const KeyArea& b) {
    const auto lines = [](const KeyArea& key) {
        return std::count(key.label, key.label + std::strlen(key.label), '\n');
    };
    return a.art == KeyArt::Cap && b.art == KeyArt::Cap &&
           std::abs(a.box.width - b.box.width) <= 2 && std::abs(a.box.height - b.box.height) <= 2 &&
           std::strlen(a.label) > 1 && std::strlen(b.label) > 1 && lines(a) == lines(b);
}

bool Smaller(const LabelFont& a, const LabelFont& b) {
    return a.sizePx < b.sizePx;
}

void PaintKey(cairo_t* cairo, const BitmapPlan& background, std::size_t index,
              const std::vector<LabelLayout>& labels) {
    const Finish& finish = FinishOf(background.number);
    const KeyArea& key = background.keys[index];
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
            (IsUpright(box) ? PaintThumbwheel : PaintKnob)(cairo, box, finish);
            break;
        case KeyArt::Position:
            break;
    }
    if (SymbolOf(key) != KeySymbol::None) {
        PaintSymbol(cairo, box, SymbolOf(key));
        return;
    }
    DrawLabel(cairo, labels[index], key.art == KeyArt::Position ? finish.legend : kKeyText);
}

void PaintSelectorAt(cairo_t* cairo, const BitmapPlan& background, const PixelBox& box,
                     IconKind kind, std::string_view position) {
    const double degrees = PointerDegrees(background, box, kind, position);
    if (kind == IconKind::ModeSelector) {
        PaintSelector(cairo, box, degrees);
        return;
    }
    PaintRingSelector(cairo, box, degrees);
    const std::vector<LabelLayout> labels = KeyLabels(cairo, background);
    for (std::size_t i = 0; i < background.keys.size(); ++i) {
        if (IsInSelector(background, background.keys[i])) {
            PaintKey(cairo, background, i, labels);
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
    const std::vector<LabelLayout> labels = KeyLabels(cairo, plan);
    for (std::size_t i = 0; i < plan.keys.size(); ++i) {
        if (!IsInSelector(plan, plan.keys[i])) {
            PaintKey(cairo, plan, i, labels);
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

// The index of the key an icon lights; the number of keys when there is none.
std::size_t KeyUnder(const BitmapPlan& background, const PixelBox& icon) {
    const auto found =
        std::find_if(background.keys.begin(), background.keys.end(),
                     [&](const KeyArea& key) { return Contains(key.box, Centre(icon)); });
    return static_cast<std::size_t>(found - background.keys.begin());
}

void PaintLitKey(cairo_t* cairo, const BitmapPlan& background, const PixelBox& icon,
                 const IconArt& art) {
    const std::size_t index = KeyUnder(background, icon);
    if (index == background.keys.size()) {
        return;
    }
    const std::vector<LabelLayout> labels = KeyLabels(cairo, background);
    if (art.kind == IconKind::LitFrame) {
        PaintLamp(cairo, icon, art.colour, true);
        PaintKey(cairo, background, index, labels);
        return;
    }
    Finish lit = FinishOf(background.number);
    lit.keyTop = Shade(art.colour, -0.62);
    lit.keyBase = Shade(art.colour, -0.80);
    PaintKeyCap(cairo, icon, lit);
    DrawLabel(cairo, labels[index], Shade(art.colour, 0.45));
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
    switch (art->kind) {
        case IconKind::Lamp:
            PaintLamp(cairo, icon.box, art->colour, true);
            break;
        case IconKind::LitKey:
        case IconKind::LitFrame:
            PaintLitKey(cairo, background, icon.box, *art);
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

std::vector<LabelLayout> KeyLabels(cairo_t* cairo, const BitmapPlan& background) {
    std::vector<LabelLayout> labels;
    for (const KeyArea& key : background.keys) {
        const LabelPlace place = PlaceOf(background, key);
        labels.push_back(place.largestPx == 0
                             ? LabelLayout{}
                             : LayOutLabel(cairo, key.label, place.room, place.largestPx));
    }
    std::vector<LabelLayout> shared = labels;
    for (std::size_t i = 0; i < labels.size(); ++i) {
        for (std::size_t j = 0; j < labels.size(); ++j) {
            if (ShareFont(background.keys[i], background.keys[j]) && !labels[j].lines.empty() &&
                Smaller(labels[j].font, shared[i].font)) {
                shared[i] =
                    LayOutLabelAt(cairo, background.keys[i].label,
                                  PlaceOf(background, background.keys[i]).room, labels[j].font);
            }
        }
    }
    return shared;
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
