// Page 1: the active plan from the leg being flown on, or a stored plan that was opened; its
// waypoint rows take entries, the menu behind the last row leads to the procedures and on.
#include <algorithm>
#include <array>

#include "cdu/formats.h"
#include "cdu_gns/gns_pages.h"
#include "cdu_gns/gns_plan.h"
#include "cdu_gns/gns_values.h"
#include "cdu_gns/gns_waypoint.h"
#include "flightplan/plan_files.h"
#include "guidance/activation.h"
#include "guidance/guidance_state.h"
#include "settings/aircraft_performance.h"

namespace avq1 {
namespace {

constexpr int kMarkX = kGnsLabelX;
constexpr int kIdentX = 90;
constexpr int kNoteX = 216;
constexpr int kNoteDrop = 10;  // small text on the line of the large
constexpr int kValueX = 300;
constexpr int kRestrictionX = 420;
constexpr int kMenuX = 32;
constexpr const char* kColumnNames[] = {"", "ETE", "ETA", "DIS", "ALT"};

bool ShowsPlan() {
    return !GnsShowsPlanList();
}

// The row "FR" stands on; lines are counted from it.
std::int32_t FirstLine() {
    return GnsShowsActivePlan() && HasActiveWaypoint() ? planBook.activeIndex - 1 : 0;
}

// All entries from the first line on and the row to type on.
std::int32_t LineCount() {
    return GnsPlanShown().lastIndex - FirstLine() + 2;
}

bool OnLastPage() {
    const SubPage& shown = gns.Counter(GnsPlanCounter());
    return ShowsPlan() && shown.n >= PageCount(LineCount(), kGnsPlanLines);
}

// ---- waypoint rows ----
bool HasEntryRow(const LineRow& row) {
    return ShowsPlan() && GnsEntryOnRow(row.item) != kNoWaypoint;
}

bool HasWaypointRow(const LineRow& row) {
    return ShowsPlan() && GnsPlanShown().Holds(GnsEntryOnRow(row.item));
}

std::string_view IdentOnRow(std::int32_t row) {
    const std::int32_t index = GnsEntryOnRow(row);
    return GnsPlanShown().Holds(index) ? std::string_view(GnsPlanShown().entries[index].ident)
                                       : kEmptyRow;
}

void SelectWaypoint(const LineRow& row) {
    gns.deletePending = false;
    GnsSelection() = {&GnsPlanShown(), GnsEntryOnRow(row.item)};
    LoadScratchpad(gns, IdentOnRow(row.item), kGnsIdentLength);
}

void ShowWaypointEntry(const LineRow&, UnitText& text) {
    if (gns.deletePending) {
        text.Set("DELETE?");
    }
}

EntryResult AskToDelete(const LineRow& row) {
    if (HasWaypointRow(row)) {
        gns.deletePending = true;
    } else {
        TypeGnsCharacter(kBackspaceToken);  // the row to type on cannot be deleted
    }
    return EntryResult::None;
}

constexpr LineRow WaypointRow(std::int32_t line, std::int32_t state, std::int32_t row) {
    return {.line = line,
            .state = state,
            .showEntry = ShowWaypointEntry,
            .visible = HasEntryRow,
            .entryLength = kGnsIdentLength,
            .select = SelectWaypoint,
            .enter = EnterGnsWaypoint,
            .clear = AskToDelete,
            .item = row,
            .at = {kIdentX, kGnsRowY[static_cast<std::size_t>(row)]}};
}

// ---- restrictions of the rows ----
void ShowRestriction(const LineRow& row, UnitText& text) {
    const PlanWaypoint& entry = GnsPlanShown().entries[GnsEntryOnRow(row.item)];
    if (IsSelected(gns, row)) {
        text.Set("A?");
    } else if (entry.altitudeConstraint != 0) {
        text.Set("A");
    }
}

EntryResult OpenRestriction(const LineRow& row) {
    OpenGnsCrossingOf(GnsEntryOnRow(row.item));
    return EntryResult::None;
}

constexpr LineRow RestrictionRow(std::int32_t line, std::int32_t state, std::int32_t row) {
    return {.line = line,
            .state = state,
            .show = ShowRestriction,
            .visible = HasWaypointRow,
            .enter = OpenRestriction,
            .item = row,
            .style = kGnsMark,
            .at = {kRestrictionX, kGnsRowY[static_cast<std::size_t>(row)]}};
}

// ---- the menu ----
bool MenuShown(const LineRow&) {
    return OnLastPage();
}

bool StoredMenuShown(const LineRow&) {
    return OnLastPage() && !GnsShowsActivePlan();
}

bool ActiveMenuShown(const LineRow&) {
    return OnLastPage() && GnsShowsActivePlan();
}

EntryResult OpenMenuPage(const LineRow& row) {
    OpenGnsProcedure(static_cast<GnsPage>(row.item));
    return EntryResult::None;
}

EntryResult OpenSave(const LineRow&) {
    OpenGnsSave();
    return EntryResult::None;
}

void ShowColumn(const LineRow& row, UnitText& text) {
    const std::int32_t mode = IsSelected(gns, row) ? gns.pendingColumnMode : gns.columnMode;
    text.Put("%s%s", kColumnNames[mode], mode != gns.columnMode ? "?" : "");
}

EntryResult StepColumn(const LineRow&) {
    gns.pendingColumnMode = NextChoice(gns.pendingColumnMode, kColumnEte, kColumnAlt);
    return EntryResult::None;
}

EntryResult ConfirmColumn(const LineRow&) {
    gns.columnMode = gns.pendingColumnMode;
    return EntryResult::Accepted;
}

EntryResult ActivateStoredPlan(const LineRow&) {
    if (!ActivateModifiedPlan()) {
        return EntryResult::Accepted;
    }
    gns.planView = kActiveView;
    gns.Counter(GnsCounter::ActivePlan).n = 1;
    if (AircraftName.empty()) {
        gns.notice = "NO AIRCRAFT DATA";  // climb, cruise and descent are planned by defaults
    }
    return EntryResult::Accepted;
}

EntryResult EraseOpenedPlan(const LineRow&) {
    LoadPlan("NEW FPL");
    return EntryResult::Accepted;
}

// ---- the list ----
bool HasListedPlan(const LineRow& row) {
    return GnsShowsPlanList() && GnsPlanOnRow(row.item);
}

EntryResult OpenListedPlan(const LineRow& row) {
    return OpenGnsStoredPlan(row.item);
}

constexpr LineRow ListRow(std::int32_t line, std::int32_t state, std::int32_t row) {
    return {.line = line,
            .state = state,
            .visible = HasListedPlan,
            .enter = OpenListedPlan,
            .item = row};
}

constexpr LineRow kLines[] = {
    WaypointRow(1, 1, 0),
    WaypointRow(2, 1, 1),
    WaypointRow(2, 2, 2),
    WaypointRow(3, 1, 3),
    WaypointRow(3, 2, 4),
    WaypointRow(4, 1, 5),
    RestrictionRow(6, 1, 0),
    RestrictionRow(6, 2, 1),
    RestrictionRow(7, 1, 2),
    RestrictionRow(7, 2, 3),
    RestrictionRow(8, 1, 4),
    RestrictionRow(8, 2, 5),
    {.line = 4,
     .state = 2,
     .text = "DEPART",
     .prompt = "DEPART?",
     .visible = MenuShown,
     .enter = OpenMenuPage,
     .item = kGnsDeparture,
     .style = kGnsLabel,
     .at = {kMenuX, 280}},
    {.line = 5,
     .text = "ARRIVE",
     .prompt = "ARRIVE?",
     .visible = MenuShown,
     .enter = OpenMenuPage,
     .item = kGnsArrival,
     .style = kGnsLabel,
     .at = {kMenuX, 320}},
    {.line = 5,
     .state = 2,
     .text = "APPROACH",
     .prompt = "APPROACH?",
     .visible = MenuShown,
     .enter = OpenMenuPage,
     .item = kGnsApproach,
     .style = kGnsLabel,
     .at = {kMenuX, 360}},
    {.line = 9,
     .state = 2,
     .text = "SAVE FPL",
     .prompt = "SAVE FPL?",
     .visible = MenuShown,
     .enter = OpenSave,
     .style = kGnsLabel,
     .at = {280, 280}},
    {.line = 9,
     .prompt = "SAVE FPL",
     .visible = StoredMenuShown,
     .style = kGnsLabel,
     .at = {280, 280}},
    {.line = 10,
     .show = ShowColumn,
     .visible = ActiveMenuShown,
     .select = [](const LineRow&) { gns.pendingColumnMode = gns.columnMode; },
     .enter = ConfirmColumn,
     .clear = StepColumn,
     .style = kGnsLabel,
     .at = {380, 320}},
    {.line = 10,
     .text = "SELECT",
     .prompt = "SELECT?",
     .visible = StoredMenuShown,
     .enter = ActivateStoredPlan,
     .style = kGnsLabel,
     .at = {320, 320}},
    {.line = 10,
     .state = 2,
     .text = "ERASE",
     .prompt = "ERASE?",
     .visible = StoredMenuShown,
     .enter = EraseOpenedPlan,
     .style = kGnsLabel,
     .at = {340, 360}},
    ListRow(7, 1, 0),
    ListRow(7, 2, 1),
    ListRow(8, 1, 2),
    ListRow(8, 2, 3),
    ListRow(9, 1, 4),
    ListRow(9, 2, 5),
    ListRow(10, 1, 6),
    ListRow(10, 2, 7),
};

// ---- what stands on a row ----
void ColumnText(std::int32_t index, UnitText& text) {
    const bool ahead = GnsShowsActivePlan() && index >= planBook.activeIndex;
    switch (gns.columnMode) {
        case kColumnEta:
            text = ahead ? GnsClockText(GnsPredictionOf(index)) : UnitText{};
            break;
        case kColumnDis:
            text = ahead ? NumberText(GnsDistanceTo(index), 5) : UnitText{};
            break;
        case kColumnAlt:
            text = NumberText(GnsAltitudeAt(GnsPlanShown(), index), 5);
            break;
        default:
            text = ahead ? GnsMinutesText(GnsMinutesTo(index)) : UnitText{};
            break;
    }
}

GnsStyle StyleOfEntry(std::int32_t index) {
    if (!GnsShowsActivePlan() || !HasActiveWaypoint()) {
        return kGnsData;
    }
    return index == planBook.activeIndex       ? kGnsActive
           : index == planBook.activeIndex - 1 ? kGnsPassed
                                               : kGnsData;
}

void PutMark(Screen& screen, std::int32_t index, int y) {
    const GnsStyle style = StyleOfEntry(index);
    if (style == kGnsActive) {
        screen.Put(style, kMarkX, y, "TO ");
    } else if (style == kGnsPassed) {
        screen.Put(style, kMarkX, y, "FR");
    }
}

void PutWaypoint(Screen& screen, std::int32_t row, std::int32_t index) {
    const int y = kGnsRowY[static_cast<std::size_t>(row)];
    const PlanWaypoint& entry = GnsPlanShown().entries[index];
    const bool selected = GnsSelectedEntry() == index;
    PutMark(screen, index, y);
    if (!selected) {
        screen.Put(StyleOfEntry(index), kIdentX, y, "%.6s", entry.ident.c_str());
    }
    if (!(selected && gns.deletePending)) {
        const std::string& note = entry.procedure.empty() ? entry.via : entry.procedure;
        screen.Put(kGnsNote, kNoteX, y + kNoteDrop, "%.7s", note.c_str());
    }
    UnitText value;
    ColumnText(index, value);
    screen.PutText(StyleOfEntry(index), {kValueX, static_cast<std::int16_t>(y)}, value);
}

void PutTitle(Screen& screen, const SubPage& shown) {
    if (GnsShowsActivePlan()) {
        screen.Put(kGnsLabel, 90, 0, "ACTIVE FPL   %d/%d", shown.n, shown.m);
    } else {
        screen.Put(kGnsLabel, 30, 0, "FLIGHT PLAN %d  %d/%d", gns.storedPlanNumber, shown.n,
                   shown.m);
    }
}

// The selected line shows what was typed for its entry: it goes along when the list moves on.
void FollowSelectedEntry() {
    const std::int32_t entry = GnsSelection().index;
    const LineRow* line = GnsSelectedLine();
    if (line == nullptr || line->entryLength == 0 || GnsEntryOnRow(line->item) == entry) {
        return;
    }
    for (const LineRow& row : kLines) {
        if (row.entryLength > 0 && GnsEntryOnRow(row.item) == entry) {
            gns.lineState.fill(0);
            gns.lineState[static_cast<std::size_t>(row.line)] = row.state;
            return;
        }
    }
    ClearGnsSelections();
}

void HandlePlan(const UnitInput& input) {
    HandleGnsPlanList(input);
    if (ShowsPlan()) {
        SetGnsPageCount(GnsPlanCounter(), PageCount(LineCount(), kGnsPlanLines));
        FollowSelectedEntry();
    }
}

void ComposePlan(Screen& screen) {
    if (GnsShowsPlanList()) {
        ComposeGnsPlanList(screen);
        return;
    }
    PutTitle(screen, SetGnsPageCount(GnsPlanCounter(), PageCount(LineCount(), kGnsPlanLines)));
    for (std::int32_t row = 0; row < kGnsPlanLines; ++row) {
        const std::int32_t index = GnsEntryOnRow(row);
        if (GnsPlanShown().Holds(index)) {
            PutWaypoint(screen, row, index);
        } else if (index != kNoWaypoint && GnsSelectedEntry() != index) {
            screen.Put(kGnsData, kIdentX, kGnsRowY[static_cast<std::size_t>(row)], "%.6s",
                       kEmptyRow.data());
        }
    }
}

}  // namespace

FlightPlan& GnsPlanShown() {
    return GnsShowsActivePlan() ? activePlan : modifiedPlan;
}

bool GnsShowsActivePlan() {
    return gns.planView == kActiveView;
}

std::int32_t GnsEntryOnRow(std::int32_t row) {
    const std::int32_t index =
        FirstLine() + kGnsPlanLines * (gns.Counter(GnsPlanCounter()).n - 1) + row;
    return index <= GnsPlanShown().lastIndex + 1 ? index : kNoWaypoint;
}

std::int32_t GnsSelectedEntry() {
    const LineRow* line = gns.page == kGnsPlan && ShowsPlan() ? GnsSelectedLine() : nullptr;
    return line != nullptr && line->entryLength > 0 ? GnsEntryOnRow(line->item) : kNoWaypoint;
}

void SelectGnsEntry(std::int32_t index) {
    const std::int32_t line = index - FirstLine();
    gns.Counter(GnsPlanCounter()).n = std::max(line, 0) / kGnsPlanLines + 1;
    for (const LineRow& row : kLines) {
        if (row.entryLength > 0 && GnsEntryOnRow(row.item) == index) {
            SelectRow(row, gns);
            return;
        }
    }
}

void ReturnToGnsPlan() {
    gns.pendingColumnMode = gns.columnMode;
    OpenGnsPage(kGnsPlan);
}

constinit const PageRow kGnsPlanPage{
    .page = kGnsPlan, .lines = kLines, .handle = HandlePlan, .compose = ComposePlan};

}  // namespace avq1
