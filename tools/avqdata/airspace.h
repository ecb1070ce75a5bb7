// avqdata/airspace.h - airspace outlines from any source into boundaries the module can draw.
//
// Circles and arcs become chains of points. The shelves of an airspace, which floors and ceilings
// tell apart, become the one outline a map shows. Outlines with more points than the module reads
// are thinned out, as little as will do.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "avqdata/dataset.h"
#include "avqdata/importers.h"

namespace avqdata {

// Points of the arc about `centre` from one point to another, both included; the radius runs evenly
// from the one's distance to the other's. The lines between them keep within `offNm` of it.
inline constexpr double kOutlineOffArcNm = 0.02;
std::vector<LatLon> ArcPoints(const LatLon& centre, const LatLon& from, const LatLon& to,
                              bool clockwise, double offNm = kOutlineOffArcNm);
std::vector<LatLon> CirclePoints(const LatLon& centre, double radiusNm);

// The outline without the points that lie nearer than the tolerance to the line without them.
std::vector<LatLon> Simplify(const std::vector<LatLon>& outline, double toleranceNm);

// One airspace, or one shelf of it, as a source describes it.
struct AirspaceOutline {
    std::string airspaceClass;  // "ARTCC", "CLASS_B", "RESTRICTED", ...
    std::string label;          // what the map shows, its first three characters
    std::string ident;          // tells it from others of its class; shelves share it
    std::vector<LatLon> points;
};

// The class that a source's word stands for: "R" and "4" (a number of openAIP) as "RESTRICTED" and
// "CTR", "CLASS_B" as it is; what is not known as one token, "OTHER" for nothing.
std::string AirspaceClass(std::string_view word);

// Whether the parts of an airspace of this class are shelves; of others each part is one of its
// own.
bool HasShelves(std::string_view airspaceClass);

// What the shelves of an airspace have in common of their names: "ATLANTA" of "ATLANTA CLASS B AREA
// C", "PARIS TMA" of "PARIS TMA 2".
std::string NameOfShelf(std::string_view name);

// In which order boundaries get room on the map: by the class their identifiers begin with; 0, the
// first, where they begin with none.
int RankOfBoundary(std::string_view ident);

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
