// Any bytes as the airway file and as the boundary file: no crash, no table beyond its capacity,
// and every fix of an airway can be looked up as its entry.
#include "base/module_state.h"
#include "base/text.h"
#include "fuzz/fuzz_text.h"
#include "navdb/airways.h"
#include "navdb/boundaries.h"

void FuzzText(std::string_view text) {
    using namespace avq1;
    ResetModuleState();
    LineReader lines(text, 200);
    std::string_view line;
    for (int looked = 0; looked < 20 && lines.Next(line);) {
        const bool comment = line.starts_with(';');
        const std::string_view name = NextWord(line);
        if (comment || name.empty()) {
            continue;
        }
        ++looked;
        const SearchResults results = ReadAirway(text, name, "").fixes;
        Require(results.count >= 1 && results.count <= kSearchResultCapacity);
        const std::string_view last = results[results.count].ident;
        const AirwayLookup again = ReadAirway(text, name, last);
        Require(last.empty() || again.fixes[again.entryIndex].ident == last);
        Require(again.entryIndex <= again.fixes.count);
    }
    std::vector<AtcBoundary> boundaries;
    ReadAtcBoundaries(text, boundaries);
    Require(boundaries.size() <= kBoundaryCapacity);
    for (const AtcBoundary& boundary : boundaries) {
        Require(!boundary.points.empty() && boundary.points.size() <= kBoundaryPointCapacity);
        Require(std::isfinite(boundary.label.latitude) && std::isfinite(boundary.label.longitude));
    }
}
