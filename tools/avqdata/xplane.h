// avqdata/xplane.h - identifiers with their regions, which the newer airway form refers to.
#pragma once

#include <map>
#include <string>
#include <tuple>

#include "avqdata/dataset.h"

namespace avqdata {

struct XplaneTables {
    // By identifier, region and type: 11 a fix, 2 an NDB, 3 a VOR, TACAN or DME.
    std::map<std::tuple<std::string, std::string, int>, LatLon> points;
};

}  // namespace avqdata
