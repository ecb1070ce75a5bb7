// Any bytes as OurAirports' and the FAA's tables and as GeoJSON: the first byte says which.
#include "fuzz/avqdata_sound.h"

void FuzzText(std::string_view text) {
    using namespace avqdata;
    if (text.empty()) {
        return;
    }
    std::string_view rest = text.substr(1);
    std::string files[6];
    for (std::string& file : files) {
        file = TakeFile(rest);
    }
    FuzzImport import;
    auto& [options, report, data, error] = import;
    const auto first = static_cast<unsigned char>(text[0]);
    NasrTexts texts{files[0], files[1], "", "", files[3], files[4], files[5]};
    switch (first % 4) {
        case 0:
            ReadOurAirports(files[0], files[1], import.Context(), data, error);
            FillHeadings(data.cycle, data, report);
            break;
        case 1:
            ReadOurNavaids(files[0], import.Context(), data, error);
            break;
        case 2:
            // Airways a row a point, or a row a leg.
            (first / 4 % 2 == 0 ? texts.airways : texts.airwayLegs) = files[2];
            ReadNasr(texts, report, data, error);
            FillHeadings(data.cycle, data, report);
            break;
        default:
            ReadGeoJson(files[0], "fuzz", import.Context(), data, error);
    }
    import.RequireSoundFolder();
}
