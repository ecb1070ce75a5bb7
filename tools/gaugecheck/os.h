// gaugecheck/os.h - what loading and drawing need of the operating system, one source file each.
#pragma once

#include <cstdint>
#include <string>

#include "gaugecheck/picture.h"
#include "platform/panel_interface.h"

namespace gaugecheck {

struct LoadedModule {
    void* handle = nullptr;
    std::string path;
    avq1::LinkageRecord* linkage = nullptr;
    avq1::ImportTableRecord* importTable = nullptr;
};

// False with what went wrong in `error`.
bool LoadGaugeModule(const std::string& path, LoadedModule& module, std::string& error);
void UnloadGaugeModule(LoadedModule& module);

// The numbered bitmap of the module's resources.
bool LoadBitmapResource(const LoadedModule& module, int number, Picture& picture);

// A picture the module draws on through a device context.
struct DrawingSurface {
    void* deviceContext = nullptr;
    std::uint32_t* pixels = nullptr;
    int width = 0;
    int height = 0;
    void* bitmap = nullptr;
};
DrawingSurface MakeDrawingSurface(int width, int height);
void FreeDrawingSurface(DrawingSurface& surface);
Picture CopyDrawingSurface(const DrawingSurface& surface);

// A routine that is told every text the module draws, on modules that report them.
using TextListener = void (*)(void* deviceContext, const char* text, double x, double y,
                              double pixelSize, std::uint32_t argb);
void ListenForTexts(const LoadedModule& module, TextListener listener);

bool EnterFolder(const std::string& folder);
bool MakeFolder(const std::string& folder);
std::string AbsolutePath(const std::string& path);

}  // namespace gaugecheck
