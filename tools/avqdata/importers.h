// avqdata/importers.h - one reader per source format: from a source's text to a Dataset.
//
// A line or record that makes no sense is reported and left out; a source that is not of its
// format at all is an error, and nothing is imported. Nothing here writes a file.
#pragma once

#include <string>
#include <string_view>

#include "avqdata/dataset.h"
#include "avqdata/report.h"
#include "avqdata/source_file.h"
#include "avqdata/source_finder.h"

namespace avqdata {

struct ImportContext {
    const ImportOptions& options;
    Report& report;
    Progress progress;
    const Dataset* folder = nullptr;  // what is there already: a last place to look up fixes
    int otherCycle = 0;               // the newest of what the source is combined with

    // The cycle that dates a source which tells `own`; 0 where none is known.
    int CycleFor(int own) const {
        const int told = options.cycle != 0 ? options.cycle : own;
        return told != 0 ? told : otherCycle;
    }
};

// In the runways' fields they are; the panel host's radios take localizers with a glideslope only.
inline constexpr const char* kLocalizersWithoutGlideslope =
    "localizers without a glideslope: in their runways' fields, not in ils.txt";

// ---- whole sources: of the files those of their kinds; false with `error` when nothing can be
// imported ----
bool ImportXplane(const SourceFiles& files, const ImportContext& context, Dataset& data,
                  std::string& error);
bool ImportOurAirports(const SourceFiles& files, const ImportContext& context, Dataset& data,
                       std::string& error);
bool ImportNasr(const SourceFiles& files, const ImportContext& context, Dataset& data,
                std::string& error);
bool ImportCifp(const SourceFiles& files, const ImportContext& context, Dataset& data,
                std::string& error);
bool ImportAirspace(const SourceFiles& files, const ImportContext& context, Dataset& data,
                    std::string& error);

// ---- single formats ----
struct XplaneTables;  // fixes and stations by identifier and region, for the newer airway form
bool ReadXplaneFixes(LineSource& lines, Report& report, Dataset& data, XplaneTables& tables,
                     std::string& error);
bool ReadXplaneNavaids(LineSource& lines, Report& report, Dataset& data, XplaneTables& tables,
                       std::string& error);
bool ReadXplaneAirways(LineSource& lines, Report& report, Dataset& data, const XplaneTables& tables,
                       std::string& error);
// Counts holding patterns, for which the module's files have no place.
bool ReadXplaneHolds(LineSource& lines, Report& report, Dataset& data, XplaneTables& tables,
                     std::string& error);
bool ReadXplaneAirports(LineSource& lines, Report& report, Dataset& data, std::string& error);

bool ReadOurAirports(std::string_view airports, std::string_view runways,
                     const ImportContext& context, Dataset& data, std::string& error);
bool ReadOurNavaids(std::string_view navaids, const ImportContext& context, Dataset& data,
                    std::string& error);

struct NasrTexts {
    std::string navaids;
    std::string fixes;
    std::string airways;     // AWY_SEG, a row a point; may be empty, and so may all that follow
    std::string airwayLegs;  // AWY_SEG_ALT, a row a leg: what counts where there are no points
    std::string airports;
    std::string runways;  // APT_RWY and APT_RWY_END: none without both, nor without airports
    std::string runwayEnds;
};
bool ReadNasr(const NasrTexts& texts, Report& report, Dataset& data, std::string& error);

bool ReadCifp(LineSource& lines, const ImportContext& context, Dataset& data, std::string& error);

bool ReadGeoJson(std::string_view text, const std::string& name, const ImportContext& context,
                 Dataset& data, std::string& error);
bool ReadOpenAir(LineSource& lines, const ImportContext& context, Dataset& data,
                 std::string& error);

}  // namespace avqdata
