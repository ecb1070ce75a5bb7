// navdb/navdata_text.h - the navigation files' formats: from a file's text to table records.
//
// One record a line, fields separated by white space. A missing field is empty or 0, a malformed
// number 0; a line without any word is no record. Records keep views into `text`, which must
// outlive the table. Tables grow by appending; lines beyond a table's capacity are dropped, with
// one message near the limit.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "navdb/airport_detail.h"
#include "navdb/nav_database.h"

namespace avq1 {

inline constexpr std::size_t kNavdataLineLength = 1699;  // longer lines come in pieces

void ReadIntersections(std::string_view text, PointTable& table);
void ReadAirwayFixes(std::string_view text, PointTable& table);
void ReadAirports(std::string_view text, PointTable& table);
void ReadNavaids(std::string_view text, PointTable& table);

// The cycle line of the navaid file; both texts unchanged when there is none.
void ReadCycleText(std::string_view text, std::string& cycle, std::string& validity);

// The detail of one airport: the first line whose upper-cased identifier is `ident`. False, with
// `detail` and `elevationText` unchanged, when there is none.
bool ReadAirportDetail(std::string_view text, std::string_view ident, AirportDetail& detail,
                       std::string& elevationText);

}  // namespace avq1
