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

std::vector<std::string> CommandLine(int argc, char** argv) {
    return {argv, argv + argc};
}

bool ExchangeFolders(const std::string& one, const std::string& other) {
    return renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE) == 0;
}

}  // namespace avqdata
