// Any bytes as coded procedures.
#include "fuzz/avqdata_sound.h"

void FuzzText(std::string_view text) {
    using namespace avqdata;
    LineSource lines = LineSource::OfText(text, "fuzz");
    FuzzImport import;
    if (ReadCifp(lines, import.Context(), import.data, import.error)) {
        import.RequireSoundFolder();
    }
}
