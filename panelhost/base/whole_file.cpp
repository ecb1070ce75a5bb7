#include "panelhost/base/whole_file.h"

#include <cerrno>
#include <filesystem>

namespace panelhost {

bool WholeFile::Open(const std::string& path) {
    Abandon();
    std::error_code ignored;
    const auto status = std::filesystem::status(path, ignored);
    const bool direct =
        std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
    path_ = path;
    beside_ = direct ? "" : path + ".part";
    file_.reset(std::fopen((direct ? path_ : beside_).c_str(), "wb"));
    return file_ != nullptr;
}

bool WholeFile::Finish() {
    if (file_ == nullptr) {
        errno = EBADF;
        return false;
    }
    bool written = std::fflush(file_.get()) == 0 && std::ferror(file_.get()) == 0;
    int reason = errno;
    if (std::fclose(file_.release()) != 0 && written) {
        written = false;
        reason = errno;
    }
    if (written && (beside_.empty() || std::rename(beside_.c_str(), path_.c_str()) == 0)) {
        return true;
    }
    reason = written ? errno : reason;
    if (!beside_.empty()) {
        std::remove(beside_.c_str());
    }
    errno = reason;
    return false;
}

void WholeFile::Abandon() {
    if (file_ != nullptr) {
        file_.reset();
        if (!beside_.empty()) {
            std::remove(beside_.c_str());
        }
    }
}

}  // namespace panelhost
