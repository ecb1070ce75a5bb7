// panelhost/base/text.h - small text helpers of the panel host. Numbers are read whole and in range
// or refused; nothing throws.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace panelhost {

std::string_view Trim(std::string_view text);
std::string Lower(std::string_view text);
bool EqualNoCase(std::string_view a, std::string_view b);
std::vector<std::string_view> SplitOn(std::string_view text, char separator);
std::vector<std::string_view> Words(std::string_view text);
// Lines without their ends; accepts LF and CRLF and drops a leading UTF-8 byte-order mark.
std::vector<std::string_view> Lines(std::string_view text);

std::optional<double> ToNumber(std::string_view text);         // finite decimal number
std::optional<std::int64_t> ToInteger(std::string_view text);  // decimal, or 0x and hexadecimal

std::string Format(const char* format, ...) __attribute__((format(printf, 1, 2)));

// The whole file, at most maxBytes of it; empty when it cannot be read.
std::optional<std::string> ReadWholeFile(const std::string& path, std::size_t maxBytes);
// `relative` ("avq/navdata/x.txt") under `root`, each part found without regard to case; empty
// when it does not exist.
std::string FindFileNoCase(const std::string& root, std::string_view relative);

}  // namespace panelhost
