// drawing/fixed_text.h - printf into a buffer on the stack, for texts made on every draw.
#pragma once

#include <array>
#include <cstdarg>
#include <cstdio>
#include <string_view>

namespace avq1 {

// At most 31 characters; a longer text is cut.
class FixedText {
  public:
    [[gnu::format(printf, 2, 3)]] explicit FixedText(const char* format, ...) {
        va_list arguments;
        va_start(arguments, format);
        std::vsnprintf(text_.data(), text_.size(), format, arguments);
        va_end(arguments);
    }
    operator std::string_view() const { return text_.data(); }

  private:
    std::array<char, 32> text_{};
};

}  // namespace avq1
