// avqdata/variation.h - magnetic headings for sources that give true ones, by the earth's magnetic
// field at the date of the data. A runway's own designator has a say too: it tells a runway that is
// numbered by true north, and thresholds that cannot be right.
#pragma once

#include "avqdata/dataset.h"
#include "avqdata/report.h"

namespace avqdata {

// Gives every runway end that needs it its magnetic heading and approach course, at the beginning
// of the cycle (0: that of the field's model). Ends whose heading does not fit their designator
// either way are left out.
void FillHeadings(int cycle, Dataset& data, Report& report);

}  // namespace avqdata
