#include "platform/cairo/context.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "platform/panel_interface.h"

namespace avq1::cairo {
namespace {

constexpr std::size_t kContextLimit = 8;  // open at a time

std::array<Context, kContextLimit> contexts;

bool Usable(const PixelDeviceContext& picture) {
    return picture.size >= sizeof(PixelDeviceContext) && picture.pixels != nullptr &&
           picture.width > 0 && picture.height > 0 && picture.bytesPerRow % 4 == 0 &&
           picture.bytesPerRow >= std::int64_t{4} * picture.width;
}

// The box's edges on whole pixels, when the outline is a level one.
bool IsLevelBox(const std::vector<CanvasPoint>& outline, PixelBox& box) {
    if (outline.size() != 4) {
        return false;
    }
    const CanvasPoint& first = outline[0];
    const CanvasPoint& third = outline[2];
    const auto level = [&](const CanvasPoint& corner) {
        return (corner.x == first.x && corner.y == third.y) ||
               (corner.x == third.x && corner.y == first.y);
    };
    if (!level(outline[1]) || !level(outline[3])) {
        return false;
    }
    const auto pixel = [](double value) {
        return static_cast<int>(std::lround(std::clamp(value, -1.0e6, 1.0e6)));
    };
    box = {pixel(std::min(first.x, third.x)), pixel(std::min(first.y, third.y)),
           pixel(std::max(first.x, third.x)), pixel(std::max(first.y, third.y))};
    return true;
}

constexpr RowSpan kEmptyRow{std::numeric_limits<float>::max(),
                            std::numeric_limits<float>::lowest()};

// The outline's width in the middle of each of the box's rows.
void FindWidths(const std::vector<CanvasPoint>& outline, const PixelBox& box,
                std::vector<RowSpan>& rows) {
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const CanvasPoint& from = outline[i];
        const CanvasPoint& to = outline[i + 1 < outline.size() ? i + 1 : 0];
        const auto rowBelow = [&](double y) {
            return static_cast<int>(std::ceil(std::clamp(y - 0.5, static_cast<double>(box.top),
                                                         static_cast<double>(box.bottom))));
        };
        const int end = rowBelow(std::max(from.y, to.y));
        for (int row = rowBelow(std::min(from.y, to.y)); row < end; ++row) {
            const auto x = static_cast<float>(from.x + (to.x - from.x) * (row + 0.5 - from.y) /
                                                           (to.y - from.y));
            RowSpan& span = rows[static_cast<std::size_t>(row)];
            span = {std::min(span.left, x), std::max(span.right, x)};
        }
    }
}

}  // namespace

Context* AcquireContext(void* deviceContext) {
    const auto* picture = static_cast<const PixelDeviceContext*>(deviceContext);
    if (picture == nullptr || !Usable(*picture)) {
        return nullptr;
    }
    for (Context& context : contexts) {
        if (context.inUse) {
            continue;
        }
        context.inUse = true;
        context.picture = {picture->pixels, picture->width, picture->height,
                           picture->bytesPerRow / 4};
        context.transform = Transform{};
        context.saved.clear();
        context.clips.resize(std::max<std::size_t>(context.clips.size(), 1));
        context.clips[0].box = {0, 0, picture->width, picture->height};
        context.clipCount = 1;
        context.clip = 0;
        context.clipOutline.clear();
        context.smooth = true;
        context.hiddenAtDepth = kNothingHidden;
        return &context;
    }
    return nullptr;
}

void ReleaseContext(Context* context) {
    if (context != nullptr) {
        context->inUse = false;
    }
}

void NarrowClip(Context& context, const std::vector<CanvasPoint>& outline) {
    if (context.clips.size() == context.clipCount) {
        context.clips.emplace_back();
    }
    const Clip& before = context.clips[context.clip];
    Clip& clip = context.clips[context.clipCount];
    context.clip = context.clipCount++;
    const bool level = IsLevelBox(outline, clip.box);
    const auto across = [&](int x) { return std::clamp(x, before.box.left, before.box.right); };
    const auto down = [&](int y) { return std::clamp(y, before.box.top, before.box.bottom); };
    clip.box = level ? PixelBox{across(clip.box.left), down(clip.box.top), across(clip.box.right),
                                down(clip.box.bottom)}
                     : before.box;
    if (level && before.rows.empty()) {
        clip.rows.clear();
        return;
    }
    clip.rows.assign(static_cast<std::size_t>(context.picture.height), kEmptyRow);
    if (!level) {
        FindWidths(outline, clip.box, clip.rows);
    }
    for (int row = clip.box.top; row < clip.box.bottom; ++row) {
        RowSpan& now = clip.rows[static_cast<std::size_t>(row)];
        if (level) {
            now = {static_cast<float>(clip.box.left), static_cast<float>(clip.box.right)};
        }
        const RowSpan was = before.SpanOf(row);
        now = {std::max(was.left, now.left), std::min(was.right, now.right)};
        if (!(now.left < now.right)) {
            now = RowSpan{};
        }
    }
}

bool InClip(const Clip& clip, const CanvasPoint& device) {
    if (!(device.x >= clip.box.left && device.x < clip.box.right && device.y >= clip.box.top &&
          device.y < clip.box.bottom)) {
        return false;
    }
    const RowSpan span = clip.SpanOf(static_cast<int>(device.y));
    return device.x >= span.left && device.x < span.right;
}

}  // namespace avq1::cairo
