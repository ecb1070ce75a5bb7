// REF NAV DATA: what the database holds of a waypoint, navaid or airport that is typed.
#include <algorithm>
#include <cmath>
#include <string>

#include "base/module_state.h"
#include "base/text.h"
#include "cdu/formats.h"
#include "cdu_smiths/smiths_pages.h"
#include "geometry/geometry.h"
#include "navdb/airport_detail.h"
#include "navdb/nav_database.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr std::int32_t kLookedAtSlot = 3;
constexpr double kMetresPerFoot = 0.3048;
constexpr double kSameVariationNm = 100;  // farther away the variation here is not the one there
constexpr std::int32_t kNavOptions = 2;   // sub-page of NAV STATUS

// By a field's item: which line took the identifier.
struct IdentRow {
    SearchCategory category;
};
constexpr IdentRow kIdents[] = {
    {SearchCategory::All}, {SearchCategory::Navaids}, {SearchCategory::Airports}};

struct LookedUp {
    std::int32_t line = 0;  // index into kIdents
    SearchResults found;
    SubPage shown;            // of the points that bear the identifier
    std::int32_t runway = 0;  // of the airport's, from 0
};

LookedUp looked;
const StateReset resetLooked([] { looked = {}; });

const FoundPoint* Point() {
    return looked.found.Holds(looked.shown.n) ? &looked.found[looked.shown.n] : nullptr;
}

bool IsAirport() {
    return Point() != nullptr && Point()->kind == PointKind::Airport;
}

bool HasPoint(const FieldRow&) {
    return Point() != nullptr;
}

bool HasFrequency(const FieldRow&) {
    return Point() != nullptr && !IsAirport() && !Point()->frequency.empty();
}

const Runway* ShownRunway() {
    const AirportDetail& detail = airportSlots[kLookedAtSlot];
    const bool fits = IsAirport() && detail.ident == Point()->ident &&
                      looked.runway < static_cast<std::int32_t>(detail.runways.size());
    return fits ? &detail.runways[static_cast<std::size_t>(looked.runway)] : nullptr;
}

bool HasElevation(const FieldRow&) {
    return IsAirport();
}

bool HasRunway(const FieldRow&) {
    return ShownRunway() != nullptr;
}

void ReadRunways() {
    looked.runway = 0;
    if (IsAirport()) {
        LoadAirportDetail(Point()->ident, kLookedAtSlot);
    }
}

void ShowIdent(const FieldRow& field, UnitText& text) {
    text.Set("- - - - -");
    if (Point() != nullptr && looked.line == field.item) {
        text.Put("%.6s", Point()->ident.c_str());
    }
}

// The nearest of several comes first; PREV PAGE and NEXT PAGE show the others.
EntryResult EnterIdent(const FieldRow& field, std::string_view entry) {
    SearchResults found;
    SearchIdent(entry, kIdents[field.item].category, found);
    if (found.count == 0) {
        return EntryResult::NotInDatabase;
    }
    looked = {.line = field.item, .found = found, .shown = {NearestResult(found), found.count}};
    ReadRunways();
    return EntryResult::Accepted;
}

EntryResult EraseIdent(const FieldRow& field) {
    if (Point() == nullptr || looked.line != field.item) {
        return EntryResult::InvalidDelete;
    }
    looked = {};
    return EntryResult::Accepted;
}

void ShowDegrees(bool latitude, UnitText& text) {
    PositionText latitudeText;
    PositionText longitudeText;
    FormatLatLon(Point()->latitude, Point()->longitude, latitudeText, longitudeText);
    text.Set(latitude ? latitudeText.data() : longitudeText.data());
}

void ShowLatitude(const FieldRow&, UnitText& text) {
    ShowDegrees(true, text);
}

void ShowLongitude(const FieldRow&, UnitText& text) {
    ShowDegrees(false, text);
}

struct Polar {
    double distanceNm = 0;
    double radialMag = 0;  // from the point to the aircraft
};

Polar FromPoint() {
    Polar polar;
    DistanceAndCourse(Point()->latitude, Point()->longitude, aircraft.latitude, aircraft.longitude,
                      polar.distanceNm, polar.radialMag);
    polar.radialMag = TrueToMagnetic(polar.radialMag, aircraft.magneticVariation);
    return polar;
}

