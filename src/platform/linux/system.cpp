// What Windows offers through its own calls, forwarded to the host's platform table. A member
// that is null or lies beyond the record's stated size is absent.
#include <cstddef>
#include <cstring>
#include <ctime>

#include "platform/services.h"

extern "C" {
AVQ1_EXPORT avq1::PlatformTableRecord PlatformTable;
}

namespace avq1 {
namespace {

constexpr std::size_t kKeyboardKeys = 256;

template <typename Function>
Function PlatformMember(Function PlatformServices::*member) {
    const PlatformServices* const services = PlatformTable.services;
    if (services == nullptr) {
        return nullptr;
    }
    const auto* const record = reinterpret_cast<const char*>(services);
    const auto* const field = reinterpret_cast<const char*>(&(services->*member));
    const std::size_t end = static_cast<std::size_t>(field - record) + sizeof(Function);
    return end <= services->size ? services->*member : nullptr;
}

}  // namespace

void* FindWindowByClass(const char* className) {
    const auto find = PlatformMember(&PlatformServices::find_window);
    return find != nullptr ? find(className) : nullptr;
}

std::int64_t SendWindowMessage(void* window, std::uint32_t message, std::uint64_t first,
                               void* second) {
    const auto send = PlatformMember(&PlatformServices::send_message);
    return send != nullptr ? send(window, message, first, second) : 0;
}

LocalTime ReadLocalTime() {
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    localtime_r(&now, &local);
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
            local.tm_hour,        local.tm_min,     local.tm_sec};
}

// The host's keyboard needs no opening; it is there, and belongs to a main window, or it is not.
const char* OpenKeyboard(const char*) {
    if (PlatformMember(&PlatformServices::read_keyboard) == nullptr) {
        return "CreateDevice failed";
    }
    return FindWindowByClass("FS98MAIN") != nullptr ? nullptr : "SetCooperativeLevel failed";
}

void CloseKeyboard() {}

std::int32_t AcquireKeyboard() {
    return 0;
}

std::int32_t ReadKeyboardState(std::uint8_t state[256]) {
    const auto read = PlatformMember(&PlatformServices::read_keyboard);
    if (read == nullptr) {
        std::memset(state, 0, kKeyboardKeys);  // no keyboard: no key is down
        return 0;
    }
    return read(state);
}

std::int32_t KeyState(std::int32_t virtualKey) {
    const auto state = PlatformMember(&PlatformServices::key_state);
    return state != nullptr ? state(virtualKey) : 0;
}

std::int32_t SetThreadKeyboardHook(KeyboardHook hook) {
    const auto set = PlatformMember(&PlatformServices::set_keyboard_hook);
    return set != nullptr ? set(hook) : 0;
}

bool HostDrawsProfile() {
    return PlatformMember(&PlatformServices::vertical_profile) != nullptr;
}

void ReportVerticalProfile(const VerticalProfileRecord& profile) {
    if (const auto report = PlatformMember(&PlatformServices::vertical_profile)) {
        report(&profile);
    }
}

void ReportTextDrawn(void* deviceContext, const char* text, double x, double y, double pixelSize,
                     std::uint32_t argb) {
    const auto report = PlatformMember(&PlatformServices::text_drawn);
    if (report != nullptr) {
        report(deviceContext, text, x, y, pixelSize, argb);
    }
}

}  // namespace avq1
