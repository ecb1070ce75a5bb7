// FIX INFO: two fixes, a page each, and when the route that is flown passes radials and distances
// of theirs and comes abeam.
//
// Radials are magnetic, at the aircraft's variation; distances nm.
#include <array>
#include <cmath>
#include <limits>
#include <span>
#include <string>

#include "base/module_state.h"
#include "cdu/formats.h"
#include "cdu/pilot_entries.h"
#include "cdu_smiths/smiths_pages.h"
#include "cdu_smiths/smiths_vertical.h"
#include "flightplan/flight_plan.h"
#include "guidance/predictions.h"
#include "guidance/route_crossings.h"
#include "navdb/nav_database.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr std::int32_t kFixes = 2;
constexpr std::int32_t kTypedLines = 3;
constexpr std::int32_t kAbeamLine = kTypedLines;  // the one behind them
constexpr std::size_t kLines = kTypedLines + 1;
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr double kWholeCircle = 360;
constexpr double kFarthestNm = 999;
constexpr double kMovedNm = 0.1;  // nearer the crossings stay as they were found
constexpr std::int16_t kFromFixX = 96;
constexpr std::int16_t kTimeX = 102;
constexpr std::int16_t kDistanceRightX = 204;

// What was typed on a line: a radial, a distance or both; NaN = not typed.
struct TypedLine {
    double radialMag = kNone;
    double distanceNm = kNone;

    bool IsSet() const { return std::isfinite(radialMag) || std::isfinite(distanceNm); }
    bool IsPoint() const { return std::isfinite(radialMag) && std::isfinite(distanceNm); }
};

struct Fix {
    std::string ident;  // empty = none
    LatLon position;
    std::array<TypedLine, kTypedLines> lines;
};

struct FixInfo {
    std::array<Fix, kFixes> fixes;
    std::array<RouteCrossing, kLines> crossings;  // of the fix shown
    // What they were found from.
    const Fix* of = nullptr;
    std::uint32_t revision = 0;
    std::int32_t activeIndex = kNoWaypoint;
    LatLon at;
};

FixInfo info;
const StateReset infoReset([] { info = FixInfo{}; });

SubPage& CounterShown() {
    return smiths.Counter(SmithsCounter::FixInfo).SetCount(kFixes);
}

Fix& FixShown() {
    return info.fixes[static_cast<std::size_t>(CounterShown().n - 1)];
}

double Variation() {
    return aircraft.magneticVariation;
}

// A typed point is passed abeam; a radial and a distance where they are met.
void FindCrossings() {
    const Fix& fix = FixShown();
    std::array<RouteCrossing, kLines> asked{};
    for (std::size_t i = 0; i < kTypedLines; ++i) {
        const TypedLine& line = fix.lines[i];
        asked[i].kind = std::isfinite(line.radialMag) ? RouteCrossing::Kind::Radial
                                                      : RouteCrossing::Kind::Distance;
        asked[i].value = std::isfinite(line.radialMag) ? line.radialMag + Variation()
                         : line.IsSet()                ? line.distanceNm
                                                       : 0;
    }
    FindRouteCrossings(fix.position, asked);
    for (std::size_t i = 0; i < kTypedLines; ++i) {
        const TypedLine& line = fix.lines[i];
        asked[i].found = asked[i].found && line.IsSet();
        if (line.IsPoint()) {
            LatLon point;
            PointAtDistance(fix.position.latitude, fix.position.longitude,
                            line.radialMag + Variation(), line.distanceNm, point.latitude,
                            point.longitude);
            asked[i].kind = RouteCrossing::Kind::Abeam;
            FindRouteCrossings(point, std::span(&asked[i], 1));
        }
    }
    info.crossings = asked;
}

void RefreshCrossings() {
    const Fix& fix = FixShown();
    const bool same = info.of == &fix && info.revision == activePlan.revision &&
                      info.activeIndex == planBook.activeIndex &&
                      GreatCircleDistanceNm(info.at.latitude, info.at.longitude, aircraft.latitude,
                                            aircraft.longitude) < kMovedNm;
    if (!same) {
        info.of = &fix;
        info.revision = activePlan.revision;
        info.activeIndex = planBook.activeIndex;
        info.at = {aircraft.latitude, aircraft.longitude};
        FindCrossings();
    }
}

