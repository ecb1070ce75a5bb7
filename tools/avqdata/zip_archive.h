// avqdata/zip_archive.h - zip archives, also inside others, read where they lie: nothing is
// unpacked to disk, so a member's path never names a file.
//
// Stored and deflated members, sizes beyond 4 GiB. Refused in words: archives in several volumes,
// encrypted ones, ones whose directory makes no sense or names paths that lead out of the archive.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "avqdata/byte_stream.h"

namespace avqdata {

inline constexpr std::size_t kMostZipMembers = 200000;

struct ZipMember {
    std::string path;          // with slashes; folders are no members
    std::uint64_t header = 0;  // where its own header begins
    std::uint64_t packedBytes = 0;
    std::uint64_t bytes = 0;
    std::uint32_t checksum = 0;
    bool isDeflated = false;
};

class ZipArchive {
  public:
    // Reads the directory of an archive on disk, or of one in memory; null, with `error` (without
    // the archive's name), when it is none that can be read.
    static std::shared_ptr<const ZipArchive> OfFile(const std::string& path, std::string& error);
    static std::shared_ptr<const ZipArchive> OfMemory(std::shared_ptr<const std::string> bytes,
                                                      std::string& error);

    const std::vector<ZipMember>& Members() const { return members_; }
    std::unique_ptr<ByteStream> Open(const ZipMember& member) const;

  private:
    bool ReadDirectory(std::string& error);
    bool ReadEntries(std::string_view directory, std::size_t count, std::string& error);
    std::unique_ptr<ByteStream> Bytes(std::uint64_t offset, std::uint64_t size) const;
    bool Take(std::uint64_t offset, std::uint64_t size, std::string& bytes) const;

    std::string path_;                          // of one on disk
    std::shared_ptr<const std::string> bytes_;  // of one in memory
    std::uint64_t size_ = 0;
    std::vector<ZipMember> members_;
};

// Whether a file's first bytes are those of an archive, also of an empty one.
bool BeginsAsZip(std::string_view first);

}  // namespace avqdata
