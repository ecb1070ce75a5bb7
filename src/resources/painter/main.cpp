// Paints every bitmap of the gauge table: avq1_paint_bezels FOLDER [--png FOLDER]
//
// FOLDER receives NNNN.bmp for each bitmap, resources.bin (the Linux module's section) and avq1.rc
// (the Windows module's script). Files whose contents did not change are left alone, so nothing is
// rebuilt for them. --png also writes viewable copies.
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "host/gauge_table.h"
#include "resources/painter/bezels.h"
#include "resources/painter/inventory.h"
#include "resources/painter/pack.h"

namespace {

bool WriteIfChanged(const std::filesystem::path& path, const std::string& contents) {
    {
        std::ifstream present(path, std::ios::binary);
        const std::string before{std::istreambuf_iterator<char>(present), {}};
        if (present.is_open() && before == contents) {
            return true;
        }
    }
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    if (!file.flush()) {
        std::fprintf(stderr, "cannot write %s\n", path.c_str());
        return false;
    }
    return true;
}

bool PaintAll(const std::filesystem::path& folder, const std::filesystem::path& pngFolder) {
    const std::vector<avq1::BitmapPlan> plans = avq1::PlanBitmaps(avq1::GaugeTable());
    std::vector<avq1::PackedResource> packed;
    bool good = true;
    for (const avq1::BitmapPlan& plan : plans) {
        const auto painting = avq1::PaintBitmap(plans, plan);
        const bool keepBlack = plan.role == avq1::BitmapRole::Screen;
        std::string bmp = avq1::EncodeBmp(painting->Pixels(), plan.size.x, plan.size.y, keepBlack);
        const std::string name = avq1::BitmapFileName(plan.number);
        good = WriteIfChanged(folder / name, bmp) && good;
        if (!pngFolder.empty()) {
            good = painting->WritePng((pngFolder / (name + ".png")).c_str()) && good;
        }
        const auto number = static_cast<std::uint32_t>(plan.number);
        packed.push_back({number, avq1::kKindBitmap, std::move(bmp)});
        std::string keyNames = avq1::KeyNames(plan);
        if (!keyNames.empty()) {
            packed.push_back({number, avq1::kKindKeyNames, std::move(keyNames)});
        }
    }
    good = WriteIfChanged(folder / "avq1.rc", avq1::ResourceScript(plans)) && good;
    return WriteIfChanged(folder / "resources.bin", avq1::PackResources(packed)) && good;
}

}  // namespace

int main(int argc, char** argv) {
    const bool withPng = argc == 4 && std::strcmp(argv[2], "--png") == 0;
    if (argc != 2 && !withPng) {
        std::fprintf(stderr, "usage: %s FOLDER [--png FOLDER]\n", argv[0]);
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    const std::filesystem::path pngFolder = withPng ? argv[3] : "";
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (withPng) {
        std::filesystem::create_directories(pngFolder, error);
    }
    return PaintAll(folder, pngFolder) ? 0 : 1;
}
