#include "cdu_smiths/smiths_procedures.h"

#include <algorithm>
#include <span>

#include "base/module_state.h"
#include "cdu_smiths/smiths_route.h"
#include "flightplan/plan_airports.h"
#include "flightplan/plan_edit.h"
#include "flightplan/procedures.h"
#include "navdb/airport_detail.h"

namespace avq1 {

ProcedurePick procedurePick;

namespace {

constexpr std::int32_t kReferenceSlot = 0;  // REF NAV DATA has the other spare one
constexpr int kCounterX = 225;
constexpr int kMarkLeftX = 100;
constexpr int kMarkRightX = 180;
constexpr int kTitleX = 18;
constexpr std::string_view kApproachTag = "APPR";
constexpr int kMarkDrop = 5;  // small beside the data
constexpr const char* kNone = "- N O N E -";
constexpr std::string_view kMissedApproach = "MISSED";  // how the way out is marked

const StateReset pickReset([] { procedurePick = ProcedurePick{}; });

using Names = std::vector<std::string>;

bool IsDeparture() {
    return smiths.page == kSmithsDepartures;
}

SmithsPage PageShown() {
    return static_cast<SmithsPage>(smiths.page);
}

std::string& ReferenceOf(SmithsPage page) {
    return page == kSmithsDepartures ? procedurePick.departureReference
                                     : procedurePick.arrivalReference;
}

bool IsReference() {
    return !ReferenceOf(PageShown()).empty();
}

std::int32_t SlotShown() {
    return IsReference() ? kReferenceSlot : IsDeparture() ? kDepartureSlot : kArrivalSlot;
}

// With nothing in it while the route has no airport there.
const AirportDetail& AirportShown() {
    static const AirportDetail none;
    const AirportDetail& slot = airportSlots[static_cast<std::size_t>(SlotShown())];
    return slot.ident == SmithsPickAirport(PageShown()) ? slot : none;
}

// Reads the airport of the page unless it is the one read last.
void ReadAirport() {
    const std::string ident = SmithsPickAirport(PageShown());
    AirportDetail& slot = airportSlots[static_cast<std::size_t>(SlotShown())];
    if (ident.empty() || slot.ident == ident) {
        return;
    }
    const bool found = IsReference() ? LoadAirportDetail(ident, kReferenceSlot)
                                     : LoadPlanAirportDetail(ident, SlotShown());
    if (!found) {
        slot = AirportDetail{};
        slot.ident = ident;  // known to have nothing
    } else if (IsReference()) {
        LoadSids(ident, slot.procedures);
    }
}

const std::vector<Procedure>& ProceduresShown() {
    const AirportProcedures& procedures = AirportShown().procedures;
    return IsDeparture() ? procedures.sids : procedures.stars;
}

// ---- what a plan has of the page's kind ----
struct PickNames {
    std::string& procedure;
    std::string& transition;
    std::string& runway;
};

PickNames NamesOf(PlanProcedures& names) {
    if (IsDeparture()) {
        return {names.sid, names.sidTransition, names.departureRunway};
    }
    return {names.star, names.starTransition, names.arrivalRunway};
}

bool Has(PlanProcedures& names, const PickItem& item) {
    const PickNames mine = NamesOf(names);
    switch (item.kind) {
        case PickKind::Procedure:
            return mine.procedure == item.name;
        case PickKind::Transition:
            return mine.transition == item.name &&
                   mine.procedure == NamesOf(procedurePick.shown).procedure;
        case PickKind::Runway:
            return mine.runway == item.name;
        case PickKind::Approach:
            return names.approach == item.name && mine.runway == item.runway;
        case PickKind::ApproachTransition:
            return names.approachTransition == item.name &&
                   names.approach == procedurePick.shown.approach;
        case PickKind::kCount:
            break;
    }
    return false;
}

const char* MarkOf(const PickItem& item) {
    if (IsReference()) {
        return "";
    }
    return Has(procedurePick.active, item)  ? "<ACT>"
           : Has(procedurePick.shown, item) ? "<SEL>"
                                            : "";
}

// ---- the lists ----
constexpr std::uint32_t BitOf(PickKind kind) {
    return 1U << static_cast<std::uint32_t>(kind);
}

bool IsOpened(PickKind kind) {
    return (procedurePick.listsOpened & BitOf(kind)) != 0;
}

void Offer(PickColumn& column, PickKind kind, const Names& names) {
    for (const std::string& name : names) {
        column.offered.push_back({kind, name, {}});
    }
}

Names RunwaysOf(const std::string& procedure) {
    Names idents;
    const Procedure* serving = FindProcedure(ProceduresShown(), procedure);
    for (const Runway& runway : AirportShown().runways) {
        if (serving == nullptr || ServesRunway(*serving, runway.ident)) {
            idents.push_back(runway.ident);
        }
    }
    return idents;
}

Names ProceduresTo(const std::string& runway) {
    Names names;
    for (const Procedure& procedure : ProceduresShown()) {
        if (runway.empty() || ServesRunway(procedure, runway)) {
            names.push_back(procedure.name);
        }
    }
    return names;
}

// Without those that only name the common route.
Names TransitionsOf(const std::string& name) {
    const Procedure* procedure = FindProcedure(ProceduresShown(), name);
    if (procedure == nullptr) {
        return {};
    }
    Names named = ListTransitions(*procedure, false);
    const Names common = ListTransitions(*procedure, true);
    std::erase_if(named, [&](const std::string& each) {
        return std::ranges::find(common, each) != common.end();
    });
    return named;
}

// To the runways that the chosen arrival serves, or to the one that is chosen.
void OfferApproaches(PickColumn& column, const Names& runways, const std::string& runway) {
    std::vector<ApproachChoice> approaches = ListApproaches(
        AirportShown().procedures, runway.empty() ? kNoChoice : std::string_view(runway));
    for (std::size_t i = 0; i < approaches.size(); ++i) {
        const auto before = std::span(approaches).first(i);
        const bool served = std::ranges::find(runways, approaches[i].name) != runways.end();
        if (served && std::ranges::find(before, approaches[i]) == before.end()) {
            column.offered.push_back({PickKind::Approach, approaches[i].type, approaches[i].name});
        }
    }
}

void MakeLeft(const PickNames& shown) {
    PickColumn& column = procedurePick.left;
    column = {};
    column.offers = true;
    if (shown.procedure.empty() || IsOpened(PickKind::Procedure)) {
        Offer(column, PickKind::Procedure, ProceduresTo(shown.runway));
        return;
    }
    column.chosen.push_back({PickKind::Procedure, shown.procedure, {}});
    column.offeredKind = PickKind::Transition;
    if (shown.transition.empty() || IsOpened(PickKind::Transition)) {
        Offer(column, PickKind::Transition, TransitionsOf(shown.procedure));
    } else {
        column.chosen.push_back({PickKind::Transition, shown.transition, {}});
        column.offers = false;
    }
}

void MakeApproachColumn(const PickNames& shown) {
    PickColumn& column = procedurePick.right;
    const std::string& approach = procedurePick.shown.approach;
    const std::string& transition = procedurePick.shown.approachTransition;
    if (!approach.empty() && !IsOpened(PickKind::Approach)) {
        column.chosen.push_back({PickKind::Approach, approach, shown.runway});
        column.offeredKind = PickKind::ApproachTransition;
        if (!transition.empty() && !IsOpened(PickKind::ApproachTransition)) {
            column.chosen.push_back({PickKind::ApproachTransition, transition, {}});
            column.offers = false;
        } else {
            Names named = ListApproachTransitions(approach, shown.runway);
            std::erase(named, kMissedApproach);
            Offer(column, PickKind::ApproachTransition, named);
        }
        return;
    }
    column.offeredKind = PickKind::Approach;
    const Names runways = RunwaysOf(shown.procedure);
    const bool runwayStands =
        !shown.runway.empty() && !IsOpened(PickKind::Runway) && !IsOpened(PickKind::Approach);
    if (runwayStands) {
        column.chosen.push_back({PickKind::Runway, shown.runway, {}});
        OfferApproaches(column, runways, shown.runway);
        return;
    }
    OfferApproaches(column, runways, {});
    Offer(column, PickKind::Runway, runways);
}

void MakeRight(const PickNames& shown) {
    PickColumn& column = procedurePick.right;
    column = {};
    column.offers = true;
    if (!IsDeparture()) {
        MakeApproachColumn(shown);
        return;
    }
    column.offeredKind = PickKind::Runway;
    if (shown.runway.empty() || IsOpened(PickKind::Runway)) {
        Offer(column, PickKind::Runway, RunwaysOf(shown.procedure));
    } else {
        column.chosen.push_back({PickKind::Runway, shown.runway, {}});
        column.offers = false;
    }
}

std::int32_t PagesOf(const PickColumn& column) {
    return PageCount(static_cast<std::int32_t>(column.offered.size()),
                     kPickRows - static_cast<std::int32_t>(column.chosen.size()));
}

SubPage& CounterShown() {
    return smiths.Counter(IsDeparture() ? SmithsCounter::Departures : SmithsCounter::Arrivals);
}

// Makes the lists anew when what they were made from is not what it was.
void MakeLists() {
    ReadAirport();
    const FlightPlan& plan = SmithsPlan();
    const PickSource& last = procedurePick.source;
    if (last.page == smiths.page && last.plan == &plan && last.revision == plan.revision &&
        last.activeRevision == activePlan.revision && last.status == planBook.status &&
        last.opened == procedurePick.listsOpened && last.airport == AirportShown().ident) {
        return;
    }
    procedurePick.source = {
        smiths.page,     AirportShown().ident,     &plan, plan.revision, activePlan.revision,
        planBook.status, procedurePick.listsOpened};
    procedurePick.shown = IsReference() ? PlanProcedures{} : ProceduresOf(plan);
    procedurePick.active = SmithsRouteIsActive() ? ProceduresOf(activePlan) : PlanProcedures{};
    const PickNames shown = NamesOf(procedurePick.shown);
    MakeLeft(shown);
    MakeRight(shown);
    CounterShown().SetCount(std::max(PagesOf(procedurePick.left), PagesOf(procedurePick.right)));
}

// The item on a row; null without one. `stands` says whether it is chosen and not in a list.
const PickItem* ItemOn(const PickColumn& column, std::int32_t row, bool& stands) {
    const auto chosen = static_cast<std::int32_t>(column.chosen.size());
    stands = row < chosen;
    if (stands) {
        return &column.chosen[static_cast<std::size_t>(row)];
    }
    const std::int32_t onPage = kPickRows - chosen;
    const std::int32_t index = (CounterShown().n - 1) * onPage + row - chosen;
    return index < static_cast<std::int32_t>(column.offered.size())
               ? &column.offered[static_cast<std::size_t>(index)]
               : nullptr;
}

// ---- drawing ----
const char* LabelOf(PickKind kind) {
    switch (kind) {
        case PickKind::Procedure:
            return IsDeparture() ? "S I D S" : "S T A R S";
        case PickKind::Runway:
            return "R U N W A Y S";
        case PickKind::Approach:
            return "A P P R O A C H E S";
        default:
            return "T R A N S";
    }
}

UnitText TextOfItem(const PickItem& item) {
    UnitText text;
    switch (item.kind) {
        case PickKind::Procedure:
            text.Put("%-6.8s", item.name.c_str());
            break;
        case PickKind::Approach:
            text.Put("%4.5s %3s", item.name.c_str(), item.runway.c_str());
            break;
        case PickKind::Runway:
            text.Put("%-3s", item.name.c_str());
            break;
        default:
            text.Put("%-5.8s", item.name.c_str());
            break;
    }
    return text;
}

void PutLabel(Screen& screen, std::size_t row, bool right, PickKind kind) {
    screen.PutText(right ? kSmithsLabelRight : kSmithsLabel,
                   {right ? kSmithsLabelRightX : kSmithsLabelX, kSmithsLabelY[row]},
                   UnitText(LabelOf(kind)));
}

void PutItem(Screen& screen, std::size_t row, bool right, const PickItem& item) {
    screen.PutText(right ? kSmithsDataRight : kSmithsData,
                   {right ? kSmithsRightX : std::int16_t{0}, kSmithsDataY[row]}, TextOfItem(item));
    screen.Put(right ? kSmithsLabelRight : kSmithsLabel, right ? kMarkRightX : kMarkLeftX,
               kSmithsDataY[row] + kMarkDrop, "%s", MarkOf(item));
}

void PutColumn(Screen& screen, const PickColumn& column, bool right) {
    const PickItem* above = nullptr;
    for (std::int32_t row = 0; row < kPickRows; ++row) {
        const auto at = static_cast<std::size_t>(row);
        bool stands = false;
        const PickItem* item = ItemOn(column, row, stands);
        if (item != nullptr) {
            if (above == nullptr || above->kind != item->kind) {
                PutLabel(screen, at, right, item->kind);
            }
            PutItem(screen, at, right, *item);
        } else if (!stands && column.offers && column.offered.empty()) {
            PutLabel(screen, at, right, column.offeredKind);
            screen.PutText(right ? kSmithsDataRight : kSmithsData,
                           {right ? kSmithsRightX : std::int16_t{0}, kSmithsDataY[at]},
                           UnitText(kNone));
            return;
        }
        above = item;
    }
}

// ---- choosing ----
std::string_view ChoiceOf(const std::string& name) {
    return name.empty() ? kNoChoice : std::string_view(name);
}

std::int32_t NumberIn(const std::vector<Procedure>& table, const std::string& name) {
    const auto found = std::ranges::find(table, name, &Procedure::name);
    return found == table.end() ? 0 : static_cast<std::int32_t>(found - table.begin()) + 1;
}

// The approach and the gap before it.
void TakeOutApproach(FlightPlan& plan) {
    std::int32_t first = 0;
    while (first <= plan.lastIndex && plan.entries[first].procedure != kApproachTag) {
        ++first;
    }
    const bool there = first <= plan.lastIndex;
    RemoveProcedure(plan, kApproachTag);
    if (there) {
        CloseDiscontinuity(plan, first - 1);
    }
}

// An arrival ends where the approach begins, so both are put in anew, the arrival first.
bool PutArrival(FlightPlan& plan, const PlanProcedures& wanted, bool arrivalChanges) {
    procedureChoice.arrivalRunway = ChoiceOf(wanted.arrivalRunway);
    if (arrivalChanges && !plan.procedures.approach.empty()) {
        TakeOutApproach(plan);
    }
    const std::int32_t number = NumberIn(airportSlots[kArrivalSlot].procedures.stars, wanted.star);
    if (arrivalChanges && number != 0) {
        procedureChoice.starNumber = number;
        procedureChoice.starName = wanted.star;
        procedureChoice.starTransition = ChoiceOf(wanted.starTransition);
        BuildStarWaypoints();
        if (!InsertStar(plan)) {
            return false;
        }
    }
    plan.EditProcedures().arrivalRunway = wanted.arrivalRunway;
    NoteEdit(plan);
    if (wanted.approach.empty()) {
        return true;
    }
    procedureChoice.approachType = wanted.approach;
    procedureChoice.approachTransition = wanted.approachTransition;
    BuildApproachWaypoints();
    return InsertApproach(plan, true);
}

// What is chosen once `item` is.
PlanProcedures WithChoice(PlanProcedures names, const PickItem& item) {
    const PickNames mine = NamesOf(names);
    switch (item.kind) {
        case PickKind::Procedure:
            mine.procedure = item.name;
            mine.transition.clear();
            break;
        case PickKind::Transition:
            mine.transition = item.name;
            break;
        case PickKind::Runway:
            mine.runway = item.name;
            if (!IsDeparture()) {
                names.approach.clear();
                names.approachTransition.clear();
            }
            break;
        case PickKind::Approach:
            names.approach = item.name;
            names.approachTransition.clear();
            mine.runway = item.runway;
            break;
        default:
            names.approachTransition = item.name;
            break;
    }
    return names;
}

bool PutChoice(const PlanProcedures& wanted, bool arrivalChanges) {
    procedureChoice.airport = AirportShown().ident;
    return EditSmithsPlan([&](FlightPlan& plan) {
        return EditWhole(plan, [&](FlightPlan& whole) {
            return IsDeparture() ? PutDeparture(whole, wanted)
                                 : PutArrival(whole, wanted, arrivalChanges);
        });
    });
}

EntryResult Choose(const PickItem& item) {
    if (IsReference() || SmithsRouteAirport(IsDeparture()).empty()) {
        return EntryResult::InvalidEntry;
    }
    procedurePick.listsOpened = 0;
    CounterShown().n = 1;
    if (Has(procedurePick.shown, item)) {
        return EntryResult::None;  // as it was
    }
    const PlanProcedures wanted = WithChoice(procedurePick.shown, item);
    const bool arrivalChanges = item.kind != PickKind::ApproachTransition &&
                                (wanted.arrivalRunway != procedurePick.shown.arrivalRunway ||
                                 item.kind != PickKind::Approach);
    return PutChoice(wanted, arrivalChanges) ? EntryResult::None : EntryResult::PlanFull;
}

// The item's key: null without an item there.
const PickItem* ItemOf(const FieldRow& field, bool& stands) {
    MakeLists();
    const bool right = field.item >= kPickRight;
    return ItemOn(right ? procedurePick.right : procedurePick.left,
                  field.item - (right ? kPickRight : 0), stands);
}

void ForgetNamesOf(FlightPlan& plan, PickKind kind) {
    PlanProcedures& names = plan.EditProcedures();
    if (kind == PickKind::Runway) {
        (IsDeparture() ? names.departureRunway : names.arrivalRunway).clear();
    } else if (kind == PickKind::Approach) {
        TakeOutApproach(plan);
    } else {
        RemoveProcedure(plan, IsDeparture() ? "SID" : "STAR");
    }
    NoteEdit(plan);
}

}  // namespace

std::string SmithsRouteAirport(bool departure) {
    const FlightPlan& plan = SmithsPlan();
    if (plan.lastIndex < 0) {
        return {};
    }
    const PlanWaypoint& end = plan.entries[departure ? 0 : plan.lastIndex];
    const bool isEnd = end.type == kAirportType && (departure || plan.lastIndex > 0);
    return isEnd ? end.ident : std::string();
}

std::string SmithsPickAirport(SmithsPage page) {
    const std::string& reference = ReferenceOf(page);
    return reference.empty() ? SmithsRouteAirport(page == kSmithsDepartures) : reference;
}

void OpenSmithsProcedures(SmithsPage page, std::string_view reference) {
    const bool isRoutes = reference == SmithsRouteAirport(page == kSmithsDepartures);
    ReferenceOf(page) = isRoutes ? std::string_view{} : reference;
    procedurePick.listsOpened = 0;
    OpenPage(smiths, page);
    CounterShown().n = 1;
}

EntryResult PressSmithsDepartures(const FieldRow&) {
    OpenSmithsProcedures(kSmithsDepartures);
    return EntryResult::None;
}

bool PutSmithsDepartureRunway(std::string_view runway) {
    PlanProcedures wanted = ProceduresOf(SmithsPlan());
    wanted.departureRunway = runway;
    procedureChoice.airport = airportSlots[kDepartureSlot].ident;
    return EditSmithsPlan([&](FlightPlan& plan) { return PutDeparture(plan, wanted); });
}

void ComposeSmithsProcedures(Screen& screen) {
    MakeLists();
    const std::string& airport = AirportShown().ident;
    screen.Put(kSmithsData, kTitleX, 0, "%.5s %s", airport.empty() ? "----" : airport.c_str(),
               IsDeparture() ? "DEPARTURES" : "ARRIVALS");
    PutSmithsCounter(screen, CounterShown(), "%2d / %2d", kCounterX);
    PutColumn(screen, procedurePick.left, false);
    PutColumn(screen, procedurePick.right, true);
}

EntryResult PressSmithsPick(const FieldRow& field) {
    bool stands = false;
    const PickItem* item = ItemOf(field, stands);
    if (item == nullptr) {
        return EntryResult::None;
    }
    if (!stands) {
        return Choose(PickItem(*item));
    }
    procedurePick.listsOpened |= BitOf(item->kind);
    CounterShown().n = 1;
    return EntryResult::None;
}

EntryResult EraseSmithsPick(const FieldRow& field) {
    bool stands = false;
    const PickItem* item = ItemOf(field, stands);
    if (item == nullptr || IsReference() || !Has(procedurePick.shown, *item)) {
        return EntryResult::InvalidDelete;
    }
    const PickKind kind = item->kind;
    procedurePick.listsOpened = 0;
    if (kind == PickKind::Transition || kind == PickKind::ApproachTransition) {
        PlanProcedures wanted = procedurePick.shown;
        (kind == PickKind::ApproachTransition ? wanted.approachTransition
                                              : NamesOf(wanted).transition)
            .clear();
        return PutChoice(wanted, kind == PickKind::Transition) ? EntryResult::Accepted
                                                               : EntryResult::PlanFull;
    }
    EditSmithsPlan([kind](FlightPlan& plan) {
        ForgetNamesOf(plan, kind);
        return true;
    });
    return EntryResult::Accepted;
}

bool SmithsPickWaits(const FieldRow&) {
    if (IsReference() || SmithsRouteIsActive()) {
        return !IsReference() && SmithsModificationWaits();
    }
    const PickNames shown = NamesOf(procedurePick.shown);
    return !shown.procedure.empty() || !shown.runway.empty();
}

bool NoSmithsPickWaits(const FieldRow& field) {
    return !SmithsPickWaits(field);
}

EntryResult DropSmithsPicks(const FieldRow& field) {
    procedurePick.listsOpened = 0;
    if (SmithsModificationWaits()) {
        return EraseSmithsModification(field);
    }
    EditSmithsPlan([](FlightPlan& plan) {
        if (IsDeparture()) {
            RemoveProcedure(plan, "SID");
            plan.EditProcedures().departureRunway.clear();
        } else {
            TakeOutApproach(plan);
            RemoveProcedure(plan, "STAR");
            plan.EditProcedures().arrivalRunway.clear();
        }
        return true;
    });
    return EntryResult::None;
}

}  // namespace avq1
