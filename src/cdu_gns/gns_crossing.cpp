// CROSSING: the altitude and speed at which the selected waypoint is to be crossed.
#include <charconv>
#include <string>
#include <string_view>

#include "cdu_gns/gns_pages.h"
#include "cdu_gns/gns_plan.h"
#include "cdu_gns/gns_waypoint.h"
#include "flightplan/plan_edit.h"
#include "guidance/activation.h"

namespace avq1 {
namespace {

constexpr std::int32_t kEntryLength = 10;
constexpr char kSeparator = '*';

const PlanWaypoint* Waypoint() {
    const PlanSelection& selection = GnsSelection();
    return selection.plan != nullptr && selection.plan->Holds(selection.index)
               ? &selection.plan->entries[selection.index]
               : nullptr;
}

// "250*10000" as it is typed, for the restriction the waypoint has.
std::string RestrictionText(const PlanWaypoint& entry) {
    UnitText text;
    const bool restricted = entry.altitude != kUnset && entry.altitudeConstraint != 0;
    if (restricted) {
        text.Put("%c%.0f", kSeparator, entry.altitude);
    }
    UnitText speed;
    if (entry.speed > 0 && (restricted || entry.altitude == kUnset)) {
        speed.Put("%.0f", entry.speed);
    }
    return std::string(speed.view()) + text.c_str();
}

// An empty part stays unset; false for what is no number from 1 to `highest`.
bool ReadPart(std::string_view text, int highest, double& value) {
    if (text.empty()) {
        return true;
    }
    int number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    if (read.ec != std::errc{} || read.ptr != text.data() + text.size() || number < 1 ||
        number > highest) {
        return false;
    }
    value = number;
    return true;
}

EntryResult SetRestriction(const LineRow&) {
    if (gns.freshEntry) {  // nothing typed: what there is stays as it is
        ReturnToGnsPlan();
        return EntryResult::None;
    }
    const std::string_view text = TypedText(gns);
    const std::size_t separator = text.find(kSeparator);
    Crossing crossing;
    const std::string_view altitude =
        separator == std::string_view::npos ? std::string_view{} : text.substr(separator + 1);
    if (!ReadPart(text.substr(0, separator), kFastestCrossingKt, crossing.speedKt) ||
        !ReadPart(altitude, kHighestCrossingFt, crossing.altitudeFt)) {
        return EntryResult::InvalidEntry;
    }
    if (Waypoint() != nullptr) {
        EditPlan(GnsPlanShown(), [&](FlightPlan& plan) {
            return SetCrossing(plan, GnsSelection().index, crossing);
        });
    }
    ReturnToGnsPlan();
    return EntryResult::None;
}

void ShowTyped(const LineRow&, UnitText& text) {
    std::string shown(TypedText(gns));
    if (const std::size_t separator = shown.find(kSeparator); separator != std::string::npos) {
        shown[separator] = '/';
    }
    text.Set(shown);
}

void ShowRestriction(const LineRow&, UnitText& text) {
    std::string shown = Waypoint() != nullptr ? RestrictionText(*Waypoint()) : "";
    if (const std::size_t separator = shown.find(kSeparator); separator != std::string::npos) {
        shown[separator] = '/';
    }
    text.Set(shown.empty() ? "----------" : shown);
}

void OfferRestriction(const LineRow&) {
    LoadScratchpad(gns, Waypoint() != nullptr ? RestrictionText(*Waypoint()) : "", kEntryLength);
}

void ShowWaypoint(const FieldRow&, UnitText& text) {
    text.Put("AT %.6s", Waypoint() != nullptr ? Waypoint()->ident.c_str() : "------");
}

constexpr FieldRow kFields[] = {
    {.label = "CROSSING", .labelAt = {160, 0}},
    {.show = ShowWaypoint, .style = kGnsActive, .valueAt = {kGnsLabelX, 40}},
    {.label = "SPEED/ALTITUDE", .labelAt = {kGnsLabelX, 80}},
};

constexpr LineRow kLines[] = {
    {.line = 2,
     .show = ShowRestriction,
     .showEntry = ShowTyped,
     .entryLength = kEntryLength,
     .select = OfferRestriction,
     .enter = SetRestriction,
     .style = kGnsData,
     .at = {kGnsLabelX, 120}},
};

}  // namespace

void OpenGnsCrossingOf(std::int32_t entry) {
    if (!GnsPlanShown().Holds(entry)) {
        return;
    }
    GnsSelection() = {&GnsPlanShown(), entry};
    OpenGnsPage(kGnsCrossing);
    SelectRow(kLines[0], gns);
}

void OpenGnsCrossing() {
    OpenGnsCrossingOf(GnsSelectedEntry());
}

constinit const PageRow kGnsCrossingPage{.page = kGnsCrossing, .fields = kFields, .lines = kLines};

}  // namespace avq1
