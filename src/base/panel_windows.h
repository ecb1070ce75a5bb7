// base/panel_windows.h - the panel windows this module opens, closes and asks for, by ident.
//
// A panel configuration gives its windows these idents; one it does not have is never shown.
#pragma once

#include <cstdint>

namespace avq1::panel_window {

inline constexpr std::uint32_t kMainPanel = 0;
inline constexpr std::uint32_t kMcu = 4001;
inline constexpr std::uint32_t kMfd = 4002;
inline constexpr std::uint32_t kMfdPanel = 4003;
inline constexpr std::uint32_t kGns = 4004;
inline constexpr std::uint32_t kEadi = 4005;
inline constexpr std::uint32_t kEhsiPanel = 4007;
inline constexpr std::uint32_t kEhsi = 4008;
inline constexpr std::uint32_t kEhsiNoBezel = 4009;
inline constexpr std::uint32_t kTcas = 4010;
inline constexpr std::uint32_t kNd = 4011;
inline constexpr std::uint32_t kSmiths = 4012;
inline constexpr std::uint32_t kEfisPanel = 4013;

}  // namespace avq1::panel_window
