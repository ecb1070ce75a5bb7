#include <windows.h>

#include "gaugecheck/os.h"

namespace {

gaugecheck::TextListener textListener = nullptr;

}  // namespace

// The module looks for this export of the program it is loaded into.
extern "C" __declspec(dllexport) void Avq1TextDrawn(void* deviceContext, const char* text, double x,
                                                    double y, double pixelSize,
                                                    std::uint32_t argb) {
    if (textListener != nullptr) {
        textListener(deviceContext, text, x, y, pixelSize, argb);
    }
}

namespace gaugecheck {

bool LoadGaugeModule(const std::string& path, LoadedModule& module, std::string& error) {
    const HMODULE handle = LoadLibraryA(path.c_str());
    if (handle == nullptr) {
        error = "cannot load \"" + path + "\": Windows error " + std::to_string(GetLastError());
        return false;
    }
    const auto record = [handle](const char* name) {
        return reinterpret_cast<void*>(GetProcAddress(handle, name));
    };
    module.handle = handle;
    module.path = path;
    module.linkage = static_cast<avq1::LinkageRecord*>(record("Linkage"));
    module.importTable = static_cast<avq1::ImportTableRecord*>(record("ImportTable"));
    if (module.linkage == nullptr || module.importTable == nullptr) {
        error = "\"" + path + "\" is no gauge module: it exports no Linkage and ImportTable";
        return false;
    }
    return true;
}

void UnloadGaugeModule(LoadedModule& module) {
    FreeLibrary(static_cast<HMODULE>(module.handle));
    module = LoadedModule{};
}

bool LoadBitmapResource(const LoadedModule& module, int number, Picture& picture) {
    const auto handle = static_cast<HMODULE>(module.handle);
    const HRSRC found = FindResourceA(handle, MAKEINTRESOURCEA(number), RT_BITMAP);
    const HGLOBAL loaded = found != nullptr ? LoadResource(handle, found) : nullptr;
    return loaded != nullptr && ReadDib(static_cast<const std::uint8_t*>(LockResource(loaded)),
                                        SizeofResource(handle, found), picture);
}

DrawingSurface MakeDrawingSurface(int width, int height) {
    DrawingSurface surface;
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    const HDC dc = CreateCompatibleDC(nullptr);
    void* pixels = nullptr;
    const HBITMAP bitmap = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
    if (bitmap == nullptr) {
        DeleteDC(dc);
        return surface;
    }
    SelectObject(dc, bitmap);
    surface.deviceContext = dc;
    surface.pixels = static_cast<std::uint32_t*>(pixels);
    surface.width = width;
    surface.height = height;
    surface.bitmap = bitmap;
    return surface;
}

void FreeDrawingSurface(DrawingSurface& surface) {
    if (surface.deviceContext != nullptr) {
        DeleteDC(static_cast<HDC>(surface.deviceContext));
        DeleteObject(static_cast<HBITMAP>(surface.bitmap));
    }
    surface = DrawingSurface{};
}

Picture CopyDrawingSurface(const DrawingSurface& surface) {
    GdiFlush();
    Picture picture(surface.width, surface.height);
    for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
        picture.pixels[i] = surface.pixels[i] & 0xFFFFFF;
    }
    return picture;
}

void ListenForTexts(const LoadedModule&, TextListener listener) {
    textListener = listener;
}

bool EnterFolder(const std::string& folder) {
    return SetCurrentDirectoryA(folder.c_str()) != 0;
}

bool MakeFolder(const std::string& folder) {
    return CreateDirectoryA(folder.c_str(), nullptr) != 0 || GetLastError() == ERROR_ALREADY_EXISTS;
}

std::string AbsolutePath(const std::string& path) {
    char absolute[MAX_PATH] = {};
    const DWORD length = GetFullPathNameA(path.c_str(), MAX_PATH, absolute, nullptr);
    return length > 0 && length < MAX_PATH ? std::string(absolute, length) : path;
}

}  // namespace gaugecheck
