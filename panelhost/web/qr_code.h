// panelhost/web/qr_code.h - an address as a QR code on the console, for a tablet's camera.
#pragma once

#include <string>
#include <string_view>

namespace panelhost {

// Lines of half blocks, two rows of the code each, dark on light with a quiet edge; empty when it
// does not fit.
std::string QrText(std::string_view text);

}  // namespace panelhost
