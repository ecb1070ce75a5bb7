#include "gaugecheck/scenario.h"

#include <cstdio>
#include <sstream>

#include "gaugecheck/gauge_host.h"

namespace gaugecheck {

const char* const kPlainScenario =
    "set 773 1\n"
    "position 42.3895 -71.1381\n"
    "frames 40\n"
    "snapshot start\n"
    "click-everything\n"
    "snapshot end\n";

namespace {

std::string Cleaned(const std::string& text) {
    std::string clean;
    for (const char each : text) {
        clean += each == '\t' || each == '\n' ? ' ' : each;
    }
    return clean;
}

bool WriteTexts(const std::string& path) {
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) {
        return false;
    }
    for (const auto& placement : host.placements) {
        for (const DrawnText& text : placement->texts) {
            std::fprintf(file, "%s\t%.2f\t%.2f\t%.2f\t%08X\t%s\n", placement->header.name, text.x,
                         text.y, text.pixelSize, static_cast<unsigned>(text.argb),
                         Cleaned(text.text).c_str());
        }
    }
    return std::fclose(file) == 0;
}

bool Snapshot(const std::string& folder) {
    bool written = MakeFolder(folder) && WriteTexts(folder + "/texts.txt");
    for (const auto& placement : host.placements) {
        const std::string base = folder + "/" + placement->header.name;
        if (const DrawingSurface* const surface = SurfaceOf(*placement)) {
            written = WriteBmp(base + ".surface.bmp", CopyDrawingSurface(*surface)) && written;
        }
        const Picture composed = Compose(*placement);
        if (composed.width > 0) {
            written = WriteBmp(base + ".bmp", composed) && written;
        }
    }
    return written;
}

bool ClickAt(const std::string& gauge, int x, int y) {
    Placement* const placement = FindPlacement(gauge);
    if (placement == nullptr) {
        return false;
    }
    for (const ClickTarget& target : ClickTargets(*placement)) {
        const avq1::PixelBox& box = target.rectangle->box;
        const int left = target.x - box.width / 2;
        const int top = target.y - box.height / 2;
        if (x >= left && x < left + box.width && y >= top && y < top + box.height) {
            Click(*placement, target);
            RunFrame();
            return true;
        }
    }
    return false;
}

int ClickEverything() {
    int clicks = 0;
    for (const auto& placement : host.placements) {
        for (const ClickTarget& target : ClickTargets(*placement)) {
            Click(*placement, target);
            RunFrame(*placement);
            ++clicks;
        }
    }
    return clicks;
}

void SetPosition(double latitude, double longitude) {
    constexpr double kLatitudeUnitDeg = 8.998425275459816e-06;
    constexpr double kLongitudeUnitDeg = 8.381903171539307e-08 / 65536.0;
    host.variables[71] = latitude / kLatitudeUnitDeg;
    host.variables[72] = (longitude < 0 ? longitude + 360.0 : longitude) / kLongitudeUnitDeg;
}

bool RunCommand(const std::string& line, const std::string& outputFolder) {
    std::istringstream words(line);
    std::string command;
    words >> command;
    if (command == "set") {
        std::size_t number = 0;
        double value = 0;
        words >> number >> value;
        if (words.fail() || number >= host.variables.size()) {
            return false;
        }
        host.variables[number] = value;
    } else if (command == "position") {
        double latitude = 0;
        double longitude = 0;
        words >> latitude >> longitude;
        SetPosition(latitude, longitude);
    } else if (command == "click") {
        std::string gauge;
        int x = 0;
        int y = 0;
        words >> gauge >> x >> y;
        return !words.fail() && ClickAt(gauge, x, y);
    } else if (command == "frames") {
        int count = 0;
        words >> count;
        for (int i = 0; i < count; ++i) {
            RunFrame();
        }
    } else if (command == "snapshot") {
        std::string name;
        words >> name;
        return !words.fail() && Snapshot(outputFolder + "/" + name);
    } else if (command == "click-everything") {
        std::printf("clicked %d areas\n", ClickEverything());
    } else {
        return false;
    }
    return !words.fail();
}

}  // namespace

bool RunScenario(const std::string& text, const std::string& outputFolder, std::string& error) {
    std::istringstream lines(text);
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        if (line.empty() || line.front() == '#') {
            continue;
        }
        std::printf("%s\n", line.c_str());
        std::fflush(stdout);
        if (!RunCommand(line, outputFolder)) {
            error = "line " + std::to_string(number) + " cannot be done: " + line;
            return false;
        }
    }
    return true;
}

}  // namespace gaugecheck
