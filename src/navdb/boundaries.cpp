#include "navdb/boundaries.h"

#include <algorithm>
#include <array>

#include "base/module_state.h"
#include "base/sim_folder.h"
#include "base/text.h"
#include "platform/files.h"

namespace avq1 {
namespace {

constexpr std::size_t kMaxLineLength = 149;

const StateReset kReset([] { atcBoundaries = {}; });

// The corners of what a boundary encloses.
struct Extremes {
    double minLatitude = 100;
    double maxLatitude = -100;
    double minLongitude = 200;
    double maxLongitude = -190;

    void Widen(const LatLon& point) {
        minLatitude = std::min(minLatitude, point.latitude);
        maxLatitude = std::max(maxLatitude, point.latitude);
        minLongitude = std::min(minLongitude, point.longitude);
        maxLongitude = std::max(maxLongitude, point.longitude);
    }
};

// The middle of the extremes. Longitudes of both signs are taken as meeting at the date line.
LatLon LabelPoint(const Extremes& extremes) {
    constexpr double kBesideDateLine = 179.9;
    LatLon label{(extremes.minLatitude + extremes.maxLatitude) / 2,
                 (extremes.minLongitude + extremes.maxLongitude) / 2};
    if (extremes.maxLongitude > 0 && extremes.minLongitude < 0) {
        label.longitude = -kBesideDateLine;
    } else if (extremes.maxLongitude < 0 && extremes.minLongitude > 0) {
        label.longitude = kBesideDateLine;
    }
    return label;
}

}  // namespace

AtcBoundaries atcBoundaries;

void ReadAtcBoundaries(std::string_view text, std::vector<AtcBoundary>& items) {
    items.clear();
    LineReader lines(text, kMaxLineLength);
    std::string_view line;
    std::string_view previousIdent = "INIT";
    Extremes extremes;
    while (lines.Next(line)) {
        std::array<std::string_view, 4> words;
        if (line.starts_with(';') || SplitWords(line, words) == 0) {
            continue;
        }
        if (items.empty() || words[0] != previousIdent) {
            if (!items.empty()) {
                items.back().label = LabelPoint(extremes);
            }
            if (items.size() >= kBoundaryCapacity) {
                return;
            }
            AtcBoundary& boundary = items.emplace_back();
            boundary.ident = words[0];
            boundary.name = words[1];
            extremes = {};
            previousIdent = words[0];
        }
        if (items.back().points.size() < kBoundaryPointCapacity) {
            const LatLon point{ToNumber(words[2]), ToNumber(words[3])};
            items.back().points.push_back(point);
            extremes.Widen(point);
        }
    }
    if (!items.empty()) {
        items.back().label = LabelPoint(extremes);
    }
}

void LoadAtcBoundaries() {
    std::string text;
    atcBoundaries.items.clear();
    if (ReadWholeFile(SimPath("\\avq\\navdata\\atc_bdry.txt"), text)) {
        ReadAtcBoundaries(text, atcBoundaries.items);
    }
    atcBoundaries.loaded = true;
}

}  // namespace avq1
