// Any bytes as a user's folder: checked, read and written again without harm.
#include "avqdata/check.h"
#include "avqdata/merge.h"
#include "fuzz/fuzz_text.h"

void FuzzText(std::string_view rest) {
    using namespace avqdata;
    FolderTexts texts;
    for (std::string& text : texts) {
        text = TakeFile(rest);
    }
    Report report;
    CheckFolder(texts, report);
    Dataset data = ParseFolder(texts, report);
    FitCapacities(data, report);
    SortDataset(data);
    const FolderTexts first = FormatFolder(data);
    Dataset again = ParseFolder(first, report);
    SortDataset(again);
    Require(FormatFolder(again)[kFixFile] == first[kFixFile]);
}
