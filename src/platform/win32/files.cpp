// Files through the Windows API: narrow paths in the process's own code page, as the simulator
// hands them on. Only calls every Windows since 2000 has.
#include "platform/files.h"

#include <windows.h>

#include <algorithm>

#undef ReplaceFile  // a macro of the system's headers

namespace avq1 {
namespace {

// A file beyond this is none of ours: refusing it is better than filling the memory.
constexpr std::size_t kLargestFileBytes = std::size_t{1} << 30;

class FileHandle {
  public:
    explicit FileHandle(HANDLE handle) : handle_(handle) {}
    ~FileHandle() { Close(); }
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;
    HANDLE get() const { return handle_; }
    bool valid() const { return handle_ != INVALID_HANDLE_VALUE; }
    bool Close() {
        const bool closed = !valid() || CloseHandle(handle_) != 0;
        handle_ = INVALID_HANDLE_VALUE;
        return closed;
    }

  private:
    HANDLE handle_;
};

// The path as Windows spells it; empty for one that cannot name a file.
std::string NativePath(std::string_view path) {
    if (path.find('\0') != std::string_view::npos) {
        return {};
    }
    std::string native(path);
    std::replace(native.begin(), native.end(), '/', '\\');
    return native;
}

bool WriteAll(HANDLE file, std::string_view contents) {
    while (!contents.empty()) {
        DWORD written = 0;
        const auto piece =
            static_cast<DWORD>(std::min<std::size_t>(contents.size(), std::size_t{1} << 24));
        if (WriteFile(file, contents.data(), piece, &written, nullptr) == 0 || written == 0) {
            return false;
        }
        contents.remove_prefix(written);
    }
    return true;
}

// A file on a disk, not a device or pipe of that name; INVALID_HANDLE_VALUE when there is none.
HANDLE OpenDiskFile(std::string_view path, std::size_t& size) {
    const HANDLE file =
        CreateFileA(NativePath(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                    nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return file;
    }
    LARGE_INTEGER bytes = {};
    if (GetFileType(file) == FILE_TYPE_DISK && GetFileSizeEx(file, &bytes) != 0 &&
        bytes.QuadPart < static_cast<LONGLONG>(kLargestFileBytes)) {
        size = static_cast<std::size_t>(bytes.QuadPart);
        return file;
    }
    CloseHandle(file);
    return INVALID_HANDLE_VALUE;
}

// Fills `contents`, or cuts it where the file ends.
bool ReadToSize(HANDLE file, std::string& contents) {
    std::size_t filled = 0;
    while (filled < contents.size()) {
        DWORD count = 0;
        const auto piece =
            static_cast<DWORD>(std::min<std::size_t>(contents.size() - filled, 1 << 24));
        if (ReadFile(file, contents.data() + filled, piece, &count, nullptr) == 0) {
            return false;
        }
        if (count == 0) {
            break;
        }
        filled += count;
    }
    contents.resize(filled);
    return true;
}

void CreateParentFolders(const std::string& path) {
    for (std::size_t slash = path.find('\\', 1); slash != std::string::npos;
         slash = path.find('\\', slash + 1)) {
        CreateDirectoryA(path.substr(0, slash).c_str(), nullptr);
    }
}

}  // namespace

bool ReadWholeFile(std::string_view path, std::string& contents) {
    return ReadFilePart(path, 0, kLargestFileBytes, contents);
}

bool ReadFilePart(std::string_view path, std::size_t offset, std::size_t size,
                  std::string& contents) {
    std::size_t fileSize = 0;
    const FileHandle file(OpenDiskFile(path, fileSize));
    if (!file.valid()) {
        contents.clear();
        return false;
    }
    offset = std::min(offset, fileSize);
    contents.resize(std::min(size, fileSize - offset));
    if (SetFilePointer(file.get(), static_cast<LONG>(offset), nullptr, FILE_BEGIN) ==
            INVALID_SET_FILE_POINTER ||
        !ReadToSize(file.get(), contents)) {
        contents.clear();
        return false;
    }
    return true;
}

FileStamp StampOf(std::string_view path) {
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    if (GetFileAttributesExA(NativePath(path).c_str(), GetFileExInfoStandard, &data) == 0) {
        return {};
    }
    const auto whole = [](DWORD high, DWORD low) {
        return (static_cast<std::uint64_t>(high) << 32U) | low;
    };
    return {whole(data.nFileSizeHigh, data.nFileSizeLow),
            static_cast<std::int64_t>(
                whole(data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime))};
}

bool ReplaceFile(std::string_view path, std::string_view contents) {
    const std::string native = NativePath(path);
    if (native.empty() || native.back() == '\\') {
        return false;
    }
    CreateParentFolders(native);
    const std::string temporary = native + ".new";
    FileHandle file(CreateFileA(temporary.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.valid()) {
        return false;
    }
    const bool written = WriteAll(file.get(), contents) && FlushFileBuffers(file.get()) != 0;
    const bool closed = file.Close();
    if (written && closed &&
        MoveFileExA(temporary.c_str(), native.c_str(), MOVEFILE_REPLACE_EXISTING) != 0) {
        return true;
    }
    DeleteFileA(temporary.c_str());
    return false;
}

bool AppendToFile(std::string_view path, std::string_view contents, FileStart start) {
    const std::string native = NativePath(path);
    if (native.empty() || native.back() == '\\') {
        return false;
    }
    CreateParentFolders(native);
    const DWORD creation = start == FileStart::Anew ? CREATE_ALWAYS : OPEN_ALWAYS;
    FileHandle file(CreateFileA(native.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, creation,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.valid() || GetFileType(file.get()) != FILE_TYPE_DISK ||
        SetFilePointer(file.get(), 0, nullptr, FILE_END) == INVALID_SET_FILE_POINTER) {
        return false;
    }
    const bool written = WriteAll(file.get(), contents);
    return file.Close() && written;
}

bool ListFolder(std::string_view folder, std::vector<std::string>& names) {
    names.clear();
    std::string pattern = NativePath(folder);
    if (pattern.empty()) {
        return false;
    }
    pattern += pattern.back() == '\\' ? "*" : "\\*";
    WIN32_FIND_DATAA entry;
    const HANDLE search = FindFirstFileA(pattern.c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) {
        return false;
    }
    do {
        const std::string_view name = entry.cFileName;
        if (name != "." && name != "..") {
            names.emplace_back(name);
        }
    } while (FindNextFileA(search, &entry) != 0);
    FindClose(search);
    std::sort(names.begin(), names.end());
    return true;
}

std::string CurrentDirectory(std::size_t maxLength) {
    std::string folder(GetCurrentDirectoryA(0, nullptr), '\0');
    folder.resize(GetCurrentDirectoryA(static_cast<DWORD>(folder.size()), folder.data()));
    while (!folder.empty() && folder.back() == '\\') {
        folder.pop_back();
    }
    if (folder.size() > maxLength) {
        folder.resize(maxLength);
    }
    return folder;
}

}  // namespace avq1
