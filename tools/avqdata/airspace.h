// avqdata/airspace.h - airspace outlines from any source into boundaries the module can draw.
//
// Circles and arcs become chains of points. Outlines with more points than the module reads are
// thinned out, as little as will do.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "avqdata/dataset.h"
#include "avqdata/importers.h"

namespace avqdata {

// Points of the arc about `centre` from one point to another, both included; the radius runs evenly
// from the one's distance to the other's.
std::vector<LatLon> ArcPoints(const LatLon& centre, const LatLon& from, const LatLon& to,
                              bool clockwise);
std::vector<LatLon> CirclePoints(const LatLon& centre, double radiusNm);

// The outline without the points that lie nearer than the tolerance to the line without them.
std::vector<LatLon> Simplify(const std::vector<LatLon>& outline, double toleranceNm);

// One airspace as a source describes it.
struct AirspaceOutline {
    std::string airspaceClass;  // "ARTCC", "CLASS_B", "RESTRICTED", ...
    std::string label;          // what the map shows, its first three characters
    std::string ident;          // tells it from others of its class; may repeat
    std::vector<LatLon> points;
};

// Adds the wanted ones, the most useful classes first.
void AddOutlines(std::vector<AirspaceOutline>&& outlines, const ImportContext& context,
                 Dataset& data);

// ARINC 424 airspace records (UC and UR) by airspace, in file order.
struct AirspaceRecord {
    std::string via;  // "C" circle, "G" and "H" lines, "L" and "R" arcs; "E" ends the outline
    LatLon at;
    LatLon centre;
    double radiusNm = 0;
    bool hasPoint = false;
};
struct AirspaceEntry {
    std::string airspaceClass;
    std::string label;
    std::vector<AirspaceRecord> records;
};
using AirspaceRecords = std::map<std::string, AirspaceEntry>;

// False for a record that makes no sense.
bool AddAirspaceRecord(std::string_view record, AirspaceRecords& airspaces);
void BuildAirspaces(const AirspaceRecords& airspaces, const ImportContext& context, Dataset& data);

}  // namespace avqdata
