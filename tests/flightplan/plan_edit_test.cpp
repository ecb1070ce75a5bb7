#include "flightplan/plan_edit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/module_state.h"
#include "base/text.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_notation.h"
#include "flightplan/procedures.h"
#include "flightplan/route_entry.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

using test::Fix;
using test::SetPlan;
using test::Show;
using test::Without;

class PlanEdit : public testing::Test {
  protected:
    void SetUp() override { ResetModuleState(); }
};

enum class Plans { All, Active, Modified, Flown };  // Flown: active and modified

struct OperationCase {
    const char* what;
    bool (*edit)(FlightPlan& plan);
    const char* before;
    const char* after;  // null: refused, and nothing changed
    Plans plans = Plans::All;
};

template <std::int32_t position>
bool Gap(FlightPlan& plan) {
    return InsertWaypoint(plan, position, Fix("NEW"));
}
template <std::int32_t position>
bool Leg(FlightPlan& plan) {
    return InsertLeg(plan, position, Fix("NEW"));
}
template <std::int32_t position>
bool Between(FlightPlan& plan) {
    return InsertBetween(plan, position, Fix("NEW"));
}
template <std::int32_t position>
bool Disco(FlightPlan& plan) {
    return InsertDiscontinuity(plan, position);
}
template <std::int32_t position, bool force = false>
bool Delete(FlightPlan& plan) {
    return DeleteWaypoint(plan, position, force);
}
template <std::int32_t position>
bool CloseUp(FlightPlan& plan) {
    return DeleteBetween(plan, position);
}
template <std::int32_t position>
bool CloseGap(FlightPlan& plan) {
    return CloseDiscontinuity(plan, position);
}
bool NoPlaceholders(FlightPlan& plan) {
    RemovePlaceholders(plan);
    return true;
}
template <std::int32_t index>
bool Direct(FlightPlan& plan) {
    return DirectTo(plan, index, {50, -60});
}
template <bool keepsArrival>
bool DirectPoint(FlightPlan& plan) {
    DirectToPoint(plan, Fix("NEW"), keepsArrival, {50, -60});
    return true;
}
template <std::int32_t index>
bool Hold(FlightPlan& plan) {
    return HoldAt(plan, index, NewHold());
}
template <std::int32_t from, std::int32_t to>
bool Lead(FlightPlan& plan) {
    return LeadTo(plan, from, to);
}
template <std::int32_t first, std::int32_t last>
bool Remove(FlightPlan& plan) {
    return RemoveElement(plan, first, last);
}
template <std::int32_t index>
bool RowDeleted(FlightPlan& plan) {
    return DeleteLeg(plan, index);
}
FoundPoint LaGuardia() {
    FoundPoint airport;
    airport.ident = "KLGA";
    airport.kind = PointKind::Airport;
    return airport;
}
bool NewStart(FlightPlan&) {
    StartRoute(LaGuardia());
    return true;
}
bool NewEnd(FlightPlan&) {
    return SetRouteDestination(LaGuardia());
}
bool NoEnd(FlightPlan&) {
    return RemoveRouteDestination();
}

