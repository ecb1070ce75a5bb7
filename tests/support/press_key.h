// tests/support/press_key.h - presses a key of a display or a control panel by its label.
#pragma once

#include <gtest/gtest.h>

#include <span>
#include <string_view>

#include "base/key_area.h"

namespace avq1::test {

// Where a knob is pressed: left and lower, or right and upper.
enum class Half { Left, Right };

inline void PressKey(std::span<const KeyArea> keys, std::string_view label,
                     Half half = Half::Left) {
    for (const KeyArea& key : keys) {
        if (key.label == label) {
            ASSERT_NE(key.action, nullptr) << label;
            const PixelPoint left{key.box.width / 2 - 1, key.box.height / 2};
            const PixelPoint right{key.box.width / 2, key.box.height / 2 - 1};
            key.action({key, half == Half::Left ? left : right});
            return;
        }
    }
    FAIL() << "no key " << label;
}

}  // namespace avq1::test
