// avqdata/source_finder.h - what the folders, files and archives that people have hold: every file
// told by its content, archives and archives in them looked into.
//
// Bounded: of each file only the beginning is read, folders are followed a few steps down, and of
// an installed simulator only the folders that hold its navigation data are looked at.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "avqdata/source_file.h"

namespace avqdata {

enum class SourceKind {
    OurAirports,
    OurRunways,
    OurNavaids,
    XplaneNavaids,
    XplaneFixes,
    XplaneAirways,
    XplaneAirports,
    XplaneHolds,
    XplaneProcedures,  // one airport's
    NasrNavaids,
    NasrFixes,
    NasrAirways,
    NasrAirwayLegs,
    NasrAirports,
    NasrRunways,
    NasrRunwayEnds,
    Cifp,
    GeoJson,
    OpenAir,
    None,
};

struct FoundFile {
    SourceKind kind = SourceKind::None;
    SourceFile file = {};
    int cycle = 0;  // 2309; 0 where the beginning does not say
};
using SourceFiles = std::vector<FoundFile>;

struct FoundSources {
    SourceFiles files = {};
    std::vector<std::string> refused = {};  // "PATH: why": archives that cannot be read, and files
                                            // with a source's name that are none of its
};

inline constexpr std::size_t kSniffedBytes = std::size_t{1} << 14U;

// What a file is whose first bytes are `start` (kSniffedBytes of them, fewer when it is shorter).
FoundFile Recognise(std::string_view start, const SourceFile& file);

// Looks into a folder, an archive or a file. False, with `error`, when there is nothing of that
// name or far too much below it.
bool FindSources(const std::string& path, FoundSources& found, std::string& error);

// Leaves the files to import: of a kind that comes once what the user put in before what came with
// the simulator, then the newest, then the largest, then the first; procedures of one place.
// `unused` gets the others' paths.
SourceFiles ChooseFiles(const SourceFiles& found, std::vector<std::string>& unused);

const FoundFile* FileOf(const SourceFiles& files, SourceKind kind);  // null when there is none

const char* NameOf(SourceKind kind);  // "OurAirports' airports"

}  // namespace avqdata
