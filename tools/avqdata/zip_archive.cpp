#include "avqdata/zip_archive.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <optional>
#include <system_error>
#include <utility>

#include "avqdata/os.h"

namespace avqdata {
namespace {

constexpr std::size_t kEndBytes = 22;  // of the record at the archive's end
constexpr std::size_t kLongestComment = 65535;
constexpr std::size_t kLocatorBytes = 20;   // stands before it in archives beyond 4 GiB
constexpr std::size_t kLargeEndBytes = 56;  // what the locator points to
constexpr std::size_t kEntryBytes = 46;     // of the directory, without name and extra fields
constexpr std::size_t kHeaderBytes = 30;    // before a member's bytes, likewise
constexpr std::uint64_t kLargestDirectory = std::uint64_t{64} << 20U;
constexpr std::uint32_t kElsewhere32 = 0xFFFFFFFFU;  // the value is in a field of 64 bits
constexpr const char* kNoArchive = "is no zip archive that can be read";

// Little-endian numbers; what lies outside reads as 0, and callers check lengths first.
std::uint64_t NumberAt(std::string_view bytes, std::size_t at, std::size_t size) {
    std::uint64_t value = 0;
    for (std::size_t i = size; i > 0; --i) {
        const std::size_t place = at + i - 1;
        value =
            (value << 8U) | (place < bytes.size() ? static_cast<unsigned char>(bytes[place]) : 0U);
    }
    return value;
}

bool IsPathInside(std::string_view path) {
    if (path.starts_with('/') || path.find(':') != std::string_view::npos ||
        path.find('\0') != std::string_view::npos) {
        return false;
    }
    while (!path.empty()) {
        const std::size_t slash = std::min(path.find('/'), path.size());
        if (path.substr(0, slash) == "..") {
            return false;
        }
        path.remove_prefix(std::min(slash + 1, path.size()));
    }
    return true;
}

struct Extent {
    std::uint64_t count = 0;  // of members
    std::uint64_t bytes = 0;  // of the directory
    std::uint64_t offset = 0;
};

// Values that do not fit the entry's 32 bits stand in an extra field, in this order.
void ReadLargeSizes(std::string_view extra, ZipMember& member) {
    constexpr std::uint64_t kLargeSizes = 1;
    while (extra.size() >= 4) {
        const std::uint64_t kind = NumberAt(extra, 0, 2);
        const std::size_t size = NumberAt(extra, 2, 2);
        if (kind == kLargeSizes) {
            std::string_view field = extra.substr(4, size);
            for (std::uint64_t* value : {&member.bytes, &member.packedBytes, &member.header}) {
                if (*value == kElsewhere32 && field.size() >= 8) {
                    *value = NumberAt(field, 0, 8);
                    field.remove_prefix(8);
                }
            }
        }
        extra.remove_prefix(std::min(size + 4, extra.size()));
    }
}

}  // namespace

bool BeginsAsZip(std::string_view first) {
    using namespace std::string_view_literals;
    return first.starts_with("PK\3\4"sv) || first.starts_with("PK\5\6"sv);
}

std::shared_ptr<const ZipArchive> ZipArchive::OfFile(const std::string& path, std::string& error) {
    auto archive = std::make_shared<ZipArchive>();
    std::error_code code;
    archive->path_ = path;
    archive->size_ = std::filesystem::file_size(PathOf(path), code);
    if (code) {
        error = "cannot be opened";
        return nullptr;
    }
    return archive->ReadDirectory(error) ? archive : nullptr;
}

std::shared_ptr<const ZipArchive> ZipArchive::OfMemory(std::shared_ptr<const std::string> bytes,
                                                       std::string& error) {
    auto archive = std::make_shared<ZipArchive>();
    archive->size_ = bytes->size();
    archive->bytes_ = std::move(bytes);
    return archive->ReadDirectory(error) ? archive : nullptr;
}

std::unique_ptr<ByteStream> ZipArchive::Bytes(std::uint64_t offset, std::uint64_t size) const {
    if (bytes_ == nullptr) {
        return OpenFileBytes(path_, offset, size);
    }
    return OpenMemoryBytes(bytes_, offset, size);
}

bool ZipArchive::Take(std::uint64_t offset, std::uint64_t size, std::string& bytes) const {
    if (offset > size_ || size > size_ - offset || size > kLargestDirectory) {
        return false;
    }
    bytes.resize(size);
    return Bytes(offset, size)->Read(bytes.data(), bytes.size()) == size;
}

bool ZipArchive::ReadDirectory(std::string& error) {
    const std::uint64_t tailBytes = std::min<std::uint64_t>(size_, kEndBytes + kLongestComment);
    std::string tail;
    error = kNoArchive;
    if (!Take(size_ - tailBytes, tailBytes, tail)) {
        return false;
    }
    const std::size_t end = tail.rfind("PK\5\6");
    if (end == std::string::npos || end + kEndBytes > tail.size()) {
        error = "the archive is cut short: it has no directory";
        return false;
    }
    Extent extent{NumberAt(tail, end + 10, 2), NumberAt(tail, end + 12, 4),
                  NumberAt(tail, end + 16, 4)};
    bool isOneVolume = NumberAt(tail, end + 4, 2) == 0 && NumberAt(tail, end + 6, 2) == 0;
    std::string large;
    if (end >= kLocatorBytes && tail.compare(end - kLocatorBytes, 4, "PK\6\7") == 0 &&
        Take(NumberAt(tail, end - kLocatorBytes + 8, 8), kLargeEndBytes, large) &&
        large.starts_with("PK\6\6")) {
        extent = {NumberAt(large, 32, 8), NumberAt(large, 40, 8), NumberAt(large, 48, 8)};
        isOneVolume = NumberAt(large, 16, 4) == 0;
    }
    if (!isOneVolume) {
        error = "is one of several volumes of an archive";
        return false;
    }
    if (extent.count > kMostZipMembers || extent.bytes > kLargestDirectory) {
        error = "is an archive of more than " + std::to_string(kMostZipMembers) + " files";
        return false;
    }
    std::string directory;
    return Take(extent.offset, extent.bytes, directory) &&
           ReadEntries(directory, extent.count, error);
}

bool ZipArchive::ReadEntries(std::string_view directory, std::size_t count, std::string& error) {
    constexpr unsigned kEncrypted = 1;
    constexpr unsigned kDeflated = 8;
    for (std::size_t i = 0; i < count; ++i) {
        if (directory.size() < kEntryBytes || !directory.starts_with("PK\1\2")) {
            error = "its directory is damaged";
            return false;
        }
        const std::size_t nameBytes = NumberAt(directory, 28, 2);
        const std::size_t extraBytes = NumberAt(directory, 30, 2);
        const std::size_t whole = kEntryBytes + nameBytes + extraBytes + NumberAt(directory, 32, 2);
        if (directory.size() < whole) {
            error = "its directory is damaged";
            return false;
        }
        ZipMember member{std::string(directory.substr(kEntryBytes, nameBytes)),
                         NumberAt(directory, 42, 4),
                         NumberAt(directory, 20, 4),
                         NumberAt(directory, 24, 4),
                         static_cast<std::uint32_t>(NumberAt(directory, 16, 4)),
                         NumberAt(directory, 10, 2) == kDeflated};
        ReadLargeSizes(directory.substr(kEntryBytes + nameBytes, extraBytes), member);
        std::replace(member.path.begin(), member.path.end(), '\\', '/');
        if (!IsPathInside(member.path)) {
            error = "names a path that leads out of the archive";
            return false;
        }
        if ((NumberAt(directory, 8, 2) & kEncrypted) != 0) {
            error = "is encrypted";
            return false;
        }
        const bool isKnown = member.isDeflated || NumberAt(directory, 10, 2) == 0;
        if (!isKnown) {
            error = "is packed by another method than zip's own";
            return false;
        }
        if (!member.path.empty() && !member.path.ends_with('/')) {
            members_.push_back(std::move(member));
        }
        directory.remove_prefix(whole);
    }
    error.clear();
    return true;
}

std::unique_ptr<ByteStream> ZipArchive::Open(const ZipMember& member) const {
    std::string header;
    std::uint64_t start =
        size_;  // a header that makes no sense: nothing to read, which is an error
    std::uint64_t size = 0;
    if (Take(member.header, kHeaderBytes, header) && header.starts_with("PK\3\4")) {
        start = member.header + kHeaderBytes + NumberAt(header, 26, 2) + NumberAt(header, 28, 2);
        start = std::min(start, size_);
        size = std::min(member.packedBytes, size_ - start);
    }
    return UnpackMember(Bytes(start, size), member.isDeflated, member.bytes, member.checksum);
}

}  // namespace avqdata
