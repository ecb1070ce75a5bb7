// Records for tests, put into the database's tables as lines of their files.
#pragma once

#include <deque>
#include <string>

#include "base/text.h"
#include "navdb/navdata_text.h"

namespace avq1::test {

// A record at a place in degrees; kind and frequency are a navaid's.
inline void AddPoint(PointTable& table, std::string_view ident, double latitude, double longitude,
                     PointKind kind = PointKind::Vor, const char* frequency = "113.40") {
    static std::deque<std::string> lines;  // tables view them
    std::string& line = lines.emplace_back(ident);
    const std::string place = Format(" %.17g %.17g", latitude, longitude);
    if (&table == &navDatabase.navaids) {
        line += " -" + place + (kind == PointKind::Vor ? " VOR " : " NDB ") + frequency;
        ReadNavaids(line, table);
    } else if (&table == &navDatabase.airports) {
        line += " - 0" + place;
        ReadAirports(line, table);
    } else {
        line += " -" + place;
        ReadIntersections(line, table);
    }
}

}  // namespace avq1::test
