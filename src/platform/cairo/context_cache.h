// platform/cairo/context_cache.h - Cairo contexts on the host's pictures, kept between draw events.
//
// A device context is a picture in memory (PixelDeviceContext). Its Cairo surface and context are
// kept in a small fixed table under (pixels, size, row length), so steady drawing creates nothing.
// An unusable device context gives null. Panel thread only.
#pragma once

#include <cairo.h>

#include <cstdint>

namespace avq1::cairo {

inline constexpr int kNothingHidden = -1;

struct CairoContext {
    std::uint32_t* pixels = nullptr;
    int width = 0;
    int height = 0;
    int bytesPerRow = 0;
    cairo_surface_t* surface = nullptr;
    cairo_t* cr = nullptr;
    std::uint64_t lastUse = 0;
    bool inUse = false;
    int saveDepth = 0;
    // The save depth at which an impossible transform was asked for: what is drawn under it is
    // hidden until that state is restored or the transform reset.
    int hiddenAtDepth = kNothingHidden;
};

// A context in its initial state, for one draw event; null when `deviceContext` cannot be used.
CairoContext* AcquireContext(void* deviceContext);
void ReleaseContext(CairoContext* context);

// Lets go of every context that is not in use.
void DropContexts();

}  // namespace avq1::cairo
