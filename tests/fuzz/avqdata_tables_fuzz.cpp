// Any bytes as OurAirports' and the FAA's tables and as GeoJSON: the first byte says which.
#include "fuzz/avqdata_sound.h"

void FuzzText(std::string_view text) {
    using namespace avqdata;
    if (text.empty()) {
        return;
    }
    std::string_view rest = text.substr(1);
    std::string files[4];
    for (std::string& file : files) {
        file = TakeFile(rest);
    }
    FuzzImport import;
    auto& [options, report, data, error] = import;
    switch (static_cast<unsigned char>(text[0]) % 4) {
        case 0:
            ReadOurAirports(files[0], files[1], import.Context(), data, error);
            FillHeadings(data, report);
            break;
        case 1:
            ReadOurNavaids(files[0], import.Context(), data, error);
            break;
        case 2:
            ReadNasr({files[0], files[1], files[2], files[3]}, report, data, error);
            break;
        default:
            ReadGeoJson(files[0], "fuzz", import.Context(), data, error);
    }
    import.RequireSoundFolder();
}
