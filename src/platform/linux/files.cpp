#include "platform/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace avq1 {
namespace {

// A file beyond this is none of ours: refusing it is better than filling the memory.
constexpr off_t kLargestFileBytes = off_t{1} << 30;

constexpr mode_t kNewFolderMode = 0777;
constexpr mode_t kNewFileMode = 0644;

bool Exists(const std::string& path) {
    struct stat status = {};
    return lstat(path.c_str(), &status) == 0;
}

struct DirectoryCloser {
    void operator()(DIR* directory) const { closedir(directory); }
};
using Directory = std::unique_ptr<DIR, DirectoryCloser>;

// The entry of `folder` that equals `name` but for letter case; the first in sorting order when
// several do. Empty when there is none.
std::string FindEntry(const std::string& folder, const std::string& name) {
    const Directory directory(opendir(folder.c_str()));
    std::string found;
    while (directory != nullptr) {
        const dirent* const entry = readdir(directory.get());
        if (entry == nullptr) {
            break;
        }
        if (strcasecmp(entry->d_name, name.c_str()) == 0 &&
            (found.empty() || found > entry->d_name)) {
            found = entry->d_name;
        }
    }
    return found;
}

// The path on this file system: components that exist as written stay, others take the spelling
// of an entry that differs in letter case only. Empty for a path that cannot name a file.
std::string ResolvePath(std::string_view path) {
    if (path.empty() || path.find('\0') != std::string_view::npos) {
        return {};
    }
    std::string native(path);
    std::replace(native.begin(), native.end(), '\\', '/');
    if (Exists(native)) {
        return native;
    }
    std::string resolved = native.front() == '/' ? "/" : "";
    std::size_t at = 0;
    while (at < native.size()) {
        const std::size_t end = std::min(native.find('/', at), native.size());
        std::string component = native.substr(at, end - at);
        at = end + 1;
        if (component.empty()) {
            continue;
        }
        if (!Exists(resolved + component)) {
            const std::string spelled = FindEntry(resolved.empty() ? "." : resolved, component);
            if (!spelled.empty()) {
                component = spelled;
            }
        }
        resolved += component;
        if (at <= native.size()) {
            resolved += '/';
        }
    }
    return resolved;
}

class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int number() const { return number_; }
    bool valid() const { return number_ >= 0; }
    bool Close() {
        const bool closed = number_ < 0 || close(number_) == 0;
        number_ = -1;
        return closed;
    }

  private:
    int number_;
};

bool ReadToEnd(int descriptor, std::string& contents) {
    std::size_t filled = 0;
    while (true) {
        if (filled == contents.size()) {
            if (static_cast<off_t>(filled) >= kLargestFileBytes) {
                return false;
            }
            contents.resize(filled + 4096);
        }
        const ssize_t count = read(descriptor, contents.data() + filled, contents.size() - filled);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return false;
        }
        if (count == 0) {
            contents.resize(filled);
            return true;
        }
        filled += static_cast<std::size_t>(count);
    }
}

