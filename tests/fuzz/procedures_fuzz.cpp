// Any bytes as any of the procedure files: no crash, no table beyond its capacity, and every
// section found by the index is the one a plain reading finds.
#include "base/module_state.h"
#include "fuzz/fuzz_text.h"
#include "navdb/airport_detail.h"
#include "navdb/procedures.h"
#include "navdb/section_index.h"

namespace {

void CheckTable(const std::vector<avq1::Procedure>& table, std::size_t capacity) {
    Require(table.size() <= capacity);
    for (const avq1::Procedure& procedure : table) {
        Require(procedure.legs.size() <= avq1::kProcedureLegCapacity);
        for (const std::string& transition : avq1::ListTransitions(procedure, false)) {
            Require(!transition.empty());
        }
    }
}

std::size_t LegCount(const std::vector<avq1::Procedure>& table) {
    std::size_t count = 0;
    for (const avq1::Procedure& procedure : table) {
        count += procedure.legs.size() + 1;
    }
    return count;
}

}  // namespace

void FuzzText(std::string_view text) {
    using namespace avq1;
    ResetModuleState();
    AirportProcedures whole;
    AirportProcedures part;
    std::string_view previous;
    for (const FileSection& section : FindSections(text, 16)) {
        Require(section.offset + section.size <= text.size() && text[section.offset] == '[');
        ReadSids(text, section.ident, whole.sids);
        ReadStars(text, section.ident, whole.stars);
        ReadApproaches(text, section.ident, whole);
        CheckTable(whole.sids, kSidCapacity);
        CheckTable(whole.stars, kStarCapacity);
        CheckTable(whole.approaches, kApproachCapacity);
        Require(whole.approachGroups.size() <= kApproachGroupCapacity);
        if (previous.empty()) {  // the first section of the file is the first of its name
            const std::string_view slice = text.substr(section.offset, section.size);
            ReadSids(slice, section.ident, part.sids);
            Require(LegCount(part.sids) == LegCount(whole.sids));
            previous = slice;
        }
    }
    airportSlots[kArrivalSlot].procedures = whole;
    ListApproachTypes(kNoChoice, kNoChoice);
    ListApproaches(kNoChoice);
    ListApproachTransitions("ILS", kNoChoice);
}
