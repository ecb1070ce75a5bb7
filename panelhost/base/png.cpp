#include "panelhost/base/png.h"

#include <png.h>

#include <cstdio>

#include "panelhost/base/whole_file.h"

namespace panelhost {

std::vector<std::uint8_t> EncodePng(int width, int height, const std::uint32_t* argb, bool fast) {
    if (width < 1 || height < 1 || argb == nullptr) {
        return {};
    }
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    std::vector<std::uint8_t> rgb(count * 3);
    std::uint8_t* to = rgb.data();
    for (std::size_t i = 0; i < count; ++i, to += 3) {
        to[0] = static_cast<std::uint8_t>(argb[i] >> 16U);
        to[1] = static_cast<std::uint8_t>(argb[i] >> 8U);
        to[2] = static_cast<std::uint8_t>(argb[i]);
    }
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = PNG_FORMAT_RGB;
    image.flags = fast ? PNG_IMAGE_FLAG_FAST : 0;
    std::vector<std::uint8_t> file(PNG_IMAGE_PNG_SIZE_MAX(image));
    png_alloc_size_t size = file.size();
    const bool good =
        png_image_write_to_memory(&image, file.data(), &size, 0, rgb.data(), 0, nullptr) != 0;
    file.resize(good ? size : 0);
    return file;
}

bool WritePng(const std::string& path, int width, int height, const std::uint32_t* argb) {
    const std::vector<std::uint8_t> bytes = EncodePng(width, height, argb, false);
    WholeFile file;
    if (bytes.empty() || !file.Open(path)) {
        return false;
    }
    std::fwrite(bytes.data(), 1, bytes.size(), file.file());
    return file.Finish();
}

}  // namespace panelhost
