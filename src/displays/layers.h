// displays/layers.h - a display's picture as a table of layers, back to front, walked by one
// routine.
#pragma once

#include <cstddef>

namespace avq1 {

// Picture: what a display's layers share in one draw; its `canvas` is drawn on. A new layer is a
// new row.
template <class Picture>
struct DisplayLayer {
    bool (*shows)(const Picture& picture);
    void (*clip)(Picture& picture);  // ends before the next layer; null: the whole surface
    void (*draw)(Picture& picture);
};

template <class Picture>
bool Always(const Picture&) {
    return true;
}

template <class Picture, std::size_t kCount>
void DrawLayers(Picture& picture, const DisplayLayer<Picture> (&layers)[kCount]) {
    for (const DisplayLayer<Picture>& layer : layers) {
        if (!layer.shows(picture)) {
            continue;
        }
        picture.canvas.SaveState();
        if (layer.clip != nullptr) {
            layer.clip(picture);
        }
        layer.draw(picture);
        picture.canvas.RestoreState();
    }
}

}  // namespace avq1
