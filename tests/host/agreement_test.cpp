// One flight, told by every page and display: what they tell is the same.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "base/module_state.h"
#include "base/redraw.h"
#include "cdu/unit_text.h"
#include "cdu_gns/fake_unit.h"
#include "displays/ehsi/ehsi.h"
#include "displays/nd/nd.h"
#include "displays/nd/nd_panel.h"
#include "flightplan/plan_edit.h"
#include "guidance/activation.h"
#include "guidance/holds.h"
#include "guidance/lnav.h"
#include "settings/settings.h"
#include "simlink/exported_variables.h"
#include "support/test_flight.h"
#include "support/vertical_flight.h"

namespace avq1::test {
namespace {

using ::testing::Contains;
using ::testing::StartsWith;

using Rows = std::vector<std::string>;

std::string Trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? ""
                                      : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// The row of a screen that begins with a label, and its last text.
std::string RowOf(const Rows& rows, const std::string& label) {
    const auto found = std::ranges::find_if(
        rows, [&](const std::string& row) { return row.starts_with(label + "|"); });
    return found == rows.end() ? "no " + label : *found;
}
std::string ValueOf(const Rows& rows, const std::string& label) {
    const std::string row = RowOf(rows, label);
    return Trimmed(row.substr(row.rfind('|') + 1));
}

bool Says(const Rows& rows, const char* text) {
    return std::ranges::any_of(
        rows, [&](const std::string& row) { return row.find(text) != std::string::npos; });
}

// A part of a text, counted from 0, between any of these characters.
std::string Part(const std::string& text, std::size_t number, const char* between) {
    std::size_t from = 0;
    for (; number > 0 && from != std::string::npos; --number) {
        from = text.find_first_not_of(between, text.find_first_of(between, from));
    }
    return from == std::string::npos ? ""
                                     : text.substr(from, text.find_first_of(between, from) - from);
}

// "07:31" and "00:07.5" as minutes; NaN of dashes.
double MinutesOf(const std::string& time) {
    const std::size_t colon = time.find(':');
    return colon == std::string::npos || time.find('-') != std::string::npos
               ? std::nan("")
               : 60 * std::atof(time.c_str()) + std::atof(time.c_str() + colon + 1);
}

double NumberOf(const std::string& text) {
    return text.find("--") != std::string::npos ? std::nan("") : std::atof(text.c_str());
}

std::string Written(const char* format, double value) {
    UnitText text;
    text.Put(format, value);
    return text.c_str();
}

// Where two of them are rounded to different places, half a place of the coarser apart.
void ExpectNear(double a, double b, double within, const char* what) {
    EXPECT_EQ(std::isnan(a), std::isnan(b)) << what;
    if (!std::isnan(a)) {
        EXPECT_NEAR(a, b, within + 0.01) << what;
    }
}

// A display's texts by their place from the top.
class FakeDisplay {
  public:
    FakeDisplay(void (*draw)(const DrawTarget&), int width, int height)
        : draw_(draw), picture_(width, height) {}

    void Look() {
        Picture::Forget();
        draw_(picture_.Target());
        texts.clear();
        for (const DrawnText& text : Picture::Texts()) {
            texts.push_back(Trimmed(text.text));
        }
    }
    std::string After(const std::string& label) const {  // the text drawn behind a label
        const auto found = std::find(texts.begin(), texts.end(), label);
        return found == texts.end() || found + 1 == texts.end() ? "no " + label : *(found + 1);
    }

    Rows texts;

