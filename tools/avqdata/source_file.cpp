#include "avqdata/source_file.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "avqdata/os.h"
#include "base/text.h"

namespace avqdata {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kChunkSize = std::size_t{1} << 18U;

}  // namespace

std::uint64_t SourceFile::PackedBytes() const {
    std::error_code code;
    if (archive != nullptr) {
        return archive->Members()[member].packedBytes;
    }
    const std::uintmax_t size = fs::file_size(PathOf(path), code);
    return code ? 0 : size;
}

std::unique_ptr<ByteStream> OpenSource(const SourceFile& file) {
    return UnpackGzip(file.archive == nullptr
                          ? OpenFileBytes(file.path)
                          : file.archive->Open(file.archive->Members()[file.member]));
}

bool ReadSourceFile(const SourceFile& file, std::string& text, std::string& error,
                    std::size_t most) {
    text.clear();
    const std::unique_ptr<ByteStream> bytes = OpenSource(file);
    std::size_t count = kChunkSize;
    while (count == kChunkSize && text.size() <= most) {
        const std::size_t size = text.size();
        text.resize(size + kChunkSize);
        count = bytes->Read(text.data() + size, kChunkSize);
        text.resize(size + count);
    }
    const std::string fault =
        text.size() > most
            ? "is too large (more than " + std::to_string(most >> 20U) + " MiB, unpacked)"
            : bytes->Error();
    if (!fault.empty()) {
        error = file.path + ": " + fault;
        text.clear();
    }
    return fault.empty();
}

std::string BaseName(const std::string& path) {
    return TextOf(PathOf(path).filename());
}

bool ReadBoundedFile(const std::string& path, const char* what, std::string& text,
                     std::string& error) {
    constexpr std::size_t kLargestBytes = std::size_t{16} << 20U;
    std::error_code code;
    const std::uintmax_t size = fs::file_size(PathOf(path), code);
    if (!code && size > kLargestBytes) {
        error = path + ": is too large for " + what;
        return false;
    }
    return ReadSourceFile(path, text, error, kLargestBytes);
}

std::string FindSource(const std::string& folder, const std::vector<std::string>& names) {
    std::error_code error;
    std::vector<std::string> present;
    for (fs::directory_iterator entry(PathOf(folder), error), end; !error && entry != end;
         entry.increment(error)) {
        present.push_back(TextOf(entry->path().filename()));
    }
    std::sort(present.begin(), present.end());
    for (const std::string& name : names) {
        for (const std::string& have : present) {
            if (avq1::EqualsIgnoreCase(have, name) || avq1::EqualsIgnoreCase(have, name + ".gz")) {
                return TextOf(PathOf(folder) / PathOf(have));
            }
        }
    }
    return {};
}

LineSource LineSource::OfText(std::string_view text, std::string name) {
    LineSource source;
    source.name_ = std::move(name);
    source.rest_ = text;
    return source;
}

LineSource LineSource::OfFile(const SourceFile& file, const Progress& progress) {
    LineSource source;
    source.name_ = BaseName(file.path);
    source.progress_ = progress;
    source.bytes_ = OpenSource(file);
    if (!source.bytes_->Error().empty()) {
        source.error_ = file.path + ": " + source.bytes_->Error();
        source.bytes_.reset();
    }
    return source;
}

void LineSource::Refill() {
    buffer_.erase(0, buffer_.size() - rest_.size());
    const std::size_t kept = buffer_.size();
    buffer_.resize(kept + kChunkSize);
    const std::size_t count = bytes_->Read(buffer_.data() + kept, kChunkSize);
    buffer_.resize(kept + count);
    rest_ = buffer_;
    if (progress_) {
        progress_(name_, bytes_->Done());
    }
    if (count < kChunkSize) {
        if (!bytes_->Error().empty()) {
            error_ = name_ + ": " + bytes_->Error();
            rest_ = {};
        }
        bytes_.reset();
    }
}

bool LineSource::Next(std::string_view& line) {
    std::size_t end = rest_.find('\n');
    while (end == std::string_view::npos && bytes_ != nullptr) {
        if (rest_.size() > kLongestSourceLine) {
            error_ = name_ + ":" + std::to_string(lineNumber_ + 1) + ": a line of more than " +
                     std::to_string(kLongestSourceLine) + " characters: is no file of this kind";
            rest_ = {};
            bytes_.reset();
            return false;
        }
        Refill();
        end = rest_.find('\n');
    }
    if (rest_.empty()) {
        return false;
    }
    end = std::min(end, rest_.size());
    line = rest_.substr(0, end);
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    ++lineNumber_;
    return true;
}

}  // namespace avqdata
