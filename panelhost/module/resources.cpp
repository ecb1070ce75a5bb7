#include "panelhost/module/resources.h"

#include <algorithm>
#include <cstring>
#include <optional>

#include "panelhost/base/text.h"

namespace panelhost {
namespace {

constexpr std::uint32_t kKindBitmap = 2;
constexpr std::uint32_t kKindKeyNames = 256;
constexpr std::uint32_t kResourceVersion = 1;
constexpr std::uint32_t kMaxResources = 4096;

template <typename Number>
std::optional<Number> ReadAt(std::string_view bytes, std::uint64_t offset) {
    if (offset > bytes.size() || bytes.size() - offset < sizeof(Number)) {
        return std::nullopt;
    }
    Number value{};
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

std::string_view Slice(std::string_view bytes, std::uint64_t offset, std::uint64_t size) {
    if (offset > bytes.size() || size > bytes.size() - offset) {
        return {};
    }
    return bytes.substr(offset, size);
}

std::string_view TextAt(std::string_view bytes, std::uint64_t offset) {
    if (offset >= bytes.size()) {
        return {};
    }
    const std::string_view rest = bytes.substr(offset);
    return rest.substr(0, rest.find('\0'));
}

}  // namespace

std::string_view FindElfSection(std::string_view file, std::string_view name) {
    // ELF64: section table offset at 40, entry size, count and name table index at 58 to 63;
    // an entry has its name at 0, file offset at 24 and size at 32.
    constexpr std::string_view kMagic(
        "\x7F"
        "ELF\x02\x01",
        6);
    if (file.substr(0, kMagic.size()) != kMagic) {
        return {};
    }
    const auto table = ReadAt<std::uint64_t>(file, 40);
    const auto entrySize = ReadAt<std::uint16_t>(file, 58);
    const auto count = ReadAt<std::uint16_t>(file, 60);
    const auto namesIndex = ReadAt<std::uint16_t>(file, 62);
    if (!table || !entrySize || !count || !namesIndex || *entrySize < 40 || *table > file.size()) {
        return {};
    }
    const auto section = [&](std::uint16_t index) -> std::string_view {
        const std::uint64_t at = *table + std::uint64_t{index} * *entrySize;
        const auto offset = ReadAt<std::uint64_t>(file, at + 24);
        const auto size = ReadAt<std::uint64_t>(file, at + 32);
        return offset && size ? Slice(file, *offset, *size) : std::string_view{};
    };
    const std::string_view names = section(*namesIndex);
    for (std::uint16_t i = 0; i < *count; ++i) {
        const auto nameAt = ReadAt<std::uint32_t>(file, *table + std::uint64_t{i} * *entrySize);
        if (nameAt && TextAt(names, *nameAt) == name) {
            return section(i);
        }
    }
    return {};
}

Picture ParseBmp(std::string_view file) {
    const auto dataAt = ReadAt<std::uint32_t>(file, 10);
    const auto width = ReadAt<std::int32_t>(file, 18);
    const auto height = ReadAt<std::int32_t>(file, 22);
    const auto bits = ReadAt<std::uint16_t>(file, 28);
    const auto compression = ReadAt<std::uint32_t>(file, 30);
    if (file.substr(0, 2) != "BM" || !dataAt || !width || !height || !bits || !compression ||
        (*bits != 24 && *bits != 32) || *compression != 0 || *width < 1 ||
        *width > kMaxBitmapSide || *height == 0 || *height < -kMaxBitmapSide ||
        *height > kMaxBitmapSide) {
        return {};
    }
    const std::size_t bytesPerPixel = *bits / 8;
    const std::size_t rowBytes = (static_cast<std::size_t>(*width) * bytesPerPixel + 3) / 4 * 4;
    const int rows = *height < 0 ? -*height : *height;
    const std::string_view data = Slice(file, *dataAt, rowBytes * static_cast<std::size_t>(rows));
    if (data.empty()) {
        return {};
    }
    Picture picture{*width, rows, {}};
    picture.pixels.reserve(static_cast<std::size_t>(*width) * static_cast<std::size_t>(rows));
    for (int y = 0; y < rows; ++y) {
        const int fileRow = *height < 0 ? y : rows - 1 - y;
        const auto* at = reinterpret_cast<const unsigned char*>(data.data()) +
                         rowBytes * static_cast<std::size_t>(fileRow);
        for (int x = 0; x < *width; ++x, at += bytesPerPixel) {
            picture.pixels.push_back(0xFF000000U | static_cast<std::uint32_t>(at[2]) << 16U |
                                     static_cast<std::uint32_t>(at[1]) << 8U | at[0]);
        }
    }
    return picture;
}

std::vector<KeyName> ParseKeyNames(std::string_view text) {
    std::vector<KeyName> names;
    for (const std::string_view line : Lines(text)) {
        const std::vector<std::string_view> words = Words(line);
        if (words.size() < 5) {
            continue;
        }
        int box[4] = {};
        bool good = true;
        for (std::size_t i = 0; i < 4; ++i) {
            const std::optional<std::int64_t> number = ToInteger(words[i]);
            good = good && number && *number >= -kMaxBitmapSide && *number <= kMaxBitmapSide;
            box[i] = good ? static_cast<int>(*number) : 0;
        }
        if (good) {
            const std::size_t labelAt = static_cast<std::size_t>(words[4].data() - line.data());
            names.push_back(
                {box[0], box[1], box[2], box[3], std::string(Trim(line.substr(labelAt)))});
        }
    }
    return names;
}

ModuleResources ParseResources(std::string_view section) {
    ModuleResources resources;
    const auto version = ReadAt<std::uint32_t>(section, 4);
    const auto count = ReadAt<std::uint32_t>(section, 8);
    if (section.substr(0, 4) != "AVQR" || !version || !count) {
        resources.problems.push_back("the module's resources have no readable header");
        return resources;
    }
    if (*version != kResourceVersion) {
        resources.problems.push_back(
            Format("the module's resources have version %u, not 1", *version));
        return resources;
    }
    for (std::uint32_t i = 0; i < std::min(*count, kMaxResources); ++i) {
        const std::uint64_t at = 12 + std::uint64_t{i} * 16;
        const auto number = ReadAt<std::uint32_t>(section, at);
        const auto kind = ReadAt<std::uint32_t>(section, at + 4);
        const auto offset = ReadAt<std::uint32_t>(section, at + 8);
        const auto size = ReadAt<std::uint32_t>(section, at + 12);
        if (!number || !kind || !offset || !size) {
            resources.problems.push_back("the module's resource table is cut short");
            break;
        }
        const std::string_view bytes = Slice(section, *offset, *size);
        if (bytes.size() != *size) {
            resources.problems.push_back(
                Format("resource 0x%X lies outside the module's section", *number));
        } else if (*kind == kKindKeyNames) {
            resources.keyNames[*number] = ParseKeyNames(bytes);
        } else if (*kind == kKindBitmap) {
            Picture picture = ParseBmp(bytes);
            if (picture.width == 0) {
                resources.problems.push_back(Format("bitmap 0x%X is not readable", *number));
            } else {
                resources.bitmaps[*number] = std::move(picture);
            }
        }
    }
    return resources;
}

}  // namespace panelhost
