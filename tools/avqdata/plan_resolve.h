// avqdata/plan_resolve.h - routes of forms that give names instead of positions.
//
// A name that several places have is the one that makes the way from the point before it, and on to
// the next point that is sure, shortest; one on the airways that lead to it and on from it comes
// first. What cannot be placed is left out and reported.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "avqdata/plan_data.h"
#include "avqdata/plan_exchange.h"

namespace avqdata {

struct RoutePart {
    avq1::PlanWaypoint entry = {};  // an empty type: any; an empty identifier: where its airway
                                    // meets that of the next part
    bool isPlaced = false;          // the position is the file's
    bool follows = false;           // the airway's fixes on the way are put in
    std::string where = {};         // what a message about it begins with, "plan:7: "
    double bearingMag = -1;  // from the named place to the point, degrees; -1: the place itself
    double distanceNm = 0;
};

// Appends the parts to the plan. Without data, what is not placed is left out.
void PlaceRoute(const PlanSource& source, std::vector<RoutePart> parts, ExchangePlan& plan);

// "45N010W", "4530N01000W", "453000N0100000W", "N49570E008316" (tenths of a minute): a position as
// routes write it; nothing for other words.
std::optional<avq1::LatLon> RoutePosition(std::string_view word);

// What the data adds to a plan that was read: frequencies of its stations, the points of procedures
// that are only named. Names whose points are then still missing are said, with or without data.
void CompletePlan(const PlanSource& source, ExchangePlan& plan);

}  // namespace avqdata
