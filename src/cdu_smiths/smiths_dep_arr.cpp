// DEP/ARR INDEX: departures of the origin, arrivals of the destination, and either of an airport to
// look at.
#include <string>

#include "base/module_state.h"
#include "cdu_smiths/smiths_procedures.h"
#include "navdb/nav_database.h"

namespace avq1 {
namespace {

constexpr int kMiddleX = 122;
constexpr std::size_t kIdentLength = 5;

std::string otherAirport;  // typed here last
const StateReset otherReset([] { otherAirport.clear(); });

SmithsPage PageOf(const FieldRow& field) {
    return IsOnTheRight(field.line) ? kSmithsArrivals : kSmithsDepartures;
}

void ShowRouteAirport(const FieldRow& field, UnitText& text) {
    const std::string ident = SmithsRouteAirport(PageOf(field) == kSmithsDepartures);
    if (PageOf(field) == kSmithsDepartures) {
        text.Put("< DEP   %.5s", ident.c_str());
    } else {
        text.Put("%.5s   ARR >", ident.c_str());
    }
}

void ShowOther(const FieldRow& field, UnitText& text) {
    const char* const ident = otherAirport.empty() ? "- - - -" : otherAirport.c_str();
    text.Put(PageOf(field) == kSmithsDepartures ? "< %.7s" : "%.7s >", ident);
}

EntryResult OpenRouteAirport(const FieldRow& field) {
    OpenSmithsProcedures(PageOf(field));
    return EntryResult::None;
}

EntryResult OpenOther(const FieldRow& field) {
    if (!otherAirport.empty()) {
        OpenSmithsProcedures(PageOf(field), otherAirport);
    }
    return EntryResult::None;
}

EntryResult EnterOther(const FieldRow& field, std::string_view entry) {
    SearchResults found;
    SearchIdent(entry, SearchCategory::Airports, found);
    if (entry.size() > kIdentLength || found.count == 0) {
        return EntryResult::NotInDatabase;
    }
    otherAirport = entry;
    OpenOther(field);
    return EntryResult::Accepted;
}

EntryResult ForgetOther(const FieldRow&) {
    if (otherAirport.empty()) {
        return EntryResult::InvalidDelete;
    }
    otherAirport.clear();
    return EntryResult::Accepted;
}

constexpr FieldRow kFields[] = {
    SmithsTitle("DEP / ARR  INDEX"),
    {.label = "1 / 1", .labelStyle = kSmithsData, .labelAt = {kSmithsCounterX, 0}},
    SmithsField(kL1, {.show = ShowRouteAirport, .press = OpenRouteAirport}),
    SmithsField(kR1, {.show = ShowRouteAirport, .press = OpenRouteAirport}),
    SmithsField(kL6, {.label = "DEP",
                      .show = ShowOther,
                      .enter = EnterOther,
                      .erase = ForgetOther,
                      .press = OpenOther}),
    SmithsNote("OTHER", kMiddleX, kSmithsLabelY[5]),
    SmithsField(kR6, {.label = "ARR",
                      .show = ShowOther,
                      .enter = EnterOther,
                      .erase = ForgetOther,
                      .press = OpenOther}),
};

}  // namespace

constinit const PageRow kSmithsDepArrPage{.page = kSmithsDepArr, .fields = kFields};

}  // namespace avq1
