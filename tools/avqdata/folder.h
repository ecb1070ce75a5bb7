// avqdata/folder.h - a Navdata folder: its files read into a Dataset and written from one.
//
// A changed folder is made whole beside the old one, which it then replaces: a full disk or a stop
// half-way leaves the folder as it was. Files that would not change, and files that are not ours,
// are the same files in it.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "avqdata/dataset.h"
#include "avqdata/report.h"

namespace avqdata {

enum FileRole : std::size_t {
    kNavaidFile,
    kFixFile,
    kAirwayFile,
    kAirportFile,
    kSidFile,
    kStarFile,
    kApproachFile,
    kBoundaryFile,
    kLocalizerFile,
    kScheduledFile,  // airports with airlines, one a line: of use to a later import only
    kFileRoles
};

inline constexpr std::array<const char*, kFileRoles> kFileNames{
    "avq_navs.txt",  "avq_ints.txt", "fsb_awy2.txt", "avq_apts.txt", "avq_sids.txt",
    "avq_stars.txt", "avq_apps.txt", "atc_bdry.txt", "ils.txt",      "scheduled.txt"};

// Of a degree, in the files.
inline constexpr int kPointDecimals = 5;      // about a metre
inline constexpr int kThresholdDecimals = 6;  // displays and radios measure along runways

using FolderTexts = std::array<std::string, kFileRoles>;

// What the folder's files hold; a missing file reads as an empty one. Lines that make no sense are
// reported: they are not kept. False, with `error`, when a file cannot be read.
bool ReadFolder(const std::string& folder, FolderTexts& texts, std::string& error);
Dataset ParseFolder(const FolderTexts& texts, Report& report);

FolderTexts FormatFolder(const Dataset& data);

// Brings back the folder where a run was stopped between the two renames that replace one.
void FinishReplacing(const std::string& folder);

// Makes the folder when it is missing. False, with `error`, when that cannot be done: the folder is
// as it was, or is not there as it was not.
bool WriteFolder(const std::string& folder, const FolderTexts& texts, std::string& error);

void CountTables(const Dataset& data, Report& report);

}  // namespace avqdata
