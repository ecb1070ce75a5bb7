#include "avqdata/importers.h"
namespace avqdata {
bool ImportCifp(const std::string&, const ImportContext&, Dataset&, std::string& e) {
    e = "x";
    return false;
}
bool ImportAirspace(const std::string&, const ImportContext&, Dataset&, std::string& e) {
    e = "x";
    return false;
}
}  // namespace avqdata
