#include "panelhost/web/qr_code.h"

#include <qrencode.h>

#include <memory>

namespace panelhost {

std::string QrText(std::string_view text) {
    constexpr int kEdge = 2;  // light modules around: most cameras need no more on a dark console
    const std::unique_ptr<QRcode, decltype(&QRcode_free)> code(
        QRcode_encodeString8bit(std::string(text).c_str(), 0, QR_ECLEVEL_L), QRcode_free);
    if (!code) {
        return "";
    }
    const int width = code->width;
    const auto isLight = [&](int x, int y) {
        const bool inside = x >= 0 && y >= 0 && x < width && y < width;
        return !inside || (code->data[y * width + x] & 1U) == 0;
    };
    // The light modules are the ink: a console is dark.
    constexpr const char* kBlocks[] = {" ", "\u2584", "\u2580", "\u2588"};
    std::string lines;
    for (int y = -kEdge; y < width + kEdge; y += 2) {
        for (int x = -kEdge; x < width + kEdge; ++x) {
            const bool lower = y + 1 >= width + kEdge || isLight(x, y + 1);
            lines += kBlocks[(isLight(x, y) ? 2 : 0) + (lower ? 1 : 0)];
        }
        lines += "\n";
    }
    return lines;
}

}  // namespace panelhost
