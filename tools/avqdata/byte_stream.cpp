#include "avqdata/byte_stream.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>
#include <vector>

#include "avqdata/os.h"

namespace avqdata {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kChunk = std::size_t{1} << 16U;
constexpr const char* kCutShort = "the compressed file is cut short";

class FileBytes : public ByteStream {
  public:
    FileBytes(const std::string& path, std::uint64_t offset, std::uint64_t size) {
        std::error_code code;
        const fs::path file = PathOf(path);
        const std::uintmax_t total =
            fs::is_regular_file(file, code) ? fs::file_size(file, code) : 0;
        file_.open(file, std::ios::binary);
        if (code || !fs::is_regular_file(file, code) || !file_ || offset > total) {
            error_ = "cannot be opened";
            return;
        }
        file_.seekg(static_cast<std::streamoff>(offset));
        size_ = std::min<std::uint64_t>(size, total - offset);
    }

    std::size_t Read(char* to, std::size_t size) override {
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(size, size_ - read_));
        if (wanted == 0 || !error_.empty()) {
            return 0;
        }
        file_.read(to, static_cast<std::streamsize>(wanted));
        const auto count = static_cast<std::size_t>(file_.gcount());
        error_ = count < wanted ? "cannot be read" : "";
        read_ += count;
        return count;
    }

    double Done() const override {
        return size_ == 0 ? 1 : static_cast<double>(read_) / static_cast<double>(size_);
    }

  private:
    std::ifstream file_;
    std::uint64_t size_ = 0;
    std::uint64_t read_ = 0;
};

class MemoryBytes : public ByteStream {
  public:
    MemoryBytes(std::shared_ptr<const std::string> bytes, std::size_t offset, std::size_t size)
        : bytes_(std::move(bytes)), size_(size) {
        rest_ = std::string_view(*bytes_).substr(std::min(offset, bytes_->size()), size);
    }

    std::size_t Read(char* to, std::size_t size) override {
        const std::size_t count = std::min(size, rest_.size());
        std::copy_n(rest_.data(), count, to);
        rest_.remove_prefix(count);
        return count;
    }

    double Done() const override {
        return size_ == 0 ? 1 : 1 - static_cast<double>(rest_.size()) / static_cast<double>(size_);
    }

  private:
    std::shared_ptr<const std::string> bytes_;
    std::string_view rest_;
    std::size_t size_;
};

// zlib's unpacking over another stream; one gzip file may follow another as gzip itself allows.
class Inflater : public ByteStream {
  public:
    enum class Form { Gzip, Raw };

    Inflater(std::unique_ptr<ByteStream> packed, Form form)
        : packed_(std::move(packed)), input_(kChunk), form_(form) {
        constexpr int kRawWindow = -15;
        constexpr int kGzipWindow = 15 + 16;
        if (inflateInit2(&state_, form == Form::Raw ? kRawWindow : kGzipWindow) != Z_OK) {
            error_ = "no memory to unpack it";
        }
    }
    ~Inflater() override { inflateEnd(&state_); }

    std::size_t Read(char* to, std::size_t size) override {
        state_.next_out = reinterpret_cast<Bytef*>(to);
        state_.avail_out = static_cast<uInt>(std::min(size, kMostAtOnce));
        const std::size_t wanted = state_.avail_out;
        while (state_.avail_out > 0 && !atEnd_ && error_.empty()) {
            Step();
        }
        const std::size_t count = wanted - state_.avail_out;
        unpacked_ += count;
        if (unpacked_ > kTrusted && unpacked_ / kMostTimes > taken_) {
            error_ = "unpacks to more than " + std::to_string(kMostTimes) +
                     " times its size: is no text";
            return 0;
        }
        return count;
    }

    double Done() const override { return packed_->Done(); }

  private:
    static constexpr std::size_t kMostAtOnce = std::size_t{1} << 30U;
    static constexpr std::uint64_t kTrusted = std::uint64_t{8} << 20U;
    static constexpr std::uint64_t kMostTimes = 200;  // texts of navigation data: 3 to 20

