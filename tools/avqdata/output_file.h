// avqdata/output_file.h - writing what was asked for.
#pragma once

#include <string>

namespace avqdata {

// Written beside the target and renamed, so that nobody ever sees half a file. False, with `error`,
// when it is there already and `force` is off, or cannot be written.
bool WriteOutputFile(const std::string& path, const std::string& text, bool force,
                     std::string& error);

}  // namespace avqdata
