// SELECT WAYPOINT: the points that bear a typed identifier, the nearest first; a line key takes one
// for the page that asked.
#include <algorithm>
#include <cctype>
#include <numeric>
#include <vector>

#include "base/module_state.h"
#include "cdu/formats.h"
#include "cdu_smiths/smiths_pages.h"
#include "cdu_smiths/smiths_route.h"
#include "flightplan/plan_edit.h"
#include "geometry/geometry.h"
#include "navdb/nav_database.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr std::int32_t kCandidatesPerPage = 5;
constexpr std::size_t kLongestIdent = 6;

struct Candidates {
    SearchResults found;
    std::vector<std::int32_t> order;  // numbers of the results, the nearest first
    SmithsTakePoint take = nullptr;
};

Candidates candidates;
const StateReset candidatesReset([] { candidates = Candidates{}; });

std::int32_t CandidateOnRow(std::int32_t row) {
    const std::int32_t at =
        kCandidatesPerPage * (smiths.Counter(SmithsCounter::SelectWaypoint).n - 1) + row;
    return at < static_cast<std::int32_t>(candidates.order.size())
               ? candidates.order[static_cast<std::size_t>(at)]
               : 0;
}

bool HasCandidate(const FieldRow& field) {
    return CandidateOnRow(field.item) != 0;
}

EntryResult TakeCandidate(const FieldRow& field) {
    const PlanWaypoint entry =
        TakeNamedPoint(SmithsPlan(), candidates.found, CandidateOnRow(field.item));
    const SmithsTakePoint take = candidates.take;
    candidates = Candidates{};
    ReturnPage(smiths, kSmithsLegs);
    const EntryResult result = take(entry);
    if (result == EntryResult::Accepted) {
        smiths.scratchpad.clear();
    }
    return result;
}

constexpr FieldRow CandidateRow(std::int32_t line, std::int32_t row) {
    return SmithsPrompt(line, "", 0,
                        {.visible = HasCandidate, .press = TakeCandidate, .item = row});
}

void PutCandidate(Screen& screen, std::int32_t row, const FoundPoint& point) {
    const auto slot = static_cast<std::size_t>(row);
    const PlanWaypoint entry = EntryFrom(point);
    screen.Put(kSmithsLabel, kSmithsLabelX, kSmithsLabelY[slot], "%-6.6s  %3.3s  %6.10s",
               point.ident.c_str(), entry.type.c_str(), point.frequency.c_str());
    PositionText latitude;
    PositionText longitude;
    FormatLatLon(point.latitude, point.longitude, latitude, longitude);
    screen.Put(kSmithsData, 0, kSmithsDataY[slot], "%-12s %-12s", latitude.data(),
               longitude.data());
}

void ComposeSelect(Screen& screen) {
    const auto count = static_cast<std::int32_t>(candidates.order.size());
    PutSmithsCounter(screen,
                     smiths.Counter(SmithsCounter::SelectWaypoint)
                         .SetCount(PageCount(count, kCandidatesPerPage)),
                     "%2d/%2d");
    for (std::int32_t row = 0; row < kCandidatesPerPage; ++row) {
        if (const std::int32_t number = CandidateOnRow(row)) {
            PutCandidate(screen, row, candidates.found[number]);
        }
    }
}

EntryResult LeaveSelect(const FieldRow&) {
    candidates = Candidates{};
    ReturnPage(smiths, kSmithsLegs);
    return EntryResult::Accepted;
}

constexpr FieldRow kFields[] = {
    SmithsTitle("SELECT WAYPOINT", 40),
    CandidateRow(kL1, 0),
    CandidateRow(kL2, 1),
    CandidateRow(kL3, 2),
    CandidateRow(kL4, 3),
    CandidateRow(kL5, 4),
    CandidateRow(kR1, 0),
    CandidateRow(kR2, 1),
    CandidateRow(kR3, 2),
    CandidateRow(kR4, 3),
    CandidateRow(kR5, 4),
    SmithsPrompt(kL6, "< RETURN", 0, {.press = LeaveSelect}),
};

// The nearest first, those of equal distance in the database's order.
std::vector<std::int32_t> NearestFirst(const SearchResults& found) {
    std::vector<double> distancesNm{0};
    for (std::int32_t i = 1; i <= found.count; ++i) {
        distancesNm.push_back(GreatCircleDistanceNm(aircraft.latitude, aircraft.longitude,
                                                    found[i].latitude, found[i].longitude));
    }
    std::vector<std::int32_t> order(static_cast<std::size_t>(found.count));
    std::iota(order.begin(), order.end(), 1);
    std::ranges::stable_sort(order, {}, [&](std::int32_t number) {
        return distancesNm[static_cast<std::size_t>(number)];
    });
    return order;
}

// What nothing was found for may be an identifier nobody knows, or no identifier at all.
EntryResult WhyNotFound(std::string_view text) {
    const bool isIdent =
        text.size() <= kLongestIdent &&
        std::ranges::all_of(text, [](unsigned char c) { return std::isalnum(c) != 0; });
    const std::size_t slash = text.find('/');
    const bool hasBearing =
        slash != std::string_view::npos && slash > 3 && slash + 1 < text.size() &&
        text.find('/', slash + 1) == std::string_view::npos &&
        std::ranges::all_of(text.substr(slash - 3, 3),
                            [](unsigned char c) { return std::isdigit(c) != 0; });
    return isIdent || hasBearing ? EntryResult::NotInDatabase : EntryResult::InvalidEntry;
}

}  // namespace

EntryResult TakeSmithsPoint(std::string_view text, SmithsTakePoint take) {
    SearchResults found;
    ResolveEntry(SmithsPlan(), text, SearchCategory::All, found);
    if (found.count == 0) {
        return WhyNotFound(text);
    }
    if (found.count == 1) {
        return take(TakeNamedPoint(SmithsPlan(), found, 1));
    }
    candidates.order = NearestFirst(found);
    candidates.found = std::move(found);
    candidates.take = take;
    smiths.Counter(SmithsCounter::SelectWaypoint).n = 1;
    CallPage(smiths, kSmithsSelectWaypoint);
    return EntryResult::None;
}

constinit const PageRow kSmithsSelectPage{
    .page = kSmithsSelectWaypoint, .fields = kFields, .compose = ComposeSelect};

}  // namespace avq1
