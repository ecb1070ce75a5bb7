// DATABASE WPT: the points that bear the typed identifier, one a page; ENTER takes the one shown.
#include <algorithm>

#include "cdu/formats.h"
#include "cdu_gns/gns_pages.h"
#include "cdu_gns/gns_plan.h"
#include "cdu_gns/gns_values.h"
#include "cdu_gns/gns_waypoint.h"
#include "flightplan/plan_edit.h"
#include "geometry/geometry.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr int kValueX = 300;
constexpr int kPositionX = 210;
constexpr const char* kTurnNames[] = {"DEFAULT", "LEFT", "RIGHT"};

// Null when there is nothing to show.
const FoundPoint* Candidate() {
    const std::int32_t n = gns.Counter(GnsCounter::Database).n;
    return gnsWaypoint.found.Holds(n) ? &gnsWaypoint.found[n] : nullptr;
}

bool HasCandidate(const FieldRow&) {
    return Candidate() != nullptr;
}

bool IsAirport() {
    return Candidate() != nullptr && Candidate()->kind == PointKind::Airport;
}

bool ForDirect(const LineRow&) {
    return gns.returnPage == kGnsDirect;
}

bool ForPlan(const LineRow&) {
    return gns.returnPage == kGnsPlan || gns.returnPage == kGnsDirect;
}

void ShowType(const FieldRow&, UnitText& text) {
    text.Set(PlanTypeOf(Candidate()->kind));
}

void ShowBearingDistance(const FieldRow&, UnitText& text) {
    double distanceNm = 0;
    double courseTrue = 0;
    DistanceAndCourse(aircraft.latitude, aircraft.longitude, Candidate()->latitude,
                      Candidate()->longitude, distanceNm, courseTrue);
    text = BearingDistanceText(TrueToMagnetic(courseTrue, aircraft.magneticVariation), distanceNm);
}

bool HasFrequency(const FieldRow&) {
    return Candidate() != nullptr && !Candidate()->frequency.empty() && !IsAirport();
}

bool HasElevation(const FieldRow&) {
    return IsAirport();
}

void ShowTurn(const LineRow& row, UnitText& text) {
    const bool asks = IsSelected(gns, row);
    const GnsTurn turn = asks ? gnsWaypoint.pendingTurn : gnsWaypoint.directTurn;
    text.Put("%s%s", kTurnNames[static_cast<std::size_t>(turn)], asks ? "?" : "");
}

EntryResult StepTurn(const LineRow&) {
    gnsWaypoint.pendingTurn =
        static_cast<GnsTurn>(NextChoice(static_cast<std::int32_t>(gnsWaypoint.pendingTurn), 0,
                                        static_cast<std::int32_t>(GnsTurn::Right)));
    return EntryResult::None;
}

EntryResult ConfirmTurn(const LineRow&) {
    gnsWaypoint.directTurn = gnsWaypoint.pendingTurn;
    return EntryResult::Accepted;
}

EntryResult TakeCandidate(const FieldRow&) {
    if (Candidate() == nullptr) {
        return EntryResult::None;
    }
    const FoundPoint taken = *Candidate();
    switch (gns.returnPage) {
        case kGnsPlan:
            InsertGnsWaypoint(EntryFrom(taken));
            break;
        case kGnsDirect:
            PickGnsDirect(taken);
            break;
        default:
            TakeGnsProcedureAirport(taken);
            break;
    }
    return EntryResult::None;
}

constexpr FieldRow kFields[] = {
    {.line = kEnterLine, .press = TakeCandidate},
    {.label = "WAYPOINT",
     .show = [](const FieldRow&, UnitText& t) { t.Set(Candidate()->ident.substr(0, 8)); },
     .visible = HasCandidate,
     .style = kGnsActive,
     .valueAt = {kValueX, 80},
     .labelAt = {kGnsLabelX, 80}},
    {.label = "TYPE",
     .show = ShowType,
     .visible = HasCandidate,
     .style = kGnsData,
     .valueAt = {kValueX, 120},
     .labelAt = {kGnsLabelX, 120}},
    {.label = "POS",
     .show = [](const FieldRow&, UnitText& t) { t = GnsLatitudeText(Candidate()->latitude); },
     .visible = HasCandidate,
     .style = kGnsData,
     .valueAt = {kPositionX, 160},
     .labelAt = {kGnsLabelX, 160}},
    {.show = [](const FieldRow&, UnitText& t) { t = GnsLongitudeText(Candidate()->longitude); },
     .visible = HasCandidate,
     .style = kGnsData,
     .valueAt = {kPositionX, 200}},
    {.label = "FREQ",
     .show = [](const FieldRow&, UnitText& t) { t.Set(Candidate()->frequency); },
     .visible = HasFrequency,
     .style = kGnsData,
     .valueAt = {kValueX, 240},
     .labelAt = {kGnsLabelX, 240}},
    {.label = "ELEV",
     .show = [](const FieldRow&, UnitText& t) { t.Put("%.6s FT", Candidate()->elevation.c_str()); },
     .visible = HasElevation,
     .style = kGnsData,
     .valueAt = {kValueX, 240},
     .labelAt = {kGnsLabelX, 240}},
    {.label = "BRG/DIS",
     .show = ShowBearingDistance,
     .visible = HasCandidate,
     .style = kGnsData,
     .valueAt = {kValueX, 280},
     .labelAt = {kGnsLabelX, 280}},
};

constexpr LineRow kLines[] = {
    {.line = 10,
     .show = ShowGnsFlyover,
     .visible = ForPlan,
     .select = OfferGnsFlyover,
     .enter = ConfirmGnsFlyover,
     .clear = StepGnsFlyover,
     .style = kGnsData,
     .at = {kValueX + kGnsCharacterWidth, 320}},
    {.line = 10,
     .state = 2,
     .show = ShowTurn,
     .visible = ForDirect,
     .select = [](const LineRow&) { gnsWaypoint.pendingTurn = gnsWaypoint.directTurn; },
     .enter = ConfirmTurn,
     .clear = StepTurn,
     .style = kGnsData,
     .at = {kValueX, 360}},
};

void ComposeDatabase(Screen& screen) {
    const SubPage& shown =
        SetGnsPageCount(GnsCounter::Database, std::max(gnsWaypoint.found.count, 1));
    screen.Put(kGnsLabel, 75, 0, "DATABASE WPT %d/%d", shown.n, shown.m);
    if (ForPlan(kLines[0])) {
        screen.Put(kGnsLabel, kGnsLabelX, 320, "FLYOVER:");
    }
    if (ForDirect(kLines[1])) {
        screen.Put(kGnsLabel, kGnsLabelX, 360, "DIRECTION:");
    }
}

}  // namespace

void OpenGnsDatabase(std::int32_t returnPage) {
    gns.returnPage = returnPage;
    gns.Counter(GnsCounter::Database).n = 1;
    OpenGnsPage(kGnsDatabase);
}

constinit const PageRow kGnsDatabasePage{
    .page = kGnsDatabase, .fields = kFields, .lines = kLines, .compose = ComposeDatabase};

}  // namespace avq1
