// host/bitmaps.h - the module's bitmaps by resource number: gauge backgrounds, drawing surfaces
// (Screen) and icons. The gauge table places them, the painter paints them under these numbers.
#pragma once

#include <cstdint>

namespace avq1::bitmap {

inline constexpr std::int32_t kMfd = 0x2600;
inline constexpr std::int32_t kMfdScreen = 0x2601;
inline constexpr std::int32_t kMcu = 0x2607;
inline constexpr std::int32_t kMcuScreen = 0x2611;
inline constexpr std::int32_t kMfdPanel = 0x2612;
inline constexpr std::int32_t kGnsScreen = 0x2617;
inline constexpr std::int32_t kGns = 0x2618;
inline constexpr std::int32_t kEfsScreen = 0x2621;
inline constexpr std::int32_t kEadi = 0x2622;
inline constexpr std::int32_t kEhsi = 0x2624;
inline constexpr std::int32_t kEhsiPanel = 0x2632;
inline constexpr std::int32_t kVnavButton = 0x2634;
inline constexpr std::int32_t kMcuLamp = 0x2636;
inline constexpr std::int32_t kVnavLit = 0x2638;
inline constexpr std::int32_t kEhsiPanelOpener = 0x2640;
inline constexpr std::int32_t kTcasOpener = 0x2642;
inline constexpr std::int32_t kGnsOpener = 0x2644;
inline constexpr std::int32_t kMcuOpener = 0x2646;
inline constexpr std::int32_t kMfdOpener = 0x2654;
inline constexpr std::int32_t kMfdPanelOpener = 0x2656;
inline constexpr std::int32_t kLnavButton = 0x2658;
inline constexpr std::int32_t kLnavLit = 0x2660;
inline constexpr std::int32_t kSmithsScreen = 0x2662;
inline constexpr std::int32_t kSmithsBrown = 0x2663;
inline constexpr std::int32_t kSmiths = 0x2664;
inline constexpr std::int32_t kSmithsExecLit = 0x2665;
inline constexpr std::int32_t kNdScreen = 0x2666;
inline constexpr std::int32_t kNd = 0x2668;
inline constexpr std::int32_t kNdBrown = 0x2669;
inline constexpr std::int32_t kEfisPanel = 0x2670;
inline constexpr std::int32_t kEfisPanelBrown = 0x2671;
inline constexpr std::int32_t kSmithsMessageLit = 0x2672;
inline constexpr std::int32_t kEfisMode1 = 0x2673;
inline constexpr std::int32_t kEfisMode2 = 0x2674;
inline constexpr std::int32_t kEfisMode3 = 0x2675;
inline constexpr std::int32_t kEfisMode4 = 0x2676;
inline constexpr std::int32_t kEfisMode5 = 0x2677;
inline constexpr std::int32_t kEfisMode6 = 0x2678;
inline constexpr std::int32_t kEfisRange10 = 0x2679;
inline constexpr std::int32_t kEfisRange40 = 0x267A;
inline constexpr std::int32_t kEfisRange80 = 0x267B;
inline constexpr std::int32_t kEfisRange160 = 0x267C;
inline constexpr std::int32_t kEfisRange320 = 0x267D;
inline constexpr std::int32_t kSmithsOpener = 0x2698;
inline constexpr std::int32_t kEfisPanelOpener = 0x2700;

}  // namespace avq1::bitmap