// "^" counts in the active plan only, "+" in the modified one.
const OperationCase kOperations[] = {
    {"leaves a gap", Gap<3>, "KJFK ^AAA =BBB >CCC@ +KBOS", "KJFK ^AAA =BBB NEW DISCO >CCC@ +KBOS"},
    {"none before the destination", Gap<4>, "KJFK AAA BBB >CCC ^+=KBOS",
     "KJFK AAA BBB >CCC NEW ^+=KBOS"},
    {"nor behind the last", Gap<4>, "KJFK AAA >BBB ^CCC +=", "KJFK AAA >BBB ^CCC NEW +="},
    {"beyond the end appends", Gap<60>, "KJFK >AAA ^KBOS +", "KJFK >AAA ^KBOS NEW +"},
    {"never in front of the departure", Gap<0>, "KJFK AAA >BBB@ ^+KBOS",
     "KJFK NEW DISCO AAA >BBB@ ^+KBOS"},
    {"without a place behind the departure", Gap<kNoWaypoint>, "KJFK AAA >BBB@ ^+KBOS",
     "KJFK NEW DISCO AAA >BBB@ ^+KBOS"},
    {"at what is flown", Gap<2>, "KJFK AAA >BBB ^KBOS +", "KJFK AAA NEW DISCO >BBB ^KBOS +"},
    {"before an active index of 1 it is flown", Gap<1>, "KJFK >AAA@ ^BBB KBOS",
     "KJFK >NEW DISCO AAA@ ^BBB KBOS", Plans::Active},
    {"the tracked entry stays tracked", Gap<1>, "KJFK >+=AAA@ BBB KBOS",
     "KJFK NEW DISCO >+=AAA@ BBB KBOS", Plans::Modified},

    {"a leg at the flown one is flown first", Leg<2>, "KJFK AAA >BBB@ CCC ^+KBOS",
     "KJFK AAA >NEW DISCO BBB@ CCC ^+KBOS"},
    {"other legs are not", Leg<3>, "KJFK AAA >BBB@ CCC ^+KBOS",
     "KJFK AAA >BBB@ NEW DISCO CCC ^+KBOS"},

    {"closes up", Between<3>, "KJFK AAA >BBB@ =CCC@ ^+KBOS", "KJFK AAA >BBB@ NEW =CCC@ ^+KBOS"},
    {"what is flown goes with its entry", Between<2>, "KJFK AAA >=BBB@ ^KBOS +",
     "KJFK AAA NEW >=BBB@ ^KBOS +"},
    {"at the empty row", Between<3>, "KJFK >AAA ^KBOS +=", "KJFK >AAA ^KBOS NEW +="},
    {"an active index of 1 stays", Between<1>, "KJFK >=AAA@ ^KBOS", "KJFK >NEW =AAA@ ^KBOS",
     Plans::Active},
    {"nor in front of the departure", Between<0>, "KJFK >AAA ^KBOS", "KJFK >NEW AAA ^KBOS",
     Plans::Active},
    {"the second of an empty plan is flown", Between<1>, "^=KJFK", "^=KJFK >NEW", Plans::Active},
    {"inside a procedure", Between<2>, "KJFK SID:N2(AAA,BBB) >CCC STAR(DDD) ^+KBOS",
     "KJFK AAA NEW N2 BBB >CCC STAR(DDD) ^+KBOS"},
    {"where a procedure ends", Between<3>, "KJFK SID(AAA,BBB) >CCC ^+KBOS",
     "KJFK SID(AAA,BBB) NEW >CCC ^+KBOS"},
    {"where two meet", Between<2>, "KJFK SID(AAA) STAR(>BBB) ^+KBOS",
     "KJFK SID(AAA) NEW STAR(>BBB) ^+KBOS"},
    {"before what belongs to two", Between<2>, "KJFK SID(AAA) SIDSTAR(>BBB) STAR(CCC) ^+KBOS",
     "KJFK AAA NEW >BBB STAR(CCC) ^+KBOS"},

    {"a gap", Disco<2>, "KJFK AAA >=BBB@ ^+KBOS", "KJFK AAA DISCO >=BBB@ ^+KBOS"},
    {"closed", CloseGap<2>, "KJFK AAA DISCO >=BBB@ ^+KBOS", "KJFK AAA >=BBB@ ^+KBOS"},
    {"with the airway that began behind it", CloseGap<2>, "KJFK AAA DISCO J2 >^+KBOS",
     "KJFK AAA >^+KBOS"},
    {"no gap to close", CloseGap<1>, "KJFK AAA >BBB ^+KBOS", nullptr},
    {"none there", CloseGap<4>, "KJFK AAA >BBB ^+KBOS", nullptr},

    {"behind the departure", Delete<1>, "KJFK AAA@ >=BBB@ CCC DDD ^+KBOS",
     "KJFK >=BBB@ CCC DDD ^+KBOS"},
    {"what follows is flown", Delete<1>, "KJFK >^+=AAA BBB CCC KBOS", "KJFK >^+=BBB CCC KBOS"},
    {"before the destination", Delete<4>, "KJFK AAA BBB CCC >DDD ^+KBOS",
     "KJFK AAA BBB CCC >^+KBOS"},
    {"inside a gap is left", Delete<3>, "KJFK AAA BBB >=CCC@ DDD ^+KBOS",
     "KJFK AAA BBB >=DISCO DDD ^+KBOS"},
    {"unless forced", Delete<3, true>, "KJFK AAA BBB CCC@ DDD@ >^+=KBOS",
     "KJFK AAA BBB DDD@ >^+=KBOS"},
    {"the destination", Delete<3>, "KJFK AAA BBB >^+=KBOS", "KJFK AAA >^BBB +="},
    {"the departure", Delete<0>, "KJFK AAA >BBB ^+KBOS", "AAA >BBB ^+KBOS"},
    {"two entries are left alone", Delete<1, true>, "KJFK >^+KBOS", nullptr},
    {"beyond the end", Delete<4, true>, "KJFK AAA >BBB ^+KBOS", nullptr},

    {"before what is flown", CloseUp<1>, "KJFK AAA@ BBB >=CCC@ ^+KBOS", "KJFK BBB >=CCC@ ^+KBOS"},
    {"what is flown", CloseUp<2>, "KJFK AAA >^+=BBB@ CCC KBOS", "KJFK AAA >^+=CCC KBOS"},
    {"what is last", CloseUp<3>, "KJFK AAA BBB >^+=KBOS", "KJFK AAA >^BBB +="},
    {"all but the departure", CloseUp<1>, "KJFK >^+=KBOS", "^KJFK +="},
    {"of a procedure", CloseUp<3>, "KJFK STAR:T1(AAA,>BBB,CCC) APPR(DDD) ^+KBOS",
     "KJFK AAA T1 >BBB APPR(DDD) ^+KBOS"},
    {"of no procedure", CloseUp<1>, "KJFK AAA STAR(BBB,>CCC) ^+KBOS", "KJFK STAR(BBB,>CCC) ^+KBOS"},
    {"nothing there", CloseUp<4>, "KJFK AAA >BBB ^+KBOS", nullptr},

    {"placeholders", NoPlaceholders, "KJFK THEN AAA THEN THEN >^+=BBB@ KBOS THEN",
     "KJFK AAA >^+=BBB@ KBOS"},
    {"what points at one", NoPlaceholders, "KJFK THEN AAA >^+=THEN BBB KBOS",
     "KJFK AAA >^+=BBB KBOS"},
    {"also the last", NoPlaceholders, "KJFK AAA KBOS >^THEN", "KJFK AAA >^KBOS"},

    {"direct to", Direct<3>, "KJFK >AAA BBB@ J1 CCC@ ^+=KBOS",
     "KJFK AAA BBB@ DCT DIRECT >CCC@ ^+=KBOS"},
    {"the first waypoint", Direct<1>, "KJFK >AAA ^+KBOS", "KJFK DCT DIRECT >AAA ^+KBOS"},
    {"where nothing is flown", Direct<2>, "KJFK AAA =KBOS +", "^KJFK AAA DCT DIRECT >=KBOS +",
     Plans::Active},
    {"a second time", Direct<4>, "KJFK DIRECT >AAA BBB CCC ^+KBOS",
     "KJFK AAA BBB DCT DIRECT >CCC ^+KBOS"},
    {"back", Direct<1>, "KJFK AAA DIRECT >BBB ^+=KBOS", "KJFK DCT DIRECT >AAA BBB ^+=KBOS"},
    {"the same again", Direct<2>, "KJFK DIRECT >AAA@ ^+KBOS", "KJFK DCT DIRECT >AAA@ ^+KBOS"},
    {"not to a gap", Direct<2>, "KJFK >AAA DISCO ^+KBOS", nullptr},
    {"nor to where it began", Direct<1>, "KJFK DIRECT >AAA ^+KBOS", nullptr},
    {"nor beyond the end", Direct<3>, "KJFK >AAA ^+KBOS", nullptr},

    {"direct to a point", DirectPoint<true>, "KJFK AAA >BBB@ J1 ^+KBOS", "DIRECT >NEW ^+KBOS"},
    {"that is no airport's", DirectPoint<true>, "KJFK AAA >^+BBB", "DIRECT >^NEW +"},
    {"and nothing else", DirectPoint<false>, "KJFK AAA >BBB ^=KBOS +", "DIRECT >^NEW +="},

    {"a hold", Hold<2>, "KJFK >AAA BBB ^+KBOS", "KJFK >AAA BBB@ ^+KBOS", Plans::Flown},
    {"one more", Hold<1>, "KJFK >AAA BBB@ ^+KBOS", "KJFK >AAA@ BBB@ ^+KBOS", Plans::Flown},
    {"one there already", Hold<2>, "KJFK >AAA BBB@ ^+KBOS", nullptr},
    {"a fifth", Hold<5>, "KJFK >AAA@ BBB@ CCC@ DDD@ EEE ^+KBOS", nullptr},
    {"none at a gap", Hold<2>, "KJFK >AAA DISCO ^+KBOS", nullptr},
    {"none at the departure", Hold<0>, "KJFK >AAA ^+KBOS", nullptr},

    {"straight on", Lead<2, 4>, "KJFK >AAA J1 BBB@ J1 CCC J2 DDD ^+=KBOS", "KJFK >AAA DDD ^+=KBOS"},
    {"to the end", Lead<1, 3>, "KJFK >AAA BBB ^+=KBOS", "KJFK >^+=KBOS"},
    {"not back", Lead<3, 2>, "KJFK >AAA BBB ^+KBOS", nullptr},
    {"nor from the departure", Lead<0, 2>, "KJFK >AAA BBB ^+KBOS", nullptr},
    {"nor beyond the end", Lead<1, 4>, "KJFK >AAA BBB ^+KBOS", nullptr},

    {"an element leaves a gap", Remove<2, 3>, "KJFK >AAA BBB@ CCC =DDD ^+KBOS",
     "KJFK >AAA DISCO =DDD ^+KBOS"},
    {"one gap is enough", Remove<2, 2>, "KJFK >AAA BBB DISCO CCC ^+KBOS",
     "KJFK >AAA DISCO CCC ^+KBOS"},
    {"on either side", Remove<3, 3>, "KJFK >AAA DISCO BBB CCC ^+KBOS",
     "KJFK >AAA DISCO CCC ^+KBOS"},
    {"a gap", Remove<2, 2>, "KJFK >AAA DISCO BBB ^+KBOS", "KJFK >AAA BBB ^+KBOS"},
    {"with what is flown goes the gap", Remove<1, 2>, "KJFK >AAA BBB DISCO CCC ^+KBOS",
     "KJFK >CCC ^+KBOS"},
    {"before the destination", Remove<2, 2>, "KJFK >AAA BBB ^+KBOS", "KJFK >AAA ^+KBOS"},
    {"behind the departure", Remove<1, 1>, "KJFK AAA >BBB ^+KBOS", "KJFK >BBB ^+KBOS"},
    {"not the departure", Remove<0, 1>, "KJFK AAA >BBB ^+KBOS", nullptr},
    {"not what is not there", Remove<2, 4>, "KJFK AAA >BBB ^+KBOS", nullptr},
    {"nor backwards", Remove<2, 1>, "KJFK AAA >BBB ^+KBOS", nullptr},
    {"nor the last", Remove<1, 1>, "KJFK >^+KBOS", nullptr},

    {"a row's hold", RowDeleted<2>, "KJFK >AAA BBB@ ^+KBOS", "KJFK >AAA BBB ^+KBOS", Plans::Flown},
    {"a row", RowDeleted<2>, "KJFK >AAA BBB CCC DDD ^+KBOS", "KJFK >AAA DISCO CCC DDD ^+KBOS"},
    {"a row that is a gap", RowDeleted<2>, "KJFK >AAA DISCO BBB ^+KBOS", "KJFK >AAA BBB ^+KBOS"},
    {"what is flown", RowDeleted<1>, "KJFK >AAA DISCO BBB CCC ^+KBOS", "KJFK >BBB CCC ^+KBOS"},
    {"what is flown to the end", RowDeleted<2>, "KJFK AAA >BBB ^+KBOS", "KJFK AAA >^+KBOS",
     Plans::Flown},
    {"no row", RowDeleted<3>, "^KJFK AAA >KBOS +", nullptr},

    {"a departure", NewStart, "KJFK AAA >BBB@ +KBOS", "KLGA +", Plans::Modified},
    {"whatever was tracked", NewStart, ">KJFK +AAA", "KLGA +", Plans::Modified},
    {"a destination", NewEnd, "KJFK >AAA BBB@ =CCC", "KJFK >AAA BBB@ =CCC +KLGA", Plans::Modified},
    {"another", NewEnd, "KJFK >AAA BBB +=KBOS", "KJFK >AAA BBB +=KLGA", Plans::Modified},
    {"with the arrival goes its gap", NewEnd, "KJFK >AAA STAR:T1(BBB,CCC@) DISCO APPR(DDD) +KBOS",
     "KJFK >AAA +KLGA", Plans::Modified},
    {"and what is flown of it", NewEnd, "KJFK STAR(>BBB,CCC) +KBOS", "KJFK >+KLGA",
     Plans::Modified},
    {"another gap stays", NewEnd, "KJFK >AAA DISCO +KBOS", "KJFK >AAA DISCO +KLGA",
     Plans::Modified},
    {"nor is a departure the arrival's", NewEnd, "KJFK SID(>AAA) +KBOS", "KJFK SID(>AAA) +KLGA",
     Plans::Modified},
    {"none without a departure", NewEnd, "+", nullptr, Plans::Modified},
    {"none behind the departure alone", NoEnd, "KJFK >+KBOS", nullptr, Plans::Modified},
    {"none there", NoEnd, "KJFK >AAA BBB +", nullptr, Plans::Modified},
    {"taken out", NoEnd, "KJFK >AAA STAR(BBB) APPR(CCC) +KBOS", "KJFK >AAA +", Plans::Modified},
};

