#include "bench/world_data.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "avqdata/build_verb.h"

namespace avq1::bench {
namespace {

namespace fs = std::filesystem;

fs::path SourceFolder() {
    const char* chosen = std::getenv("AVQ1_SHARED_DATA");
    return fs::path(chosen != nullptr ? chosen : AVQ1_SOURCE_DIR "/../shared/data") / "xplane";
}

}  // namespace

std::string WorldSimFolder() {
    if (!fs::exists(SourceFolder() / "fix.dat.gz")) {
        return {};
    }
    const fs::path root = fs::temp_directory_path() / "avq1-bench-world-built";
    const fs::path done = root / "done";
    if (!fs::exists(done)) {
        std::ostringstream report;
        const avqdata::BuildRequest request{.target = (root / "avq" / "navdata").string(),
                                            .sources = {SourceFolder().string()}};
        if (avqdata::RunBuild(request, {}, report, std::cerr) != 0) {
            return {};
        }
        std::ofstream(done) << "1\n";
    }
    return root.string();
}

}  // namespace avq1::bench