    void Step() {
        if (state_.avail_in == 0) {
            const std::size_t count = packed_->Read(input_.data(), input_.size());
            if (count == 0) {
                // Between two gzip files is the place to end.
                atEnd_ = isBetween_;
                error_ = atEnd_ || !packed_->Error().empty() ? packed_->Error() : kCutShort;
                return;
            }
            taken_ += count;
            state_.next_in = reinterpret_cast<Bytef*>(input_.data());
            state_.avail_in = static_cast<uInt>(count);
        }
        if (isBetween_ && *state_.next_in != 0x1F) {
            atEnd_ = true;  // padding behind the last file
            return;
        }
        isBetween_ = false;
        const int code = inflate(&state_, Z_NO_FLUSH);
        if (code == Z_STREAM_END && form_ == Form::Raw) {
            atEnd_ = true;
        } else if (code == Z_STREAM_END) {
            isBetween_ = true;
            inflateReset(&state_);
        } else if (code != Z_OK && code != Z_BUF_ERROR) {
            error_ = std::string("is damaged (") +
                     (state_.msg != nullptr ? state_.msg : "cannot be unpacked") + ")";
        }
    }

    std::unique_ptr<ByteStream> packed_;
    std::vector<char> input_;
    z_stream state_{};
    Form form_;
    bool isBetween_ = false;
    bool atEnd_ = false;
    std::uint64_t unpacked_ = 0;
    std::uint64_t taken_ = 0;
};

// A stream whose first bytes have been looked at.
class Prefixed : public ByteStream {
  public:
    Prefixed(std::string first, std::unique_ptr<ByteStream> rest)
        : first_(std::move(first)), rest_(std::move(rest)) {
        error_ = rest_->Error();
    }

    std::size_t Read(char* to, std::size_t size) override {
        const std::size_t count = std::min(size, first_.size() - given_);
        std::copy_n(first_.data() + given_, count, to);
        given_ += count;
        const std::size_t more = count < size ? rest_->Read(to + count, size - count) : 0;
        error_ = rest_->Error();
        return count + more;
    }

    double Done() const override { return rest_->Done(); }

  private:
    std::string first_;
    std::size_t given_ = 0;
    std::unique_ptr<ByteStream> rest_;
};

class Member : public ByteStream {
  public:
    Member(std::unique_ptr<ByteStream> bytes, std::uint64_t size, std::uint32_t checksum)
        : bytes_(std::move(bytes)), size_(size), checksum_(checksum) {}

    std::size_t Read(char* to, std::size_t size) override {
        if (!error_.empty()) {
            return 0;
        }
        const std::size_t count = bytes_->Read(to, size);
        sum_ = static_cast<std::uint32_t>(
            crc32(sum_, reinterpret_cast<const Bytef*>(to), static_cast<uInt>(count)));
        read_ += count;
        error_ = bytes_->Error();
        const bool ended = count < size && error_.empty();
        if (read_ > size_ || (ended && (read_ < size_ || sum_ != checksum_))) {
            error_ = "is damaged (not what its archive says of it)";
        }
        return error_.empty() ? count : 0;
    }

    double Done() const override { return bytes_->Done(); }

  private:
    std::unique_ptr<ByteStream> bytes_;
    std::uint64_t size_;
    std::uint64_t read_ = 0;
    std::uint32_t checksum_;
    std::uint32_t sum_ = 0;
};

}  // namespace

std::unique_ptr<ByteStream> OpenFileBytes(const std::string& path, std::uint64_t offset,
                                          std::uint64_t size) {
    return std::make_unique<FileBytes>(path, offset, size);
}

std::unique_ptr<ByteStream> OpenMemoryBytes(std::shared_ptr<const std::string> bytes,
                                            std::size_t offset, std::size_t size) {
    return std::make_unique<MemoryBytes>(std::move(bytes), offset, size);
}

std::unique_ptr<ByteStream> UnpackGzip(std::unique_ptr<ByteStream> packed) {
    std::string first(2, '\0');
    first.resize(packed->Read(first.data(), first.size()));
    const bool isGzip = first == "\x1F\x8B";
    auto all = std::make_unique<Prefixed>(std::move(first), std::move(packed));
    if (!isGzip) {
        return all;
    }
    return std::make_unique<Inflater>(std::move(all), Inflater::Form::Gzip);
}

std::unique_ptr<ByteStream> UnpackMember(std::unique_ptr<ByteStream> packed, bool isDeflated,
                                         std::uint64_t size, std::uint32_t checksum) {
    if (isDeflated) {
        packed = std::make_unique<Inflater>(std::move(packed), Inflater::Form::Raw);
    }
    return std::make_unique<Member>(std::move(packed), size, checksum);
}

}  // namespace avqdata
