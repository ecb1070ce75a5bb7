// avqdata/source_file.h - the sources' files, plain, gzip or in a zip, whole or line by line.
//
// A file that cannot be opened, is damaged or ends in the middle of its compressed data is an
// error, never a shorter file.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "avqdata/byte_stream.h"
#include "avqdata/zip_archive.h"

namespace avqdata {

// Called now and then with how much of the work is done, 0 to 1.
using Progress = std::function<void(std::string_view what, double done)>;

inline constexpr std::size_t kLargestSourceBytes = std::size_t{256} << 20U;  // unpacked
inline constexpr std::size_t kLongestSourceLine = std::size_t{1} << 16U;     // of any source

// A file on disk, or a member of an archive.
struct SourceFile {
    std::string path;  // of a member behind its archive's: "nav.zip/earth_nav.dat"
    std::shared_ptr<const ZipArchive> archive = {};
    std::size_t member = 0;

    SourceFile() = default;
    SourceFile(std::string onDisk) : path(std::move(onDisk)) {}  // NOLINT: a path is such a file
    SourceFile(const char* onDisk) : path(onDisk) {}             // NOLINT
    SourceFile(std::string shown, std::shared_ptr<const ZipArchive> of, std::size_t index)
        : path(std::move(shown)), archive(std::move(of)), member(index) {}
    std::uint64_t PackedBytes() const;  // as it lies there
};

// Its bytes, unpacked.
std::unique_ptr<ByteStream> OpenSource(const SourceFile& file);

// `error` says what is wrong; it is left alone on success. More than `most` bytes, unpacked, are
// refused when so many have been read.
bool ReadSourceFile(const SourceFile& file, std::string& text, std::string& error,
                    std::size_t most = kLargestSourceBytes);

// The same for a file somebody handles one at a time: "too large for a flight plan" beyond 16 MiB,
// unpacked.
bool ReadBoundedFile(const std::string& path, const char* what, std::string& text,
                     std::string& error);

// The first of the names, each also with ".gz" behind it, that the folder holds, whatever its
// letter case; empty when there is none.
std::string FindSource(const std::string& folder, const std::vector<std::string>& names);

// The file's name without its folder, for messages.
std::string BaseName(const std::string& path);

// Lines without their ends (LF or CRLF), from a file as it is read or from a text. A file with a
// line of more than kLongestSourceLine characters is an error.
class LineSource {
  public:
    static LineSource OfText(std::string_view text, std::string name);
    static LineSource OfFile(const SourceFile& file, const Progress& progress);

    bool Next(std::string_view& line);  // false at the end and after an error
    std::size_t LineNumber() const { return lineNumber_; }
    const std::string& Name() const { return name_; }
    const std::string& Error() const { return error_; }  // empty while all is well

  private:
    LineSource() = default;
    void Refill();

    std::string name_;
    std::string error_;
    std::string buffer_;
    std::string_view rest_;
    std::size_t lineNumber_ = 0;
    std::unique_ptr<ByteStream> bytes_;  // none for a text, and when all has been read
    Progress progress_;
};

}  // namespace avqdata