TEST_F(PlanEdit, OperationsTakeWhatPointsIntoThePlanWithThem) {
    const struct {
        FlightPlan& plan;
        const char* notMarked;
        Plans only;
    } plans[] = {{activePlan, "+", Plans::Active},
                 {modifiedPlan, "^", Plans::Modified},
                 {previewPlan, "^+>@", Plans::All}};
    for (const OperationCase& c : kOperations) {
        for (const auto& [plan, notMarked, only] : plans) {
            if (c.plans != Plans::All && c.plans != only &&
                (c.plans != Plans::Flown || &plan == &previewPlan)) {
                continue;
            }
            SCOPED_TRACE(testing::Message()
                         << c.what << " " << c.before << " without " << notMarked);
            ResetModuleState();
            SetPlan(plan, Without(c.before, notMarked));
            planBook.status = RouteStatus::Active;
            const bool edited = c.edit(plan);
            EXPECT_EQ(edited, c.after != nullptr);
            EXPECT_EQ(Without(Show(plan, true), notMarked),
                      Without(c.after != nullptr ? c.after : c.before, notMarked));
            const bool noted = edited && &plan == &modifiedPlan && c.edit != NoPlaceholders;
            EXPECT_EQ(planBook.status, noted ? RouteStatus::Modified : RouteStatus::Active);
            EXPECT_TRUE(test::FlagsMatchHolds(plan));
        }
    }
}

