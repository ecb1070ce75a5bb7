#include "base/sim_folder.h"

#include "base/module_state.h"
#include "platform/files.h"

namespace avq1 {
namespace {

const StateReset kReset([] { SimFolder.clear(); });

}  // namespace

std::string SimFolder;

void EnsureSimFolder() {
    if (SimFolder.empty()) {
        SimFolder = CurrentDirectory(kSimFolderMaxLength);
    }
}

std::string SimPath(std::string_view relative) {
    std::string path;
    path.reserve(SimFolder.size() + relative.size());
    path += SimFolder;
    path += relative;
    return path;
}

}  // namespace avq1
