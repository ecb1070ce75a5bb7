#include <windows.h>
// Behind the system's own header, which it needs.
#include <io.h>
#include <shellapi.h>

#include <cstdio>
#include <cstdlib>

#include "avqdata/os.h"

namespace avqdata {
namespace {

UINT formerCodePage = 0;  // of the terminal

}  // namespace

int ProcessNumber() {
    return static_cast<int>(GetCurrentProcessId());
}

bool IsErrorsTerminal() {
    return _isatty(_fileno(stderr)) != 0;
}

std::filesystem::path PathOf(std::string_view utf8) {
    const int size = static_cast<int>(utf8.size());
    const int count = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(count > 0 ? count : 0), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), count);
    return std::filesystem::path(wide);
}

std::string TextOf(const std::filesystem::path& path) {
    const std::wstring& wide = path.native();
    const int size = static_cast<int>(wide.size());
    const int count =
        WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(count > 0 ? count : 0), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, text.data(), count, nullptr, nullptr);
    return text;
}

void PrintUtf8() {
    formerCodePage = GetConsoleOutputCP();
    if (formerCodePage != 0 && SetConsoleOutputCP(CP_UTF8) != 0) {
        std::atexit([] { SetConsoleOutputCP(formerCodePage); });
    }
}

std::vector<std::string> CommandLine(int argc, char** argv) {
    int count = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    if (wide == nullptr) {
        return {argv, argv + argc};
    }
    std::vector<std::string> words;
    for (int i = 0; i < count; ++i) {
        words.push_back(TextOf(wide[i]));
    }
    LocalFree(wide);
    return words;
}

bool ExchangeFolders(const std::filesystem::path&, const std::filesystem::path&) {
    return false;
}

}  // namespace avqdata
