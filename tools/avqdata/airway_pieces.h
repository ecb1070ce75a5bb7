// avqdata/airway_pieces.h - airways from their segments: unbroken pieces in flying order.
#pragma once

#include <string>
#include <vector>

#include "avqdata/dataset.h"
#include "avqdata/report.h"

namespace avqdata {

struct AirwaySegment {
    std::string name;
    Fix from;
    Fix to;
};

// Each segment lies on exactly one piece. At a fork the piece goes on with the smallest turn; one
// that forks off is a piece of its own. Same segments, same pieces, in the order of their names.
std::vector<Airway> JoinSegments(const std::vector<AirwaySegment>& segments);

// The parts of a piece whose points all lie in the region, two points at least.
std::vector<Airway> CutToRegion(const Airway& airway, const Region& region);

// Puts a later source's pieces into what is there. An old piece is replaced from the first to the
// last point that it has in common with a new one of its name (10 nm); what lies outside stays, and
// where it meets a new piece end to end the two become one.
void MergeAirways(std::vector<Airway>&& incoming, std::vector<Airway>& target, Report& report);

}  // namespace avqdata