TEST_F(PlanEdit, AnotherDestinationForgetsTheArrivalChosen) {
    SetPlan(modifiedPlan, "KJFK AAA KBOS");
    modifiedPlan.EditProcedures() = {"S1", "ST", "09", "T1", "TT", "ILS", "AT", "27"};
    procedureChoice = {"KBOS", 1, "S1", "ST", "09", 2, "T1", "TT", "27", "ILS", "AT"};
    ASSERT_TRUE(NewEnd(modifiedPlan));
    EXPECT_EQ(modifiedPlan.procedures, (PlanProcedures{"S1", "ST", "09", "", "", "", "", ""}));
    const ProcedureChoice& left = procedureChoice;
    EXPECT_EQ(Format("%d %s %s %s", left.sidNumber, left.sidName.c_str(),
                     left.sidTransition.c_str(), left.departureRunway.c_str()),
              "1 S1 ST 09");
    EXPECT_EQ(left.starNumber, 0);
    EXPECT_EQ(left.starName + left.approachType + left.approachTransition, "");
    EXPECT_EQ(left.starTransition, kNoChoice);
    EXPECT_EQ(left.arrivalRunway, kNoChoice);
    EXPECT_EQ(planBook.destinationIdent, "KLGA");
}

TEST_F(PlanEdit, FullPlanRefusesAndStaysAsItIs) {
    const auto named = [](FlightPlan& plan) {
        SearchResults results;
        results.Append(FoundPoint{});
        return InsertNamedPoint(plan, 5, results, 1);
    };
    const auto placeholder = [](FlightPlan& plan) {
        return InsertAirwayPlaceholder(plan, 5, "J1");
    };
    const struct {
        std::int32_t entries;
        bool (*edit)(FlightPlan& plan);
        bool taken;
    } cases[] = {
        {201, named, false},     {201, Gap<201>, false},    {201, Between<5>, false},
        {201, Disco<5>, false},  {201, placeholder, false}, {201, Direct<5>, false},
        {200, Gap<5>, false},  // no room for the gap that belongs to it
        {200, Leg<5>, false},    {200, Gap<199>, true},     {200, named, true},
        {200, Between<5>, true}, {200, Disco<5>, true},     {200, placeholder, true},
        {200, Direct<5>, true},  {199, Gap<5>, true},       {201, NewEnd, false},
        {200, NewEnd, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.entries << " entries");
        std::string notation;
        for (std::int32_t i = 0; i < c.entries; ++i) {
            notation += "FIX" + std::to_string(i) + " ";
        }
        SetPlan(modifiedPlan, notation);
        const std::string before = Show(modifiedPlan);
        EXPECT_EQ(c.edit(modifiedPlan), c.taken);
        EXPECT_EQ(Show(modifiedPlan) == before, !c.taken);
        EXPECT_LE(modifiedPlan.lastIndex, kMaxPlanIndex);
    }
}

