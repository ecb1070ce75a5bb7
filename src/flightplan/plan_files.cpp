#include "flightplan/plan_files.h"

#include <algorithm>

#include "base/messages.h"
#include "base/module_state.h"
#include "base/sim_folder.h"
#include "base/text.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_airports.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_moves.h"
#include "flightplan/sim_plan.h"
#include "platform/files.h"
#include "settings/settings.h"

namespace avq1 {

StoredPlanList storedPlans;

namespace {

constexpr std::string_view kNewPlan = "NEW FPL";
constexpr std::string_view kNextPlan = "NEXT FPL";
constexpr std::string_view kConvertedPlan = "temp.rte";
constexpr std::string_view kUnableToLoad = "Unable to load FP";
constexpr std::size_t kExtensionLength = 4;

const StateReset resetStoredPlans([] { storedPlans = StoredPlanList{}; });

std::string_view Extension(std::string_view name) {
    return name.size() < kExtensionLength ? std::string_view{}
                                          : name.substr(name.size() - kExtensionLength);
}

bool IsSimPlan(std::string_view name) {
    return EqualsIgnoreCase(Extension(name), ".PLN");
}

// A plan is a file of the plans folder itself: no name leads out of it.
bool IsPlainName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of("/\\:") == std::string_view::npos;
}

bool IsListed(std::string_view name) {
    const std::string_view extension = Extension(name);
    return (extension == ".PLN" || extension == ".RTE") && !EqualsIgnoreCase(name, kConvertedPlan);
}

// Reads a stored plan as it is in the file. False, with an empty text, when there is none to be
// had.
bool ReadStoredText(std::string_view fileName, std::string& text) {
    text.clear();
    return IsPlainName(fileName) && ReadWholeFile(PlansFolder() + std::string(fileName), text);
}

// One of the simulator's own plans in this system's format. The copy in the plans folder is for
// the pilot to keep under another name; the plan is read whether or not it could be written.
std::string ImportSimPlan(std::string_view text) {
    const ConvertedPlan converted = ConvertSimPlan(text);
    if (converted.text.empty()) {
        planBook.entryNotice = kUnableToLoad;
        return {};
    }
    ReplaceFile(PlansFolder() + std::string(kConvertedPlan), converted.text);
    if (converted.leftOut > 0) {
        planBook.entryNotice = Format("FPL: %d without position left out", converted.leftOut);
    }
    return converted.text;
}

// The text of a stored plan in this system's format.
std::string ReadPlanText(std::string_view fileName) {
    planBook.entryNotice.clear();
    std::string text;
    ReadStoredText(fileName, text);
    if (!IsPlainName(fileName)) {
        planBook.entryNotice = kUnableToLoad;
    }
    return IsSimPlan(fileName) ? ImportSimPlan(text) : text;
}

void SayNotice() {
    if (!planBook.entryNotice.empty()) {
        AppendMessage(planBook.entryNotice);
    }
}

void ReadPlan(std::string_view fileName, FlightPlan& plan, PlanBook* book, bool anyFuelKey) {
    const std::string text = ReadPlanText(fileName);
    if (ParsePlanText(text, plan, book, anyFuelKey) > 0) {
        planBook.entryNotice = kPlanFullMessage;
    } else if (plan.lastIndex < 0 && !text.empty()) {
        planBook.entryNotice = kUnableToLoad;
    }
}

void StartEmptyPlan() {
    modifiedPlan.CutTo(-1);
    planBook.editIndex = kNoWaypoint;
    planBook.cruiseAltitudeFt = 0;
    planBook.fuelTotal = 0;
    planBook.reserveFuel = 0;
}

}  // namespace

std::string PlansFolder() {
    return settings.FlightPlansFolder.empty() ? SimPath("\\avq\\flightplans\\")
                                              : settings.FlightPlansFolder + "\\";
}

