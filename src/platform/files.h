// platform/files.h - files and folders under the names the simulator uses.
//
// Paths are written the simulator's way: back-slashes, any letter case, absolute or below the
// process's current directory. On a case-sensitive system each component that does not exist as
// written is looked up without regard to case. Nothing here throws; a failure is the return value.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace avq1 {

// Reads a file whole. False when it cannot be opened or read; `contents` is then empty.
bool ReadWholeFile(std::string_view path, std::string& contents);

// Reads `size` bytes from `offset` on, fewer when the file ends before. False when it cannot be
// opened or read; `contents` is then empty.
bool ReadFilePart(std::string_view path, std::size_t offset, std::size_t size,
                  std::string& contents);

// What tells that a file was written since: its size and the time of its last writing, in the
// system's own unit. All zero for a file that is not there.
struct FileStamp {
    std::uint64_t sizeBytes = 0;
    std::int64_t writtenAt = 0;
    bool operator==(const FileStamp&) const = default;
};
FileStamp StampOf(std::string_view path);

// Writes `contents` beside the target and renames it into place, so an existing file is either
// kept or replaced whole. Missing folders are created. False leaves the old file untouched.
bool ReplaceFile(std::string_view path, std::string_view contents);

enum class FileStart { Anew, AtEnd };

// Writes at the end of a file, which is created when missing, or begins it anew. Missing folders
// are created. Quicker than ReplaceFile: what a failing disk leaves may be a part. False when it
// cannot be opened or written.
bool AppendToFile(std::string_view path, std::string_view contents, FileStart start);

// Names of all entries of a folder (no "." and ".."), in the file system's order made stable by
// sorting. False when the folder cannot be listed.
bool ListFolder(std::string_view folder, std::vector<std::string>& names);

// The process's current directory without a trailing separator, cut to `maxLength` characters.
std::string CurrentDirectory(std::size_t maxLength);

}  // namespace avq1
