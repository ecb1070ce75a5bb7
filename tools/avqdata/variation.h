// avqdata/variation.h - magnetic headings for sources that give true ones.
//
// The variation at a place is taken from the stations around it, the nearer the more it counts. An
// aged station may be some degrees off, so a runway's own designator has a say too.
#pragma once

#include <optional>
#include <vector>

#include "avqdata/dataset.h"
#include "avqdata/report.h"

namespace avqdata {

class VariationField {
  public:
    explicit VariationField(std::vector<VariationSample> samples);
    // East positive; nothing when no sample lies within 600 nm or so.
    std::optional<double> At(const LatLon& place) const;

  private:
    std::vector<VariationSample> samples_;  // by latitude
};

// Gives every runway end that needs it its magnetic heading and approach course. Ends whose heading
// does not fit their designator either way are left out: their thresholds cannot be trusted.
void FillHeadings(Dataset& data, Report& report);

}  // namespace avqdata