void ListStoredPlans() {
    std::vector<std::string> names;
    ListFolder(PlansFolder(), names);
    storedPlans.plans.clear();
    std::string text;
    for (const std::string& name : names) {
        const bool hasRoom = storedPlans.plans.size() < kStoredPlanCapacity - 1;
        if (!hasRoom || !IsListed(name) || !ReadStoredText(name, text)) {
            continue;
        }
        // A list of many plans writes no copies and says nothing.
        ParsePlanText(IsSimPlan(name) ? ConvertSimPlan(text).text : text, previewPlan, nullptr,
                      false);
        StoredPlan& plan = storedPlans.plans.emplace_back();
        plan.fileName = name;
        if (previewPlan.lastIndex >= 0) {
            plan.firstIdent = previewPlan.entries[0].ident;
            plan.lastIdent = previewPlan.entries[previewPlan.lastIndex].ident;
        }
    }
    storedPlans.plans.push_back({std::string(kNewPlan), std::string(kNextPlan), ""});
    const auto count = static_cast<std::int32_t>(storedPlans.plans.size());
    storedPlans.pageCount = (count + kStoredPlansPerPage - 1) / kStoredPlansPerPage;
    storedPlans.currentPage = std::clamp(storedPlans.currentPage, 1, storedPlans.pageCount);
}

void PreviewPlan(std::string_view fileName) {
    ReadPlan(fileName, previewPlan, nullptr, false);
    if (previewPlan.lastIndex < 0) {
        SayNotice();
    }
}

void LoadPlan(std::string_view fileName) {
    EndModification();
    planBook.trackedIndex = kNoWaypoint;
    DeleteAllPendingHolds();
    if (fileName == kNextPlan || fileName == kNewPlan) {
        StartEmptyPlan();
        return;
    }
    ReadPlan(fileName, modifiedPlan, &planBook, false);
    SayNotice();
    KeepIndexesInPlan(modifiedPlan);
    if (modifiedPlan.lastIndex < 0) {
        planBook.editIndex = kNoWaypoint;
        return;
    }
    planBook.editIndex = NextEntryPlace(modifiedPlan);
    planBook.originIdent = modifiedPlan.entries[0].ident;
    planBook.destinationIdent = modifiedPlan.entries[modifiedPlan.lastIndex].ident;
    LoadPlanAirportDetail(planBook.originIdent, kDepartureSlot);
    LoadPlanAirportDetail(planBook.destinationIdent, kArrivalSlot);
}

bool ReadPlanToActive(std::string_view fileName) {
    ReadPlan(fileName, activePlan, &planBook, true);
    planBook.reserveFuelInUse = planBook.reserveFuel;
    planBook.editIndex = kNoWaypoint;
    planBook.trackedIndex = kNoWaypoint;
    DeleteAllHolds();
    KeepIndexesInPlan(activePlan);
    modifiedPlan = activePlan;
    const std::int32_t last = activePlan.lastIndex;
    planBook.verticalTargetIndex = std::max(last, 0);
    if (last < 0) {
        return false;
    }
    planBook.editIndex = NextEntryPlace(modifiedPlan);
    KeepIndexesInPlan(modifiedPlan);
    planBook.originIdent = activePlan.entries[0].ident;
    planBook.destinationIdent = activePlan.entries[last].ident;
    LoadPlanAirportDetail(planBook.originIdent, kDepartureSlot);
    LoadPlanAirportDetail(planBook.destinationIdent, kArrivalSlot);
    SetPlanAirport(planBook.destinationIdent, PlanAirportMode::LoadedDestination);
    return true;
}

bool SavePlan(std::string_view fileName) {
    if (IsPlainName(fileName) &&
        ReplaceFile(PlansFolder() + std::string(fileName), PlanText(activePlan))) {
        return true;
    }
    AppendMessage(Format("FPL '%s' not saved", std::string(fileName).c_str()));
    return false;
}

}  // namespace avq1
