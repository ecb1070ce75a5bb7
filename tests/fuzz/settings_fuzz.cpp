// The settings file's text must never crash the reader, and every distance stays a finite number.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "settings/settings.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    avq1::Settings settings;
    avq1::ApplySettingsText(text, settings);
    const bool sound = std::isfinite(settings.WptChgDist) && settings.WptChgDist >= 0 &&
                       std::isfinite(settings.FlyoverWptChgDist) &&
                       settings.FlyoverWptChgDist >= 0 && settings.TcasVertRange >= 10 &&
                       settings.VnavSetSpd >= 1;
    if (!sound) {
        std::abort();
    }
    return 0;
}
