// tests/support/fake_keyboard.h - a keyboard behind the platform table: tests press and let go keys
// by scan code, take the keyboard away and see the hook.
#pragma once

#include <array>
#include <cstdint>
#include <set>

#include "platform/services.h"

namespace avq1::test {

// Adds a keyboard and a main window to `services`, which must outlive it; other members stay.
class FakeKeyboard {
  public:
    explicit FakeKeyboard(PlatformServices& services) : services_(services) {
        Get() = this;
        services.size = sizeof services;
        services.find_window = [](const char*) -> void* { return Get()->window; };
        services.read_keyboard = [](std::uint8_t state[256]) -> std::int32_t {
            ++Get()->reads;
            for (int i = 0; i < 256; ++i) {
                state[i] = Get()->keys[static_cast<std::size_t>(i)];
            }
            return Get()->result;
        };
        services.key_state = [](std::int32_t key) -> std::int32_t {
            return Get()->virtualKeys.count(key) != 0 ? 1 : 0;
        };
        services.set_keyboard_hook = [](KeyboardHook hook) -> std::int32_t {
            ++Get()->hookChanges;
            Get()->hook = hook;
            return hook != nullptr ? 1 : 0;
        };
        PlatformTable.services = &services;
    }
    ~FakeKeyboard() {
        services_.find_window = nullptr;
        services_.read_keyboard = nullptr;
        services_.key_state = nullptr;
        services_.set_keyboard_hook = nullptr;
        Get() = nullptr;
    }
    FakeKeyboard(const FakeKeyboard&) = delete;
    FakeKeyboard& operator=(const FakeKeyboard&) = delete;

    void Down(std::uint8_t scanCode) { keys[scanCode] = 0x80; }
    void Up(std::uint8_t scanCode) { keys[scanCode] = 0; }

    std::array<std::uint8_t, 256> keys{};
    std::set<std::int32_t> virtualKeys;
    std::int32_t result = 0;
    void* window = this;
    KeyboardHook hook = nullptr;
    int reads = 0;
    int hookChanges = 0;

  private:
    static FakeKeyboard*& Get() {
        static FakeKeyboard* keyboard = nullptr;
        return keyboard;
    }
    PlatformServices& services_;
};

namespace scan {
inline constexpr std::uint8_t kA = 0x1E, kB = 0x30, kK = 0x25, kX = 0x2D, kZ = 0x2C, kO = 0x18,
                              kV = 0x2F;
inline constexpr std::uint8_t k0 = 0x0B, k1 = 0x02, k9 = 0x0A;
inline constexpr std::uint8_t kBackspace = 0x0E, kEnter = 0x1C, kKeypadEnter = 0x9C;
inline constexpr std::uint8_t kUp = 0xC8, kDown = 0xD0, kPageUp = 0xC9, kPageDown = 0xD1;
}  // namespace scan

}  // namespace avq1::test
