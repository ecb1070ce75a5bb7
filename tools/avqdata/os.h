// avqdata/os.h - what the two systems do in ways of their own.
#pragma once

#include <string>
#include <vector>

namespace avqdata {

int ProcessNumber();
bool IsErrorsTerminal();  // somebody watches standard error

// The command line in UTF-8, the program's name first.
std::vector<std::string> CommandLine(int argc, char** argv);

// Two folders of one disk take each other's place in one step. False where the system or the disk
// has no such step; nothing has changed then.
bool ExchangeFolders(const std::string& one, const std::string& other);

}  // namespace avqdata
