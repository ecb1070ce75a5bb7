// Any bytes as X-Plane's four files and as OpenAir: the first byte says which.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "avqdata/importers.h"
#include "avqdata/variation.h"
#include "avqdata/xplane.h"
#include "fuzz/avqdata_sound.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace avqdata;
    if (size == 0) {
        return 0;
    }
    const std::string_view text(reinterpret_cast<const char*>(bytes) + 1, size - 1);
    LineSource lines = LineSource::OfText(text, "fuzz");
    const ImportOptions options;
    Report report;
    const ImportContext context{options, report, {}, nullptr};
    Dataset data;
    XplaneTables tables;
    std::string error;
    switch (bytes[0] % 5) {
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
            FillHeadings(data, report);
            break;
        default:
            ReadOpenAir(lines, context, data, error);
    }
    RequireSoundFolder(std::move(data), options);
    return 0;
}
