// platform/services.h - the two doors to the host: the panel service table and, on Linux, the
// platform table. Both are filled by the host before the first event; a missing table or entry
// makes the call do nothing and return 0.
#pragma once

#include <cstdint>

#include "platform/panel_interface.h"

namespace avq1 {

extern "C" {
AVQ1_EXPORT extern ImportTableRecord ImportTable;
AVQ1_EXPORT extern PlatformTableRecord PlatformTable;  // exported by the Linux build only
}

// ---- panel service table ----
void LookupVariable(ModuleVariable& variable);
void TriggerKeyEvent(std::int32_t event, std::uint32_t value);
bool PanelWindowShown(std::uint32_t ident);
void TogglePanelWindow(std::uint32_t ident);
void RegisterVariable(void* value, VariableType type, const char* name);
void UnregisterVariable(const char* name);
void InitializeVariableByName(ModuleVariable& variable, const char* name);

// ---- what the operating system offers; on Linux through the platform table ----
void* FindWindowByClass(const char* className);
std::int64_t SendWindowMessage(void* window, std::uint32_t message, std::uint64_t first,
                               void* second);

// The computer's date and time of day where it stands.
struct LocalTime {
    std::int32_t year = 0;
    std::int32_t month = 1;  // 1 to 12
    std::int32_t day = 1;
    std::int32_t hour = 0;
    std::int32_t minute = 0;
    std::int32_t second = 0;
};
LocalTime ReadLocalTime();

// The system keyboard's state by scan code, 0x80 = down. Opening names the step that failed, null
// when none did; `moduleFile` is the file this module was loaded from. The results of acquiring and
// reading are 0, kKeyboardInputLost while another window has the keyboard, or another failure.
inline constexpr auto kKeyboardInputLost = static_cast<std::int32_t>(0x8007001E);
const char* OpenKeyboard(const char* moduleFile);
void CloseKeyboard();
std::int32_t AcquireKeyboard();
std::int32_t ReadKeyboardState(std::uint8_t state[256]);
std::int32_t KeyState(std::int32_t virtualKey);
std::int32_t SetThreadKeyboardHook(KeyboardHook hook);
void ReportTextDrawn(void* deviceContext, const char* text, double x, double y, double pixelSize,
                     std::uint32_t argb);

// Whether the host draws the vertical profile, and what it then draws.
bool HostDrawsProfile();
void ReportVerticalProfile(const VerticalProfileRecord& profile);

}  // namespace avq1
