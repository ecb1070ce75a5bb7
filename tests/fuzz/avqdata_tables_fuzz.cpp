// Any bytes as OurAirports' and the FAA's tables and as GeoJSON: the first byte says which. The
// byte 1 separates the files of one source.
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "avqdata/importers.h"
#include "avqdata/variation.h"
#include "fuzz/avqdata_sound.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace avqdata;
    if (size == 0) {
        return 0;
    }
    std::string_view rest(reinterpret_cast<const char*>(bytes) + 1, size - 1);
    std::array<std::string_view, 4> files;
    for (std::string_view& file : files) {
        const std::size_t end = std::min(rest.find('\1'), rest.size());
        file = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    const ImportOptions options;
    Report report;
    const ImportContext context{options, report, {}, nullptr};
    Dataset data;
    std::string error;
    switch (bytes[0] % 4) {
        case 0:
            ReadOurAirports(files[0], files[1], context, data, error);
            FillHeadings(data, report);
            break;
        case 1:
            ReadOurNavaids(files[0], context, data, error);
            break;
        case 2:
            ReadNasr({std::string(files[0]), std::string(files[1]), std::string(files[2]),
                      std::string(files[3])},
                     report, data, error);
            break;
        default:
            ReadGeoJson(files[0], "fuzz", context, data, error);
    }
    RequireSoundFolder(std::move(data), options);
    return 0;
}
