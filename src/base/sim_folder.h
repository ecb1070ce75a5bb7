// base/sim_folder.h - the simulator's root folder, taken from the process's current directory by
// the first gauge event that needs it, and the paths below it.
#pragma once

#include <string>
#include <string_view>

namespace avq1 {

inline constexpr std::size_t kSimFolderMaxLength = 260;

extern std::string SimFolder;

// Fills SimFolder from the current directory when it is empty.
void EnsureSimFolder();

// SimFolder followed by a path that begins with a back-slash.
std::string SimPath(std::string_view relative);

}  // namespace avq1
