// cdu/unit_text.h - a short text without a heap: what a field shows.
//
// 71 characters of Latin-1 and a closing zero; what does not fit is cut. The rest of the array is
// stale and never compared.
#pragma once

#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace avq1 {

class UnitText {
  public:
    UnitText() = default;
    explicit UnitText(std::string_view text) { Set(text); }

    void Set(std::string_view text) {
        const std::size_t length = text.copy(text_.data(), text_.size() - 1);
        text_[length] = '\0';
    }

    [[gnu::format(printf, 2, 3)]] void Put(const char* format, ...) {
        va_list arguments;
        va_start(arguments, format);
        PutList(format, arguments);
        va_end(arguments);
    }
    void PutList(const char* format, va_list arguments) {
        std::vsnprintf(text_.data(), text_.size(), format, arguments);
    }

    const char* c_str() const { return text_.data(); }
    std::string_view view() const { return text_.data(); }
    bool empty() const { return text_[0] == '\0'; }

    friend bool operator==(const UnitText& a, const UnitText& b) {
        return std::strcmp(a.c_str(), b.c_str()) == 0;
    }

  private:
    std::array<char, 72> text_{};
};

}  // namespace avq1
