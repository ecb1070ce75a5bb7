// Any bytes as a user's folder: checked, read and written again without harm. The byte 1 separates
// the files.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "avqdata/check.h"
#include "avqdata/merge.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace avqdata;
    std::string_view rest(reinterpret_cast<const char*>(bytes), size);
    FolderTexts texts;
    for (std::string& text : texts) {
        const std::size_t end = std::min(rest.find('\1'), rest.size());
        text = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    Report report;
    CheckFolder(texts, report);
    Dataset data = ParseFolder(texts, report);
    FitCapacities(data, report);
    SortDataset(data);
    const FolderTexts first = FormatFolder(data);
    Dataset again = ParseFolder(first, report);
    SortDataset(again);
    if (FormatFolder(again)[kFixFile] != first[kFixFile]) {
        std::abort();
    }
    return 0;
}
