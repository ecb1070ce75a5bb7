// fuzz/avqdata_sound.h - whatever a source says, the folder made of it passes the check.
#pragma once

#include <iostream>
#include <utility>

#include "avqdata/check.h"
#include "avqdata/importers.h"
#include "avqdata/merge.h"
#include "avqdata/variation.h"
#include "fuzz/fuzz_text.h"

namespace avqdata {

struct FuzzImport {
    ImportOptions options;
    Report report;
    Dataset data;
    std::string error;

    ImportContext Context() { return {options, report, {}, nullptr}; }
    void RequireSoundFolder() {
        Dataset folder;
        Combine(std::move(data), Coverage::Whole, options, folder, report);
        const FolderTexts texts = FormatFolder(folder);
        Report check;
        CheckFolder(texts, check);
        const bool sound = check.Count(Topic::Fault) == 0;
        if (!sound) {
            PrintReport(check, std::cerr);
        }
        Require(sound);
        // What was written reads back as itself.
        Dataset again = ParseFolder(texts, check);
        SortDataset(again);
        Require(FormatFolder(again) == texts);
    }
};

}  // namespace avqdata
