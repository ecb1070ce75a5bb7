// The settings file's text must never crash the reader, and every distance stays a finite number.
#include "fuzz/fuzz_text.h"
#include "settings/settings.h"

void FuzzText(std::string_view text) {
    avq1::Settings settings;
    avq1::ApplySettingsText(text, settings);
    Require(std::isfinite(settings.WptChgDist) && settings.WptChgDist >= 0);
    Require(std::isfinite(settings.FlyoverWptChgDist) && settings.FlyoverWptChgDist >= 0);
    Require(settings.TcasVertRange >= 10 && settings.VnavSetSpd >= 1);
}