bool WriteAll(int descriptor, std::string_view contents) {
    while (!contents.empty()) {
        const ssize_t count = write(descriptor, contents.data(), contents.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return false;
        }
        contents.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

// Some file systems find out only now that the disk is full; some cannot tell at all.
bool ReachesDisk(int descriptor) {
    return fsync(descriptor) == 0 || errno == EINVAL || errno == ENOSYS;
}

// A descriptor of the regular file at `path`, or -1.
int OpenRegularFile(std::string_view path, off_t& fileSize) {
    const std::string resolved = ResolvePath(path);
    // Non-blocking, so that a pipe of this name cannot hang the panel.
    const int descriptor =
        resolved.empty() ? -1 : open(resolved.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat status = {};
    if (descriptor >= 0 && fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
        status.st_size < kLargestFileBytes) {
        fileSize = status.st_size;
        return descriptor;
    }
    if (descriptor >= 0) {
        close(descriptor);
    }
    return -1;
}

void CreateParentFolders(const std::string& path) {
    for (std::size_t slash = path.find('/', 1); slash != std::string::npos;
         slash = path.find('/', slash + 1)) {
        mkdir(path.substr(0, slash).c_str(), kNewFolderMode);
    }
}

}  // namespace

bool ReadWholeFile(std::string_view path, std::string& contents) {
    off_t fileSize = 0;
    const Descriptor file(OpenRegularFile(path, fileSize));
    if (!file.valid()) {
        contents.clear();
        return false;
    }
    // One byte more than the file holds: the read that finds the end then needs no growth. A
    // string that held the file before is not cleared first, which would write it twice.
    contents.resize(static_cast<std::size_t>(fileSize) + 1);
    if (!ReadToEnd(file.number(), contents)) {
        contents.clear();
        return false;
    }
    return true;
}

bool ReadFilePart(std::string_view path, std::size_t offset, std::size_t size,
                  std::string& contents) {
    off_t fileSize = 0;
    const Descriptor file(OpenRegularFile(path, fileSize));
    if (!file.valid()) {
        contents.clear();
        return false;
    }
    // not cleared first: what held a part before would be written twice
    const std::size_t available = std::max(static_cast<std::size_t>(fileSize), offset) - offset;
    contents.resize(std::min(size, available));
    std::size_t filled = 0;
    while (filled < contents.size()) {
        const ssize_t count = pread(file.number(), contents.data() + filled,
                                    contents.size() - filled, static_cast<off_t>(offset + filled));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            contents.clear();
            return false;
        }
        if (count == 0) {
            break;
        }
        filled += static_cast<std::size_t>(count);
    }
    contents.resize(filled);
    return true;
}

FileStamp StampOf(std::string_view path) {
    constexpr std::int64_t kNanoseconds = 1'000'000'000;
    const std::string resolved = ResolvePath(path);
    struct stat status = {};
    if (resolved.empty() || stat(resolved.c_str(), &status) != 0) {
        return {};
    }
    return {static_cast<std::uint64_t>(status.st_size),
            std::int64_t{status.st_mtim.tv_sec} * kNanoseconds + status.st_mtim.tv_nsec};
}

bool ReplaceFile(std::string_view path, std::string_view contents) {
    const std::string resolved = ResolvePath(path);
    if (resolved.empty() || resolved.back() == '/') {
        return false;
    }
    CreateParentFolders(resolved);
    struct stat status = {};
    const bool existed = stat(resolved.c_str(), &status) == 0;
    std::string temporary = resolved + ".XXXXXX";
    Descriptor file(mkostemp(temporary.data(), O_CLOEXEC));
    if (!file.valid()) {
        return false;
    }
    // Not every file system has modes to set.
    fchmod(file.number(), existed ? status.st_mode & 0777 : kNewFileMode);
    const bool written = WriteAll(file.number(), contents) && ReachesDisk(file.number());
    const bool closed = file.Close();
    if (written && closed && rename(temporary.c_str(), resolved.c_str()) == 0) {
        return true;
    }
    unlink(temporary.c_str());
    return false;
}

bool AppendToFile(std::string_view path, std::string_view contents, FileStart start) {
    const std::string resolved = ResolvePath(path);
    if (resolved.empty() || resolved.back() == '/') {
        return false;
    }
    CreateParentFolders(resolved);
    // Non-blocking and looked at first, so that a pipe of this name cannot hang the panel.
    Descriptor file(open(resolved.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_NONBLOCK | O_CLOEXEC,
                         kNewFileMode));
    struct stat status = {};
    if (!file.valid() || fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode) ||
        (start == FileStart::Anew && ftruncate(file.number(), 0) != 0)) {
        return false;
    }
    const bool written = WriteAll(file.number(), contents);
    return file.Close() && written;
}

bool ListFolder(std::string_view folder, std::vector<std::string>& names) {
    names.clear();
    const std::string resolved = ResolvePath(folder);
    const Directory directory(resolved.empty() ? nullptr : opendir(resolved.c_str()));
    if (directory == nullptr) {
        return false;
    }
    while (const dirent* const entry = readdir(directory.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") {
            names.emplace_back(name);
        }
    }
    std::sort(names.begin(), names.end());
    return true;
}

std::string CurrentDirectory(std::size_t maxLength) {
    const std::unique_ptr<char, decltype(&std::free)> whole(getcwd(nullptr, 0), &std::free);
    std::string folder = whole == nullptr ? "" : whole.get();
    while (!folder.empty() && folder.back() == '/') {
        folder.pop_back();
    }
    if (folder.size() > maxLength) {
        folder.resize(maxLength);
    }
    return folder;
}

}  // namespace avq1
