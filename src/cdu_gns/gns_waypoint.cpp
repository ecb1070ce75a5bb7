#include "cdu_gns/gns_waypoint.h"

#include <utility>

#include "base/module_state.h"
#include "cdu_gns/gns.h"
#include "cdu_gns/gns_pages.h"
#include "cdu_gns/gns_plan.h"
#include "flightplan/plan_edit.h"
#include "guidance/activation.h"

namespace avq1 {

GnsWaypoint gnsWaypoint;

namespace {

const StateReset waypointReset([] { gnsWaypoint = GnsWaypoint{}; });

constexpr std::string_view kUnnamedPoint = "TMP00";
constexpr std::string_view kUnnamedOffset = "TMPXX";

EntryResult DeleteSelected() {
    FlightPlan& plan = GnsPlanShown();
    const std::int32_t index = GnsSelection().index;
    gns.deletePending = false;
    return EditPlan(plan, [&](FlightPlan& edited) { return DeleteBetween(edited, index); })
               ? EntryResult::Accepted
               : EntryResult::InvalidDelete;
}

}  // namespace

PlanSelection& GnsSelection() {
    return planBook.selections[static_cast<std::size_t>(PlanUnit::Gns)];
}

bool FindGnsWaypoint(std::string_view ident, SearchCategory category, std::int32_t returnPage) {
    SearchIdent(ident, category, gnsWaypoint.found);
    if (gnsWaypoint.found.count == 0) {
        return false;
    }
    OpenGnsDatabase(returnPage);
    return true;
}

EntryResult EnterGnsWaypoint(const LineRow&) {
    if (gns.deletePending) {
        return DeleteSelected();
    }
    if (gns.freshEntry) {
        return EntryResult::None;
    }
    const std::string text(TypedText(gns));
    if (text.starts_with('#')) {
        OpenGnsAirway(text);
    } else if (text.ends_with('*')) {
        const std::string name = text.substr(0, text.size() - 1);
        SearchIdent(name.empty() ? kUnnamedOffset : std::string_view(name), SearchCategory::All,
                    gnsWaypoint.found);
        if (name.empty() && gnsWaypoint.found.count == 0) {
            const FlightPlan& plan = GnsPlanShown();
            const std::int32_t index = GnsSelection().index;
            if (plan.Holds(index) && HasPosition(plan.entries[index])) {
                FoundPoint reference;
                reference.ident = kUnnamedOffset;
                reference.latitude = plan.entries[index].latitude;
                reference.longitude = plan.entries[index].longitude;
                gnsWaypoint.found.Append(reference);
            }
        }
        if (gnsWaypoint.found.count == 0) {
            return EntryResult::NotInDatabase;
        }
        OpenGnsOffset(name.empty() ? kUnnamedOffset : std::string_view(name));
    } else if (!FindGnsWaypoint(text, SearchCategory::All, kGnsPlan)) {
        OpenGnsPilotPoint(text.empty() ? kUnnamedPoint : std::string_view(text));
    }
    return EntryResult::None;
}

void InsertGnsWaypoint(PlanWaypoint entry) {
    entry.flyover = std::exchange(gnsWaypoint.flyover, 0);
    FlightPlan& plan = GnsPlanShown();
    const bool inserted = EditPlan(plan, [&](FlightPlan& edited) {
        return InsertBetween(edited, GnsSelection().index, std::move(entry));
    });
    const std::int32_t next = GnsSelection().index;
    ReturnToGnsPlan();
    if (inserted) {
        SelectGnsEntry(next);
    } else {
        gns.notice = kPlanFullMessage;
    }
}

void ShowGnsFlyover(const LineRow& row, UnitText& text) {
    const std::int32_t shown =
        IsSelected(gns, row) ? gnsWaypoint.pendingFlyover : gnsWaypoint.flyover;
    text.Put("%s%s", shown != 0 ? "YES" : "NO", IsSelected(gns, row) ? "?" : "");
}

void OfferGnsFlyover(const LineRow&) {
    gnsWaypoint.pendingFlyover = gnsWaypoint.flyover;
}

EntryResult StepGnsFlyover(const LineRow&) {
    gnsWaypoint.pendingFlyover = NextChoice(gnsWaypoint.pendingFlyover, 0, 1);
    return EntryResult::None;
}

EntryResult ConfirmGnsFlyover(const LineRow&) {
    gnsWaypoint.flyover = gnsWaypoint.pendingFlyover;
    return EntryResult::Accepted;
}

}  // namespace avq1
