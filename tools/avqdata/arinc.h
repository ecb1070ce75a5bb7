// avqdata/arinc.h - records of 132 columns (ARINC 424-18) taken apart.
//
// Columns are numbered from 1 as in the standard's tables.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "avqdata/dataset.h"
#include "avqdata/importers.h"

namespace avqdata {

inline constexpr std::size_t kArincColumns = 123;  // what follows is numbering, to column 132

// Whether a line is a record at all: printable, as long as one, with the codes of type, area and
// section where they belong.
bool IsArincRecord(std::string_view line);

// The cycle in which a record was last changed: 2309; 0 where it tells none of this century.
int CycleOfRecord(std::string_view record);

// Columns `first` to `last`, trimmed or as they are.
std::string_view Raw(std::string_view record, std::size_t first, std::size_t last);
std::string_view Column(std::string_view record, std::size_t first, std::size_t last);

// Hddmmsscc and Hdddmmsscc, standing one behind the other from `first` on.
std::optional<LatLon> ArincPosition(std::string_view record, std::size_t first);
std::optional<double> ArincTenths(std::string_view text);     // "2238" is 223.8
std::optional<double> ArincVariation(std::string_view text);  // "W0130" is -13.0

struct ProcedureLegRecord {
    std::string transition;
    char routeType = ' ';
    int sequence = 0;
    std::string fix;
    std::string region;
    std::string section;
    std::string description;  // four characters
    std::string path;         // "TF"
    std::string restriction;  // "250/5000A", "---"
    std::string centre;       // of an arc: the fix of an RF leg, the station of an AF leg
    std::string centreRegion;
    std::string centreSection;
    double radiusNm = 0;              // of the arc; 0 where none is given
    double lengthNm = 0;              // of the leg; 0 where none is given
    std::optional<double> radialDeg;  // magnetic, of the fix from the station
    std::optional<double> courseDeg;  // magnetic; of an AF leg the radial on which it begins
    char turn = ' ';
    std::size_t line = 0;
};

// All legs of one procedure, in file order.
struct ProcedureRecord {
    std::string airport;
    std::string name;
    std::string file;  // of the source, for the report
    std::vector<ProcedureLegRecord> legs;
};

// Points of the file, for resolving what legs and airways refer to.
class PointBook {
  public:
    void Add(std::string_view section, std::string_view airport, std::string_view ident,
             std::string_view region, const LatLon& at);
    // By the reference itself; else the nearest of the name within 300 nm of `near`, here or in
    // the folder's tables.
    std::optional<LatLon> Find(std::string_view section, std::string_view airport,
                               std::string_view ident, std::string_view region,
                               const std::optional<LatLon>& near) const;
    void AddFolder(const Dataset& folder);
    // Whether the source itself has a point of the name, wherever it is.
    bool HasOwn(std::string_view ident) const;

  private:
    struct Point {
        LatLon at;
        bool isOwn = true;  // else the folder's
    };
    std::map<std::string, LatLon, std::less<>> byReference_;
    std::multimap<std::string, Point, std::less<>> byIdent_;
};

using ProcedureMap = std::map<std::pair<std::string, std::string>, ProcedureRecord>;

struct CifpBook {
    PointBook points;
    ProcedureMap procedures[kProcedureKinds];
    std::map<std::string, std::vector<std::string>> runways;  // of airports
    std::map<std::string, LatLon> airports;
};

// What the folder knows, where the source does not.
void AddFolderTo(CifpBook& book, const Dataset& folder);

ProcedureLegRecord ReadLeg(std::string_view record, std::size_t line);

// "5000A" at or above, "5000B" at or below, "5000" at, "5000A7000B" between, "250/" in front for a
// speed, "---" for nothing. `kind` is the standard's letter; altitudes are feet or flight levels.
std::string RestrictionText(char kind, std::string_view altitude1, std::string_view altitude2,
                            std::string_view speed);

// Puts a leg to the others of its procedure; false for names that cannot stand in the files.
bool AddLeg(std::string_view airport, std::string_view name, const std::string& file,
            ProcedureLegRecord&& leg, ProcedureMap& procedures);

// Writes the sections of all airports.
void BuildProcedures(const CifpBook& book, Report& report, Dataset& data);

}  // namespace avqdata
