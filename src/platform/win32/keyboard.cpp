// The system keyboard through DirectInput 8, and the keyboard hook of the simulator's thread.
//
// DirectInput is loaded when it is first asked for, so that a machine without it still loads the
// module.
#define DIRECTINPUT_VERSION 0x0800
#include <windows.h>
// After windows.h, which it needs.
#include <dinput.h>

#include "platform/services.h"

namespace avq1 {
namespace {

using CreateDirectInput = HRESULT(WINAPI*)(HINSTANCE, DWORD, REFIID, LPVOID*, LPUNKNOWN);

struct KeyboardDevice {
    IDirectInput8A* library = nullptr;
    IDirectInputDevice8A* device = nullptr;
};

KeyboardDevice keyboard;
HHOOK hookHandle = nullptr;
KeyboardHook moduleHook = nullptr;

IDirectInput8A* StartDirectInput(HINSTANCE module) {
    const HMODULE library = LoadLibraryA("dinput8.dll");
    if (library == nullptr) {
        return nullptr;
    }
    const auto create = reinterpret_cast<CreateDirectInput>(
        reinterpret_cast<void*>(GetProcAddress(library, "DirectInput8Create")));
    void* directInput = nullptr;
    if (create == nullptr ||
        FAILED(create(module, DIRECTINPUT_VERSION, IID_IDirectInput8A, &directInput, nullptr))) {
        return nullptr;
    }
    return static_cast<IDirectInput8A*>(directInput);
}

LRESULT CALLBACK OnKeyboardMessage(int code, WPARAM first, LPARAM second) {
    if (moduleHook != nullptr && moduleHook(code) == 1) {
        return 1;
    }
    return CallNextHookEx(hookHandle, code, first, second);
}

}  // namespace

const char* OpenKeyboard(const char* moduleFile) {
    CloseKeyboard();
    const auto window = static_cast<HWND>(FindWindowByClass("FS98MAIN"));
    HINSTANCE module = GetModuleHandleA(moduleFile);
    if (module == nullptr) {  // loaded under another name: the simulator's own instance will do
        module = GetModuleHandleA(nullptr);
    }
    keyboard.library = StartDirectInput(module);
    if (keyboard.library == nullptr) {
        return "DirectInput failed";
    }
    const char* failure = nullptr;
    if (FAILED(keyboard.library->CreateDevice(GUID_SysKeyboard, &keyboard.device, nullptr))) {
        failure = "CreateDevice failed";
    } else if (FAILED(keyboard.device->SetDataFormat(&c_dfDIKeyboard))) {
        failure = "SetDataFormat failed";
    } else if (FAILED(keyboard.device->SetCooperativeLevel(
                   window, DISCL_NONEXCLUSIVE | DISCL_FOREGROUND))) {
        failure = "SetCooperativeLevel failed";
    }
    if (failure != nullptr) {
        CloseKeyboard();
        return failure;
    }
    keyboard.device->Acquire();
    return nullptr;
}

void CloseKeyboard() {
    if (keyboard.device != nullptr) {
        keyboard.device->Unacquire();
        keyboard.device->Release();
    }
    if (keyboard.library != nullptr) {
        keyboard.library->Release();
    }
    keyboard = KeyboardDevice{};
}

std::int32_t AcquireKeyboard() {
    return keyboard.device != nullptr ? keyboard.device->Acquire() : E_FAIL;
}

std::int32_t ReadKeyboardState(std::uint8_t state[256]) {
    return keyboard.device != nullptr ? keyboard.device->GetDeviceState(256, state) : E_FAIL;
}

std::int32_t KeyState(std::int32_t virtualKey) {
    return (GetAsyncKeyState(virtualKey) & 0x8000) != 0 ? 1 : 0;
}

std::int32_t SetThreadKeyboardHook(KeyboardHook hook) {
    if (hookHandle != nullptr) {
        UnhookWindowsHookEx(hookHandle);
        hookHandle = nullptr;
    }
    moduleHook = hook;
    if (hook != nullptr) {
        hookHandle =
            SetWindowsHookExA(WH_KEYBOARD, OnKeyboardMessage, nullptr, GetCurrentThreadId());
    }
    return hookHandle != nullptr ? 1 : 0;
}

}  // namespace avq1
