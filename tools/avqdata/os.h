// avqdata/os.h - what the two systems do in ways of their own.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace avqdata {

int ProcessNumber();
bool IsErrorsTerminal();  // somebody watches standard error

// File names are UTF-8 wherever a text holds one; a path is made of such a text and turned back
// into one here alone. What is no UTF-8, or no name in it, becomes another name, never an error.
std::filesystem::path PathOf(std::string_view utf8);
std::string TextOf(const std::filesystem::path& path);

// Makes the terminal read what is printed as UTF-8, until the program ends.
void PrintUtf8();

// The command line in UTF-8, the program's name first.
std::vector<std::string> CommandLine(int argc, char** argv);

// Two folders of one disk take each other's place in one step. False where the system or the disk
// has no such step; nothing has changed then.
bool ExchangeFolders(const std::filesystem::path& one, const std::filesystem::path& other);

}  // namespace avqdata
