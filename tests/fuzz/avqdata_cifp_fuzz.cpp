// Any bytes as coded procedures.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "avqdata/importers.h"
#include "fuzz/avqdata_sound.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace avqdata;
    LineSource lines = LineSource::OfText({reinterpret_cast<const char*>(bytes), size}, "fuzz");
    const ImportOptions options;
    Report report;
    const ImportContext context{options, report, {}, nullptr};
    Dataset data;
    std::string error;
    if (ReadCifp(lines, context, data, error)) {
        RequireSoundFolder(std::move(data), options);
    }
    return 0;
}
