#include "bench/world_data.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "avqdata/build_verb.h"
#include "base/text.h"

namespace avq1::bench {
namespace {

namespace fs = std::filesystem;

constexpr int kLegs = 9;

fs::path SourceFolder() {
    const char* chosen = std::getenv("AVQ1_SHARED_DATA");
    return fs::path(chosen != nullptr ? chosen : AVQ1_SOURCE_DIR "/../shared/data") / "xplane";
}

void WriteRoutes(std::ofstream& out, int procedures) {
    for (int p = 0; p < procedures; ++p) {
        out << Format("T PROC%d header 04L,04R,22L,22R\n", p);
        for (int leg = 0; leg < kLegs; ++leg) {
            out << Format("PROC%d%s FX%03d A%05d --- %.6f %.6f FO\n", p, leg < 6 ? "" : ".TRANS",
                          leg, leg * 1000, 40 + 0.01 * leg, -70 - 0.01 * p);
        }
        out << "*\n";
    }
}

void WriteApproaches(std::ofstream& out, int approaches) {
    for (int a = 0; a < approaches; ++a) {
        for (int leg = 0; leg < kLegs; ++leg) {
            out << Format("%02d ILS FX%03d %s A%05d %.6f %.6f 65.000 66.000 --\n", a + 1, leg,
                          leg == 0   ? "IAF"
                          : leg == 7 ? "FAF"
                                     : "---",
                          leg * 1000, 40 + 0.01 * leg, -70 - 0.01 * a);
        }
    }
}

void WriteProcedureFiles(const fs::path& folder) {
    std::ofstream sids(folder / "avq_sids.txt");
    std::ofstream stars(folder / "avq_stars.txt");
    std::ofstream approaches(folder / "avq_apps.txt");
    std::ifstream airports(folder / "avq_apts.txt");
    int number = 0;
    for (std::string line; std::getline(airports, line);) {
        const std::string section = "[" + line.substr(0, line.find_first_of(" \t")) + "]\n";
        const bool busy = ++number % 40 == 0 || airports.peek() == EOF;
        sids << section;
        stars << section;
        approaches << section;
        WriteRoutes(sids, busy ? 60 : number % 6);
        WriteRoutes(stars, busy ? 60 : number % 6);
        WriteApproaches(approaches, busy ? 30 : number % 8);
    }
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

std::string WorldWithProceduresSimFolder() {
    const std::string world = WorldSimFolder();
    const fs::path root = fs::temp_directory_path() / "avq1-bench-world-procedures";
    const fs::path done = root / "done";
    if (world.empty()) {
        return {};
    }
    if (!fs::exists(done)) {
        fs::copy(world, root, fs::copy_options::recursive | fs::copy_options::overwrite_existing);
        WriteProcedureFiles(root / "avq" / "navdata");
        std::ofstream(done) << "1\n";
    }
    return root.string();
}

}  // namespace avq1::bench
