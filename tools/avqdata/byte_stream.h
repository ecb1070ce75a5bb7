// avqdata/byte_stream.h - the bytes of a source's file, wherever it lies: on disk, packed by gzip,
// or in a zip archive (zip_archive.h).
//
// Nothing is believed of a size that a file states: what is unpacked is counted, and a file that
// unpacks to far more than any text does is refused.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace avqdata {

class ByteStream {
  public:
    ByteStream() = default;
    ByteStream(const ByteStream&) = delete;
    ByteStream& operator=(const ByteStream&) = delete;
    virtual ~ByteStream() = default;

    // Fills `to`; fewer than `size` bytes come at the end and after an error only.
    virtual std::size_t Read(char* to, std::size_t size) = 0;

    virtual double Done() const = 0;                     // how much has been read, 0 to 1
    const std::string& Error() const { return error_; }  // empty while all is well

  protected:
    std::string error_;  // what is wrong, without the file's name: "is cut short"
};

// `size` bytes of a file on disk from `offset` on, or all that follow. A file that is none has
// an Error() from the start. Paths are UTF-8, here as everywhere.
inline constexpr std::uint64_t kToTheEnd = ~std::uint64_t{0};
std::unique_ptr<ByteStream> OpenFileBytes(const std::string& path, std::uint64_t offset = 0,
                                          std::uint64_t size = kToTheEnd);

// Bytes in memory, which the stream keeps alive.
std::unique_ptr<ByteStream> OpenMemoryBytes(std::shared_ptr<const std::string> bytes,
                                            std::size_t offset, std::size_t size);

// Unpacks what `packed` gives: as it is, when it does not begin as gzip does.
std::unique_ptr<ByteStream> UnpackGzip(std::unique_ptr<ByteStream> packed);

// Unpacks a zip member's deflated bytes, to the size and checksum that its archive states.
std::unique_ptr<ByteStream> UnpackMember(std::unique_ptr<ByteStream> packed, bool isDeflated,
                                         std::uint64_t size, std::uint32_t checksum);

}  // namespace avqdata
