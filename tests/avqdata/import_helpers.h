// avqdata/import_helpers.h - sources as texts, combined into a folder as the program does it.
#pragma once

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <vector>

#include "avqdata/folder.h"
#include "avqdata/importers.h"
#include "avqdata/merge.h"
#include "avqdata/source_formats.h"
#include "avqdata/text_tools.h"

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

inline const SourceFormat& SourceNamed(std::string_view name) {
    return *std::find_if(kSourceFormats.begin(), kSourceFormats.end(),
                         [&](const SourceFormat& format) { return format.name == name; });
}

// A source as it lies on disk into `data`; false with the import's error.
inline bool ReadWhole(std::string_view format, const std::string& path, Import& import,
                      Dataset& data) {
    SourceFiles files;
    return FindFilesOf(SourceNamed(format), path, files, import.error) &&
           SourceNamed(format).import(files, import.Context(), data, import.error);
}

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

// How far the way from point to point strays from the arc about a centre.
inline double FarthestOffArcNm(const std::vector<LatLon>& way, const LatLon& centre,
                               double radiusNm) {
    constexpr int kSteps = 40;
    double farthest = 0;
    for (std::size_t i = 1; i < way.size(); ++i) {
        for (int step = 0; step <= kSteps; ++step) {
            const double part = static_cast<double>(step) / kSteps;
            const LatLon at{
                way[i - 1].latitude + part * (way[i].latitude - way[i - 1].latitude),
                way[i - 1].longitude + part * (way[i].longitude - way[i - 1].longitude)};
            farthest = std::max(farthest, std::abs(DistanceNm(centre, at) - radiusNm));
        }
    }
    return farthest;
}

// Degrees turned about a centre on the way, clockwise positive.
inline double TurnedDeg(const std::vector<LatLon>& way, const LatLon& centre) {
    double turned = 0;
    for (std::size_t i = 1; i < way.size(); ++i) {
        turned += TurnDeg(CourseTrue(centre, way[i - 1]), CourseTrue(centre, way[i]));
    }
    return turned;
}

inline std::size_t CountLines(const std::string& text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

}  // namespace avqdata
