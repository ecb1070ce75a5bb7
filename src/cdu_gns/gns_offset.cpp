// OFFSET WPT: a point at a magnetic radial and distance from a reference.
#include <algorithm>

#include "base/module_state.h"
#include "cdu/formats.h"
#include "cdu_gns/gns_entry.h"
#include "cdu_gns/gns_pages.h"
#include "cdu_gns/gns_plan.h"
#include "cdu_gns/gns_values.h"
#include "cdu_gns/gns_waypoint.h"
#include "geometry/geometry.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr int kValueX = 300;
constexpr int kPositionX = 210;
constexpr double kFarthestNm = 9999;
constexpr double kFullCircle = 360;
constexpr double kUnsetValue = -1;

struct Offset {
    double radialMag = kUnsetValue;
    double distanceNm = kUnsetValue;
};

Offset offset;
const StateReset offsetReset([] { offset = Offset{}; });

bool IsComplete() {
    return offset.radialMag >= 0 && offset.distanceNm >= 0 && gnsWaypoint.found.count > 0;
}

bool IsCompleteField(const FieldRow&) {
    return IsComplete();
}

const FoundPoint& Reference() {
    return gnsWaypoint.found[gns.Counter(GnsCounter::Offset).n];
}

LatLon OffsetPosition() {
    LatLon place;
    PointAtDistance(Reference().latitude, Reference().longitude,
                    offset.radialMag + aircraft.magneticVariation, offset.distanceNm,
                    place.latitude, place.longitude);
    return place;
}

// From the aircraft to the offset.
void ShowBearingDistance(const FieldRow&, UnitText& text) {
    const LatLon place = OffsetPosition();
    double distanceNm = 0;
    double courseTrue = 0;
    DistanceAndCourse(aircraft.latitude, aircraft.longitude, place.latitude, place.longitude,
                      distanceNm, courseTrue);
    text.Put("(BRG %03.0f/DIS %-5.0f)",
             WholeCourse(TrueToMagnetic(courseTrue, aircraft.magneticVariation)), distanceNm);
}

EntryResult EnterRadial(const LineRow&);

EntryResult EnterDistance(const LineRow&) {
    double distanceNm = 0;
    if (!ReadTypedWhole(distanceNm) || distanceNm > kFarthestNm) {
        return EntryResult::InvalidEntry;
    }
    offset.distanceNm = distanceNm;
    return EntryResult::Accepted;
}

EntryResult InsertOffset(const FieldRow&) {
    if (!IsComplete()) {
        return EntryResult::None;
    }
    const LatLon place = OffsetPosition();
    PlanWaypoint entry;
    entry.ident = gnsWaypoint.name;
    entry.type = "WPT";
    entry.latitude = place.latitude;
    entry.longitude = place.longitude;
    InsertGnsWaypoint(entry);
    return EntryResult::None;
}

void ShowRadial(const LineRow&, UnitText& text) {
    text = Dashes(5);
    if (offset.radialMag >= 0) {
        text.Put("%03.0f", offset.radialMag);
    }
}

void ShowDistance(const LineRow&, UnitText& text) {
    text = offset.distanceNm >= 0 ? NumberText(offset.distanceNm, 1) : Dashes(6);
}

constexpr FieldRow kFields[] = {
    {.line = kEnterLine, .press = InsertOffset},
    {.label = "WAYPOINT",
     .show = [](const FieldRow&, UnitText& t) { t.Put("%.6s*", gnsWaypoint.name.c_str()); },
     .style = kGnsActive,
     .valueAt = {kValueX, 80},
     .labelAt = {kGnsLabelX, 80}},
    {.show = ShowBearingDistance,
     .visible = IsCompleteField,
     .style = kGnsData,
     .valueAt = {kGnsLabelX, 120}},
    {.label = "RAD", .labelAt = {kGnsLabelX, 160}},
    {.label = "DIS", .labelAt = {kGnsLabelX, 200}},
    {.label = "POS", .labelAt = {kGnsLabelX, 240}},
    {.show = [](const FieldRow&, UnitText& t) { t = GnsLatitudeText(OffsetPosition().latitude); },
     .visible = IsCompleteField,
     .style = kGnsData,
     .valueAt = {kPositionX, 240}},
    {.show = [](const FieldRow&, UnitText& t) { t = GnsLongitudeText(OffsetPosition().longitude); },
     .visible = IsCompleteField,
     .style = kGnsData,
     .valueAt = {kPositionX, 280}},
    {.label = "OK? ENTER",
     .visible = IsCompleteField,
     .labelStyle = kGnsPrompt,
     .labelAt = {kGnsLabelX, 320}},
    {.label = "FLYOVER:", .labelAt = {kGnsLabelX, 360}},
};

constexpr LineRow kLines[] = {
    {.line = 8,
     .show = ShowRadial,
     .entryLength = 3,
     .select = [](const LineRow&) { OfferWhole(offset.radialMag, 3); },
     .enter = EnterRadial,
     .style = kGnsData,
     .at = {kValueX, 160}},
    {.line = 8,
     .state = 2,
     .show = ShowDistance,
     .entryLength = 4,
     .select = [](const LineRow&) { OfferWhole(offset.distanceNm, 4); },
     .enter = EnterDistance,
     .style = kGnsData,
     .at = {kValueX, 200}},
    GnsFlyoverRow(360),
};

EntryResult EnterRadial(const LineRow&) {
    double radial = 0;
    if (!ReadTypedWhole(radial) || radial > kFullCircle) {
        return EntryResult::InvalidEntry;
    }
    offset.radialMag = radial;
    SelectRow(kLines[1], gns);
    return EntryResult::None;
}

void HandleOffset(const UnitInput& input) {
    SetGnsPageCount(GnsCounter::Offset, std::max(gnsWaypoint.found.count, 1));
    if ((input.prevPressed || input.nextPressed) && gnsWaypoint.found.count > 0) {
        gnsWaypoint.name = Reference().ident;
    }
}

void ComposeOffset(Screen& screen) {
    const SubPage& shown =
        SetGnsPageCount(GnsCounter::Offset, std::max(gnsWaypoint.found.count, 1));
    screen.Put(kGnsLabel, 60, 0, "OFFSET WPT    %d/%d", shown.n, shown.m);
}

}  // namespace

void OpenGnsOffset(std::string_view name) {
    gnsWaypoint.name = name;
    offset = Offset{};
    gns.returnPage = gns.page;
    gns.Counter(GnsCounter::Offset).n = 1;
    OpenGnsPage(kGnsOffset);
}

constinit const PageRow kGnsOffsetPage{.page = kGnsOffset,
                                       .fields = kFields,
                                       .lines = kLines,
                                       .handle = HandleOffset,
                                       .compose = ComposeOffset};

}  // namespace avq1
