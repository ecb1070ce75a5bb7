#include <windows.h>
// Behind the system's own header, which it needs.
#include <io.h>
#include <shellapi.h>

#include <cstdio>

#include "avqdata/os.h"

namespace avqdata {

int ProcessNumber() {
    return static_cast<int>(GetCurrentProcessId());
}

bool IsErrorsTerminal() {
    return _isatty(_fileno(stderr)) != 0;
}

std::vector<std::string> CommandLine(int argc, char** argv) {
    int count = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    if (wide == nullptr) {
        return {argv, argv + argc};
    }
    std::vector<std::string> words;
    for (int i = 0; i < count; ++i) {
        const int size = WideCharToMultiByte(CP_UTF8, 0, wide[i], -1, nullptr, 0, nullptr, nullptr);
        std::string word(static_cast<std::size_t>(size > 0 ? size : 1), '\0');
        WideCharToMultiByte(CP_UTF8, 0, wide[i], -1, word.data(), size, nullptr, nullptr);
        word.pop_back();  // the end of the text
        words.push_back(word);
    }
    LocalFree(wide);
    return words;
}

bool ExchangeFolders(const std::string&, const std::string&) {
    return false;
}

}  // namespace avqdata
