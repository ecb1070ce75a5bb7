#include "platform/cairo/coverage.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

namespace avq1::cairo {
namespace {

constexpr int kBlockBits = 2;  // a block is 2 to the power of this many pixels
constexpr int kBlockPixels = 1 << kBlockBits;
constexpr int kWordBits = 6;  // a word has 2 to the power of this many blocks
constexpr float kNothing = 1.0F / 512;

}  // namespace

std::uint32_t Premultiplied(std::uint32_t argb) {
    const std::uint32_t alpha = argb >> 24;
    const auto part = [argb, alpha](int shift) {
        return ((((argb >> shift) & 0xFF) * alpha + 127) / 255) << shift;
    };
    return alpha << 24 | part(16) | part(8) | part(0);
}

void Coverage::Begin(const PixelPicture& picture, const Clip& clip, const CanvasPoint& low,
                     const CanvasPoint& high) {
    const auto pixel = [](double value, int least, int most) {
        return static_cast<int>(
            std::clamp(value, static_cast<double>(least), static_cast<double>(most)));
    };
    picture_ = picture;
    clip_ = &clip;
    const PixelBox& box = clip.box;
    box_ = {pixel(std::floor(low.x), box.left, box.right),
            pixel(std::floor(low.y), box.top, box.bottom),
            pixel(std::ceil(high.x), box.left, box.right),
            pixel(std::ceil(high.y), box.top, box.bottom)};
    firstRow_ = box_.bottom - box_.top;
    lastRow_ = -1;
    // what a line at the right edge adds lies two cells beyond the last pixel; nothing is left from
    // before, so rows may lie as they come
    const int blocks = ((box_.right - box_.left + 1) >> kBlockBits) + 1;
    rowCells_ = blocks << kBlockBits;
    rowWords_ = (blocks >> kWordBits) + 1;
    const auto rows = static_cast<std::size_t>(firstRow_);
    cells_.resize(std::max(cells_.size(), rows * static_cast<std::size_t>(rowCells_)));
    blocks_.resize(std::max(blocks_.size(), rows * static_cast<std::size_t>(rowWords_)));
}

void Coverage::AddOutline(std::span<const CanvasPoint> corners) {
    for (std::size_t i = 0; i < corners.size(); ++i) {
        AddLine(corners[i], corners[i + 1 < corners.size() ? i + 1 : 0]);
    }
}

// Cuts the line to the box: above and below it is of no account, left of it the pixels to its right
// are covered all the same.
void Coverage::AddLine(const CanvasPoint& from, const CanvasPoint& to) {
    const double right = box_.right - box_.left;
    const double bottom = box_.bottom - box_.top;
    CanvasPoint a{from.x - box_.left, from.y - box_.top};
    CanvasPoint b{to.x - box_.left, to.y - box_.top};
    if (a.y == b.y || (a.y <= 0 && b.y <= 0) || (a.y >= bottom && b.y >= bottom) ||
        (a.x >= right && b.x >= right)) {
        return;
    }
    const auto inside = [&](const CanvasPoint& point) {
        return point.x >= 0 && point.x <= right && point.y >= 0 && point.y <= bottom;
    };
    const auto add = [&](const CanvasPoint& start, const CanvasPoint& end) {
        if (std::min(start.x, end.x) < right) {
            AddInside(static_cast<float>(std::clamp(start.x, 0.0, right)),
                      static_cast<float>(start.y),
                      static_cast<float>(std::clamp(end.x, 0.0, right)), static_cast<float>(end.y));
        }
    };
    if (inside(a) && inside(b)) {
        add(a, b);
        return;
    }
    const double slope = (b.x - a.x) / (b.y - a.y);
    const CanvasPoint origin = a;
    const auto keepWithin = [&](CanvasPoint& end) {
        const double y = std::clamp(end.y, 0.0, bottom);
        if (y != end.y) {
            end = {origin.x + slope * (y - origin.y), y};
        }
    };
    keepWithin(a);
    keepWithin(b);
    // it breaks at the box's left and right edge
    for (const double edge : {a.x < b.x ? 0.0 : right, a.x < b.x ? right : 0.0}) {
        if ((a.x < edge && edge < b.x) || (b.x < edge && edge < a.x)) {
            const double y =
                std::clamp(a.y + (edge - a.x) / slope, std::min(a.y, b.y), std::max(a.y, b.y));
            add(a, {edge, y});
            a = {edge, y};
        }
    }
    add(a, b);
}

void Coverage::AddInside(float fromX, float fromY, float toX, float toY) {
    float direction = 1;
    if (fromY > toY) {
        std::swap(fromX, toX);
        std::swap(fromY, toY);
        direction = -1;
    }
    if (!(fromY < toY)) {
        return;
    }
    const float slope = (toX - fromX) / (toY - fromY);
    const float low = std::min(fromX, toX);
    const float high = std::max(fromX, toX);
    int row = static_cast<int>(fromY);
    firstRow_ = std::min(firstRow_, row);
    float x = fromX;
    for (float y = fromY; y < toY; ++row) {
        const float next = std::min(static_cast<float>(row + 1), toY);
        const float nextX = next == toY ? toX : std::clamp(x + slope * (next - y), low, high);
        AddToRow(row, std::min(x, nextX), std::max(x, nextX), direction * (next - y));
        x = nextX;
        y = next;
    }
    lastRow_ = std::max(lastRow_, row - 1);
}

// A line that crosses a row from one x to another, and `part` of the row's height.
void Coverage::AddToRow(int row, float fromX, float toX, float part) {
    const int first = static_cast<int>(fromX);
    const int end = std::max(static_cast<int>(std::ceil(toX)), first + 1);
    float* const cell =
        cells_.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(rowCells_);
    std::uint64_t* const blocks =
        blocks_.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(rowWords_);
    for (int block = first >> kBlockBits; block <= end >> kBlockBits; ++block) {
        blocks[block >> kWordBits] |= std::uint64_t{1} << (block & ((1 << kWordBits) - 1));
    }
    const auto start = static_cast<float>(first);
    if (end == first + 1) {
        const float right = part * ((fromX + toX) / 2 - start);
        cell[first] += part - right;
        cell[end] += right;
        return;
    }
    // the triangle in the first pixel, the one in the last, and between them ever the same more
    const float perPixel = part / (toX - fromX);
    const float inFirst = start + 1 - fromX;
    const float inLast = toX - static_cast<float>(end - 1);
    const float firstArea = perPixel * inFirst * inFirst / 2;
    const float lastArea = perPixel * inLast * inLast / 2;
    cell[first] += firstArea;
    float before = firstArea;
    float covered = perPixel * inFirst;  // at the pixel's left edge
    for (int x = first + 1; x < end - 1; ++x) {
        const float area = covered + perPixel / 2;
        cell[x] += area - before;
        before = area;
        covered += perPixel;
    }
    cell[end - 1] += part - lastArea - before;
    cell[end] += lastArea;
}

void Coverage::Fill(std::uint32_t argb, bool smooth) {
    const std::uint32_t colour = Premultiplied(argb);
    for (int row = firstRow_; row <= lastRow_; ++row) {
        FillRow(row, colour, smooth);
    }
}

void Coverage::FillRow(int row, std::uint32_t colour, bool smooth) {
    const RowSpan span = clip_->SpanOf(box_.top + row);
    const int first = std::max(static_cast<int>(span.left) - box_.left, 0);
    const int end = std::min(static_cast<int>(std::ceil(span.right)), box_.right) - box_.left;
    std::uint32_t* const pixels = picture_.Row(box_.top + row) + box_.left;
    const auto paint = [&](int x, float part) {
        if (!smooth) {
            part = part < 0.5F ? 0.0F : 1.0F;
        }
        Blend(pixels[x], colour, static_cast<std::uint32_t>(std::min(part, 1.0F) * 255 + 0.5F));
    };
    // a round clip ends inside a pixel
    const auto paintAtEnd = [&](int x, float part) {
        const auto left = static_cast<float>(x + box_.left);
        paint(x, part * std::max(std::min(left + 1, span.right) - std::max(left, span.left), 0.0F));
    };
    // pixels that are all covered alike
    const auto paintRun = [&](int from, int to, float part) {
        if (from >= to || part <= kNothing) {
            return;
        }
        paintAtEnd(from, part);
        if (from + 1 < to) {
            paintAtEnd(to - 1, part);
        }
        if (part >= 1 - kNothing && colour >> 24 == 255) {
            std::fill(pixels + from + 1, std::max(pixels + to - 1, pixels + from + 1), colour);
            return;
        }
        for (int x = from + 1; x < to - 1; ++x) {
            paint(x, part);
        }
    };
    float* const cell =
        cells_.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(rowCells_);
    std::uint64_t* const words =
        blocks_.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(rowWords_);
    float covered = 0;
    int next = first;  // of the pixels that are not painted yet
    for (int word = 0; word < rowWords_; ++word) {
        for (; words[word] != 0; words[word] &= words[word] - 1) {
            const int block = ((word << kWordBits) + std::countr_zero(words[word])) << kBlockBits;
            paintRun(next, std::min(block, end), std::abs(covered));
            for (int x = block; x < block + kBlockPixels; ++x) {
                covered += cell[x];
                cell[x] = 0;
                const float part = std::abs(covered);
                if (part <= kNothing || x < first || x >= end) {
                    continue;
                }
                if (x > first && x < end - 1) {
                    paint(x, part);
                } else {
                    paintAtEnd(x, part);
                }
            }
            next = std::max(block + kBlockPixels, first);
        }
    }
    paintRun(next, end, std::abs(covered));
}

Coverage& TheCoverage() {
    static Coverage coverage;
    return coverage;
}

}  // namespace avq1::cairo
