#include "bench/world_data.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <vector>

namespace avq1::bench {
namespace {

namespace fs = std::filesystem;

fs::path SourceFolder() {
    const char* chosen = std::getenv("AVQ1_SHARED_DATA");
    return fs::path(chosen != nullptr ? chosen : AVQ1_SOURCE_DIR "/../shared/data") / "xplane";
}

template <class OnLine>
void ForEachLine(const fs::path& path, OnLine onLine) {
    gzFile file = gzopen(path.c_str(), "rb");
    if (file == nullptr) {
        return;
    }
    std::array<char, 4096> buffer;
    while (gzgets(file, buffer.data(), static_cast<int>(buffer.size())) != nullptr) {
        std::istringstream words(buffer.data());
        onLine(words);
    }
    gzclose(file);
}

std::string Underscored(std::string text) {
    std::ranges::replace_if(
        text, [](unsigned char c) { return std::isspace(c) != 0; }, '_');
    return text.empty() ? "-" : text;
}

void WriteFixes(const fs::path& folder) {
    std::ofstream out(folder / "avq_ints.txt");
    ForEachLine(SourceFolder() / "fix.dat.gz", [&](std::istringstream& words) {
        double latitude = 0;
        double longitude = 0;
        std::string ident;
        if (words >> latitude >> longitude >> ident) {
            out << ident << ' ' << ident << ' ' << latitude << ' ' << longitude << '\n';
        }
    });
}

void WriteNavaids(const fs::path& folder) {
    std::vector<std::string> lines;
    ForEachLine(SourceFolder() / "nav.dat.gz", [&](std::istringstream& words) {
        int code = 0;
        std::string latitude, longitude, elevation, frequency, range, extra, ident, name;
        if (!(words >> code >> latitude >> longitude >> elevation >> frequency >> range >> extra >>
              ident >> name) ||
            (code != 2 && code != 3)) {
            return;
        }
        const bool vor = code == 3;
        if (vor && frequency.size() > 2) {
            frequency.insert(frequency.size() - 2, ".");
        }
        lines.push_back(ident + ' ' + name + ' ' + latitude + ' ' + longitude +
                        (vor ? " VOR " : " NDB ") + frequency);
    });
    std::ranges::sort(lines);
    std::ofstream out(folder / "avq_navs.txt");
    out << ";AIRAC x x 2401 (01/JAN/24 - 28/JAN/24\n";
    for (const std::string& line : lines) {
        out << line << '\n';
    }
}

void WriteAirways(const fs::path& folder) {
    std::ofstream out(folder / "fsb_awy2.txt");
    std::set<std::string> written;
    ForEachLine(SourceFolder() / "awy.dat.gz", [&](std::istringstream& words) {
        std::array<std::string, 10> word;
        for (std::string& text : word) {
            words >> text;
        }
        if (word[9].empty()) {
            return;
        }
        for (const int at : {0, 3}) {
            std::string row = word[9];
            for (const std::string& part : {word[at], word[at + 1], word[at + 2]}) {
                row += row.size() == word[9].size() ? " 0010 " : " ";
                row += part;
            }
            if (written.insert(row).second) {
                out << row << '\n';
            }
        }
    });
}

struct AirportLine {
    std::string head;
    std::string runways;
    std::string latitude, longitude;
};

void WriteAirports(const fs::path& folder) {
    std::ofstream out(folder / "avq_apts.txt");
    AirportLine airport;
    const auto flush = [&] {
        if (!airport.head.empty() && !airport.runways.empty()) {
            out << airport.head << ' ' << airport.latitude << ' ' << airport.longitude
                << airport.runways << '\n';
        }
        airport = {};
    };
    ForEachLine(SourceFolder() / "apt.dat.gz", [&](std::istringstream& words) {
        std::string code;
        words >> code;
        if (code == "1" || code == "16" || code == "17" || code == "99") {
            flush();
        }
        if (code == "1") {
            std::string elevation, tower, deprecated, ident, name;
            words >> elevation >> tower >> deprecated >> ident;
            std::getline(words, name);
            airport.head = ident + ' ' + Underscored(name) + ' ' + elevation;
        } else if (code == "100" && !airport.head.empty()) {
            std::array<std::string, 12> word;
            for (std::string& text : word) {
                words >> text;
            }
            airport.latitude = word[8];
            airport.longitude = word[9];
            airport.runways += ' ' + word[7] + "_8000_" + word[8] + '_' + word[9] + "_90_0_0_90";
        }
    });
    flush();
}

}  // namespace

std::string WorldSimFolder() {
    if (!fs::exists(SourceFolder() / "fix.dat.gz")) {
        return {};
    }
    const fs::path root = fs::temp_directory_path() / "avq1-bench-world";
    const fs::path done = root / "done";
    if (!fs::exists(done)) {
        const fs::path folder = root / "avq" / "navdata";
        fs::create_directories(folder);
        WriteFixes(folder);
        WriteNavaids(folder);
        WriteAirways(folder);
        WriteAirports(folder);
        std::ofstream(done) << "1\n";
    }
    return root.string();
}

}  // namespace avq1::bench
