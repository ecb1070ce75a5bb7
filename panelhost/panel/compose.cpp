#include "panelhost/panel/compose.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace panelhost {
namespace {

using avq1::image_flag::kHidden;
using avq1::image_flag::kOnScreen;
using avq1::image_flag::kTransparent;

constexpr double kFar = 1e6;  // pixels: a place beyond it is off every window

std::uint32_t Channel(std::uint32_t argb, unsigned shift) {
    return argb >> shift & 0xFFU;
}

std::uint32_t Over(std::uint32_t top, std::uint32_t below) {
    const std::uint32_t keep = 255 - Channel(top, 24);
    if (keep == 0) {
        return top;
    }
    if (keep == 255) {
        return below;
    }
    std::uint32_t result = 0;
    for (unsigned shift = 0; shift < 32; shift += 8) {
        const std::uint32_t sum = Channel(top, shift) + (Channel(below, shift) * keep + 127) / 255;
        result |= std::min(sum, 255U) << shift;
    }
    return result;
}

// Weights of the source pixels along one axis for one destination pixel.
struct Span {
    int first = 0;
    std::vector<float> weights;
};

std::vector<Span> AxisSpans(int source, int target) {
    std::vector<Span> spans;
    const double ratio = static_cast<double>(source) / target;
    const double reach = std::max(ratio, 1.0);
    for (int i = 0; i < target; ++i) {
        const double centre = (i + 0.5) * ratio;
        const int first = std::max(0, static_cast<int>(std::floor(centre - reach + 0.5 - 1e-9)));
        const int last =
            std::min(source - 1, static_cast<int>(std::ceil(centre + reach - 0.5 + 1e-9)) - 1);
        Span span{first, {}};
        double sum = 0;
        for (int j = first; j <= std::max(first, last); ++j) {
            const double weight = std::max(0.0, 1 - std::fabs(j + 0.5 - centre) / reach);
            span.weights.push_back(static_cast<float>(weight));
            sum += weight;
        }
        for (float& weight : span.weights) {
            weight = static_cast<float>(sum > 0 ? weight / sum : 1.0 / span.weights.size());
        }
        spans.push_back(std::move(span));
    }
    return spans;
}

using Pixel4 = std::array<float, 4>;

Pixel4 Unpack(std::uint32_t argb) {
    return {static_cast<float>(Channel(argb, 0)), static_cast<float>(Channel(argb, 8)),
            static_cast<float>(Channel(argb, 16)), static_cast<float>(Channel(argb, 24))};
}

std::uint32_t Pack(const Pixel4& pixel) {
    std::uint32_t argb = 0;
    for (unsigned i = 0; i < 4; ++i) {
        argb |= static_cast<std::uint32_t>(std::clamp(pixel[i] + 0.5F, 0.0F, 255.0F)) << (8 * i);
    }
    return argb;
}

struct Frame {
    double scaleX;
    double scaleY;
    double left;
    double top;
};

Frame FrameOf(const Placement& placement, int scale) {
    return {static_cast<double>(placement.width) / placement.bitmapWidth * scale,
            static_cast<double>(placement.height) / placement.bitmapHeight * scale,
            static_cast<double>(placement.x) * scale, static_cast<double>(placement.y) * scale};
}

avq1::PixelPoint PlaceOf(const ElementCopy& copy) {
    const avq1::ElementHeader& header = copy.element.header;
    return {header.position.x + header.offset.x, header.position.y + header.offset.y};
}

PixelArea ElementArea(const Placement& placement, const ElementCopy& copy, avq1::PixelPoint place,
                      int scale) {
    const Frame frame = FrameOf(placement, scale);
    const auto round = [](double value) {
        return static_cast<int>(std::lround(std::clamp(value, -kFar, kFar)));
    };
    const int left = round(frame.left + place.x * frame.scaleX);
    const int top = round(frame.top + place.y * frame.scaleY);
    return {left, top, left + std::max(1, round(copy.sourceImage.width * frame.scaleX)),
            top + std::max(1, round(copy.sourceImage.height * frame.scaleY))};
}

bool IsSurface(const ElementCopy& copy) {
    return copy.element.deviceContext != nullptr;
}

// Makes an element as large as its area. It keeps that size; a surface that changes is fitted anew.
void Fit(ElementCopy& copy, const PixelArea& area) {
    const int width = area.right - area.left;
    const int height = area.bottom - area.top;
    if (!copy.fitted.pixels.empty()) {
        return;
    }
    if (!IsSurface(copy)) {
        const bool keyed = (copy.element.header.imageFlags & kTransparent) != 0;
        copy.fitted = Resample(keyed ? KeyOutBlack(*copy.bitmap) : *copy.bitmap, width, height);
    } else if (copy.shown.width != width || copy.shown.height != height) {
        copy.fitted = Resample(copy.shown, width, height);
    }
}

bool IsOpaque(const std::uint32_t* pixels, int count) {
    std::uint32_t all = ~0U;
    for (int i = 0; i < count; ++i) {
        all &= pixels[i];
    }
    return Channel(all, 24) == 255;
}

void Blit(const Picture& source, const PixelArea& area, const PixelArea& clip, Picture& target) {
    const PixelArea part = Intersection(area, clip);
    const int width = part.right - part.left;
    for (int y = part.top; y < part.bottom; ++y) {
        const std::uint32_t* from = source.pixels.data() +
                                    static_cast<std::ptrdiff_t>(y - area.top) * source.width +
                                    (part.left - area.left);
        std::uint32_t* to =
            target.pixels.data() + static_cast<std::ptrdiff_t>(y) * target.width + part.left;
        if (IsOpaque(from, width)) {  // most are
            std::copy_n(from, width, to);
            continue;
        }
        for (int x = 0; x < width; ++x, ++from, ++to) {
            *to = Over(*from, *to);
        }
    }
}

void FillArea(Picture& target, const PixelArea& area, std::uint32_t argb) {
    for (int y = area.top; y < area.bottom; ++y) {
        std::uint32_t* const row =
            target.pixels.data() + static_cast<std::ptrdiff_t>(y) * target.width;
        std::fill(row + area.left, row + area.right, argb);
    }
}

// Whether the picture under an old text is still what it was: then the text still stands there.
bool StillShown(const SurfaceText& text, const ElementCopy& copy) {
    const int width = copy.context.width;
    const int height = copy.context.height;
    const double length = text.pixelSize * 0.6 * static_cast<double>(text.text.size());
    const int left = static_cast<int>(std::clamp(text.x, 0.0, static_cast<double>(width)));
    const int right =
        static_cast<int>(std::clamp(text.x + length, 0.0, static_cast<double>(width)));
    const int top = static_cast<int>(std::clamp(text.y, 0.0, static_cast<double>(height)));
    const int bottom =
        static_cast<int>(std::clamp(text.y + text.pixelSize, 0.0, static_cast<double>(height)));
    if (left >= right || top >= bottom) {
        return false;
    }
    bool anyInk = false;
    for (int y = top; y < bottom; ++y) {
        const std::size_t at = static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                               static_cast<std::size_t>(left);
        const std::size_t bytes = static_cast<std::size_t>(right - left) * sizeof(std::uint32_t);
        if (std::memcmp(&copy.pixels[at], &copy.shown.pixels[at], bytes) != 0) {
            return false;
        }
        const auto first = copy.pixels.begin() + static_cast<std::ptrdiff_t>(at);
        anyInk = anyInk || std::any_of(first, first + (right - left),
                                       [](std::uint32_t pixel) { return pixel != 0; });
    }
    return anyInk;
}

bool SameTexts(const std::vector<SurfaceText>& a, const std::vector<SurfaceText>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const SurfaceText& x, const SurfaceText& y) {
                          return x.text == y.text && x.x == y.x && x.y == y.y && x.argb == y.argb;
                      });
}

