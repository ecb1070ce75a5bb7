// cdu_gns/gns_entry.h - numbers typed into the fields of the GNS-style unit.
//
// Only digits are a number here. A field with tenths has its decimal point before the last digit,
// which the pilot does not type.
#pragma once

#include <cstddef>

#include "cdu/line_select.h"

namespace avq1 {

// What has been typed, as a whole number; false, with `value` unchanged, when it is none.
bool ReadTypedWhole(double& value);
// The same as tenths: "125" is 12.5.
bool ReadTypedTenths(double& value);

// Puts a value into the scratchpad as it would be typed; one that is not finite leaves it empty.
void OfferWhole(double value, std::size_t length);
void OfferTenths(double value, std::size_t length);

// For LineRow::showEntry: what has been typed with its decimal point.
void ShowTypedTenths(const LineRow& row, UnitText& text);

}  // namespace avq1
