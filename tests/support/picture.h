// tests/support/picture.h - a screen in memory: a picture to draw on, and the texts drawn on it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "drawing/surface.h"
#include "platform/panel_interface.h"
#include "platform/services.h"

namespace avq1::test {

struct DrawnText {
    std::string text;
    double x = 0;
    double y = 0;
    double pixelSize = 0;
    std::uint32_t argb = 0;
    const void* context = nullptr;  // of the picture it was drawn on
};

class Picture {
  public:
    Picture(int width, int height, std::uint32_t fill = 0)
        : pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), fill) {
        context_.width = width;
        context_.height = height;
        context_.bytesPerRow = 4 * width;
        context_.pixels = pixels_.data();
        ListenForTexts();
    }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    PixelDeviceContext& context() { return context_; }
    const std::vector<std::uint32_t>& pixels() const { return pixels_; }
    int width() const { return context_.width; }
    int height() const { return context_.height; }
    DrawTarget Target(DisplayDrawMode mode = DisplayDrawMode::Normal) {
        return {&context_, context_.width, context_.height, mode};
    }
    std::uint32_t At(int x, int y) const {
        return pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(context_.width) +
                       static_cast<std::size_t>(x)];
    }
    bool IsClear() const {
        return std::all_of(pixels_.begin(), pixels_.end(), [](auto pixel) { return pixel == 0; });
    }

    // What the pictures put behind the platform table.
    static PlatformServices& Services() {
        static PlatformServices services;
        return services;
    }

    // The texts drawn since the last picture was made or Forget was called, in drawing order.
    static std::vector<DrawnText>& Texts() {
        static std::vector<DrawnText> texts;
        return texts;
    }
    static void Forget() { Texts().clear(); }
    static const DrawnText* Find(std::string_view text) {
        for (const DrawnText& drawn : Texts()) {
            if (drawn.text == text) {
                return &drawn;
            }
        }
        return nullptr;
    }
    static bool Shows(std::string_view text) { return Find(text) != nullptr; }

  private:
    static void ListenForTexts() {
        PlatformServices& services = Services();
        services.size = sizeof(services);
        services.text_drawn = [](void* context, const char* text, double x, double y,
                                 double pixelSize, std::uint32_t argb) {
            Texts().push_back({text, x, y, pixelSize, argb, context});
        };
        PlatformTable.services = &services;
        Forget();
    }

    std::vector<std::uint32_t> pixels_;
    PixelDeviceContext context_;
};

// Whether a pixel is of this colour, smoothing aside.
inline bool IsColour(std::uint32_t pixel, std::uint32_t argb, int tolerance = 60) {
    for (const int shift : {0, 8, 16}) {
        const int difference =
            static_cast<int>((pixel >> shift) & 0xFF) - static_cast<int>((argb >> shift) & 0xFF);
        if (std::abs(difference) > tolerance) {
            return false;
        }
    }
    return true;
}

}  // namespace avq1::test
