// panelhost/world/variables.h - the simulator's numbered aircraft variables, in the raw units a
// gauge module reads them in (latitude in metres, longitude as a 48-bit fraction of a turn,
// vertical speed in 1/256 m/s, ground speed in ft/s, height above ground in m; pitch positive nose
// down and bank positive to the left). One table; an unknown number reads 0.
#pragma once

#include <optional>

#include "panelhost/world/world.h"

namespace panelhost {

struct VariableRow {
    int number;
    const char* name;
    double (*read)(const World& world);
};

std::optional<double> ReadVariable(const World& world, int number);
const VariableRow* VariableTable(int& count);

}  // namespace panelhost
