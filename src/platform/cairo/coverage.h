// platform/cairo/coverage.h - fills outlines on a picture with smooth edges.
//
// An outline is closed lines in device pixels. Every line adds what it covers of the pixels right
// of it, and of those it crosses; summed along a row that is each pixel's part inside the outline,
// exactly. Several outlines of the same sense of turning may be added: where they overlap they
// count once. A fill takes everything that was added and leaves nothing behind. What lies outside
// the clip costs next to nothing. One instance, panel thread only.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/canvas.h"

namespace avq1::cairo {

// Pixels, premultiplied ARGB; a row begins every `rowPixels`.
struct PixelPicture {
    std::uint32_t* pixels = nullptr;
    int width = 0;
    int height = 0;
    int rowPixels = 0;

    std::uint32_t* Row(int y) const { return pixels + static_cast<std::ptrdiff_t>(y) * rowPixels; }
};

// Right and bottom are beyond the last pixel.
struct PixelBox {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    bool IsEmpty() const { return left >= right || top >= bottom; }
};

struct RowSpan {
    float left = 0;
    float right = 0;
};

// The part of a picture that may be drawn on: a box, or in each of its rows one span.
struct Clip {
    PixelBox box;
    std::vector<RowSpan> rows;  // by the picture's row; empty: all of the box

    RowSpan SpanOf(int row) const {
        return rows.empty() ? RowSpan{static_cast<float>(box.left), static_cast<float>(box.right)}
                            : rows[static_cast<std::size_t>(row)];
    }
};

// The colour with its alpha multiplied into it.
std::uint32_t Premultiplied(std::uint32_t argb);

// Puts a premultiplied colour over a pixel; `part` of 255 counts.
inline void Blend(std::uint32_t& pixel, std::uint32_t colour, std::uint32_t part) {
    const auto scaled = [](std::uint32_t value, std::uint32_t by) {
        std::uint32_t even = (value & 0xFF00FFU) * by + 0x800080U;
        std::uint32_t odd = (value >> 8 & 0xFF00FFU) * by + 0x800080U;
        even = (even + (even >> 8 & 0xFF00FFU)) >> 8 & 0xFF00FFU;
        odd = (odd + (odd >> 8 & 0xFF00FFU)) & 0xFF00FF00U;
        return even | odd;
    };
    const std::uint32_t over = part == 255 ? colour : scaled(colour, part);
    const std::uint32_t alpha = over >> 24;
    pixel = alpha == 255 ? over : over + scaled(pixel, 255 - alpha);
}

class Coverage {
  public:
    // Outlines are added after Begin, none beyond the box of `low` and `high`, and end with a Fill.
    void Begin(const PixelPicture& picture, const Clip& clip, const CanvasPoint& low,
               const CanvasPoint& high);
    void AddLine(const CanvasPoint& from, const CanvasPoint& to);
    void AddOutline(std::span<const CanvasPoint> corners);
    // Not `smooth`: pixels count whole or not at all.
    void Fill(std::uint32_t argb, bool smooth);

  private:
    void AddInside(float fromX, float fromY, float toX, float toY);
    void AddToRow(int row, float fromX, float toX, float part);
    void FillRow(int row, std::uint32_t colour, bool smooth);

    PixelPicture picture_;
    const Clip* clip_ = nullptr;
    PixelBox box_;
    // Of each row of the box, how much more is covered from this pixel on; and which blocks of them
    // are not all 0.
    std::vector<float> cells_;
    std::vector<std::uint64_t> blocks_;
    int rowCells_ = 0;
    int rowWords_ = 0;
    int firstRow_ = 0;  // of those that were added to, from the box's top
    int lastRow_ = -1;
};

Coverage& TheCoverage();

}  // namespace avq1::cairo
