// avqdata/zip_helpers.h - zip archives made byte by byte, so that tests can also make wrong ones.
#pragma once

#include <zlib.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace avqdata {

inline std::string Little(std::uint64_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i) {
        text += static_cast<char>(value & 0xFFU);
        value >>= 8U;
    }
    return text;
}

inline std::string Deflated(const std::string& text) {
    z_stream state{};
    deflateInit2(&state, Z_BEST_COMPRESSION, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY);
    std::string packed(deflateBound(&state, text.size()), '\0');
    state.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    state.avail_in = static_cast<uInt>(text.size());
    state.next_out = reinterpret_cast<Bytef*>(packed.data());
    state.avail_out = static_cast<uInt>(packed.size());
    deflate(&state, Z_FINISH);
    packed.resize(state.total_out);
    deflateEnd(&state);
    return packed;
}

using ZipTexts = std::vector<std::pair<std::string, std::string>>;

struct ZipWish {
    int flags = 0;             // 1: encrypted
    int method = 8;            // 0: stored
    std::uint32_t sumOff = 0;  // added to the right checksum
};

inline std::string ZipOf(const ZipTexts& members, const ZipWish& wish = {}) {
    std::string archive;
    std::string directory;
    for (const auto& [name, text] : members) {
        const std::string packed = wish.method == 8 ? Deflated(text) : text;
        const auto sum = static_cast<std::uint32_t>(
            crc32(0, reinterpret_cast<const Bytef*>(text.data()), static_cast<uInt>(text.size())));
        const std::string common = Little(20, 2) + Little(wish.flags, 2) + Little(wish.method, 2) +
                                   Little(0, 4) + Little(sum + wish.sumOff, 4) +
                                   Little(packed.size(), 4) + Little(text.size(), 4) +
                                   Little(name.size(), 2) + Little(0, 2);
        directory +=
            "PK\1\2" + Little(20, 2) + common + Little(0, 10) + Little(archive.size(), 4) + name;
        archive += "PK\3\4" + common + name + packed;
    }
    const std::size_t start = archive.size();
    return archive + directory + "PK\5\6" + Little(0, 4) + Little(members.size(), 2) +
           Little(members.size(), 2) + Little(directory.size(), 4) + Little(start, 4) +
           Little(0, 2);
}

}  // namespace avqdata
