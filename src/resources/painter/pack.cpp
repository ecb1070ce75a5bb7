#include "resources/painter/pack.h"

#include <algorithm>
#include <cstdio>

namespace avq1 {
namespace {

constexpr std::size_t kFileHeaderSize = 14;
constexpr std::size_t kInfoHeaderSize = 40;
constexpr std::uint32_t kPixelsPerMetre = 2835;  // 72 dots per inch
constexpr std::size_t kPackHeaderSize = 12;
constexpr std::size_t kPackRowSize = 16;
constexpr std::size_t kDataAlignment = 4;
constexpr std::uint32_t kNearestToBlack = 0x010101;

void Append16(std::string& out, std::uint32_t value) {
    out += static_cast<char>(value & 0xFFU);
    out += static_cast<char>((value >> 8U) & 0xFFU);
}

void Append32(std::string& out, std::uint32_t value) {
    Append16(out, value & 0xFFFFU);
    Append16(out, value >> 16U);
}

// The colour without its alpha: black where the picture is mostly transparent.
std::uint32_t OpaqueColour(std::uint32_t argb, bool keepBlack) {
    const std::uint32_t alpha = argb >> 24U;
    if (alpha < 128) {
        return 0;
    }
    const auto channel = [&](unsigned shift) {
        return std::min<std::uint32_t>(255, ((argb >> shift) & 0xFFU) * 255 / alpha) << shift;
    };
    const std::uint32_t colour = channel(16) | channel(8) | channel(0);
    return colour == 0 && !keepBlack ? kNearestToBlack : colour;
}

std::size_t Aligned(std::size_t size) {
    return (size + kDataAlignment - 1) / kDataAlignment * kDataAlignment;
}

}  // namespace

std::string EncodeBmp(std::span<const std::uint32_t> pixels, int width, int height,
                      bool keepBlack) {
    const std::size_t rowBytes = Aligned(static_cast<std::size_t>(width) * 3);
    const std::size_t dataBytes = rowBytes * static_cast<std::size_t>(height);
    const std::size_t dataAt = kFileHeaderSize + kInfoHeaderSize;
    std::string out = "BM";
    out.reserve(dataAt + dataBytes);
    Append32(out, static_cast<std::uint32_t>(dataAt + dataBytes));
    Append32(out, 0);
    Append32(out, static_cast<std::uint32_t>(dataAt));
    Append32(out, kInfoHeaderSize);
    Append32(out, static_cast<std::uint32_t>(width));
    Append32(out, static_cast<std::uint32_t>(height));
    Append16(out, 1);
    Append16(out, 24);
    Append32(out, 0);
    Append32(out, static_cast<std::uint32_t>(dataBytes));
    Append32(out, kPixelsPerMetre);
    Append32(out, kPixelsPerMetre);
    Append32(out, 0);
    Append32(out, 0);
    for (int y = height - 1; y >= 0; --y) {
        for (int x = 0; x < width; ++x) {
            const std::size_t at = static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                                   static_cast<std::size_t>(x);
            const std::uint32_t colour = OpaqueColour(pixels[at], keepBlack);
            Append16(out, colour & 0xFFFFU);
            out += static_cast<char>((colour >> 16U) & 0xFFU);
        }
        out.append(rowBytes - static_cast<std::size_t>(width) * 3, '\0');
    }
    return out;
}

std::string KeyNames(const BitmapPlan& plan) {
    std::string out;
    for (const KeyArea& key : plan.keys) {
        std::string label = key.label;
        if (label.empty()) {
            continue;
        }
        std::replace(label.begin(), label.end(), '\n', ' ');
        char place[64];
        std::snprintf(place, sizeof place, "%d %d %d %d ", key.box.x, key.box.y, key.box.width,
                      key.box.height);
        out += place + label + "\n";
    }
    return out;
}

std::string PackResources(std::span<const PackedResource> resources) {
    std::string out = "AVQR";
    Append32(out, kPackVersion);
    Append32(out, static_cast<std::uint32_t>(resources.size()));
    std::size_t offset = kPackHeaderSize + kPackRowSize * resources.size();
    for (const PackedResource& resource : resources) {
        Append32(out, resource.number);
        Append32(out, resource.kind);
        Append32(out, static_cast<std::uint32_t>(offset));
        Append32(out, static_cast<std::uint32_t>(resource.data.size()));
        offset += Aligned(resource.data.size());
    }
    for (const PackedResource& resource : resources) {
        out += resource.data;
        out.append(Aligned(resource.data.size()) - resource.data.size(), '\0');
    }
    return out;
}

std::string BitmapFileName(std::int32_t number) {
    char name[32];
    std::snprintf(name, sizeof name, "%04X.bmp", static_cast<unsigned>(number));
    return name;
}

std::string ResourceScript(std::span<const BitmapPlan> plans) {
    std::string out;
    for (const BitmapPlan& plan : plans) {
        out += std::to_string(plan.number) + " BITMAP \"" + BitmapFileName(plan.number) + "\"\n";
    }
    return out;
}

}  // namespace avq1
