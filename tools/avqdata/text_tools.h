// avqdata/text_tools.h - reading the sources' fields: strict numbers, tokens, identifiers.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "geometry/geometry.h"

namespace avqdata {

std::string_view Trim(std::string_view text);
std::vector<std::string_view> Words(std::string_view line);
void SplitWords(std::string_view line, std::vector<std::string_view>& words);  // the same
std::vector<std::string> SplitList(std::string_view text, char separator);
// Takes the part up to the separator off the front of `rest`, trimmed.
std::string_view NextPart(std::string_view& rest, char separator);

// The whole text as a finite number; a leading "+" is allowed. Nothing else may stand in it.
std::optional<double> Number(std::string_view text);
std::optional<int> WholeNumber(std::string_view text);

// A position within its ranges.
std::optional<avq1::LatLon> Position(std::string_view latitude, std::string_view longitude);
bool IsPosition(const avq1::LatLon& at);
// To so many decimals of a degree by way of the text, so that halves fall where the files put them.
avq1::LatLon RoundedAsWritten(const avq1::LatLon& at, int decimals);

// One blank-free ASCII token: accents dropped, words joined by underscores; "-" when nothing is
// left. `text` is UTF-8; other bytes count as separators.
std::string Token(std::string_view text);

// Whether a text can stand as an identifier in the files: printable ASCII without blanks, none of
// the characters that begin comments, sections or keys there.
bool IsIdent(std::string_view text);
bool IsIcaoCode(std::string_view text);     // four capital letters
bool IsRunwayIdent(std::string_view text);  // 01 to 36 and L, R, C or nothing
bool IsRunwayFix(std::string_view text);    // "RW09L", a runway's threshold in a procedure
// "9L" as "09L", which most of the world paints and all the files hold; other texts as they are.
std::string RunwayName(std::string_view text);

// What a file says may hold anything; a terminal gets ASCII letters only, others as "?".
std::string Printable(std::string_view text);

// Adds a column of a table to its lines: a title and below it a cell a line.
void AppendCells(const std::vector<std::string>& cells, bool toTheRight,
                 std::vector<std::string>& lines);

// With so many decimals, never as minus zero. Of any finite number, rounded as printf does.
std::string Fixed(double value, int decimals);
void AppendFixed(std::string& text, double value, int decimals);
std::string Megahertz(double megahertz);  // "113.70"
std::string Kilohertz(double kilohertz);  // "365", "365.5"

// To the nearest whole number, of a size that any int holds.
int Rounded(double value);

// The course in [0, 360).
double Normalized(double degrees);

double DistanceNm(const avq1::LatLon& a, const avq1::LatLon& b);
double CourseTrue(const avq1::LatLon& a, const avq1::LatLon& b);  // in [0, 360)
double TurnDeg(double first, double second);                      // -180 to 180

}  // namespace avqdata