TEST_F(PlanEdit, RangeClosesUpWithoutRenumbering) {
    planBook.status = RouteStatus::Active;
    SetPlan(modifiedPlan, "KJFK AAA BBB CCC >DDD@ EEE KBOS");
    DeleteRange(modifiedPlan, 1, 3);
    EXPECT_EQ(Show(modifiedPlan), "KJFK CCC DDD EEE >KBOS@");
    EXPECT_EQ(planBook.status, RouteStatus::Modified);
    EXPECT_EQ(planBook.routeView.size(), 3U);

    for (const auto& [first, beyond] : {std::pair{3, 3}, {4, 2}, {-1, 2}, {1, 6}}) {
        DeleteRange(modifiedPlan, first, beyond);
        EXPECT_EQ(Show(modifiedPlan), "KJFK CCC DDD EEE >KBOS@") << first << " " << beyond;
    }
}

TEST_F(PlanEdit, EntriesGetTheValuesOfTheirKind) {
    SetPlan(modifiedPlan, "KJFK AAA BBB KBOS");
    ASSERT_TRUE(InsertAirwayPlaceholder(modifiedPlan, 2, "J42"));
    ASSERT_TRUE(DirectTo(modifiedPlan, 3, {50, -60}));
    EXPECT_EQ(Show(modifiedPlan), "KJFK AAA J42 THEN DCT DIRECT >BBB KBOS");
    const PlanWaypoint& placeholder = modifiedPlan.entries[2];
    EXPECT_EQ(placeholder.type, "OAWY");
    EXPECT_EQ(placeholder.speed, -1);
    const PlanWaypoint& direct = modifiedPlan.entries[3];
    EXPECT_EQ(Format("%s %g %g", direct.type.c_str(), direct.latitude, direct.longitude),
              "WPT 50 -60");
    ASSERT_TRUE(HoldAt(modifiedPlan, 4, NewHold()));
    const HoldCorner& fix = holdList.holds[1].corners[0];
    EXPECT_EQ(Format("%s %g %g", fix.name.c_str(), fix.latitude, fix.longitude), "BBB 41 -70");
    EXPECT_FALSE(HoldAt(previewPlan, 1, NewHold()));
}

