#include "panelhost/session/situations.h"

#include <cmath>
#include <cstdint>

#include "panelhost/base/text.h"

namespace panelhost {
namespace {

constexpr double kOnGround = -2000;

// clang-format off
// Where the scenes of other aircraft are seen from.
constexpr Situation EnRoute(const char* name, const char* title, const char* traffic) {
    return {name, title, 42.6, -72.35, 32000, 285, 280,
            11530, 283, 11510, 272, true, SituationHold::Heading, traffic};
}

constexpr Situation kSituations[] = {
    {"runway", "On the runway", 40.632578, -73.781883, kOnGround, 300.86, 0,
     11135, 301, 11590, 407, false, SituationHold::None},
    EnRoute("en-route", "En route, high", "airways"),
    {"approach", "On an approach", 40.5642, -73.6311, 2200, 300.86, 160,
     11135, 301, 11590, 407, true, SituationHold::Approach, "approach"},
    {"navaids", "Among many navaids", 40.75, -73.40, 9000, 260, 250,
     11590, 245, 11310, 407, true, SituationHold::Heading},
    EnRoute("crossing", "Traffic crosses", "crossing"),
    EnRoute("overtaking", "Traffic overtakes", "overtaking"),
    EnRoute("climbing", "Traffic climbs through", "climbing"),
    EnRoute("head-on", "Traffic head-on", "head-on"),
};
// clang-format on

enum Event : std::int32_t {
    kMaster = 65580,
    kNav1Frequency = 65708,
    kNav2Frequency = 65709,
    kAdfFrequency = 65714,
    kNav1Course = 65716,
    kParkingBrake = 65752,
    kYawDamper = 65793,
    kFlightDirector = 65796,
    kHeadingOn = 65803,
    kAltitudeOn = 65804,
    kApproachOn = 65802,
    kApproachOff = 65810,
    kHeadingOff = 65811,
    kAltitudeOff = 65812,
    kNavOff = 65815,
    kAirspeedOn = 65858,
    kAirspeedOff = 65859,
    kAirspeedSet = 66037,
    kHeadingSet = 66042,
    kAltitudeSet = 66124,
};

std::uint32_t Bcd(int number) {
    std::uint32_t bcd = 0;
    for (int shift = 0; number > 0 && shift < 32; shift += 4, number /= 10) {
        bcd |= static_cast<std::uint32_t>(number % 10) << static_cast<unsigned>(shift);
    }
    return bcd;
}

std::uint32_t WholeMag(double directionTrue, double variation) {
    const double whole = std::fmod(std::round(directionTrue - variation) + 720, 360.0);
    return whole < 1 ? 360U : static_cast<std::uint32_t>(whole);
}

// These events only toggle.
void Switch(Session& session, std::int32_t event, bool now, bool wanted) {
    if (now != wanted) {
        session.SendKeyEvent(event, 0);
    }
}

void PlaceAircraft(Session& session, const Situation& row) {
    session.SetPosition(row.latitude, row.longitude);
    session.SetAltitude(row.altitudeFt);
    session.SetHeading(row.headingTrue);
    session.SetIndicatedAirspeed(row.indicatedAirspeedKt);
}

void TuneRadios(Session& session, const Situation& row, double variation) {
    constexpr int kFirstDigit = 10000;  // the 1 of 1xx MHz is not sent
    session.SendKeyEvent(kNav1Frequency, Bcd(row.nav1Frequency % kFirstDigit));
    session.SendKeyEvent(kNav2Frequency, Bcd(row.nav2Frequency % kFirstDigit));
    session.SendKeyEvent(kAdfFrequency, Bcd(row.adfKhz));
    session.SendKeyEvent(kNav1Course, WholeMag(row.nav1CourseTrue, variation));
}

void SetAutopilot(Session& session, const Situation& row, double variation) {
    const Autopilot now = session.Status().autopilot;
    Switch(session, kMaster, now.master, row.autopilot);
    Switch(session, kYawDamper, now.yawDamper, row.autopilot);
    Switch(session, kParkingBrake, session.NumberedVariable(323).value_or(0) > 0,
           row.altitudeFt == kOnGround);
    Switch(session, kFlightDirector, now.flightDirector, true);
    session.SendKeyEvent(kHeadingSet, WholeMag(row.headingTrue, variation));
    session.SendKeyEvent(kNavOff, 0);
    session.SendKeyEvent(kApproachOff, 0);
    session.SendKeyEvent(row.hold == SituationHold::Heading ? kHeadingOn : kHeadingOff, 0);
    if (row.hold == SituationHold::Approach) {
        session.SendKeyEvent(kApproachOn, 0);
    }
    session.SendKeyEvent(row.autopilot ? kAltitudeOn : kAltitudeOff, 0);
    session.SendKeyEvent(row.autopilot ? kAirspeedOn : kAirspeedOff, 0);
    if (row.autopilot) {
        session.SendKeyEvent(kAltitudeSet, static_cast<std::uint32_t>(row.altitudeFt));
        session.SendKeyEvent(kAirspeedSet, static_cast<std::uint32_t>(row.indicatedAirspeedKt));
    }
}

}  // namespace

std::span<const Situation> Situations() {
    return kSituations;
}

const Situation* FindSituation(std::string_view name) {
    for (const Situation& row : kSituations) {
        if (EqualNoCase(row.name, name)) {
            return &row;
        }
    }
    return nullptr;
}

void ApplySituation(Session& session, const Situation& situation) {
    PlaceAircraft(session, situation);
    const double variation = session.Status().magneticVariation;
    TuneRadios(session, situation, variation);
    SetAutopilot(session, situation, variation);
    if (!session.SetTraffic(situation.traffic)) {
        session.SetTraffic("");
    }
}

}  // namespace panelhost