  private:
    void (*draw_)(const DrawTarget&);
    Picture picture_;
};

struct Situation {
    const char* name;
    std::int32_t active;  // entry flown to; kNoWaypoint: the plan is taken away
    double degrees;       // along the route
    double altitudeFt;
    double seconds;  // flown before anybody looks
    void (*also)(VerticalPilot& pilot) = nullptr;
    const char* keys = "";  // pressed on the unit
};

void PrintTo(const Situation& situation, std::ostream* out) {
    *out << situation.name;
}

const Situation kSituations[] = {
    {"on the ground", 1, 0.01, 20, 1, [](VerticalPilot& p) { p.airspeedKt = p.targetKt = 0; }},
    {"taxiing", 1, 0.02, 20, 1, [](VerticalPilot& p) { p.airspeedKt = p.targetKt = 40; }},
    {"climbing under a restriction", 1, 0.3, 6000, 60},
    {"cruising in the wind", 3, 2.2, 33000, 60, [](VerticalPilot& p) { p.tailwindKt = 77; }},
    {"descending", 4, 3.9, 33000, 600, [](VerticalPilot& p) { p.tailwindKt = -31; }},
    {"in a hold", 2, 1.95, 20000, 300, nullptr, "FPL L2 HOLD L7 =97 ENTER"},
    {"direct to", 3, 2.4, 33000, 45, nullptr, "DIRECT L3 L3 ENTER"},
    {"beside the route, counted in kilograms", 2, 1.4, 24000, 15,
     [](VerticalPilot& p) {
         p.latitude = 0.21;
         settings.WeightUnit = "KGS";
     }},
    {"past the last waypoint", 6, 7.2, 4000, 30},
    {"while a modification waits", 2, 1.4, 24000, 15,
     [](VerticalPilot&) {
         CopyActiveToModified();
         EXPECT_TRUE(DeleteWaypoint(modifiedPlan, 3, true));
         NoteEdit(modifiedPlan);
     }},
    {"without a plan", kNoWaypoint, 1, 9000, 5},
};

class Agreement : public ::testing::TestWithParam<Situation> {
  protected:
    Agreement() {
        ResetModuleState();
        FakeSimulator::Install().variables[773] = 1;
        FakeSimulator::Get().variables[6] = 13;
        FakeSimulator::Get().variables[7] = 29;
        ehsi.navSource = NavSource::FlightManagement;
        nd.ndMode = 2;
    }
    ~Agreement() override { ImportTable.panel.services = nullptr; }

    void Begin(const Situation& s) {
        performance = JetPerformance();
        SetActivePlan({{"KAAA", 0, 0, "APT"},
                       {"ABCDE", 0, 1},
                       {"FLY", 0, 2},
                       {"LONGER", 0.1, 3},
                       {"STARA", 0, 4.8, "INT", "STAR"},
                       {"STARB", 0, 6, "INT", "STAR"},
                       {"KBBB", 0, 7, "APT"}});
        SetCrossing(activePlan, 1, {.altitudeFt = 9000});
        SetCrossing(activePlan, 5, {.altitudeFt = 8000, .speedKt = 240});
        pilot.Report();
        RefreshAircraftState();
        StartActivePlan();
        SetCruiseAltitude(33000);
        pilot.Fly(1);
        EngageLnav();
        ToggleVnav();
        SetActiveWaypoint(s.active == kNoWaypoint ? 1 : s.active);
        pilot.longitude = s.degrees;
        pilot.altitudeFt = pilot.targetFt = s.altitudeFt;
        pilot.airspeedKt = 280;
        if (s.also != nullptr) {
            s.also(pilot);
        }
        unit.Press(s.keys);
        if (s.active == kNoWaypoint) {
            activePlan.CutTo(-1);
            SetActiveWaypoint(kNoWaypoint);
        }
        for (double flown = 0; flown < s.seconds; flown += 1) {
            pilot.Fly(1);
        }
        pilot.Fly(0);  // all of one moment
    }

    // Every page and display at this moment.
    void Look() {
        plan = unit.After("NAV FPL");
        const Rows more = unit.After("NEXT");
        plan.insert(plan.end(), more.begin(), more.end());
        leg = unit.After("NAV");
        ahead = unit.After("NAV");
        motion = unit.After("NAV");
        target = unit.After("VNAV");
        profile = unit.After("VNAV");
        status = unit.After("NAV FUEL");
        trip = unit.After("FUEL");
        fuel = unit.After("FUEL");
        to = compact.After("TO");
        ehsiShown.Look();
        ndShown.Look();
    }

    // The last column of the plan page, in one of its modes.
    std::string Column(GnsColumn mode, const std::string& ident) {
        gns.columnMode = mode;
        unit.Press("NAV FPL");
        Rows rows = unit.Rows();
        const Rows more = unit.After("NEXT");
        gns.columnMode = kColumnEte;
        rows.insert(rows.end(), more.begin(), more.end());
        for (const std::string& row : rows) {
            if (row.starts_with(ident + "|") || row.starts_with("TO |" + ident + "|")) {
                return Trimmed(Part(row, row.starts_with("TO ") ? 2 : 1, "|"));
            }
        }
        return "no " + ident;
    }