TEST_F(PlanEdit, CrossingsAreSetAndTakenAway) {
    const struct {
        std::int32_t index;
        Crossing crossing;
        const char* after;  // null: refused
    } cases[] = {
        {1, {10000, 250, 1}, "10000 250 1"},     {1, {kUnset, 250, 1}, "-999 250 0"},
        {1, {10000, kUnset, 2}, "10000 -999 2"}, {1, {}, "-999 -999 0"},
        {2, {10000, 250, 1}, nullptr},           {4, {10000, 250, 1}, nullptr},
    };
    for (const auto& c : cases) {
        SetPlan(activePlan, "KJFK AAA DISCO KBOS");
        EXPECT_EQ(SetCrossing(activePlan, c.index, c.crossing), c.after != nullptr);
        const PlanWaypoint& entry = activePlan.entries[c.index];
        if (c.after != nullptr) {
            EXPECT_EQ(Format("%g %g %d", entry.altitude, entry.speed, entry.altitudeConstraint),
                      c.after);
        }
    }
}

TEST_F(PlanEdit, RouteViewGathersAirways) {
    const std::pair<const char*, const char*> cases[] = {
        {"KJFK AAA J1 BBB J1 CCC J2 DDD EEE KBOS", "AAA:DIRECT CCC:J1 DDD:J2 EEE:DIRECT "},
        {"KJFK J1 AAA J1 BBB CCC J1 DDD KBOS", "BBB:J1 CCC:DIRECT DDD:J1 "},
        {"KJFK J1 AAA J1 THEN KBOS", "AAA:J1 THEN:J1 "},
        {"", ""},
    };
    for (const auto& [plan, expected] : cases) {
        SetPlan(modifiedPlan, plan);
        BuildRouteView(modifiedPlan);
        std::string view;
        for (const RoutePair& pair : planBook.routeView) {
            view += pair.to + ":" + pair.via + " ";
        }
        EXPECT_EQ(view, expected) << plan;
    }
}

