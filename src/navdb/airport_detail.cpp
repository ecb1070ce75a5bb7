#include "navdb/airport_detail.h"

#include "base/module_state.h"
#include "base/sim_folder.h"
#include "navdb/nav_database.h"
#include "navdb/navdata_text.h"
#include "platform/files.h"

namespace avq1 {
namespace {

// The text behind the first search result's identifier after an airport was loaded.
std::string loadedIdent;

const StateReset kReset([] {
    airportSlots = {};
    lastAirportElevationText.clear();
});

// The loaded airport becomes the first search result, whose count stays as it is.
void PutFirstInSearchResults(const AirportDetail& detail) {
    std::vector<PointRecord>& records = navDatabase.searchResults.records;
    if (records.size() < 2) {
        records.resize(2);
    }
    loadedIdent = detail.ident;
    records[1] = {};
    records[1].ident = loadedIdent;
    records[1].latitude = detail.latitude;
    records[1].longitude = detail.longitude;
    records[1].kind = PointKind::Airport;
}

void LoadProcedures(std::string_view ident, std::int32_t slot, AirportProcedures& procedures) {
    if (slot == kDepartureSlot) {
        LoadSids(ident, procedures);
    } else {
        LoadStars(ident, procedures);
        LoadApproaches(ident, procedures);
    }
}

}  // namespace

std::array<AirportDetail, kAirportSlotCount> airportSlots;
std::string lastAirportElevationText;

bool LoadAirportDetail(std::string_view ident, std::int32_t slot) {
    if (slot < 0 || slot >= kAirportSlotCount) {
        return false;
    }
    AirportDetail& detail = airportSlots[static_cast<std::size_t>(slot)];
    detail.runways.clear();
    detail.procedures = {};
    std::string text;
    if (!ReadWholeFile(SimPath("\\avq\\navdata\\avq_apts.txt"), text) ||
        !ReadAirportDetail(text, ident, detail, lastAirportElevationText)) {
        return false;
    }
    PutFirstInSearchResults(detail);
    LoadProcedures(ident, slot, detail.procedures);
    return true;
}

}  // namespace avq1
