#include "avqdata/plan_resolve.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

#include "avqdata/cycle.h"
#include "avqdata/text_tools.h"
#include "base/text.h"
#include "magneticfield/magnetic_field.h"

namespace avqdata {
namespace {

using avq1::PlanWaypoint;

constexpr double kSameStationNm = 5;  // sources differ in where a station stands

LatLon PlaceOf(const PlanWaypoint& entry) {
    return {entry.latitude, entry.longitude};
}

void PutAt(const PlanPoint& point, RoutePart& part) {
    part.entry.latitude = point.at.latitude;
    part.entry.longitude = point.at.longitude;
    part.entry.type = point.type;
    part.entry.frequency = point.frequency;
    part.isPlaced = true;
}

// ---- which of several places ----

struct Resolver {
    const PlanData& data;
    std::vector<RoutePart>& parts;
    std::vector<std::optional<LatLon>> sure;  // the next place from a part on that is beyond doubt
};

Resolver MakeResolver(const PlanData& data, std::vector<RoutePart>& parts) {
    Resolver resolver{data, parts, {}};
    resolver.sure.resize(parts.size() + 1);
    for (std::size_t i = parts.size(); i-- > 0;) {
        const auto named = data.Named(parts[i].entry.ident);
        resolver.sure[i] = parts[i].isPlaced   ? PlaceOf(parts[i].entry)
                           : named.size() == 1 ? named.front().at
                                               : resolver.sure[i + 1];
    }
    return resolver;
}

const RoutePart* PreviousPlaced(const Resolver& resolver, std::size_t index) {
    while (index > 0) {
        if (resolver.parts[--index].isPlaced) {
            return &resolver.parts[index];
        }
    }
    return nullptr;
}

// Less is better: first what the airways and the type say, then the length of the way.
struct Cost {
    int misfits = 0;
    double wayNm = 0;
    bool operator<(const Cost& other) const {
        return misfits != other.misfits ? misfits < other.misfits : wayNm < other.wayNm;
    }
};

Cost CostOf(const Resolver& resolver, std::size_t index, const PlanPoint& point) {
    const std::vector<RoutePart>& parts = resolver.parts;
    const RoutePart& part = parts[index];
    const auto isOff = [&](const std::string& airway) {
        return !airway.empty() && !resolver.data.AirwayPieces(airway).empty() &&
               !IsOnAirway(resolver.data, airway, point.ident, point.at);
    };
    Cost cost;
    cost.misfits += isOff(part.entry.via) ? 2 : 0;
    cost.misfits += index + 1 < parts.size() && isOff(parts[index + 1].entry.via) ? 2 : 0;
    const bool isEnd = index == 0 || index + 1 == parts.size();
    const std::string_view type =
        part.entry.type.empty() && isEnd ? avq1::kAirportType : std::string_view(part.entry.type);
    cost.misfits += !type.empty() && type != point.type ? 1 : 0;
    if (const RoutePart* const previous = PreviousPlaced(resolver, index)) {
        cost.wayNm += DistanceNm(PlaceOf(previous->entry), point.at);
    }
    if (resolver.sure[index + 1]) {
        cost.wayNm += DistanceNm(point.at, *resolver.sure[index + 1]);
    }
    constexpr double kBeaconNm = 1;  // a VOR stands for the beacon of its name at the same place
    cost.wayNm -= point.type == "VOR" ? kBeaconNm : 0;
    return cost;
}

// The point on a magnetic bearing from the place that was found; it is the pilot's own.
void PutBeside(const PlanData& data, RoutePart& part) {
    const LatLon place = PlaceOf(part.entry);
    const double year =
        YearOfCycle(avq1::ToInteger(data.cycle)).value_or(magneticfield::kModelEpoch);
    avq1::PointAtDistance(
        place.latitude, place.longitude,
        part.bearingMag + magneticfield::Variation(place.latitude, place.longitude, year),
        part.distanceNm, part.entry.latitude, part.entry.longitude);
    part.entry.ident += avq1::Format("%03.0f%03.0f", part.bearingMag, part.distanceNm);
    part.entry.type = "WPT";
    part.entry.frequency.clear();
}

void PlacePart(const Resolver& resolver, std::size_t index) {
    RoutePart& part = resolver.parts[index];
    const PlanPoint* best = nullptr;
    Cost least;
    for (const PlanPoint& point : resolver.data.Named(part.entry.ident)) {
        const Cost cost = CostOf(resolver, index, point);
        if (best == nullptr || cost < least) {
            best = &point;
            least = cost;
        }
    }
    if (best == nullptr) {
        return;
    }
    PutAt(*best, part);
    if (part.bearingMag >= 0) {
        PutBeside(resolver.data, part);
    }
}

// Where this part's airway, flown from the point before, meets the airway of the next part.
void PlaceJunction(const Resolver& resolver, std::size_t index) {
    RoutePart& part = resolver.parts[index];
    const RoutePart* const previous = PreviousPlaced(resolver, index);
    if (previous == nullptr || index + 1 == resolver.parts.size()) {
        return;
    }
    double leastNm = std::numeric_limits<double>::max();
    for (const Airway& piece : resolver.data.AirwayPieces(part.entry.via)) {
        if (!IsOnAirway(resolver.data, part.entry.via, previous->entry.ident,
                        PlaceOf(previous->entry))) {
            continue;
        }
        for (const Fix& fix : piece.points) {
            const double wayNm = DistanceNm(PlaceOf(previous->entry), fix.at);
            if (wayNm < leastNm && fix.ident != previous->entry.ident &&
                IsOnAirway(resolver.data, resolver.parts[index + 1].entry.via, fix.ident, fix.at)) {
                leastNm = wayNm;
                part.entry.ident = fix.ident;
                if (const PlanPoint* const point = resolver.data.Nearest(fix.ident, fix.at, 1)) {
                    PutAt(*point, part);
                }
            }
        }
    }
}

// ---- into the plan ----

void LeaveOut(const PlanSource& source, const RoutePart& part) {
    const std::string name = Printable(part.entry.ident);
    const std::string what =
        part.entry.ident.empty()
            ? "the airway " + Printable(part.entry.via) + " meets the next one nowhere"
            : name + (source.data == nullptr ? " has no position in the file, and no data was given"
                                             : " is not in the data");
    source.report.Add(Topic::Fault, "waypoints left out", part.where + what + ": left out");
}

void FollowAirway(const PlanSource& source, const RoutePart& part, ExchangePlan& plan) {
    if (!part.follows || part.entry.via.empty() || part.entry.type == "WPT" ||
        plan.entries.empty() || !avq1::HasPosition(plan.entries.back())) {
        return;
    }
    const std::string airway = Printable(part.entry.via);
    const PlanWaypoint from = plan.entries.back();
    std::vector<Fix> between;
    if (source.data->AirwayPieces(part.entry.via).empty()) {
        source.report.Add(Topic::Warning, "airways",
                          part.where + "the data has no airway " + airway + ": its fixes to " +
                              Printable(part.entry.ident) + " are left out");
    } else if (!AirwayBetween(*source.data, part.entry.via, from, part.entry, between)) {
        source.report.Add(Topic::Warning, "airways",
                          part.where + airway + " does not lead from " + Printable(from.ident) +
                              " to " + Printable(part.entry.ident) + ": direct");
    }
    for (const Fix& fix : between) {
        RoutePart on;
        on.entry.ident = fix.ident;
        if (const PlanPoint* const point = source.data->Nearest(fix.ident, fix.at, 1)) {
            PutAt(*point, on);
            on.entry.via = part.entry.via;
            AddWaypoint(std::move(on.entry), plan);
        }
    }
}

}  // namespace

void PlaceRoute(const PlanSource& source, std::vector<RoutePart> parts, ExchangePlan& plan) {
    if (source.data != nullptr) {
        const Resolver resolver = MakeResolver(*source.data, parts);
        for (std::size_t i = 0; i < parts.size(); ++i) {
            if (!parts[i].isPlaced) {
                parts[i].entry.ident.empty() ? PlaceJunction(resolver, i) : PlacePart(resolver, i);
            }
        }
    }
    for (RoutePart& part : parts) {
        if (avq1::IsDiscontinuity(part.entry)) {
            plan.entries.push_back(part.entry);
            continue;
        }
        if (!part.isPlaced) {
            LeaveOut(source, part);
            continue;
        }
        if (source.data != nullptr) {
            FollowAirway(source, part, plan);
        }
        part.entry.type = part.entry.type.empty() ? "INT" : part.entry.type;
        AddWaypoint(part.entry, plan);
    }
}

// ---- what the data adds ----

namespace {

bool HasPointsOf(const ExchangePlan& plan, std::string_view tag) {
    return std::any_of(plan.entries.begin(), plan.entries.end(),
                       [&](const PlanWaypoint& entry) { return entry.procedure == tag; });
}

void SayMissing(const PlanSource& source, const char* what, const std::string& name,
                const std::string& why) {
    source.report.Add(Topic::Warning, "procedures",
                      std::string(source.name) + ": names the " + what + " '" + Printable(name) +
                          "'" +
                          (why.empty() ? "; its points are not in the file"
                                       : ", which " + why + ": its points are left out"));
}

// Puts points between two entries; a fix that both sides have stands once, as the procedure's.
void PutIn(std::vector<PlanWaypoint> points, std::size_t place, ExchangePlan& plan) {
    std::vector<PlanWaypoint>& entries = plan.entries;
    if (place < entries.size() && points.back().ident == entries[place].ident &&
        entries[place].type != avq1::kAirportType) {
        entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(place));
    }
    if (place > 1 && points.front().ident == entries[place - 1].ident) {
        points.erase(points.begin());
    }
    entries.insert(entries.begin() + static_cast<std::ptrdiff_t>(place), points.begin(),
                   points.end());
}

using PointsOf = std::vector<PlanWaypoint> (*)(const PlanData&, std::string_view, std::string_view,
                                               TerminalChoice&, std::string&);

struct NamedRow {
    const char* what;
    std::string_view tag;
    TerminalChoice ExchangePlan::*end;
    std::string TerminalChoice::*name;
    PointsOf points;
};

const std::array<NamedRow, 3> kNamedRows{{
    {"departure", "SID", &ExchangePlan::departure, &TerminalChoice::procedure, DeparturePoints},
    {"arrival", "STAR", &ExchangePlan::arrival, &TerminalChoice::procedure, ArrivalPoints},
    {"approach", "APPR", &ExchangePlan::arrival, &TerminalChoice::approach, ApproachPoints},
}};

void CompleteProcedure(const PlanSource& source, const NamedRow& row, ExchangePlan& plan) {
    TerminalChoice& choice = plan.*row.end;
    const std::string name = choice.*row.name;
    const std::vector<PlanWaypoint>& entries = plan.entries;
    if (name.empty() || HasPointsOf(plan, row.tag)) {
        return;
    }
    const bool departs = row.end == &ExchangePlan::departure;
    std::string why;
    if (source.data != nullptr && entries.size() >= 2) {
        const PlanWaypoint& airport = departs ? entries.front() : entries.back();
        const PlanWaypoint& joint = departs ? entries[1] : entries[entries.size() - 2];
        std::vector<PlanWaypoint> points =
            row.points(*source.data, airport.ident, joint.ident, choice, why);
        if (!points.empty()) {
            PutIn(std::move(points), departs ? 1 : entries.size() - 1, plan);
            return;
        }
    }
    SayMissing(source, row.what, name, why);
}

}  // namespace

void CompletePlan(const PlanSource& source, ExchangePlan& plan) {
    for (const NamedRow& row : kNamedRows) {
        CompleteProcedure(source, row, plan);
    }
    for (PlanWaypoint& entry : plan.entries) {
        const bool isStation = entry.type == "VOR" || entry.type == "NDB";
        if (source.data == nullptr || !isStation || !entry.frequency.empty()) {
            continue;
        }
        double leastNm = kSameStationNm;
        for (const PlanPoint& point : source.data->Named(entry.ident)) {
            const double distanceNm = DistanceNm(point.at, PlaceOf(entry));
            if (point.type == entry.type && distanceNm <= leastNm) {
                entry.frequency = point.frequency;
                leastNm = distanceNm;
            }
        }
    }
}

}  // namespace avqdata
