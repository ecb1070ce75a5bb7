// avqdata/clean.h - what a source says that cannot be, put right or left out before it is merged.
#pragma once

#include <optional>
#include <string_view>

#include "avqdata/dataset.h"
#include "avqdata/report.h"

namespace avqdata {

inline constexpr double kFarthestRunwayNm = 10;
inline constexpr int kLowestAirportFt = -2000;
inline constexpr int kHighestAirportFt = 30000;
inline constexpr int kShortestRunwayFt = 100;
inline constexpr int kLongestRunwayFt = 60000;  // lake beds

bool IsFrequency(bool isVor, std::optional<double> frequency);  // MHz of a VOR, kHz of an NDB

inline constexpr double kSamePointNm = 0.9;  // what the check finds within a mile

// The fix of a procedure file's leg line; nothing for other lines, and for runways.
std::optional<Fix> FixOfLine(std::string_view line, bool isApproach);

// Points are rounded as the files hold them, so that a folder read again is the same. Stations that
// cannot be tuned become fixes; airports under the ground or in space, runways too short or far
// from their airport go.
void CleanDataset(Dataset& data, Report& report);

// Puts airway points on the table's point of their identifier when it lies within 10 nm, so that
// what the pilot looks up and what he flies are one. A point no table has becomes a fix.
// The same for the fixes of procedures, except that those stay where their procedure puts them.
void TieToTables(Dataset& data, Report& report);

}  // namespace avqdata