void ShowVariation(const FieldRow&, UnitText& text) {
    const double variation = std::round(aircraft.magneticVariation);
    text.Set("- - -");
    if (FromPoint().distanceNm <= kSameVariationNm) {
        text.Put("%c%02.0f", variation < 0 ? 'W' : 'E', std::abs(variation));
    }
}

void ShowRadial(const FieldRow&, UnitText& text) {
    const Polar polar = FromPoint();
    text.Put("%s / %.1f", CourseText(polar.radialMag).c_str(), polar.distanceNm);
}

void ShowFrequency(const FieldRow&, UnitText& text) {
    text.Put("%.7s", Point()->frequency.c_str());
}

void ShowElevation(const FieldRow&, UnitText& text) {
    text.Put("%.6s FT", Point()->elevation.c_str());
}

void ShowRunwayLabel(const FieldRow&, UnitText& text) {
    text.Put("R U N W A Y   %.4s", ShownRunway()->ident.c_str());
}

void ShowRunway(const FieldRow&, UnitText& text) {
    const std::int32_t feet = ShownRunway()->length;
    text.Put("%dFT %-5dM", feet, static_cast<int>(std::lround(feet * kMetresPerFoot)));
}

EntryResult NextRunway(const FieldRow&) {
    const auto count = static_cast<std::int32_t>(airportSlots[kLookedAtSlot].runways.size());
    looked.runway = (looked.runway + 1) % count;
    return EntryResult::None;
}

EntryResult EnterRunway(const FieldRow&, std::string_view entry) {
    const auto& runways = airportSlots[kLookedAtSlot].runways;
    const auto found = std::ranges::find(runways, entry, &Runway::ident);
    if (found == runways.end()) {
        return EntryResult::NotInDatabase;
    }
    looked.runway = static_cast<std::int32_t>(found - runways.begin());
    return EntryResult::Accepted;
}

constexpr FieldRow Ident(std::int32_t line, const char* label, std::int32_t item) {
    return SmithsField(line, {.label = label,
                              .show = ShowIdent,
                              .enter = EnterIdent,
                              .erase = EraseIdent,
                              .item = item});
}

constexpr FieldRow RunwayLabel() {
    FieldRow field = SmithsShownLabel(kR2, ShowRunwayLabel);
    field.visible = HasRunway;
    return field;
}

constexpr FieldRow kFields[] = {
    SmithsTitle("REF  NAV  DATA"),
    Ident(kL1, "W P T    I D E N T", 0),
    Ident(kR1, "N A V A I D    I D E N T", 1),
    Ident(kL2, "A I R P O R T    I D E N T", 2),
    SmithsField(kR2, {.label = "F R E Q", .show = ShowFrequency, .visible = HasFrequency}),
    RunwayLabel(),
    SmithsField(
        kR2, {.show = ShowRunway, .visible = HasRunway, .enter = EnterRunway, .press = NextRunway}),
    SmithsField(kL3, {.label = "L A T I T U D E", .show = ShowLatitude, .visible = HasPoint}),
    SmithsField(kR3, {.label = "L O N G I T U D E", .show = ShowLongitude, .visible = HasPoint}),
    SmithsField(kL4, {.label = "M A G    V A R", .show = ShowVariation, .visible = HasPoint}),
    SmithsField(kR4, {.label = "R A D I A L / D I S T", .show = ShowRadial, .visible = HasPoint}),
    SmithsPrompt(kL5, "< NAV SUMMARY", kSmithsNavSummary),
    SmithsField(kR5,
                {.label = "E L E V A T I O N", .show = ShowElevation, .visible = HasElevation}),
    SmithsSeparatorRow(),
    SmithsPrompt(kL6, "< INDEX", kSmithsIndex),
    SmithsPrompt(kR6, "NAV    OPTIONS>", kSmithsNavStatus,
                 {.press = AtSmithsSubPage<SmithsCounter::NavStatus, kNavOptions>}),
};

void HandleRefNavData(const UnitInput& input) {
    const std::int32_t step = input.nextPressed - input.prevPressed;
    if (step != 0 && looked.found.count > 0) {
        looked.shown.Step(step);
        ReadRunways();
    }
}

void ComposeRefNavData(Screen& screen) {
    PutSmithsCounter(screen, looked.shown);
}

}  // namespace

constinit const PageRow kSmithsRefNavDataPage{.page = kSmithsRefNavData,
                                              .fields = kFields,
                                              .handle = HandleRefNavData,
                                              .compose = ComposeRefNavData};

}  // namespace avq1
