// avqdata/dataset.h - the merged navigation data: what a folder holds and what a source brings.
//
// Positions are decimal degrees, north and east positive; lengths and elevations feet; headings and
// courses magnetic unless a name says True. Texts hold no blanks: the files separate fields by
// them. Each importer fills a Dataset of its own; MergeDataset puts it into the folder's.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "geometry/geometry.h"

namespace avqdata {

using avq1::LatLon;

struct Station {
    std::string ident;
    std::string name;
    LatLon at;
    bool isVor = false;  // else an NDB
    std::string frequency;
};

struct Fix {
    std::string ident;
    LatLon at;
};

struct RunwayEnd {
    std::string ident;
    int lengthFt = 0;
    LatLon at;  // the landing threshold
    double headingMag = 0;
    std::string ilsFrequency = "---";
    std::string ils = "---";
    double courseMag = 0;    // of the approach: the localizer's, else the heading
    double headingTrue = 0;  // while importing: the magnetic heading is not known yet
    bool needsVariation = false;
};

struct Airport {
    std::string ident;
    std::string name;
    int elevationFt = 0;
    LatLon at;
    std::vector<RunwayEnd> runways;
    bool paved = true;         // a paved runway is known
    bool isScheduled = false;  // airlines are known to serve it
};

// One unbroken piece of an airway, in the order it is flown.
struct Airway {
    std::string name;
    std::vector<Fix> points;
};

// For the panel host's radios.
struct Localizer {
    std::string ident;
    std::string frequency;
    LatLon at;  // the runway's threshold
    double courseTrue = 0;
    double glideDeg = 0;
    int elevationFt = 0;
    std::string airport;
    std::string runway;
    LatLon antenna;
};

struct Boundary {
    std::string ident;
    std::string name;  // at most three characters are drawn
    std::vector<LatLon> points;
};

// Lines of one airport's section of a procedure file.
using SectionLines = std::vector<std::string>;
using ProcedureFile = std::map<std::string, SectionLines>;

enum ProcedureKind : std::size_t { kSids, kStars, kApproaches, kProcedureKinds };

struct Dataset {
    std::vector<Station> stations;
    std::vector<Fix> fixes;
    std::vector<Airport> airports;
    std::vector<Airway> airways;
    std::vector<Localizer> localizers;
    std::vector<Boundary> boundaries;
    ProcedureFile procedures[kProcedureKinds];
    int cycle = 0;          // 2309 is the ninth of 2023; 0 = not known
    std::string cycleLine;  // as found in the folder
};

// What of a source is wanted.
struct Region {
    double south = -90;
    double west = -180;
    double north = 90;
    double east = 180;
    bool Contains(const LatLon& at) const;
    bool IsWorld() const;
};

struct ImportOptions {
    Region region;
    std::vector<std::string> only;       // table names; empty = all
    std::vector<std::string> countries;  // ISO codes, of sources that tell; empty = all
    // Countries whose navaids come from their own authority: those of a list of the world are left
    // out, as it keeps stations that have been switched off.
    std::vector<std::string> countriesToldElsewhere = {};
    int minRunwayFt = 0;               // airports need a paved runway at least this long
    bool icaoOnly = false;             // airports need a code of four letters
    std::vector<std::string> classes;  // of airspace; empty = all
    double simplifyNm = 0;             // how far an airspace outline may be moved
    int cycle = 0;                     // 0 = what the source says
    bool progress = false;
};

// How a source's airports meet those of the folder. A whole source lists every runway of its
// airports and replaces them; a partial one adds what is missing and replaces single runway ends.
enum class Coverage { Whole, Partial };

}  // namespace avqdata
