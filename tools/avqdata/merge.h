// avqdata/merge.h - a source's data into the folder's, and the choice of what fits.
//
// The rules: docs/navigation-data.md lists them for users.
//  - A station, or a fix, replaces one of its identifier (and kind) that lies within 10 nm. One
//    within 0.05 nm is the same place: it keeps its position, so that plans, airways and procedures
//    stay on the tables' points, and takes the rest.
//  - An airport of a whole source replaces that of its identifier; one of a partial source is added
//    when missing, and its runway ends replace those of their designators.
//  - An airway replaces what it has from end to end of the pieces of its name (airway_pieces.h).
//  - A procedure section replaces the airport's section in that file; a boundary one of its
//    identifier; a localizer that of its runway.
#pragma once

#include <string>
#include <vector>

#include "avqdata/dataset.h"
#include "avqdata/report.h"

namespace avqdata {

// Drops what the options do not want: other tables, other regions, lesser airports.
void ApplyOptions(const ImportOptions& options, Dataset& data, Report& report);

void MergeDataset(Dataset incoming, Coverage coverage, Dataset& target, Report& report);

// Leaves in the tables what the module can hold, the most useful first, and sorts them; says what
// goes.
void FitCapacities(Dataset& data, Report& report);

// The tables' order in the files: navaids grouped by letter, airways in one piece.
void SortDataset(Dataset& data);

// A source's data cleaned, chosen, merged and tied together; and, when the last is in, all fitted.
void Add(Dataset incoming, Coverage coverage, const ImportOptions& options, Dataset& folder,
         Report& report);
void Finish(Dataset& folder, Report& report);

// Both, for one source.
void Combine(Dataset incoming, Coverage coverage, const ImportOptions& options, Dataset& folder,
             Report& report);

}  // namespace avqdata
