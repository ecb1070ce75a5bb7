#include "navdb/airport_detail.h"

#include "base/module_state.h"
#include "base/sim_folder.h"
#include "navdb/navdata_text.h"
#include "platform/files.h"

namespace avq1 {
namespace {

const StateReset kReset([] {
    airportSlots = {};
    lastAirportElevationText.clear();
});

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
    LoadProcedures(ident, slot, detail.procedures);
    return true;
}

}  // namespace avq1
