// avqdata/limits.h - what the module's tables and line readers hold, by file.
#pragma once

#include <cstddef>

namespace avqdata {

inline constexpr std::size_t kMostStations = 17000;
inline constexpr std::size_t kMostFixes = 180000;
inline constexpr std::size_t kMostAirwayFixes = 100000;  // lines whose fix has kShortestFix letters
inline constexpr std::size_t kShortestFix = 4;
inline constexpr std::size_t kMostAirports = 10000;
inline constexpr std::size_t kMostLetterGroups = 74;
inline constexpr std::size_t kMostFixesOfAirway = 250;  // an airway look-up ends there
inline constexpr std::size_t kMostRunways = 20;         // of an airport's line
inline constexpr std::size_t kMostBoundaries = 400;
inline constexpr std::size_t kMostBoundaryPoints = 800;
inline constexpr std::size_t kMostSids = 140;
inline constexpr std::size_t kMostStars = 90;
inline constexpr std::size_t kMostApproaches = 50;  // runways, circling being one
inline constexpr std::size_t kMostApproachTypes = 10;
inline constexpr std::size_t kMostLegs = 200;
inline constexpr std::size_t kMostWaypointsOfChoice = 40;

inline constexpr std::size_t kLongestLine = 1699;
inline constexpr std::size_t kLongestAirportLine = 1499;
inline constexpr std::size_t kLongestAirwayLine = 200;
inline constexpr std::size_t kLongestBoundaryLine = 149;

}  // namespace avqdata
