// avqdata/output_file.h - writing what was asked for.
#pragma once

#include <filesystem>
#include <string>
#include <system_error>

namespace avqdata {

// Makes a file, or makes it anew. False, with the system's reason, when not all of it was written.
bool WriteWhole(const std::filesystem::path& path, const std::string& text, std::error_code& code);

// Written beside the target and renamed, so that nobody ever sees half a file. False, with `error`,
// when it is there already and `force` is off, or cannot be written.
bool WriteOutputFile(const std::string& path, const std::string& text, bool force,
                     std::string& error);

}  // namespace avqdata