// The texts on the surface now: those just drawn, and older ones whose pixels were left alone.
bool SettleTexts(ElementCopy& copy, bool pixelsChanged) {
    if (copy.newTexts.empty() && !pixelsChanged) {
        return false;
    }
    std::vector<SurfaceText> texts;
    for (const SurfaceText& old : copy.texts) {
        const bool redrawn = std::any_of(
            copy.newTexts.begin(), copy.newTexts.end(), [&old](const SurfaceText& text) {
                return std::fabs(text.x - old.x) < 1 && std::fabs(text.y - old.y) < 1;
            });
        if (!redrawn && StillShown(old, copy)) {
            texts.push_back(old);
        }
    }
    texts.insert(texts.end(), copy.newTexts.begin(), copy.newTexts.end());
    copy.newTexts.clear();
    const bool changed = !SameTexts(texts, copy.texts);
    copy.texts = std::move(texts);
    return changed;
}

bool SettleSurface(ElementCopy& copy, bool& textsChanged) {
    if (!IsSurface(copy) || (copy.element.header.imageFlags & kOnScreen) != 0) {
        return false;
    }
    const bool changed = copy.pixels != copy.shown.pixels;
    textsChanged = SettleTexts(copy, changed) || textsChanged;
    if (changed) {
        copy.shown.pixels = copy.pixels;
        copy.fitted = {};
    }
    copy.element.header.imageFlags |= kOnScreen;
    return changed;
}

