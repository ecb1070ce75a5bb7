#include <dlfcn.h>
#include <elf.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

#include "gaugecheck/os.h"

namespace gaugecheck {
namespace {

constexpr std::uint32_t kKindBitmap = 2;
constexpr std::size_t kBmpFileHeader = 14;

template <class Record>
bool ReadRecord(const std::string& bytes, std::size_t at, Record& record) {
    if (at > bytes.size() || bytes.size() - at < sizeof record) {
        return false;
    }
    std::memcpy(&record, bytes.data() + at, sizeof record);
    return true;
}

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The bytes of a section of an ELF file; empty when it has none of that name.
std::string FindSection(const std::string& file, const std::string& name) {
    Elf64_Ehdr header;
    Elf64_Shdr names;
    if (!ReadRecord(file, 0, header) ||
        !ReadRecord(file, header.e_shoff + std::size_t{header.e_shstrndx} * sizeof names, names)) {
        return {};
    }
    for (std::size_t i = 0; i < header.e_shnum; ++i) {
        Elf64_Shdr section;
        if (ReadRecord(file, header.e_shoff + i * sizeof section, section) &&
            file.compare(names.sh_offset + section.sh_name, name.size() + 1, name.c_str(),
                         name.size() + 1) == 0) {
            return file.substr(section.sh_offset, section.sh_size);
        }
    }
    return {};
}

}  // namespace

bool LoadGaugeModule(const std::string& path, LoadedModule& module, std::string& error) {
    module.handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module.handle == nullptr) {
        error = dlerror();
        return false;
    }
    module.path = path;
    module.linkage = static_cast<avq1::LinkageRecord*>(dlsym(module.handle, "Linkage"));
    module.importTable = static_cast<avq1::ImportTableRecord*>(dlsym(module.handle, "ImportTable"));
    if (module.linkage == nullptr || module.importTable == nullptr) {
        error = "\"" + path + "\" is no gauge module: it exports no Linkage and ImportTable";
        return false;
    }
    return true;
}

void UnloadGaugeModule(LoadedModule& module) {
    dlclose(module.handle);
    module = LoadedModule{};
}

bool LoadBitmapResource(const LoadedModule& module, int number, Picture& picture) {
    static const std::string section = FindSection(ReadFile(module.path), ".avq_res");
    struct Row {
        std::uint32_t number, kind, offset, size;
    };
    constexpr std::size_t kFirstRow = 12;
    Row row;
    for (std::size_t at = kFirstRow; ReadRecord(section, at, row); at += sizeof row) {
        if (row.kind == kKindBitmap && row.number == static_cast<std::uint32_t>(number)) {
            return row.size > kBmpFileHeader && row.offset <= section.size() &&
                   row.size <= section.size() - row.offset &&
                   ReadDib(reinterpret_cast<const std::uint8_t*>(section.data()) + row.offset +
                               kBmpFileHeader,
                           row.size - kBmpFileHeader, picture);
        }
    }
    return false;
}

DrawingSurface MakeDrawingSurface(int width, int height) {
    auto* const context = new avq1::PixelDeviceContext;
    context->width = width;
    context->height = height;
    context->bytesPerRow = width * 4;
    context->pixels = new std::uint32_t[static_cast<std::size_t>(width) * height]();
    return {context, context->pixels, width, height, nullptr};
}

void FreeDrawingSurface(DrawingSurface& surface) {
    delete[] surface.pixels;
    delete static_cast<avq1::PixelDeviceContext*>(surface.deviceContext);
    surface = DrawingSurface{};
}

Picture CopyDrawingSurface(const DrawingSurface& surface) {
    Picture picture(surface.width, surface.height);
    for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
        picture.pixels[i] = surface.pixels[i] & 0xFFFFFF;
    }
    return picture;
}

void ListenForTexts(const LoadedModule& module, TextListener listener) {
    static avq1::PlatformServices services;
    services.size = sizeof services;
    services.text_drawn = listener;
    auto* const table =
        static_cast<avq1::PlatformTableRecord*>(dlsym(module.handle, "PlatformTable"));
    if (table != nullptr) {
        table->services = &services;
    }
}

bool EnterFolder(const std::string& folder) {
    return chdir(folder.c_str()) == 0;
}

bool MakeFolder(const std::string& folder) {
    struct stat status = {};
    return mkdir(folder.c_str(), 0777) == 0 ||
           (stat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode));
}

std::string AbsolutePath(const std::string& path) {
    char absolute[PATH_MAX] = {};
    return realpath(path.c_str(), absolute) != nullptr ? absolute : path;
}

}  // namespace gaugecheck
