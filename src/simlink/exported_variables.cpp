#include "simlink/exported_variables.h"

#include "base/module_state.h"
#include "platform/services.h"

namespace avq1 {

ExportedVariables exported;

namespace {

struct ExportRow {
    const char* name;
    VariableType type;
    void* address;
};

// Registered and unregistered in this order.
const ExportRow kExports[] = {
    {"avq_act_wpt_id", VariableType::Pointer, exported.activeIdent.data()},
    {"avq_act_wpt_pos", VariableType::PointerToUint32, &exported.activeIndex},
    {"avq_act_wpt_dist", VariableType::PointerToFloat64, &exported.distanceToGoNm},
    {"avq_fpln_wpt_cnt", VariableType::PointerToUint32, &exported.lastIndex},
    {"avq_xtk_err_dir", VariableType::PointerToUint32, &exported.crossTrackSide},
    {"avq_xtk_err_dist", VariableType::PointerToFloat64, &exported.crossTrackNm},
    {"avq_act_wpt_trk", VariableType::PointerToFloat64, &exported.desiredTrackMag},
    {"avq_act_wpt_brg", VariableType::PointerToFloat64, &exported.bearingToWaypointMag},
    {"avq_lnav_mode", VariableType::PointerToUint32, &exported.lnavEngaged},
    {"avq_vnav_mode", VariableType::PointerToUint32, &exported.vnavEngaged},
    {"avq_active", VariableType::PointerToUint32, &exported.active},
};

const StateReset resetExported([] { exported = {}; });

}  // namespace

void RegisterExportedVariables() {
    for (const ExportRow& row : kExports) {
        RegisterVariable(row.address, row.type, row.name);
    }
}

void UnregisterExportedVariables() {
    for (const ExportRow& row : kExports) {
        UnregisterVariable(row.name);
    }
}

}  // namespace avq1
