// What is done to plans and what comes of it (transcript.txt): edits, splices, the walk along a
// route, what a pilot types for a place.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "base/messages.h"
#include "base/module_state.h"
#include "base/text.h"
#include "flightplan/airway_entry.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/pilot_points.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_files.h"
#include "flightplan/plan_notation.h"
#include "flightplan/procedures.h"
#include "flightplan/route_entry.h"
#include "flightplan/route_walk.h"
#include "flightplan/sim_plan.h"
#include "navdb/airport_detail.h"
#include "simlink/aircraft_state.h"
#include "support/nav_points.h"
#include "support/transcript.h"

namespace avq1 {
namespace {

using test::SetPlan;
using test::Show;
using test::Without;
using test::Words;

double Number(const Words& words, std::size_t i) {
    return i < words.size() ? std::atof(words[i].c_str()) : 0;
}
std::int32_t Index(const Words& words, std::size_t i) {
    return static_cast<std::int32_t>(Number(words, i));
}

// ---- edits, on each kind of plan ----

FoundPoint LaGuardia() {
    FoundPoint airport;
    airport.ident = "KLGA";
    airport.kind = PointKind::Airport;
    return airport;
}

// Splices "SID:NEION2(BETTE,NEION)", "APPR(FAF,MISS/MAF)" with a leg's role, or "DISCO APPR(AAA)"
// for an approach behind a gap.
bool Splice(FlightPlan& plan, const Words& words) {
    airportSlots[kDepartureSlot].ident = "KJFK";
    airportSlots[kArrivalSlot].ident = "KBOS";
    const bool withGap = words.at(1) == "DISCO";
    test::RouteWord word = test::ReadRouteWord(words.back());
    std::vector<ProcedureWaypoint>& list = word.procedure == "SID"    ? procedureLists.sid
                                           : word.procedure == "STAR" ? procedureLists.star
                                                                      : procedureLists.approach;
    while (!word.fixes.empty()) {
        ProcedureWaypoint waypoint;
        const std::string_view fix = test::NextFix(word.fixes);
        waypoint.ident = fix.substr(0, fix.find('/'));
        waypoint.roleText = fix.substr(std::min(waypoint.ident.size() + 1, fix.size()));
        waypoint.viaLabel = list.empty() ? std::string_view{} : word.name;
        waypoint.latitude = 42;
        list.push_back(std::move(waypoint));
    }
    return word.procedure == "SID"    ? InsertSid(plan)
           : word.procedure == "STAR" ? InsertStar(plan)
                                      : InsertApproach(plan, withGap);
}

using Plan = FlightPlan&;
using In = const struct EditInput&;

constexpr std::int32_t kMostShown = 40;  // entries

// "FIX*3" in a route stands for FIX1 FIX2 FIX3.
std::string Expanded(std::string route) {
    const std::size_t star = route.find("FIX*");
    if (star == std::string::npos) {
        return route;
    }
    std::size_t digits = 0;
    const int count = std::stoi(route.substr(star + 4), &digits);
    std::string fixes;
    for (int i = 1; i <= count; ++i) {
        fixes += Format("FIX%d ", i);
    }
    return route.replace(star, 4 + digits, fixes);
}

std::string ShownShort(const FlightPlan& plan) {
    return plan.lastIndex > kMostShown ? Format("%d entries", plan.lastIndex + 1)
                                       : Show(plan, true);
}

struct EditInput {
    std::int32_t a, b;
    Words words;
    PlanWaypoint fix = test::Fix("NEW");
};

struct Edit {
    const char* name;
    bool (*take)(Plan plan, In in);
};

const Edit kEdits[] = {
    {"insert", [](Plan p, In in) { return InsertWaypoint(p, in.a, in.fix); }},
    {"leg", [](Plan p, In in) { return InsertLeg(p, in.a, in.fix); }},
    {"between", [](Plan p, In in) { return InsertBetween(p, in.a, in.fix); }},
    {"gap", [](Plan p, In in) { return InsertDiscontinuity(p, in.a); }},
    {"close-gap", [](Plan p, In in) { return CloseDiscontinuity(p, in.a); }},
    {"delete", [](Plan p, In in) { return DeleteWaypoint(p, in.a, false); }},
    {"force-delete", [](Plan p, In in) { return DeleteWaypoint(p, in.a, true); }},
    {"close-up", [](Plan p, In in) { return DeleteBetween(p, in.a); }},
    {"delete-row", [](Plan p, In in) { return DeleteLeg(p, in.a); }},
    {"delete-range", [](Plan p, In in) { return DeleteRange(p, in.a, in.b), true; }},
    {"no-placeholders", [](Plan p, In) { return RemovePlaceholders(p), true; }},
    {"direct",
     [](Plan p, In in) {
         return DirectTo(p, in.a, {50, -60});
     }},
    {"direct-point",
     [](Plan p, In in) {
         return DirectToPoint(p, in.fix, in.a == 1, {50, -60}), true;
     }},
    {"hold", [](Plan p, In in) { return HoldAt(p, in.a, NewHold()); }},
    {"lead", [](Plan p, In in) { return LeadTo(p, in.a, in.b); }},
    {"remove", [](Plan p, In in) { return RemoveElement(p, in.a, in.b); }},
    {"placeholder", [](Plan p, In in) { return InsertAirwayPlaceholder(p, in.a, "J1"); }},
    {"remove-procedure", [](Plan p, In in) { return RemoveProcedure(p, in.words.at(1).c_str()); }},
    {"splice", [](Plan p, In in) { return Splice(p, in.words); }},
    {"start", [](Plan p, In) { return &p == &modifiedPlan && (StartRoute(LaGuardia()), true); }},
    {"end", [](Plan p, In) { return &p == &modifiedPlan && SetRouteDestination(LaGuardia()); }},
    {"no-end", [](Plan p, In) { return &p == &modifiedPlan && RemoveRouteDestination(); }},
};

std::string Names(const PlanProcedures& p) {
    return p.sid + "." + p.sidTransition + " " + p.star + "." + p.starTransition + " " +
           p.approach + "." + p.approachTransition;
}

// The plan after it with all marks, or that it was refused; and what the status became.
std::string Edited(const Edit& edit, FlightPlan& plan, const char* notMarked, const Words& words,
                   const std::string& route) {
    ResetModuleState();
    SetPlan(plan, Without(route, notMarked));
    if (&plan == &modifiedPlan && route.find('+') == std::string::npos) {
        planBook.editIndex = NextEntryPlace(plan);
    }
    planBook.status = RouteStatus::Active;
    const PlanProcedures procedures = {"S1", "ST", "09", "T1", "TT", "ILS", "AT", "27"};
    plan.EditProcedures() = procedures;
    const std::string before = Show(plan, true);
    const bool taken = edit.take(plan, {Index(words, 1), Index(words, 2), words});
    EXPECT_TRUE(taken || Show(plan, true) == before) << route;
    return (taken ? ShownShort(plan) : "refused") +
           (planBook.status == RouteStatus::Active ? "" : ", modified") +
           (test::FlagsMatchHolds(plan) ? "" : ", holds elsewhere than their entries say") +
           (plan.procedures == procedures ? "" : ", procedures " + Names(plan.procedures)) +
           (messages.count > 0 ? ", said " + messages.lines[1] : "");
}

// "mixed 7 | route": twelve edits in an order of that seed, of the active plan and of its copy;
// then everything is carried on from one plan to the other as a unit's EXEC and ERASE do.
std::string Mixed(const Words& words, const std::string& route) {
    static const char* const kProcedures[] = {"SID:N2(XX,AAA)", "STAR:T1(YY,BBB)", "APPR(IAF,FAF)",
                                              "DISCO APPR(FAF)", "STAR(ZZ)"};
    std::mt19937 random(static_cast<unsigned>(Index(words, 1)));
    SetPlan(activePlan, Without(route, "+"));
    CopyActiveToModified();
    planBook.status = RouteStatus::Active;
    std::string text;
    for (int step = 0; step < 12; ++step) {
        FlightPlan& plan = random() % 3 == 0 ? activePlan : modifiedPlan;
        const Edit& edit = kEdits[random() % std::size(kEdits)];
        const auto places = static_cast<unsigned>(plan.lastIndex + 3);
        const auto a = static_cast<std::int32_t>(random() % places) - 1;
        const auto b = static_cast<std::int32_t>(random() % places);
        const std::string name = edit.name;
        const std::string procedure = name == "remove-procedure"
                                          ? (random() % 2 == 0 ? "SID" : "STAR")
                                          : kProcedures[random() % std::size(kProcedures)];
        const bool taken = edit.take(plan, {a, b, test::WordsOf(name + ' ' + procedure)});
        if (random() % 6 == 0) {
            CopyActiveToModified();
        }
        text += Format("%s %d %d of the %s%s%s: ", edit.name, a, b,
                       &plan == &activePlan ? "active" : "modified",
                       name == "splice" ? (' ' + procedure).c_str() : "", taken ? "" : ", refused");
        text += ShownShort(activePlan) + " / " + ShownShort(modifiedPlan) +
                Format(" status %d holds %d\n", static_cast<int>(planBook.status), holdList.count);
    }
    return text;
}

std::string Cross(const Words& w) {
    const bool set =
        SetCrossing(previewPlan, Index(w, 1), {Number(w, 2), Number(w, 3), Index(w, 4)});
    const PlanWaypoint& entry = previewPlan.entries[Index(w, 1)];
    return set ? Format("%g %g %d", entry.altitude, entry.speed, entry.altitudeConstraint)
               : "refused";
}

// ---- the walk along a route ----

std::string Legs(const Words& words) {
    std::string legs;
    for (const RouteLeg& leg : RouteLegs(previewPlan, Index(words, 1), Index(words, 2))) {
        legs += Format("%d-%d %.2f of %.2f%s course %.1f; ", leg.from, leg.to, leg.distanceNm,
                       leg.walkedNm, leg.acrossGap ? " across a gap" : "", leg.CourseTrue());
    }
    return legs +
           Format("length %.2f", RouteLengthNm(previewPlan, Index(words, 1), Index(words, 2)));
}

std::string Point(const Words& words) {
    RoutePoint point;
    return FindPointOnRoute(previewPlan, Index(words, 1), Number(words, 2), point)
               ? Format("on the leg from %d: %.5f %.5f", point.leg.from, point.position.latitude,
                        point.position.longitude)
               : "none";
}

std::string Positioned(const Words& words) {
    return Format("ahead %d back %d", PositionedEntryFrom(previewPlan, Index(words, 1)),
                  PositionedEntryBack(previewPlan, Index(words, 1)));
}

std::string RouteView(const Words&) {
    BuildRouteView(previewPlan);
    std::string view;
    for (const RoutePair& pair : planBook.routeView) {
        view += " " + pair.to + ":" + pair.via;
    }
    return view.empty() ? "none" : view;
}

// ---- what a pilot types for a place ----

// Each word is resolved, or "insert:2" inserts the first result there.
std::string Resolve(const Words& words) {
    aircraft.latitude = 42;
    aircraft.longitude = -71;
    aircraft.magneticVariation = -15;
    const std::pair<const char*, LatLon> navaids[] = {
        {"BOS", {10, 10}}, {"BOS", {42, -71}}, {"JFK", {40.6, -73.8}}, {"2Q", {46, -75}}};
    for (const auto& [ident, at] : navaids) {
        test::AddPoint(navDatabase.navaids, ident, at.latitude, at.longitude, PointKind::Vor,
                       "112.70");
    }
    modifiedPlan = previewPlan;
    SearchResults results;
    std::string text;
    for (std::size_t i = 1; i < words.size(); ++i) {
        text += text.empty() ? "" : "; ";
        if (words[i].starts_with("insert:")) {
            const std::int32_t at = std::atoi(words[i].c_str() + 7);
            text += InsertNamedPoint(modifiedPlan, at, results, 1) ? "" : "refused ";
            const PlanWaypoint& entry = modifiedPlan.entries[std::min(at, 1)];
            text += ShownShort(modifiedPlan) + Format(" %s '%s' %.5f %.5f", entry.type.c_str(),
                                                      entry.frequency.c_str(), entry.latitude,
                                                      entry.longitude);
            continue;
        }
        const bool airports = words[i].starts_with("airport:");
        ResolveEntry(modifiedPlan, std::string_view(words[i]).substr(airports ? 8 : 0),
                     airports ? SearchCategory::Airports : SearchCategory::All, results);
        text += Format("%d found, pending %g/%g", results.count, results.pendingBearingMag,
                       results.pendingDistanceNm);
        if (results.count > 0) {
            const FoundPoint& first = results[1];
            text += Format(" %s %.6f %.6f ", first.ident.c_str(), first.latitude + 0.0,
                           first.longitude) +
                    std::string(KindText(first.kind));
        }
    }
    return text;
}

std::string Crossing(const Words& w) {
    LatLon point{-1, -1};
    const bool crosses = CrossingOfCourses({Number(w, 1), Number(w, 2)}, Number(w, 3),
                                           {Number(w, 4), Number(w, 5)}, Number(w, 6), point);
    return Format("%d %.6f %.6f", crosses ? 1 : 0, point.latitude + 0.0, point.longitude + 0.0);
}

// An airway with fixes AAAA, BBB, CCCC (a VOR of the database) and DDDD.
std::string Airway(const Words& words) {
    const test::TempSimFolder folder;
    folder.Write("avq/navdata/fsb_awy2.txt",
                 "J1 10 AAAA 40 -70\nJ1 20 BBB 41 -70\nJ1 30 CCCC 42 -70\nJ1 40 DDDD 43 -70\n");
    folder.Write("avq/navdata/avq_navs.txt", "CCCC CHARLIE 42.0 -70.0 VOR 113.00\n");
    LoadNavDatabase();
    modifiedPlan = previewPlan;
    AirwayLookup lookup;
    LookupAirway(modifiedPlan, Index(words, 2), words.at(1), lookup);
    lookup.exitIndex = Index(words, 3);
    std::string text = "'" + lookup.text + "'";
    text += InsertAirway(modifiedPlan, Index(words, 2), lookup) ? "" : " refused";
    if (modifiedPlan.lastIndex > kMostShown) {
        return text + " " + ShownShort(modifiedPlan);
    }
    for (std::int32_t i = 0; i <= modifiedPlan.lastIndex; ++i) {
        const PlanWaypoint& entry = modifiedPlan.entries[i];
        text += " " + entry.via + ":" + entry.ident + "/" + entry.type;
    }
    return text;
}

// ---- plans as texts ----

std::string SimPlanText(const std::string& text) {
    const SimPlan plan = ReadSimPlan(text);
    const ConvertedPlan converted = ConvertSimPlan(text);
    std::string now = Format("cruise %d left out %zu %d\n", plan.cruisingAltitudeFt,
                             plan.leftOutAt.size(), converted.leftOut) +
                      converted.text;
    for (const SimWaypoint& at : plan.waypoints) {
        now += Format(" %.8f %.8f '%s' '%s' %g ft %g kt\n", at.exact.latitude, at.exact.longitude,
                      at.airway.c_str(), at.procedure.c_str(), at.altitude, at.speed);
    }
    return now;
}

template <bool anyFuelKey>
std::string PlanOfText(const std::string& text) {
    planBook.cruiseAltitudeFt = 9;  // of the plan before
    planBook.fuelTotal = planBook.reserveFuel = 9;
    const std::int32_t dropped = ParsePlanText(text, previewPlan, &planBook, anyFuelKey);
    std::string now = Format("dropped %d cruise %d fuel %g reserve %g: ", dropped,
                             planBook.cruiseAltitudeFt, planBook.fuelTotal, planBook.reserveFuel) +
                      ShownShort(previewPlan) + '\n';
    if (previewPlan.lastIndex >= 0) {
        const PlanWaypoint& first = previewPlan.entries[0];
        now += Format(" %g %g '%s'\n", first.latitude, first.longitude, first.type.c_str());
    }
    return now;
}

struct Reader {
    const char* name;
    std::string (*read)(const std::string& text);
};

const Reader kReaders[] = {
    {"sim-plan ", SimPlanText},
    {"plan ", PlanOfText<false>},
    {"plan-with-any-fuel ", PlanOfText<true>},
};

struct Question {
    const char* name;
    std::string (*answer)(const Words& words);  // of the preview plan
};

const Question kQuestions[] = {
    {"cross", Cross},    {"legs", Legs},       {"point", Point},       {"positioned", Positioned},
    {"view", RouteView}, {"resolve", Resolve}, {"crossing", Crossing}, {"airway", Airway},
};

std::string Answer(const std::string& command) {
    ResetModuleState();
    for (const Reader& reader : kReaders) {
        if (command.starts_with(reader.name)) {
            return reader.read(test::Unescaped(command.substr(std::strlen(reader.name))));
        }
    }
    const std::size_t bar = std::min(command.find('|'), command.size());
    const std::string route = Expanded(command.substr(std::min(bar + 1, command.size())));
    const Words words = test::WordsOf(command.substr(0, bar));
    if (words.at(0) == "mixed") {
        return Mixed(words, route);
    }
    for (const Question& question : kQuestions) {
        if (question.name == words.at(0)) {
            SetPlan(previewPlan, route);
            return question.answer(words) + '\n';
        }
    }
    std::string text;
    for (const Edit& edit : kEdits) {
        if (edit.name == words.at(0)) {
            text += "active " + Edited(edit, activePlan, "+", words, route) + '\n';
            text += "modified " + Edited(edit, modifiedPlan, "^", words, route) + '\n';
            text += "preview " + Edited(edit, previewPlan, "^+>@", words, route) + '\n';
        }
    }
    EXPECT_NE(text, "") << command;
    return text;
}

TEST(Transcript, ReadsAsItDidWhenLastLookedAt) {
    test::ExpectTranscript("flightplan/transcript.txt", Answer);
}

}  // namespace
}  // namespace avq1
