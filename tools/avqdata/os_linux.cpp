#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

#include "avqdata/os.h"

namespace avqdata {

int ProcessNumber() {
    return getpid();
}

bool IsErrorsTerminal() {
    return isatty(STDERR_FILENO) == 1;
}

std::filesystem::path PathOf(std::string_view utf8) {
    return std::filesystem::path(utf8);
}

std::string TextOf(const std::filesystem::path& path) {
    return path.string();
}

void PrintUtf8() {}

std::vector<std::string> CommandLine(int argc, char** argv) {
    return {argv, argv + argc};
}

bool ExchangeFolders(const std::filesystem::path& one, const std::filesystem::path& other) {
    return renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE) == 0;
}

}  // namespace avqdata
