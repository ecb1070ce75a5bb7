#include "avqdata/source_file.h"

#include <zlib.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "base/text.h"

namespace avqdata {
namespace {

namespace fs = std::filesystem;

constexpr unsigned kChunkSize = 1U << 18U;

// Why reading stopped, empty when it stopped at the end.
std::string StreamError(gzFile stream) {
    int code = Z_OK;
    const char* const text = gzerror(stream, &code);
    if (code == Z_OK || code == Z_STREAM_END) {
        return {};
    }
    if (code == Z_BUF_ERROR) {
        return "the compressed file is cut short";
    }
    return code == Z_ERRNO ? "cannot be read" : std::string("is damaged (") + text + ")";
}

bool IsRegularFile(const std::string& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

}  // namespace

struct LineSource::File {
    gzFile stream = nullptr;
    double size = 1;
    Progress progress;

    File() = default;
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() {
        if (stream != nullptr) {
            gzclose(stream);
        }
    }
};

bool ReadSourceFile(const std::string& path, std::string& text, std::string& error,
                    std::size_t most) {
    text.clear();
    gzFile stream = IsRegularFile(path) ? gzopen(path.c_str(), "rb") : nullptr;
    if (stream == nullptr) {
        error = path + ": cannot be opened";
        return false;
    }
    gzbuffer(stream, kChunkSize);
    int count = 1;
    while (count > 0 && text.size() <= most) {
        const std::size_t size = text.size();
        text.resize(size + kChunkSize);
        count = gzread(stream, text.data() + size, kChunkSize);
        text.resize(size + static_cast<std::size_t>(std::max(count, 0)));
    }
    const std::string fault =
        text.size() > most
            ? "is too large (more than " + std::to_string(most >> 20U) + " MiB, unpacked)"
            : StreamError(stream);
    gzclose(stream);
    if (!fault.empty()) {
        error = path + ": " + fault;
        text.clear();
    }
    return fault.empty();
}

std::string BaseName(const std::string& path) {
    return fs::path(path).filename().string();
}

bool ReadBoundedFile(const std::string& path, const char* what, std::string& text,
                     std::string& error) {
    constexpr std::size_t kLargestBytes = std::size_t{16} << 20U;
    std::error_code code;
    const std::uintmax_t size = std::filesystem::file_size(path, code);
    if (!code && size > kLargestBytes) {
        error = path + ": is too large for " + what;
        return false;
    }
    return ReadSourceFile(path, text, error, kLargestBytes);
}

std::string FindSource(const std::string& folder, const std::vector<std::string>& names) {
    std::error_code error;
    std::vector<std::string> present;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        present.push_back(entry->path().filename().string());
    }
    std::sort(present.begin(), present.end());
    for (const std::string& name : names) {
        for (const std::string& have : present) {
            if (avq1::EqualsIgnoreCase(have, name) || avq1::EqualsIgnoreCase(have, name + ".gz")) {
                return (fs::path(folder) / have).string();
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

LineSource LineSource::OfFile(const std::string& path, const Progress& progress) {
    LineSource source;
    source.name_ = BaseName(path);
    source.file_ = std::make_shared<File>();
    source.file_->progress = progress;
    source.file_->stream = IsRegularFile(path) ? gzopen(path.c_str(), "rb") : nullptr;
    if (source.file_->stream == nullptr) {
        source.error_ = path + ": cannot be opened";
        source.file_.reset();
        return source;
    }
    std::error_code error;
    source.file_->size = std::max(1.0, static_cast<double>(fs::file_size(path, error)));
    gzbuffer(source.file_->stream, kChunkSize);
    return source;
}

void LineSource::Refill() {
    buffer_ = std::string(rest_);
    const std::size_t kept = buffer_.size();
    buffer_.resize(kept + kChunkSize);
    const int count = gzread(file_->stream, buffer_.data() + kept, kChunkSize);
    buffer_.resize(kept + static_cast<std::size_t>(std::max(count, 0)));
    rest_ = buffer_;
    if (file_->progress) {
        file_->progress(name_, static_cast<double>(gzoffset(file_->stream)) / file_->size);
    }
    if (count < static_cast<int>(kChunkSize)) {
        const std::string fault = StreamError(file_->stream);
        if (!fault.empty()) {
            error_ = name_ + ": " + fault;
            rest_ = {};
        }
        file_.reset();
    }
}

bool LineSource::Next(std::string_view& line) {
    std::size_t end = rest_.find('\n');
    while (end == std::string_view::npos && file_ != nullptr) {
        if (rest_.size() > kLongestSourceLine) {
            error_ = name_ + ":" + std::to_string(lineNumber_ + 1) + ": a line of more than " +
                     std::to_string(kLongestSourceLine) + " characters: is no file of this kind";
            rest_ = {};
            file_.reset();
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
