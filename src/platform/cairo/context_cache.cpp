#include "platform/cairo/context_cache.h"

#include <array>

#include "platform/panel_interface.h"

namespace avq1::cairo {
namespace {

// Enough for every gauge of a panel in two windows each; beyond it the oldest makes room.
constexpr std::size_t kContextLimit = 64;

std::array<CairoContext, kContextLimit> contexts;
std::uint64_t useCounter = 0;

bool Usable(const PixelDeviceContext& picture) {
    return picture.size >= sizeof(PixelDeviceContext) && picture.pixels != nullptr &&
           picture.width > 0 && picture.height > 0 && picture.bytesPerRow % 4 == 0 &&
           picture.bytesPerRow >= std::int64_t{4} * picture.width;
}

void Drop(CairoContext& context) {
    if (context.cr != nullptr) {
        cairo_destroy(context.cr);
    }
    if (context.surface != nullptr) {
        cairo_surface_destroy(context.surface);
    }
    context = CairoContext{};
}

bool Matches(const CairoContext& context, const PixelDeviceContext& picture) {
    return context.cr != nullptr && context.pixels == picture.pixels &&
           context.width == picture.width && context.height == picture.height &&
           context.bytesPerRow == picture.bytesPerRow;
}

// The matching free context, else the free one that was used longest ago.
CairoContext* FindSlot(const PixelDeviceContext& picture) {
    CairoContext* oldest = nullptr;
    for (CairoContext& context : contexts) {
        if (context.inUse) {
            continue;
        }
        if (Matches(context, picture)) {
            return &context;
        }
        if (oldest == nullptr || context.lastUse < oldest->lastUse) {
            oldest = &context;
        }
    }
    return oldest;
}

bool Create(CairoContext& context, const PixelDeviceContext& picture) {
    context.surface = cairo_image_surface_create_for_data(
        reinterpret_cast<unsigned char*>(picture.pixels), CAIRO_FORMAT_ARGB32, picture.width,
        picture.height, picture.bytesPerRow);
    context.cr = cairo_create(context.surface);
    context.pixels = picture.pixels;
    context.width = picture.width;
    context.height = picture.height;
    context.bytesPerRow = picture.bytesPerRow;
    if (cairo_status(context.cr) != CAIRO_STATUS_SUCCESS) {
        Drop(context);
        return false;
    }
    // Advances that scale linearly keep a layout the same at every surface size.
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_SLIGHT);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(context.cr, options);
    cairo_font_options_destroy(options);
    return true;
}

void ReturnToInitialState(CairoContext& context) {
    while (context.saveDepth > 0) {
        cairo_restore(context.cr);
        --context.saveDepth;
    }
    context.hiddenAtDepth = kNothingHidden;
    cairo_identity_matrix(context.cr);
    cairo_reset_clip(context.cr);
    cairo_new_path(context.cr);
    cairo_set_operator(context.cr, CAIRO_OPERATOR_OVER);
    cairo_set_antialias(context.cr, CAIRO_ANTIALIAS_DEFAULT);
}

}  // namespace

CairoContext* AcquireContext(void* deviceContext) {
    const auto* picture = static_cast<const PixelDeviceContext*>(deviceContext);
    if (picture == nullptr || !Usable(*picture)) {
        return nullptr;
    }
    CairoContext* context = FindSlot(*picture);
    if (context == nullptr) {
        return nullptr;
    }
    if (!Matches(*context, *picture)) {
        Drop(*context);
        if (!Create(*context, *picture)) {
            return nullptr;
        }
    }
    ReturnToInitialState(*context);
    cairo_surface_mark_dirty(context->surface);  // the host may have written the picture
    context->inUse = true;
    context->lastUse = ++useCounter;
    return context;
}

void ReleaseContext(CairoContext* context) {
    if (context == nullptr) {
        return;
    }
    cairo_surface_flush(context->surface);
    context->inUse = false;
    if (cairo_status(context->cr) != CAIRO_STATUS_SUCCESS) {
        Drop(*context);  // an error sticks to a Cairo context: the next draw gets a fresh one
    }
}

void DropContexts() {
    for (CairoContext& context : contexts) {
        if (!context.inUse) {
            Drop(context);
        }
    }
}

}  // namespace avq1::cairo
