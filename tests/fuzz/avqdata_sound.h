// fuzz/avqdata_sound.h - whatever a source says, the folder made of it passes the check.
#pragma once

#include <cstdlib>
#include <iostream>
#include <utility>

#include "avqdata/check.h"
#include "avqdata/merge.h"

namespace avqdata {

inline void RequireSoundFolder(Dataset incoming, const ImportOptions& options) {
    Report report;
    Dataset folder;
    Combine(std::move(incoming), Coverage::Whole, options, folder, report);
    const FolderTexts texts = FormatFolder(folder);
    Report check;
    CheckFolder(texts, check);
    if (check.Count(Topic::Fault) > 0) {
        PrintReport(check, std::cerr);
        std::abort();
    }
    // What was written reads back as itself.
    Dataset again = ParseFolder(texts, check);
    SortDataset(again);
    if (FormatFolder(again) != texts) {
        std::abort();
    }
}

}  // namespace avqdata
