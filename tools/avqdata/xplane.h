// avqdata/xplane.h - what the readers of X-Plane's files share: identifiers with their regions,
// which the newer airway form refers to, and the tie between the navaid and the airport file.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <tuple>

#include "avqdata/arinc.h"
#include "avqdata/dataset.h"
#include "avqdata/importers.h"
#include "avqdata/report.h"

namespace avqdata {

struct XplanePoint {
    LatLon at;
    bool isEnRoute = false;  // else of an airport's area
};

struct XplaneTables {
    CifpBook book;  // the points again, as procedures refer to them
    // By identifier, region and type: 11 a fix, 2 an NDB, 3 a VOR, TACAN or DME. Airways run over
    // en-route points: one stands before an airport's own of the same name, else the earlier.
    std::map<std::tuple<std::string, std::string, int>, XplanePoint> points;

    void Add(std::string_view ident, std::string_view region, int type, const XplanePoint& point);
};

// "... data cycle 2309 ..." or "2013.10" in a file's second line; 0 when it names none.
int CycleOfHeader(std::string_view line);

// Procedures, a file an airport, into the book; all such files, whose fixes and navaids `book`
// holds.
bool ReadXplaneProcedures(LineSource& lines, const std::string& airport, Report& report,
                          CifpBook& book, std::string& error);
bool ImportXplaneProcedures(const SourceFiles& files, const ImportContext& context, CifpBook& book,
                            Dataset& data, std::string& error);

// Ties the localizers read to the runway ends read; one without its runway, or without a
// glideslope, is no approach aid for the radios.
void TieLocalizers(Report& report, Dataset& data);

}  // namespace avqdata
