// drawing/palette.h - the colours screens share, ARGB, opaque but for Clear.
#pragma once

#include <cstdint>

namespace avq1::colour {

inline constexpr std::uint32_t White = 0xFFDEE6E9;
inline constexpr std::uint32_t Green = 0xFF00FA00;
inline constexpr std::uint32_t PaleGreen = 0xFF5BE5A7;
inline constexpr std::uint32_t Cyan = 0xFF00E6E9;
inline constexpr std::uint32_t Blue = 0xFF02A7EB;
inline constexpr std::uint32_t Magenta = 0xFFFF13D5;
inline constexpr std::uint32_t Amber = 0xFFE9B73E;
inline constexpr std::uint32_t Yellow = 0xFFFFFF00;
inline constexpr std::uint32_t Pink = 0xFFCA196A;
inline constexpr std::uint32_t Purple = 0xFF800080;
inline constexpr std::uint32_t Red = 0xFFC90101;
inline constexpr std::uint32_t Black = 0xFF000000;
inline constexpr std::uint32_t DarkGreen = 0xFF004000;
inline constexpr std::uint32_t Grey = 0xFFC0C0C0;
inline constexpr std::uint32_t Clear = 0x00000000;

}  // namespace avq1::colour
