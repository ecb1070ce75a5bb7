// Windows and messages, and the host's ear for what is drawn.
#include <windows.h>

#include "platform/services.h"

namespace avq1 {
namespace {

// A host that wants to know which texts are drawn exports this routine from its program; the real
// simulators do not.
constexpr const char* kTextDrawnExport = "Avq1TextDrawn";
using TextDrawn = void (*)(void* deviceContext, const char* text, double x, double y,
                           double pixelSize, std::uint32_t argb);

TextDrawn FindTextListener() {
    return reinterpret_cast<TextDrawn>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA(nullptr), kTextDrawnExport)));
}

}  // namespace

void* FindWindowByClass(const char* className) {
    return FindWindowA(className, nullptr);
}

std::int64_t SendWindowMessage(void* window, std::uint32_t message, std::uint64_t first,
                               void* second) {
    return SendMessageA(static_cast<HWND>(window), message, static_cast<WPARAM>(first),
                        reinterpret_cast<LPARAM>(second));
}

LocalTime ReadLocalTime() {
    SYSTEMTIME local = {};
    GetLocalTime(&local);
    return {local.wYear, local.wMonth, local.wDay, local.wHour, local.wMinute, local.wSecond};
}

// The simulators draw their own pictures only.
bool HostDrawsProfile() {
    return false;
}

void ReportVerticalProfile(const VerticalProfileRecord&) {}

void ReportTextDrawn(void* deviceContext, const char* text, double x, double y, double pixelSize,
                     std::uint32_t argb) {
    static const TextDrawn listener = FindTextListener();
    if (listener != nullptr) {
        listener(deviceContext, text, x, y, pixelSize, argb);
    }
}

}  // namespace avq1