void PaintPlacement(Placement& placement, PanelPicture& target, const PixelArea& clip) {
    if (!placement.elements.empty() && placement.elements.front()->bitmap == nullptr &&
        placement.elements.front()->element.header.resourceNumber != 0) {
        FillArea(target.picture, Intersection(PlacementArea(placement, target.scale), clip),
                 kPlainGauge);
    }
    for (const auto& copy : placement.elements) {
        if ((copy->element.header.imageFlags & kHidden) != 0 || copy->bitmap == nullptr) {
            continue;
        }
        const PixelArea area = ElementArea(placement, *copy, PlaceOf(*copy), target.scale);
        if (Intersection(area, clip).IsEmpty()) {
            continue;
        }
        Fit(*copy, area);
        Blit(copy->fitted.pixels.empty() ? copy->shown : copy->fitted, area, clip, target.picture);
    }
}

}  // namespace

PixelArea Union(const PixelArea& a, const PixelArea& b) {
    if (a.IsEmpty() || b.IsEmpty()) {
        return a.IsEmpty() ? b : a;
    }
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
}

PixelArea Intersection(const PixelArea& a, const PixelArea& b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

Picture Resample(const Picture& source, int width, int height) {
    if (source.width < 1 || source.height < 1 || width < 1 || height < 1 ||
        (source.width == width && source.height == height)) {
        return source;
    }
    const std::vector<Span> columns = AxisSpans(source.width, width);
    const std::vector<Span> rows = AxisSpans(source.height, height);
    std::vector<Pixel4> narrowed(static_cast<std::size_t>(width) *
                                 static_cast<std::size_t>(source.height));
    for (int y = 0; y < source.height; ++y) {
        const std::uint32_t* const row =
            source.pixels.data() + static_cast<std::ptrdiff_t>(y) * source.width;
        for (int x = 0; x < width; ++x) {
            const Span& span = columns[static_cast<std::size_t>(x)];
            Pixel4 sum{};
            for (std::size_t i = 0; i < span.weights.size(); ++i) {
                const Pixel4 pixel = Unpack(row[static_cast<std::size_t>(span.first) + i]);
                for (std::size_t c = 0; c < 4; ++c) {
                    sum[c] += pixel[c] * span.weights[i];
                }
            }
            narrowed[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                     static_cast<std::size_t>(x)] = sum;
        }
    }
    Picture result{width, height, {}};
    result.pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        const Span& span = rows[static_cast<std::size_t>(y)];
        for (int x = 0; x < width; ++x) {
            Pixel4 sum{};
            for (std::size_t i = 0; i < span.weights.size(); ++i) {
                const Pixel4& pixel = narrowed[(static_cast<std::size_t>(span.first) + i) *
                                                   static_cast<std::size_t>(width) +
                                               static_cast<std::size_t>(x)];
                for (std::size_t c = 0; c < 4; ++c) {
                    sum[c] += pixel[c] * span.weights[i];
                }
            }
            result.pixels.push_back(Pack(sum));
        }
    }
    return result;
}

Picture KeyOutBlack(const Picture& source) {
    Picture result = source;
    for (std::uint32_t& pixel : result.pixels) {
        pixel = (pixel & 0x00FFFFFFU) == 0 ? 0 : pixel;
    }
    return result;
}

PixelArea PlacementArea(const Placement& placement, int scale) {
    return {placement.x * scale, placement.y * scale, (placement.x + placement.width) * scale,
            (placement.y + placement.height) * scale};
}

bool SettlePlacement(Placement& placement, int scale, PixelArea& stale) {
    bool textsChanged = false;
    bool pictureChanged = false;
    for (const auto& copy : placement.elements) {
        const bool surfaceChanged = SettleSurface(*copy, textsChanged);
        const std::uint32_t flags = copy->element.header.imageFlags;
        const avq1::PixelPoint place = PlaceOf(*copy);
        const bool wasHidden = (copy->composedFlags & kHidden) != 0;
        const bool isHidden = (flags & kHidden) != 0;
        const bool moved = place.x != copy->composedPlace.x || place.y != copy->composedPlace.y;
        if (surfaceChanged || wasHidden != isHidden || (moved && !isHidden)) {
            stale = Union(stale, ElementArea(placement, *copy, copy->composedPlace, scale));
            stale = Union(stale, ElementArea(placement, *copy, place, scale));
            pictureChanged = true;
        }
        copy->composedFlags = flags;
        copy->composedPlace = place;
    }
    return pictureChanged || textsChanged;
}

void PaintStale(PanelPicture& target, const std::vector<Placement*>& placements) {
    const PixelArea whole{0, 0, target.picture.width, target.picture.height};
    if (target.picture.pixels.empty()) {
        const auto width = static_cast<std::size_t>(whole.right);
        target.picture.pixels.resize(width * static_cast<std::size_t>(whole.bottom));
        target.stale = whole;
    }
    const PixelArea clip = Intersection(target.stale, whole);
    target.stale = PixelArea{};
    if (clip.IsEmpty()) {
        return;
    }
    FillArea(target.picture, clip, kPlainPanel);
    if (!target.background.pixels.empty()) {
        Blit(target.background, whole, clip, target.picture);
    }
    for (Placement* placement : placements) {
        PaintPlacement(*placement, target, clip);
    }
}

}  // namespace panelhost
