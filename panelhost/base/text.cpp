#include "panelhost/base/text.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace panelhost {
namespace {

bool IsSpace(char c) {
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}

char LowerChar(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

}  // namespace

std::string_view Trim(std::string_view text) {
    while (!text.empty() && IsSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && IsSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::string Lower(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), LowerChar);
    return result;
}

bool EqualNoCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return LowerChar(x) == LowerChar(y);
           });
}

std::vector<std::string_view> SplitOn(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t at = text.find(separator);
        parts.push_back(Trim(text.substr(0, at)));
        if (at == std::string_view::npos) {
            return parts;
        }
        text.remove_prefix(at + 1);
    }
}

std::vector<std::string_view> Words(std::string_view text) {
    std::vector<std::string_view> words;
    std::size_t at = 0;
    while (at < text.size()) {
        if (IsSpace(text[at])) {
            ++at;
            continue;
        }
        const std::size_t start = at;
        while (at < text.size() && !IsSpace(text[at])) {
            ++at;
        }
        words.push_back(text.substr(start, at - start));
    }
    return words;
}

std::vector<std::string_view> Lines(std::string_view text) {
    if (text.substr(0, 3) == "\xEF\xBB\xBF") {
        text.remove_prefix(3);
    }
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        lines.push_back(line);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return lines;
}

std::optional<double> ToNumber(std::string_view text) {
    text = Trim(text);
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
    }
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() ||
        !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

std::optional<std::int64_t> ToInteger(std::string_view text) {
    text = Trim(text);
    int base = 10;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        base = 16;
        text.remove_prefix(2);
    }
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (text.empty() || error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

std::string Format(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    std::string result(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
    std::vsnprintf(result.data(), result.size() + 1, format, again);
    va_end(again);
    return result;
}

std::optional<std::string> ReadWholeFile(const std::string& path, std::size_t maxBytes) {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path, ignored)) {
        return std::nullopt;
    }
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    std::string text;
    char block[65536];
    while (text.size() < maxBytes && (file.read(block, static_cast<std::streamsize>(std::min(
                                                           sizeof block, maxBytes - text.size()))),
                                      file.gcount() > 0)) {
        text.append(block, static_cast<std::size_t>(file.gcount()));
    }
    return text;
}

std::string FindFileNoCase(const std::string& root, std::string_view relative) {
    namespace fs = std::filesystem;
    fs::path found = root.empty() ? "." : root;
    for (const std::string_view part : SplitOn(relative, '/')) {
        if (part.empty()) {
            continue;
        }
        std::error_code error;
        if (fs::exists(found / part, error)) {
            found /= part;
            continue;
        }
        // Of several spellings the first by name wins, so every run finds the same file.
        std::string best;
        for (const fs::directory_entry& entry : fs::directory_iterator(found, error)) {
            const std::string name = entry.path().filename().string();
            if (EqualNoCase(name, part) && (best.empty() || name < best)) {
                best = name;
            }
        }
        if (best.empty()) {
            return "";
        }
        found /= best;
    }
    return found.string();
}

}  // namespace panelhost
