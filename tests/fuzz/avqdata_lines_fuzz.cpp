// Any bytes as X-Plane's four files and as OpenAir: the first byte says which.
#include "avqdata/xplane.h"
#include "fuzz/avqdata_sound.h"

void FuzzText(std::string_view text) {
    using namespace avqdata;
    if (text.empty()) {
        return;
    }
    LineSource lines = LineSource::OfText(text.substr(1), "fuzz");
    FuzzImport import;
    auto& [options, report, data, error] = import;
    XplaneTables tables;
    switch (static_cast<unsigned char>(text[0]) % 5) {
        case 0:
            ReadXplaneNavaids(lines, report, data, tables, error);
            break;
        case 1:
            ReadXplaneFixes(lines, report, data, tables, error);
            break;
        case 2:
            ReadXplaneAirways(lines, report, data, tables, error);
            break;
        case 3:
            ReadXplaneAirports(lines, report, data, error);
            FillHeadings(data.cycle, data, report);
            break;
        default:
            ReadOpenAir(lines, import.Context(), data, error);
    }
    import.RequireSoundFolder();
}
