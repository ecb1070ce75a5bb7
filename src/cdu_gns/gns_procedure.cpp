// DEPARTURE, ARRIVAL and APCH: one page for a procedure of an airport, chosen step by step, shown
// and put into the plan.
#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/messages.h"
#include "base/module_state.h"
#include "cdu_gns/gns_pages.h"
#include "cdu_gns/gns_plan.h"
#include "cdu_gns/gns_waypoint.h"
#include "flightplan/procedures.h"
#include "guidance/activation.h"
#include "navdb/airport_detail.h"
#include "navdb/procedures.h"

namespace avq1 {
namespace {

constexpr std::int32_t kOptionsOnPage = 12;
constexpr std::int32_t kColumnRows = 6;
constexpr std::int32_t kPreviewOnPage = 8;
constexpr std::int32_t kPreviewRows = 4;
constexpr std::array<std::int16_t, 2> kOptionX = {30, 292};
constexpr std::array<std::int16_t, 2> kPreviewX = {30, 270};
constexpr int kPreviewNote = 128;  // from a waypoint to what is said of it
constexpr std::int32_t kFirstOptionRow = 3;
constexpr std::int32_t kFirstPreviewRow = 4;
constexpr int kChoiceX = 292;
constexpr std::int16_t kChoiceLabelX = 53;

enum class Step : std::int32_t { Airport, Runway, Item, Transition, Complete };

// What the three pages differ in.
struct Kind {
    GnsPage page;
    GnsCounter counter;
    const char* title;
    const char* item;  // the second choice
    const char* preview;
    std::string_view tag;  // of its entries in a plan
    std::int32_t slot;
    bool (*splice)(FlightPlan& plan);
};

constexpr Kind kKinds[] = {
    {kGnsDeparture, GnsCounter::Departure, "DEPARTURE", "SID", "WAYPOINTS OF SID:", "SID",
     kDepartureSlot, InsertSid},
    {kGnsArrival, GnsCounter::Arrival, "ARRIVAL", "STAR", "WAYPOINTS OF STAR:", "STAR",
     kArrivalSlot, InsertStar},
    {kGnsApproach, GnsCounter::Approach, "APCH", "TYPE", "WPTS OF APPROACH:", "APPR", kArrivalSlot,
     [](FlightPlan& plan) { return InsertApproach(plan, false); }},
};

struct GnsProcedure {
    Step step = Step::Airport;
    std::string airport;
    bool airportNotFound = false;
    bool procedureComplete = false;
    std::string runway{kNoChoice};
    std::string item{kNoChoice};
    std::string transition{kNoChoice};
    std::vector<std::string> options;  // of the step
};

GnsProcedure choice;
const StateReset choiceReset([] { choice = GnsProcedure{}; });

const Kind& KindShown() {
    return *std::ranges::find_if(kKinds, [](const Kind& kind) {
        return kind.page == gns.page || &kind == &kKinds[std::size(kKinds) - 1];
    });
}

const AirportDetail& AirportShown() {
    return airportSlots[static_cast<std::size_t>(KindShown().slot)];
}

const std::vector<Procedure>& ProceduresShown() {
    const AirportProcedures& procedures = AirportShown().procedures;
    return KindShown().page == kGnsDeparture ? procedures.sids : procedures.stars;
}

// ---- what each step offers ----
std::vector<std::string> RunwayOptions() {
    std::vector<std::string> options;
    for (const Runway& runway : AirportShown().runways) {
        options.push_back(runway.ident);
    }
    return options;
}

std::vector<std::string> ItemOptions() {
    std::vector<std::string> options;
    if (KindShown().page == kGnsApproach) {
        for (const ApproachChoice& approach : ListApproaches(choice.runway)) {
            if (std::ranges::find(options, approach.type) == options.end()) {
                options.push_back(approach.type);
            }
        }
        return options;
    }
    for (const Procedure& procedure : ProceduresShown()) {
        if (choice.runway == kNoChoice || ServesRunway(procedure, choice.runway)) {
            options.push_back(procedure.name);
        }
    }
    return options;
}

// Transitions by name; where there are any, the common route alone can be chosen by its first fix.
std::vector<std::string> NamedTransitions(const Procedure& procedure) {
    std::vector<std::string> named = ListTransitions(procedure, false);
    const std::vector<std::string> common = ListTransitions(procedure, true);
    std::erase_if(named, [&](const std::string& name) {
        return std::ranges::find(common, name) != common.end();
    });
    const auto first = std::ranges::find(procedure.legs, kCommonMark, &ProcedureLeg::mark);
    if (!named.empty() && first != procedure.legs.end()) {
        named.insert(named.begin(), first->qualifier);
    }
    return named;
}

std::vector<std::string> TransitionOptions() {
    if (KindShown().page == kGnsApproach) {
        return ListApproachTransitions(choice.item, choice.runway);
    }
    const Procedure* procedure = FindProcedure(ProceduresShown(), choice.item);
    return procedure != nullptr ? NamedTransitions(*procedure) : std::vector<std::string>{};
}

std::int32_t NumberOfItem() {
    const std::vector<Procedure>& table = ProceduresShown();
    const auto found = std::ranges::find(table, choice.item, &Procedure::name);
    return found == table.end() ? 0 : static_cast<std::int32_t>(found - table.begin()) + 1;
}

const std::vector<ProcedureWaypoint>& Preview() {
    switch (KindShown().page) {
        case kGnsDeparture:
            return procedureLists.sid;
        case kGnsArrival:
            return procedureLists.star;
        default:
            return procedureLists.approach;
    }
}

void BuildPreview() {
    procedureChoice.airport = choice.airport;
    switch (KindShown().page) {
        case kGnsDeparture:
            procedureChoice.sidNumber = NumberOfItem();
            procedureChoice.sidName = choice.item;
            procedureChoice.sidTransition = choice.transition;
            procedureChoice.departureRunway = choice.runway;
            BuildSidWaypoints();
            break;
        case kGnsArrival:
            procedureChoice.starNumber = NumberOfItem();
            procedureChoice.starName = choice.item;
            procedureChoice.starTransition = choice.transition;
            procedureChoice.arrivalRunway = choice.runway;
            BuildStarWaypoints();
            break;
        default:
            procedureChoice.approachType = choice.item;
            procedureChoice.approachTransition =
                choice.transition == kNoChoice ? "" : choice.transition;
            procedureChoice.arrivalRunway = choice.runway;
            BuildApproachWaypoints();
            break;
    }
}

// ---- going through the steps ----
std::string& ChosenAt(Step step) {
    return step == Step::Runway ? choice.runway
           : step == Step::Item ? choice.item
                                : choice.transition;
}

void OfferStep(Step step);
void HighlightFirstOption();

void TakeOption(const std::string& option) {
    ChosenAt(choice.step) = option;
    OfferStep(static_cast<Step>(static_cast<std::int32_t>(choice.step) + 1));
}

void FinishChoice() {
    choice.step = Step::Complete;
    choice.procedureComplete = true;
    choice.options.clear();
    gns.Counter(KindShown().counter).n = 1;
    BuildPreview();
}

// Asks for the step's choice; one that leaves nothing to choose is taken without asking. Without a
// procedure the step stays, with nothing on offer.
void OfferStep(Step step) {
    ClearGnsSelections();
    choice.step = step;
    gns.Counter(KindShown().counter).n = 1;
    if (step == Step::Complete) {
        FinishChoice();
        return;
    }
    choice.options = step == Step::Runway ? RunwayOptions()
                     : step == Step::Item ? ItemOptions()
                                          : TransitionOptions();
    if (choice.options.empty() && step != Step::Item) {
        TakeOption(std::string(kNoChoice));
    } else if (choice.options.size() == 1) {
        TakeOption(choice.options.front());
    } else {
        HighlightFirstOption();
    }
}

void BeginChoice() {
    choice.procedureComplete = false;
    choice.runway = choice.item = choice.transition = kNoChoice;
    OfferStep(Step::Runway);
}

// The airport's runways and procedures are read, and the choice begins.
void TakeAirport(const std::string& ident) {
    choice = GnsProcedure{};
    if (!LoadAirportDetail(ident, KindShown().slot)) {
        choice.airportNotFound = true;
        ClearGnsSelections();
        return;
    }
    choice.airport = ident;
    BeginChoice();
}

// ---- the airport ----
EntryResult FindAirport(const LineRow&) {
    const std::string ident(TypedText(gns));
    if (ident.empty() || ident == kNoChoice) {
        ClearGnsSelections();
        return EntryResult::Accepted;
    }
    SearchResults found;
    SearchIdent(ident, SearchCategory::Airports, found);
    if (found.count > 1) {
        FindGnsWaypoint(ident, SearchCategory::Airports, gns.page);
    } else {
        TakeAirport(ident);
    }
    return EntryResult::Accepted;
}

void OfferAirport(const LineRow&) {
    LoadScratchpad(gns, choice.airport.empty() ? kNoChoice : std::string_view(choice.airport),
                   kGnsIdentLength);
}

void ShowAirport(const LineRow&, UnitText& text) {
    text.Set(choice.airport.empty() ? kNoChoice : std::string_view(choice.airport));
}

// ---- options ----
bool OptionsShown(const LineRow&) {
    return choice.step != Step::Airport && choice.step != Step::Complete;
}

std::int32_t OptionOnSlot(std::int32_t slot) {
    return kOptionsOnPage * (gns.Counter(KindShown().counter).n - 1) + slot;
}

bool HasOption(const LineRow& row) {
    return OptionsShown(row) &&
           OptionOnSlot(row.item) < static_cast<std::int32_t>(choice.options.size());
}

void ShowOption(const LineRow& row, UnitText& text) {
    const char* const mark = IsSelected(gns, row) ? "?" : "";
    const char* const option =
        choice.options[static_cast<std::size_t>(OptionOnSlot(row.item))].c_str();
    switch (choice.step) {
        case Step::Runway:
            text.Put("RW%-3s%s", option, mark);
            break;
        case Step::Item:
            text.Put("%-6s%s", option, mark);
            break;
        default:
            text.Put("%-5s%s", option, mark);
            break;
    }
}

EntryResult EnterOption(const LineRow& row) {
    const std::string option = choice.options[static_cast<std::size_t>(OptionOnSlot(row.item))];
    TakeOption(option);
    return EntryResult::None;
}

// Beside line keys 3 to 5 and 8 to 10, two to a key.
constexpr LineRow OptionRow(std::int32_t slot) {
    const std::int32_t row = slot % kColumnRows;
    const std::int32_t column = slot / kColumnRows;
    return {.line = row / 2 + 3 + 5 * column,
            .state = row % 2 + 1,
            .show = ShowOption,
            .visible = HasOption,
            .enter = EnterOption,
            .item = slot,
            .style = kGnsData,
            .at = {kOptionX[static_cast<std::size_t>(column)],
                   kGnsRowY[static_cast<std::size_t>(row) + kFirstOptionRow]}};
}

// ---- SELECT and ERASE ----
bool IsComplete(const LineRow&) {
    return choice.procedureComplete;
}

void LeaveWith(bool changed) {
    gns.Counter(GnsPlanCounter()).n = 1;
    ReturnToGnsPlan();
    choice = GnsProcedure{};
    if (!changed) {
        gns.notice = kPlanFullMessage;
    }
}

bool HasTag(const FlightPlan& plan, std::string_view tag) {
    const auto count = static_cast<std::size_t>(plan.lastIndex) + 1;  // 0 of an empty plan
    return std::ranges::any_of(std::span(plan.entries).first(count),
                               [tag](const PlanWaypoint& entry) { return entry.procedure == tag; });
}

EntryResult SpliceChoice(const LineRow&) {
    FlightPlan& plan = GnsPlanShown();
    const bool hadApproach = HasTag(plan, "APPR");
    const bool spliced = EditPlan(plan, KindShown().splice);
    const bool dropped = KindShown().page == kGnsArrival && hadApproach && !HasTag(plan, "APPR");
    LeaveWith(spliced);
    if (spliced && dropped) {
        gns.notice = "APPROACH REMOVED";
        AppendMessage("The arrival replaced the approach");
    }
    return EntryResult::None;
}

EntryResult EraseProcedure(const LineRow&) {
    const std::string_view tag = KindShown().tag;
    EditPlan(GnsPlanShown(), [tag](FlightPlan& plan) { return RemoveProcedure(plan, tag); });
    LeaveWith(true);
    return EntryResult::None;
}

constexpr std::size_t kFixedLines = 3;

constexpr std::array<LineRow, kFixedLines + kOptionsOnPage> kLines = [] {
    std::array<LineRow, kFixedLines + kOptionsOnPage> rows{};
    rows[0] = {.line = 6,
               .show = ShowAirport,
               .entryLength = kGnsIdentLength,
               .select = OfferAirport,
               .enter = FindAirport,
               .again = FindAirport,
               .style = kGnsData,
               .at = {230, 0}};
    rows[1] = {.line = 5,
               .text = "SELECT",
               .prompt = "SELECT?",
               .visible = IsComplete,
               .enter = SpliceChoice,
               .style = kGnsLabel,
               .at = {30, 360}};
    rows[2] = {.line = 10,
               .text = "ERASE",
               .prompt = "ERASE?",
               .visible = IsComplete,
               .enter = EraseProcedure,
               .style = kGnsLabel,
               .at = {320, 360}};
    for (std::int32_t slot = 0; slot < kOptionsOnPage; ++slot) {
        rows[kFixedLines + static_cast<std::size_t>(slot)] = OptionRow(slot);
    }
    return rows;
}();

void HighlightFirstOption() {
    if (HasOption(kLines[kFixedLines])) {
        SelectRow(kLines[kFixedLines], gns);
    }
}

// Key 7 opens the choice; while the runway is being chosen it takes the one highlighted.
EntryResult PressChoiceKey(const FieldRow&) {
    const LineRow* selected = GnsSelectedLine();
    if (choice.airport.empty()) {
        return EntryResult::None;
    }
    if (choice.step == Step::Runway && selected != nullptr && HasOption(*selected)) {
        EnterOption(*selected);
    } else {
        BeginChoice();
    }
    return EntryResult::None;
}

void ShowRunway(const FieldRow&, UnitText& text) {
    if (choice.runway == kNoChoice) {
        text.Set(kNoChoice);
    } else {
        text.Put("RW%s", choice.runway.c_str());
    }
}

constexpr FieldRow kFields[] = {
    {.show = [](const FieldRow&, UnitText& t) { t.Set(KindShown().title); },
     .style = kGnsLabel,
     .valueAt = {32, 0}},
    {.line = 7,
     .label = "RUNWAY",
     .show = ShowRunway,
     .press = PressChoiceKey,
     .style = kGnsData,
     .valueAt = {kChoiceX, 40},
     .labelAt = {kChoiceLabelX, 40}},
    {.show = [](const FieldRow&, UnitText& t) { t.Set(KindShown().item); },
     .style = kGnsLabel,
     .valueAt = {kChoiceLabelX, 80}},
    {.show = [](const FieldRow&, UnitText& t) { t.Put("%-3s", choice.item.c_str()); },
     .style = kGnsData,
     .valueAt = {kChoiceX, 80}},
    {.label = "TRANSITION",
     .show = [](const FieldRow&, UnitText& t) { t.Set(choice.transition); },
     .style = kGnsData,
     .valueAt = {kChoiceX, 120},
     .labelAt = {kChoiceLabelX, 120}},
};

void PutPreview(Screen& screen) {
    screen.Put(kGnsLabel, kGnsLabelX, 160, "%s", KindShown().preview);
    const auto& list = Preview();
    const std::size_t first =
        kPreviewOnPage * (static_cast<std::size_t>(gns.Counter(KindShown().counter).n) - 1);
    for (std::size_t slot = 0; slot < kPreviewOnPage && first + slot < list.size(); ++slot) {
        const ProcedureWaypoint& waypoint = list[first + slot];
        const int x = kPreviewX[slot / kPreviewRows];
        const int y = kGnsRowY[slot % kPreviewRows + kFirstPreviewRow];
        const std::string& note = waypoint.roleText.empty() ? waypoint.legText : waypoint.roleText;
        screen.Put(kGnsData, x, y, "%.6s", waypoint.ident.c_str());
        screen.Put(kGnsNote, x + kPreviewNote, y + 10, "%.8s", note == "---" ? "" : note.c_str());
    }
}

void PutMessage(Screen& screen) {
    if (choice.airportNotFound) {
        screen.Put(kGnsPrompt, kChoiceLabelX, 340, "AIRPORT NOT FOUND");
    } else if (choice.step == Step::Airport) {
        screen.Put(kGnsPrompt, kChoiceLabelX, 340, "ENTER AIRPORT ID");
    } else if (OptionsShown(kLines[0]) && choice.options.empty()) {
        screen.Put(kGnsPrompt, kChoiceLabelX, 200, "NONE AVAILABLE");
    }
}

void ComposeProcedure(Screen& screen) {
    const std::int32_t pages =
        choice.procedureComplete
            ? PageCount(static_cast<std::int32_t>(Preview().size()), kPreviewOnPage)
            : PageCount(static_cast<std::int32_t>(choice.options.size()), kOptionsOnPage);
    const SubPage& shown = SetGnsPageCount(KindShown().counter, pages);
    screen.Put(kGnsLabel, 360, 0, "%d/%d", shown.n, shown.m);
    PutMessage(screen);
    if (choice.procedureComplete) {
        PutPreview(screen);
    }
}

// The airport of the plan that the page is about, empty when it begins or ends elsewhere.
std::string PlanAirport() {
    const FlightPlan& plan = GnsPlanShown();
    const std::int32_t index = KindShown().slot == kDepartureSlot ? 0 : plan.lastIndex;
    return plan.Holds(index) && plan.entries[index].type == kAirportType ? plan.entries[index].ident
                                                                         : "";
}

constexpr PageRow ProcedurePage(GnsPage page) {
    return {.page = page, .fields = kFields, .lines = kLines, .compose = ComposeProcedure};
}

}  // namespace

void OpenGnsProcedure(GnsPage page) {
    gns.returnPage = kGnsPlan;
    OpenGnsPage(page);
    choice = GnsProcedure{};
    if (const std::string ident = PlanAirport(); !ident.empty()) {
        TakeAirport(ident);
    }
}

void TakeGnsProcedureAirport(const FoundPoint& point) {
    OpenGnsPage(static_cast<GnsPage>(gns.returnPage));
    TakeAirport(point.ident);
}

constinit const PageRow kGnsDeparturePage = ProcedurePage(kGnsDeparture);
constinit const PageRow kGnsArrivalPage = ProcedurePage(kGnsArrival);
constinit const PageRow kGnsApproachPage = ProcedurePage(kGnsApproach);

}  // namespace avq1