    void ExpectSameLeg();
    void ExpectSameMotion();
    void ExpectSameArrival();
    void ExpectSameTarget();

    VerticalPilot pilot;
    FakeGns unit;
    FakeUnit compact;
    FakeDisplay ehsiShown{DrawEhsi, 266, 230};
    FakeDisplay ndShown{DrawNd, 244, 302};
    Rows plan, leg, ahead, motion, target, profile, status, trip, fuel, to;
};

// The waypoint flown to: its name, distance, time, course, bearing, and how far off the leg.
void Agreement::ExpectSameLeg() {
    const std::string active = ActiveWaypoint().ident;
    EXPECT_THAT(leg, Contains(StartsWith("TO|" + active + "|")));
    EXPECT_THAT(plan, Contains(StartsWith("TO |" + active)));
    EXPECT_EQ(Part(to.front(), 1, " "), active);
    EXPECT_STREQ(exported.activeIdent.data(), active.c_str());
    const std::string distance = ValueOf(leg, "DIS");
    EXPECT_THAT(to, Contains(StartsWith("DIST: " + distance)));
    EXPECT_EQ(ehsiShown.After(active), distance + " NM");
    EXPECT_THAT(ndShown.texts, Contains(distance + " NM"));
    EXPECT_EQ(Written("%.1f", exported.distanceToGoNm), distance);
    EXPECT_EQ(Column(kColumnDis, active), Written("%.0f", exported.distanceToGoNm));
    EXPECT_EQ(ValueOf(leg, "ETE").size(), std::string("00:07.5").size());
    const double ete = MinutesOf(ValueOf(leg, "ETE"));
    ExpectNear(ete, MinutesOf(Column(kColumnEte, active)), 0.55, "ETE on the plan");
    if (aircraft.groundSpeedKt > 50) {  // below the unit shows none any more
        ExpectNear(ete, MinutesOf(Part(Part(to[3], 1, " "), 0, " ")), 0.55, "ETE, compact unit");
    }
    ExpectNear(MinutesOf(ndShown.After(active)), MinutesOf(Part(to[3], 1, " ")), 0, "ETE, display");
    const std::string bearing = ValueOf(motion, "BRG");
    EXPECT_THAT(to, Contains("BRG:  " + bearing));
    EXPECT_EQ(Written("%03.0f", exported.bearingToWaypointMag), bearing);
    const std::string track = Written("%03.0f", exported.desiredTrackMag);
    EXPECT_THAT(ehsiShown.texts, Contains("DTK " + track));
    EXPECT_THAT(ndShown.texts, Contains("DTK " + track));
    const bool holds = HoldBeingFlown();
    EXPECT_EQ(holds, GetParam().name == std::string("in a hold"));
    EXPECT_EQ(Says(leg, "HOLDING"), holds);
    EXPECT_EQ(Says(to, "HOLD("), holds);
    EXPECT_EQ(ValueOf(leg, "DTK"), holds ? "no DTK" : track);
    const std::string offTrack = ValueOf(ahead, "XTK   TRMNL");
    EXPECT_EQ(offTrack,
              Written(exported.crossTrackSide == 2 ? "L %.2f" : "R %.2f", exported.crossTrackNm));
    EXPECT_THAT(ehsiShown.texts,
                Contains("XTK" + Written("%4.1f", exported.crossTrackNm) + offTrack.front()));
}

// How the aircraft moves.
void Agreement::ExpectSameMotion() {
    const std::string speed = ValueOf(leg, "GS");
    EXPECT_EQ(ValueOf(trip, "GS"), speed);
    EXPECT_EQ(ValueOf(fuel, "GS"), speed);
    EXPECT_EQ(ehsiShown.After("GS"), speed);
    EXPECT_EQ(ndShown.After("GS"), speed);
    const std::string airspeed = ValueOf(motion, "TAS");
    EXPECT_EQ(ehsiShown.After("TAS"), airspeed);
    EXPECT_EQ(ndShown.After("TAS"), airspeed);
    EXPECT_EQ(ndShown.After("HDG"), "MAG");
    EXPECT_THAT(ndShown.texts, Contains(ValueOf(motion, "HDG")));
    EXPECT_THAT(ehsiShown.texts, Contains(ValueOf(motion, "HDG")));
    if (aircraft.groundSpeedKt > 25) {  // at or below the display has no track
        EXPECT_THAT(ndShown.texts, Contains("TRK " + ValueOf(motion, "TK")));
    }
    const std::string wind = ValueOf(leg, "WIND");
    if (aircraft.windSpeedKt >= 1) {
        EXPECT_THAT(ndShown.texts, Contains(wind));
        EXPECT_THAT(ehsiShown.texts, Contains(wind));
    }
}

// The end of the route: how far, when, and with how much fuel.
void Agreement::ExpectSameArrival() {
    const std::string last = activePlan.entries[activePlan.lastIndex].ident;
    const std::string route = ValueOf(trip, "FPL");
    EXPECT_EQ(Column(kColumnDis, last), Trimmed(Part(route, 0, "/")));
    EXPECT_EQ(Column(kColumnEte, last), Part(route, 1, "/"));
    EXPECT_EQ(Column(kColumnEta, last), ValueOf(trip, "ETA @ " + last));
    EXPECT_EQ(ValueOf(ahead, "ETA-" + last), ValueOf(trip, "ETA @ " + last));
    const double ete = MinutesOf(Part(route, 1, "/"));
    if (aircraft.groundSpeedKt > 50) {
        EXPECT_EQ(ete, MinutesOf(Part(to[3], 1, "()")));
        const double clock = MinutesOf(ValueOf(trip, "ETA @ " + last));
        ExpectNear(clock, std::fmod(13 * 60 + 29 + ete, 1440), 1, "clock");
    }
    const std::string direct = ValueOf(trip, "DIS/DTK");
    ExpectNear(NumberOf(Part(to[4], 1, ":")), NumberOf(direct), 0.5, "straight to the end");
    EXPECT_EQ(Part(to[4], 1, "/"), Part(direct, 1, "/"));
    ExpectNear(
        NumberOf(Part(RowOf(status, "REMAINING"), 1, "|")) - NumberOf(ValueOf(fuel, "FPL FUEL")),
        NumberOf(ValueOf(ahead, "FUEL-" + last)), 1, "fuel at the end");
    if (planBook.activeIndex < activePlan.lastIndex) {
        const std::string next = Part(RowOf(leg, "NX"), 1, "|");
        EXPECT_EQ(Column(kColumnEte, next), ValueOf(leg, "NX"));
    }
}

// The vertical target, and what is restricted.
void Agreement::ExpectSameTarget() {
    const std::string ident = Part(target[2], 1, " |");
    const std::string altitude = ValueOf(target, "TO " + ident);
    if (ident.starts_with("#")) {
        EXPECT_EQ(ValueOf(profile, ident), altitude);
        return;
    }
    EXPECT_EQ(Column(kColumnAlt, ident), altitude);
    EXPECT_EQ(Column(kColumnEte, ident), ValueOf(target, "ETE"));
    EXPECT_EQ(Column(kColumnEta, ident), ValueOf(target, "EST CROSSING"));
    ExpectNear(NumberOf(Column(kColumnDis, ident)), NumberOf(ValueOf(target, "RANGE (NM)")), 0.5,
               "range");
    if (ident == ActiveWaypoint().ident) {
        EXPECT_EQ(ValueOf(leg, "DIS"), ValueOf(target, "RANGE (NM)"));
        if (ActiveWaypoint().altitudeConstraint != 0) {
            EXPECT_EQ(ValueOf(leg, "TO"), altitude + "A");
            EXPECT_EQ(ValueOf(profile, ident), altitude);
        }
    }
}

TEST_P(Agreement, OfAllPages) {
    Begin(GetParam());
    Look();
    ExpectSameMotion();
    if (GetParam().active != kNoWaypoint) {
        ExpectSameLeg();
        ExpectSameArrival();
        ExpectSameTarget();
    } else {
        EXPECT_THAT(leg, Contains("DIS|-------"));
        EXPECT_THAT(to, Contains("DIST: ---- NM"));
        EXPECT_THAT(ehsiShown.texts, Contains("DTK ---"));
        EXPECT_THAT(ndShown.texts, Contains("DTK ---"));
        EXPECT_STREQ(exported.activeIdent.data(), "");
    }
}

INSTANTIATE_TEST_SUITE_P(Of, Agreement, ::testing::ValuesIn(kSituations));

}  // namespace
}  // namespace avq1::test
