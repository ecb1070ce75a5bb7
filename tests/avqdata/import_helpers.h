// avqdata/import_helpers.h - sources as texts, combined into a folder as the program does it.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "avqdata/folder.h"
#include "avqdata/importers.h"
#include "avqdata/merge.h"

namespace avqdata {

struct Import {
    ImportOptions options;
    Report report;
    Dataset folder;
    std::string error;

    ImportContext Context() { return {options, report, {}, &folder}; }
    void Add(Dataset incoming, Coverage coverage = Coverage::Whole) {
        Combine(std::move(incoming), coverage, options, folder, report);
    }
    FolderTexts Texts() const { return FormatFolder(folder); }
};

// The line of a file's text that begins with `start` and a blank; empty when there is none.
inline std::string LineOf(const std::string& text, std::string_view start) {
    const std::string wanted = "\n" + std::string(start) + " ";
    const std::string padded = "\n" + text;
    const std::size_t at = padded.find(wanted);
    if (at == std::string::npos) {
        return {};
    }
    return padded.substr(at + 1, padded.find('\n', at + 1) - at - 1);
}

inline std::size_t CountLines(const std::string& text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

}  // namespace avqdata