// The crossing of a line; null without one.
const RouteCrossing* CrossingOf(const FieldRow& field) {
    RefreshCrossings();
    const RouteCrossing& crossing = info.crossings[static_cast<std::size_t>(field.item)];
    return !FixShown().ident.empty() && crossing.found ? &crossing : nullptr;
}

TypedLine LineOf(const FieldRow& field) {
    return field.item == kAbeamLine ? TypedLine{}
                                    : FixShown().lines[static_cast<std::size_t>(field.item)];
}

// As typed, with what follows from where the route meets it.
TypedLine ShownLine(const FieldRow& field) {
    TypedLine line = LineOf(field);
    const RouteCrossing* crossing = CrossingOf(field);
    if (crossing != nullptr && !line.IsPoint()) {
        const double radialMag = TrueToMagnetic(crossing->bearingTrue, Variation());
        line.radialMag = std::isfinite(line.radialMag) ? line.radialMag : radialMag;
        line.distanceNm = std::isfinite(line.distanceNm) ? line.distanceNm : crossing->distanceNm;
    }
    return line;
}

// ---- what is shown ----
void ShowIdent(const FieldRow&, UnitText& text) {
    text.Set(FixShown().ident.empty() ? "- - - - -" : std::string_view(FixShown().ident));
}

void ShowFromFix(const FieldRow&, UnitText& text) {
    const Fix& fix = FixShown();
    if (fix.ident.empty()) {
        return;
    }
    double distanceNm = 0;
    double bearingTrue = 0;
    DistanceAndCourse(fix.position.latitude, fix.position.longitude, ShownAircraft().latitude,
                      ShownAircraft().longitude, distanceNm, bearingTrue);
    UnitText distance;
    distance.Put("%.1f", distanceNm);
    text.Put("%s/%s", CourseText(TrueToMagnetic(bearingTrue, Variation())).c_str(),
             std::isfinite(distanceNm) ? distance.c_str() : "- - -");
}

void ShowLine(const FieldRow& field, UnitText& text) {
    const TypedLine line = ShownLine(field);
    if (LineOf(field).IsPoint()) {
        text.Put("%03.0f/%5.1f", line.radialMag, line.distanceNm);
    } else if (line.IsPoint()) {
        text.Put("%03.0f /%-3.1f", WholeCourse(line.radialMag), line.distanceNm);
    } else if (std::isfinite(line.distanceNm)) {
        text.Put("- - - /%-3.1f", line.distanceNm);
    } else if (std::isfinite(line.radialMag)) {
        text.Put("%03.0f / - - -", line.radialMag);
    } else {
        text.Set("- - - / - - -");
    }
}

PredictedPoint PredictionOf(const FieldRow& field) {
    const RouteCrossing* crossing = CrossingOf(field);
    return crossing != nullptr ? PredictionAhead(ActivePredictions(), crossing->aheadNm)
                               : PredictedPoint{};
}

void ShowTime(const FieldRow& field, UnitText& text) {
    if (CrossingOf(field) != nullptr) {
        text = SmithsMinuteText(PredictionOf(field));
    }
}

void ShowDistance(const FieldRow& field, UnitText& text) {
    if (const RouteCrossing* crossing = CrossingOf(field)) {
        text.Put("%.0f", crossing->aheadNm);
    }
}

void ShowAltitude(const FieldRow& field, UnitText& text) {
    const PredictedPoint point = PredictionOf(field);
    if (point.known) {
        text = AltitudeText(point.altitudeFt, pilotEntries.transitionAltitudeFt);
    }
}

// ---- entries ----
void Changed() {
    info.of = nullptr;
}

EntryResult EnterFix(const FieldRow&, std::string_view entry) {
    SearchResults found;
    SearchIdent(entry, SearchCategory::All, found);
    const std::int32_t nearest = NearestResult(found);
    if (nearest == 0) {
        return EntryResult::NotInDatabase;
    }
    FixShown() = Fix{};
    FixShown().ident = entry;
    FixShown().position = {found[nearest].latitude, found[nearest].longitude};
    Changed();
    return EntryResult::Accepted;
}

EntryResult EraseFix(const FieldRow&) {
    if (FixShown().ident.empty()) {
        return EntryResult::InvalidDelete;
    }
    FixShown() = Fix{};
    Changed();
    return EntryResult::Accepted;
}

EntryResult CopyIdent(const FieldRow&) {
    smiths.scratchpad = FixShown().ident;
    return EntryResult::None;
}