TEST_F(PlanEdit, CopyOfTheActivePlanFollowsTheActiveWaypoint) {
    SetPlan(activePlan, "KJFK AAA >BBB@ CCC KBOS");
    activePlan.Edit(1).ataText = "12:34";
    activePlan.Edit(1).altitude = 11000;
    HoldPattern& leftover = holdList.holds[++holdList.count];  // of a modification given up
    leftover.pendingFixIndex = 3;
    CopyActiveToModified();
    EXPECT_EQ(Show(modifiedPlan), "KJFK AAA >BBB@ CCC KBOS");
    EXPECT_EQ(holdList.count, 1);
    EXPECT_EQ(modifiedPlan.entries[1].ataText, "");
    EXPECT_EQ(modifiedPlan.entries[1].altitude, 11000);
    EXPECT_EQ(activePlan.entries[1].ataText, "12:34");
    EXPECT_EQ(planBook.editIndex, 4) << "before the destination";
    SetPlan(activePlan, "KJFK >AAA BBB");
    CopyActiveToModified();
    EXPECT_EQ(planBook.editIndex, 3);
}

TEST_F(PlanEdit, HoldDeletedInAModificationIsFlownUntilItIsExecuted) {
    for (const bool execute : {true, false}) {
        ResetModuleState();
        SetPlan(activePlan, "KJFK AAA >BBB@ CCC@ DDD KBOS");
        holdFlight.holdActive = 1;
        holdFlight.holdTargetCorner = 2;
        CopyActiveToModified();
        DeleteWaypoint(modifiedPlan, 2, true);
        EXPECT_EQ(Show(modifiedPlan), "KJFK AAA >CCC@ DDD KBOS");
        EXPECT_EQ(Show(activePlan), "KJFK AAA >BBB@ CCC@ DDD KBOS");
        EXPECT_EQ(holdFlight.holdTargetCorner, 2);
        if (!execute) {
            CopyActiveToModified();  // erased instead
            EXPECT_EQ(Show(modifiedPlan), "KJFK AAA >BBB@ CCC@ DDD KBOS");
            continue;
        }
        ExecutePendingHolds();
        ASSERT_EQ(holdList.count, 1);
        EXPECT_EQ(holdList.holds[1].fixIndex, 2);
        EXPECT_EQ(holdList.holds[1].pendingFixIndex, 0);
        EXPECT_EQ(holdFlight.holdState, HoldState::RemovedWhileFlown);
        EXPECT_EQ(holdFlight.holdTargetCorner, 0);
    }
}

