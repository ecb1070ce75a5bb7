// platform/cairo/context.h - what a canvas keeps for one draw event: the picture, the transform and
// the clip with what was saved of them.
//
// A device context is a picture in memory (PixelDeviceContext). Contexts are kept between draws, so
// that steady drawing allocates nothing. An unusable device context gives null. Panel thread only.
#pragma once

#include <cstddef>
#include <vector>

#include "platform/cairo/coverage.h"
#include "platform/cairo/transform.h"

namespace avq1::cairo {

inline constexpr int kNothingHidden = -1;

struct SavedState {
    Transform transform;
    std::size_t clip = 0;
    std::size_t clipCount = 1;
};

struct Context {
    PixelPicture picture;
    Transform transform;
    std::vector<SavedState> saved;
    // The first is the whole picture; those of saved states stay as they are.
    std::vector<Clip> clips;
    std::size_t clipCount = 1;
    std::size_t clip = 0;  // the present one
    std::vector<CanvasPoint> clipOutline;
    bool smooth = true;
    // The save depth at which an impossible transform was asked for: what is drawn under it is
    // hidden until that state is restored or the transform reset.
    int hiddenAtDepth = kNothingHidden;
    bool inUse = false;

    const Clip& PresentClip() const { return clips[clip]; }
};

// A context in its initial state, for one draw event; null when `deviceContext` cannot be used.
Context* AcquireContext(void* deviceContext);
void ReleaseContext(Context* context);

// Narrows the clip to an outline without hollows, in device pixels.
void NarrowClip(Context& context, const std::vector<CanvasPoint>& outline);

// Whether a point is inside the clip.
bool InClip(const Clip& clip, const CanvasPoint& device);

}  // namespace avq1::cairo