// "250", "250/30", "/30.5"
bool ReadLine(std::string_view text, TypedLine& line) {
    const std::size_t slash = std::min(text.find('/'), text.size());
    const std::string_view radial = text.substr(0, slash);
    TypedLine read;
    if (!radial.empty() &&
        (radial.size() > 3 || radial.find_first_not_of("0123456789") != std::string_view::npos ||
         !ReadSmithsNumber(radial, read.radialMag) || read.radialMag > kWholeCircle)) {
        return false;
    }
    if (slash < text.size() && (!ReadSmithsNumber(text.substr(slash + 1), read.distanceNm) ||
                                read.distanceNm <= 0 || read.distanceNm > kFarthestNm)) {
        return false;
    }
    if (!read.IsSet()) {
        return false;
    }
    line = read;
    return true;
}

EntryResult EnterLine(const FieldRow& field, std::string_view entry) {
    TypedLine line;
    if (FixShown().ident.empty() || !ReadLine(entry, line)) {
        return EntryResult::InvalidEntry;
    }
    FixShown().lines[static_cast<std::size_t>(field.item)] = line;
    Changed();
    return EntryResult::Accepted;
}

EntryResult EraseLine(const FieldRow& field) {
    if (!LineOf(field).IsSet()) {
        return EntryResult::InvalidDelete;
    }
    FixShown().lines[static_cast<std::size_t>(field.item)] = TypedLine{};
    Changed();
    return EntryResult::Accepted;
}

// The point of the route as a waypoint is typed, "BOS090/25", to be put into the legs.
EntryResult CopyPoint(const FieldRow& field) {
    const TypedLine line = ShownLine(field);
    if (!FixShown().ident.empty() && line.IsPoint() && line.distanceNm >= 1) {
        UnitText text;
        text.Put("%.5s%03.0f/%.0f", FixShown().ident.c_str(), WholeCourse(line.radialMag),
                 std::floor(line.distanceNm));
        smiths.scratchpad = text.view();
    }
    return EntryResult::None;
}

constexpr FieldRow InColumn(std::int32_t line, std::int16_t x, bool endsThere,
                            FieldRow::Show show) {
    FieldRow field = SmithsField(line, {.show = show, .item = line - kL2});
    field.line = 0;
    field.style = endsThere ? kSmithsDataRight : kSmithsData;
    field.valueAt.x = x;
    return field;
}

constexpr FieldRow Typed(std::int32_t line, const char* label = "") {
    return SmithsField(line, {.label = label,
                              .show = ShowLine,
                              .enter = EnterLine,
                              .erase = EraseLine,
                              .press = CopyPoint,
                              .item = line - kL2});
}

constexpr FieldRow kFields[] = {
    SmithsTitle("FIX INFO"),
    SmithsField(kL1, {.label = "F I X         R A D / D I S   F R",
                      .show = ShowIdent,
                      .enter = EnterFix,
                      .erase = EraseFix,
                      .press = CopyIdent}),
    {.show = ShowFromFix, .style = kSmithsData, .valueAt = {kFromFixX, kSmithsDataY[0]}},
    Typed(kL2, "R A D /    D I S    E T A          D T G     A L T"),
    Typed(kL3),
    Typed(kL4),
    SmithsField(kL5,
                {.label = "A B E A M", .show = ShowLine, .press = CopyPoint, .item = kAbeamLine}),
    InColumn(kL2, kTimeX, false, ShowTime),
    InColumn(kL2, kDistanceRightX, true, ShowDistance),
    InColumn(kL2, kSmithsRightX, true, ShowAltitude),
    InColumn(kL3, kTimeX, false, ShowTime),
    InColumn(kL3, kDistanceRightX, true, ShowDistance),
    InColumn(kL3, kSmithsRightX, true, ShowAltitude),
    InColumn(kL4, kTimeX, false, ShowTime),
    InColumn(kL4, kDistanceRightX, true, ShowDistance),
    InColumn(kL4, kSmithsRightX, true, ShowAltitude),
    InColumn(kL5, kTimeX, false, ShowTime),
    InColumn(kL5, kDistanceRightX, true, ShowDistance),
    InColumn(kL5, kSmithsRightX, true, ShowAltitude),
};

void ComposeFixInfo(Screen& screen) {
    PutSmithsCounter(screen, CounterShown());
}

}  // namespace

constinit const PageRow kSmithsFixInfoPage{
    .page = kSmithsFixInfo, .fields = kFields, .compose = ComposeFixInfo};

}  // namespace avq1