TEST_F(PlanEdit, HoldChangedInAModificationIsFlownSoOnceItIsExecuted) {
    for (const bool executed : {true, false}) {
        ResetModuleState();
        SetPlan(activePlan, "KJFK >AAA BBB@ CCC KBOS");
        CopyActiveToModified();
        HoldShape shape;
        shape.inboundCourseMag = 123;
        shape.turnDirection = HoldTurn::Left;
        EXPECT_FALSE(ReshapeHold(modifiedPlan, 0, shape));
        EXPECT_FALSE(ReshapeHold(modifiedPlan, 2, shape));
        EXPECT_FALSE(ReshapeHold(previewPlan, 1, shape));
        ASSERT_TRUE(ReshapeHold(modifiedPlan, 1, shape));
        const HoldPattern& hold = holdList.holds[1];
        EXPECT_EQ(hold.inboundCourseMag, 0);
        EXPECT_EQ(PendingShape(hold), shape);
        if (executed) {
            ExecutePendingHolds();
            EXPECT_FALSE(hold.shapeIsPending);
        } else {
            CopyActiveToModified();  // given up
        }
        EXPECT_EQ(hold.inboundCourseMag, executed ? 123 : 0);
        EXPECT_EQ(PendingShape(hold), static_cast<const HoldShape&>(hold));
        shape.legByTime = 0;
        EXPECT_TRUE(ReshapeHold(activePlan, 1, shape));
        EXPECT_EQ(hold.legByTime, 0);
    }
}

TEST_F(PlanEdit, StatusAdvancesAndTheFirstStepOnGroundReadiesTheFlight) {
    using enum RouteStatus;
    const std::pair<RouteStatus, RouteStatus> steps[] = {{None, BeingBuilt},
                                                         {BeingBuilt, AwaitsExecution},
                                                         {AwaitsExecution, Active},
                                                         {Active, Modified},
                                                         {Modified, Active}};
    for (const auto& [from, to] : steps) {
        planBook.status = from;
        AdvanceRouteStatus();
        EXPECT_EQ(planBook.status, to);
    }
    const struct {
        double groundSpeedKt;
        std::int32_t loadFuel;
        double fuelTotal;
        bool readied;
        double fuelRequested;
    } cases[] = {{4.9, 1, 4.9, true, 0},
                 {4.9, 1, 5, true, 5},
                 {4.9, 0, 9000, true, 0},
                 {5, 1, 9000, false, 0}};
    for (const auto& c : cases) {
        ResetModuleState();
        settings.LoadFuelonFlightPlanLoad = c.loadFuel;
        aircraft.groundSpeedKt = c.groundSpeedKt;
        planBook.fuelTotal = c.fuelTotal;
        planBook.reserveFuel = 1500;
        SetPlan(modifiedPlan, "KJFK KBOS");
        for (int insertion = 0; insertion < 2; ++insertion) {  // the second goes on building
            InsertWaypoint(modifiedPlan, 1, Fix("NEW"));
            EXPECT_EQ(planBook.status, BeingBuilt);
        }
        EXPECT_EQ(planBook.reserveFuelInUse, c.readied ? 1500 : 0);
        EXPECT_EQ(planBook.fuelLoadRequested, c.fuelRequested);
    }
}

}  // namespace
}  // namespace avq1
