#include <algorithm>
#include <array>
#include <set>
#include <tuple>

#include "avqdata/arinc.h"
#include "avqdata/clean.h"
#include "avqdata/limits.h"
#include "avqdata/procedure_arcs.h"
#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

// A leg as the procedure files hold it: one fix and what is known of it.
struct Leg {
    std::string fix;
    LatLon at;
    std::string restriction = "---";
    bool flyover = false;
    char role = ' ';      // the description's last letter
    bool missed = false;  // belongs to the missed approach
};

// The legs between two branchings: a transition, a common route, a final approach.
struct Route {
    char type = ' ';
    std::string transition;
    std::vector<Leg> legs;
    std::vector<std::string> runways;  // empty = all
};

struct Builder {
    const CifpBook& book;
    Report& report;
    Dataset& data;
    ArcPointNames arcNames;
};

// How a leg ends, and what of it a route of fixes does not carry. The legs from a fix have that.
struct PathRow {
    std::string_view path;
    bool hasFix;
    const char* lost;
};
constexpr const char* kHold = "holds";
constexpr const char* kAtAltitude = "legs that end at an altitude";
constexpr const char* kAtDistance = "legs that end at a distance";
constexpr const char* kAtLeg = "legs that end where the next begins";
constexpr const char* kAtRadial = "legs that end at a radial";
constexpr const char* kVectors = "legs that end when the controller says so";
constexpr std::array<PathRow, 23> kPaths{{
    {"IF", true, nullptr},      {"TF", true, nullptr},
    {"CF", true, nullptr},      {"DF", true, nullptr},
    {"AF", true, nullptr},      {"RF", true, nullptr},
    {"HA", true, kHold},        {"HF", true, kHold},
    {"HM", true, kHold},        {"PI", true, "procedure turns"},
    {"FA", true, kAtAltitude},  {"CA", false, kAtAltitude},
    {"VA", false, kAtAltitude}, {"FC", true, kAtDistance},
    {"FD", true, kAtDistance},  {"CD", false, kAtDistance},
    {"VD", false, kAtDistance}, {"CI", false, kAtLeg},
    {"VI", false, kAtLeg},      {"CR", false, kAtRadial},
    {"VR", false, kAtRadial},   {"FM", true, kVectors},
    {"VM", false, kVectors},
}};
constexpr PathRow kUnknownPath{"", false, "legs of no known kind"};

const PathRow& PathOf(const ProcedureLegRecord& leg) {
    const auto* const row = std::ranges::find(kPaths, leg.path, &PathRow::path);
    return row != kPaths.end() ? *row : kUnknownPath;
}

std::string LegName(const ProcedureRecord& procedure, const ProcedureLegRecord& leg) {
    return AtLine(procedure.file, leg.line,
                  procedure.airport + " " + procedure.name + " " + leg.transition + " " + leg.path +
                      (leg.fix.empty() ? "" : " " + leg.fix));
}

// False when there is nothing that a route of fixes could carry.
bool ConvertLeg(Builder& builder, const ProcedureRecord& procedure, const ProcedureLegRecord& from,
                const std::optional<LatLon>& near, Leg& leg) {
    const PathRow& path = PathOf(from);
    if (!path.hasFix || from.fix.empty()) {
        builder.report.Add(Topic::Dropped, path.lost != nullptr ? path.lost : kUnknownPath.lost,
                           LegName(procedure, from));
        return false;
    }
    if (path.lost != nullptr) {
        builder.report.Add(Topic::Changed, std::string(path.lost) + ", whose fix stays",
                           LegName(procedure, from));
    }
    const std::string section = from.section == "D" ? "D" : from.section;
    const std::optional<LatLon> at =
        builder.book.points.Find(section, procedure.airport, from.fix, from.region, near);
    if (!at || !IsIdent(from.fix)) {
        builder.report.Add(Topic::Unresolved, "procedure fixes that are not in the source",
                           LegName(procedure, from));
        return false;
    }
    if (IsRunwayFix(from.fix) && near && DistanceNm(*near, *at) > kFarthestRunwayNm) {
        builder.report.Add(Topic::Unresolved, "runway fixes far from their airport",
                           LegName(procedure, from));
        return false;
    }
    leg.fix = from.fix;
    leg.at = *at;
    leg.restriction = from.restriction;
    leg.flyover = from.description[1] == 'Y' || from.description[1] == 'B';
    leg.role = from.description[3];
    return true;
}

// A hold, a procedure turn or a heading flown from the fix that the route has reached already.
void StayAtFix(const Leg& leg, Leg& reached) {
    if (reached.restriction == "---") {
        reached.restriction = leg.restriction;
    }
    reached.flyover = reached.flyover || leg.flyover;
    if (reached.role == ' ') {
        reached.role = leg.role;
    }
}

void AppendLeg(Builder& builder, const ProcedureRecord& procedure, const ProcedureLegRecord& from,
               const Leg& leg, std::vector<Leg>& legs) {
    if (!legs.empty() && legs.back().fix == leg.fix && legs.back().missed == leg.missed) {
        if (PathOf(from).lost == nullptr) {
            builder.report.Add(Topic::Changed, "legs at the fix before, one with it",
                               LegName(procedure, from));
        }
        StayAtFix(leg, legs.back());
        return;
    }
    legs.push_back(leg);
}

// The points along an arc that ends with `leg`, as legs of their own that are flown by.
void AppendArc(Builder& builder, const ProcedureRecord& procedure, const ProcedureLegRecord& from,
               const Leg& leg, std::vector<Leg>& legs) {
    if (from.path != "AF" && from.path != "RF") {
        return;
    }
    const std::optional<LatLon> begin =
        legs.empty() ? std::optional<LatLon>() : std::optional(legs.back().at);
    const std::optional<std::vector<Fix>> points =
        FollowArc(builder.book, procedure.airport, from, leg.at, begin, builder.arcNames);
    std::string text = LegName(procedure, from);
    if (!points) {
        builder.report.Add(Topic::Warning,
                           "arcs flown straight: their centre or beginning is not known",
                           std::move(text));
        return;
    }
    text += ":";
    for (const Fix& point : *points) {
        text += " " + point.ident;
        Leg along;
        along.fix = point.ident;
        along.at = point.at;
        along.missed = leg.missed;
        legs.push_back(std::move(along));
    }
    builder.report.Add(Topic::Changed, "arcs, followed from point to point", std::move(text));
}

// The procedure's routes in the order of their first legs.
std::vector<Route> Routes(Builder& builder, const ProcedureRecord& procedure) {
    std::vector<ProcedureLegRecord> records = procedure.legs;
    std::stable_sort(records.begin(), records.end(),
                     [](const ProcedureLegRecord& a, const ProcedureLegRecord& b) {
                         return std::tie(a.routeType, a.transition, a.sequence) <
                                std::tie(b.routeType, b.transition, b.sequence);
                     });
    const auto airport = builder.book.airports.find(procedure.airport);
    std::optional<LatLon> near;
    if (airport != builder.book.airports.end()) {
        near = airport->second;
    }
    std::vector<Route> routes;
    bool missed = false;
    for (const ProcedureLegRecord& record : records) {
        if (routes.empty() || routes.back().type != record.routeType ||
            routes.back().transition != record.transition) {
            routes.push_back({record.routeType, record.transition, {}, {}});
            missed = false;
        }
        missed = missed || record.description[2] == 'M';
        Leg leg;
        if (ConvertLeg(builder, procedure, record, near, leg)) {
            leg.missed = missed;
            AppendArc(builder, procedure, record, leg, routes.back().legs);
            AppendLeg(builder, procedure, record, leg, routes.back().legs);
        }
        missed = missed || record.description[3] == 'M';
    }
    return routes;
}

// The designators that "RW04B" stands for.
std::vector<std::string> RunwaysOf(const Builder& builder, const std::string& airport,
                                   std::string_view transition) {
    if (!transition.starts_with("RW") || transition.size() < 4) {
        return {};
    }
    const std::string designator(transition.substr(2));
    if (!designator.ends_with('B')) {
        return {designator};
    }
    const std::string number = designator.substr(0, 2);
    std::vector<std::string> runways;
    const auto known = builder.book.runways.find(airport);
    if (known != builder.book.runways.end()) {
        for (const std::string& runway : known->second) {
            if (runway.size() == 3 && runway.starts_with(number)) {
                runways.push_back(runway);
            }
        }
    }
    std::sort(runways.begin(), runways.end());
    return runways.empty() ? std::vector<std::string>{number + "L", number + "R"} : runways;
}

std::string Join(const std::vector<std::string>& parts) {
    std::string text;
    for (const std::string& part : parts) {
        text += (text.empty() ? "" : ",") + part;
    }
    return text;
}

bool SameLegs(const std::vector<Leg>& a, const std::vector<Leg>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const Leg& x, const Leg& y) {
        return x.fix == y.fix && x.restriction == y.restriction && x.flyover == y.flyover;
    });
}

// ---- departures and arrivals ----

struct Terminal {
    std::vector<Route> common;  // mostly one
    std::vector<Route> byRunway;
    std::vector<Route> transitions;
    std::vector<std::string> runways;  // that the procedure serves; empty = all
};

// Which routes lie at the runway and which en route: the types' numbers run outward for
// departures, inward for arrivals.
Terminal SortRoutes(Builder& builder, const ProcedureRecord& procedure, ProcedureKind kind) {
    Terminal terminal;
    std::set<std::string> served;
    for (Route& route : Routes(builder, procedure)) {
        constexpr std::string_view kFirst = "14FM";
        constexpr std::string_view kLast = "36SV";
        const bool first = kFirst.find(route.type) != std::string_view::npos;
        const bool last = kLast.find(route.type) != std::string_view::npos;
        route.runways = RunwaysOf(builder, procedure.airport, route.transition);
        const bool atRunway = kind == kSids ? first || route.type == 'T' : last;
        served.insert(route.runways.begin(), route.runways.end());
        if (route.legs.empty()) {
            continue;
        }
        if (atRunway) {
            const auto same =
                std::find_if(terminal.byRunway.begin(), terminal.byRunway.end(),
                             [&](const Route& have) { return SameLegs(have.legs, route.legs); });
            if (same != terminal.byRunway.end() && !same->runways.empty()) {
                same->runways.insert(same->runways.end(), route.runways.begin(),
                                     route.runways.end());
            } else {
                terminal.byRunway.push_back(std::move(route));
            }
        } else if (first || last) {
            terminal.transitions.push_back(std::move(route));
        } else {
            terminal.common.push_back(std::move(route));
        }
    }
    terminal.runways.assign(served.begin(), served.end());
    return terminal;
}

// The first or the last leg of a route.
Leg& EndOf(Route& route, bool atFront) {
    return atFront ? route.legs.front() : route.legs.back();
}

// The fix where every runway's route and every transition meet, with what all of them say of it; no
// fix when they do not agree.
Leg MeetingPoint(Terminal& terminal, bool outward) {
    Leg meeting = EndOf(terminal.byRunway.front(), !outward);
    const auto take = [&](std::vector<Route>& routes, bool atFront) {
        for (Route& route : routes) {
            const Leg& leg = EndOf(route, atFront);
            if (leg.fix != meeting.fix) {
                meeting = {};
                return;
            }
            meeting.restriction = leg.restriction == meeting.restriction ? leg.restriction : "---";
            meeting.flyover = meeting.flyover && leg.flyover;
        }
    };
    take(terminal.byRunway, !outward);
    take(terminal.transitions, outward);
    return meeting;
}

// Whether a leg at a joint says more than the other route's leg there. Then it is written too: what
// it says holds for those who fly its route only, and the plan has the fix once all the same.
bool SaysMore(const Leg& leg, const Leg& joint) {
    return (leg.restriction != "---" && leg.restriction != joint.restriction) ||
           (leg.flyover && !joint.flyover);
}

// Drops the end of a route that the neighbouring route has too. False when it has to stay.
bool DropJoint(Route& route, bool atFront, const Leg& joint) {
    const Leg& leg = EndOf(route, atFront);
    if (leg.fix == joint.fix && SaysMore(leg, joint)) {
        return false;
    }
    if (leg.fix == joint.fix) {
        route.legs.erase(atFront ? route.legs.begin() : route.legs.end() - 1);
    }
    return true;
}

bool DropJoints(std::vector<Route>& routes, bool atFront, const Leg& joint) {
    bool all = true;
    for (Route& route : routes) {
        all = DropJoint(route, atFront, joint) && all;
    }
    return all;
}

// A common route of one fix of which runways and transitions each say something of their own would
// have it three times on end, where a plan joins two: each side gets the fix instead.
void ShareCommonFix(Terminal& terminal, bool outward) {
    const Leg common = terminal.common.front().legs.front();
    terminal.common.clear();
    const auto give = [&](std::vector<Route>& routes, bool atFront) {
        for (Route& route : routes) {
            if (route.legs.empty() || EndOf(route, atFront).fix != common.fix) {
                route.legs.insert(atFront ? route.legs.begin() : route.legs.end(), common);
            }
        }
    };
    give(terminal.byRunway, !outward);
    give(terminal.transitions, outward);
}

// Where routes meet, each names the fix; the plan wants it once. Without a common route the fix
// where all meet becomes one, so that it is flown whatever is chosen.
void DropJoints(ProcedureKind kind, Terminal& terminal) {
    const bool outward = kind == kSids;
    if (terminal.common.empty() && !terminal.byRunway.empty() && !terminal.transitions.empty()) {
        const Leg meeting = MeetingPoint(terminal, outward);
        if (!meeting.fix.empty()) {
            terminal.common.push_back({' ', "", {meeting}, {}});
        }
    }
    if (terminal.common.size() != 1) {
        return;
    }
    const std::vector<Leg>& common = terminal.common.front().legs;
    const bool atRunways =
        DropJoints(terminal.byRunway, !outward, outward ? common.front() : common.back());
    const bool enRoute =
        DropJoints(terminal.transitions, outward, outward ? common.back() : common.front());
    if (common.size() == 1 && !atRunways && !enRoute) {
        ShareCommonFix(terminal, outward);
    }
}

std::string LegLine(const std::string& name, const Leg& leg, const std::string& runways) {
    return name + " " + leg.fix + " " + leg.restriction + " " +
           (runways.empty() ? "---" : runways) + " " + Fixed(leg.at.latitude, 5) + " " +
           Fixed(leg.at.longitude, 5) + (leg.flyover ? " FO" : " ---");
}

void AppendRoutes(const std::string& name, const std::vector<Route>& routes, bool areTransitions,
                  SectionLines& lines) {
    for (const Route& route : routes) {
        const std::string first = areTransitions ? name + "." + route.transition : name;
        for (const Leg& leg : route.legs) {
            lines.push_back(LegLine(first, leg, Join(route.runways)));
        }
    }
}

std::size_t LegCount(const Terminal& terminal) {
    std::size_t count = 0;
    for (const auto* routes : {&terminal.common, &terminal.byRunway, &terminal.transitions}) {
        for (const Route& route : *routes) {
            count += route.legs.size();
        }
    }
    return count;
}

void BuildTerminal(Builder& builder, const ProcedureRecord& procedure, ProcedureKind kind,
                   std::map<std::string, std::size_t>& counts) {
    const std::size_t most = kind == kSids ? kMostSids : kMostStars;
    const std::string title = procedure.airport + " " + procedure.name;
    Terminal terminal = SortRoutes(builder, procedure, kind);
    DropJoints(kind, terminal);
    const std::size_t legs = LegCount(terminal);
    if (legs == 0) {
        builder.report.Add(Topic::Dropped, "procedures that are vectors only", title);
        return;
    }
    if (legs > kMostLegs || counts[procedure.airport] >= most) {
        builder.report.Add(Topic::Dropped, "departures and arrivals beyond the module's tables",
                           title);
        return;
    }
    ++counts[procedure.airport];
    SectionLines& lines = builder.data.procedures[kind][procedure.airport];
    // A name of its own only with runways to tell: an empty list serves all.
    const std::string served = Join(terminal.runways);
    lines.push_back("T " + procedure.name + " ---" + (served.empty() ? "" : " " + served));
    const auto append = [&](const std::vector<Route>& routes, bool areTransitions) {
        AppendRoutes(procedure.name, routes, areTransitions, lines);
    };
    if (kind == kSids) {
        append(terminal.byRunway, false);
        append(terminal.common, false);
        append(terminal.transitions, true);
    } else {
        append(terminal.transitions, true);
        append(terminal.common, false);
        append(terminal.byRunway, false);
    }
    lines.emplace_back(";");  // closes the procedure's block
}

// ---- approaches ----

struct ApproachName {
    std::string runway = "--";  // circling
    std::string group;
};

struct ApproachType {
    char letter;
    const char* name;
};
constexpr std::array<ApproachType, 18> kApproachTypes{{
    {'I', "ILS"},
    {'L', "LOC"},
    {'R', "RNAV"},
    {'H', "RNP"},
    {'J', "GLS"},
    {'V', "VOR"},
    {'D', "VORDME"},
    {'S', "VOR"},
    {'N', "NDB"},
    {'Q', "NDBDME"},
    {'X', "LDA"},
    {'B', "LOCBC"},
    {'U', "SDF"},
    {'P', "GPS"},
    {'T', "TACAN"},
    {'F', "FMS"},
    {'G', "IGS"},
    {'M', "MLS"},
}};

// "I04L" is the ILS to 04L, "H03-Z" the RNP Z to 03, "VOR-A" a circling approach.
ApproachName NameApproach(const std::string& ident) {
    ApproachName name;
    name.group = ident;
    const auto type = std::find_if(
        kApproachTypes.begin(), kApproachTypes.end(),
        [&](const ApproachType& row) { return !ident.empty() && row.letter == ident[0]; });
    if (type == kApproachTypes.end() || ident.size() < 3) {
        return name;
    }
    const bool sided = ident.size() > 3 && (ident[3] == 'L' || ident[3] == 'R' || ident[3] == 'C');
    const std::string runway = ident.substr(1, sided ? 3 : 2);
    std::string_view suffix = std::string_view(ident).substr(1 + runway.size());
    if (suffix.starts_with('-')) {
        suffix.remove_prefix(1);
    }
    const bool digit = !suffix.empty() && suffix[0] >= '0' && suffix[0] <= '9';
    if (!IsRunwayIdent(runway) || suffix.size() > 1 || digit) {
        return name;  // circling, or a helicopter's course: no runway of its own
    }
    name.runway = runway;
    name.group = type->name + std::string(suffix);
    return name;
}

bool IsInitial(const Leg& leg) {
    return leg.role == 'A' || leg.role == 'C' || leg.role == 'D';
}

std::string RoleText(const Route& route, const Leg& leg) {
    if (leg.missed) {
        return "MAF";  // shown, never flown
    }
    if (route.type == 'A') {
        // The transition that begins at an initial fix bears its name.
        return IsInitial(leg) && leg.fix == route.transition ? "IAF" : route.transition;
    }
    if (IsInitial(leg)) {
        return "IAF";
    }
    return leg.role == 'F' ? "FAF" : leg.role == 'M' ? "MAF" : "---";
}

std::string ApproachLine(const ApproachName& name, const Route& route, const Leg& leg) {
    return name.runway + " " + name.group + " " + leg.fix + " " + RoleText(route, leg) + " " +
           leg.restriction + " " + Fixed(leg.at.latitude, 5) + " " + Fixed(leg.at.longitude, 5) +
           " 0 0" + (leg.flyover ? " FO" : " ---");
}

// Transitions end where the final approach begins.
void PrepareApproach(std::vector<Route>& routes) {
    const auto found = std::ranges::find_if(
        routes, [](const Route& route) { return route.type != 'A' && !route.legs.empty(); });
    if (found == routes.end()) {
        return;
    }
    const Leg& first = found->legs.front();
    for (Route& route : routes) {
        // A transition of one fix keeps it: it would not be offered otherwise.
        if (route.type == 'A' && route.legs.size() > 1 && !IsInitial(first)) {
            DropJoint(route, false, first);
        }
    }
}

// One airport's approaches while they are written: what the module's tables have room for.
struct ApproachRoom {
    std::set<std::string> groups;
    std::map<std::string, std::size_t> legsOfRunway;
    std::set<std::pair<std::string, std::string>> taken;
};

bool HasRoom(const ApproachRoom& room, const ApproachName& name, std::size_t legs) {
    const auto runway = room.legsOfRunway.find(name.runway);
    const bool known = runway != room.legsOfRunway.end();
    return (room.groups.contains(name.group) || room.groups.size() < kMostApproachTypes) &&
           (known || room.legsOfRunway.size() < kMostApproaches) &&
           (known ? runway->second : 0) + legs <= kMostLegs;
}

void BuildApproach(Builder& builder, const ProcedureRecord& procedure, ApproachRoom& room) {
    const std::string title = procedure.airport + " " + procedure.name;
    std::vector<Route> routes = Routes(builder, procedure);
    PrepareApproach(routes);
    ApproachName name = NameApproach(procedure.name);
    if (!room.taken.insert({name.runway, name.group}).second) {
        name.group = procedure.name;
        room.taken.insert({name.runway, name.group});
    }
    std::size_t legs = 0;
    for (const Route& route : routes) {
        legs += route.legs.size();
    }
    if (legs == 0) {
        builder.report.Add(Topic::Dropped, "approaches without a fix", title);
        return;
    }
    if (!HasRoom(room, name, legs)) {
        builder.report.Add(Topic::Dropped,
                           "approaches beyond the module's tables: those without "
                           "vertical guidance first",
                           title);
        return;
    }
    room.groups.insert(name.group);
    room.legsOfRunway[name.runway] += legs;
    SectionLines& lines = builder.data.procedures[kApproaches][procedure.airport];
    for (const Route& route : routes) {
        for (const Leg& leg : route.legs) {
            lines.push_back(ApproachLine(name, route, leg));
        }
    }
    lines.emplace_back(";");
}

// The order in which approaches get room: as a crew would choose.
std::size_t Preference(const ProcedureRecord& procedure) {
    constexpr std::string_view kOrder = "IHRJLXDSVBNQPUTFGM";
    return std::min(kOrder.find(procedure.name[0]), kOrder.size());
}

void BuildApproaches(Builder& builder) {
    std::vector<const ProcedureRecord*> order;
    for (const auto& [key, procedure] : builder.book.procedures[kApproaches]) {
        order.push_back(&procedure);
    }
    std::stable_sort(
        order.begin(), order.end(), [](const ProcedureRecord* a, const ProcedureRecord* b) {
            return std::pair(a->airport, Preference(*a)) < std::pair(b->airport, Preference(*b));
        });
    std::map<std::string, ApproachRoom> rooms;
    for (const ProcedureRecord* procedure : order) {
        BuildApproach(builder, *procedure, rooms[procedure->airport]);
    }
}

}  // namespace

void BuildProcedures(const CifpBook& book, Report& report, Dataset& data) {
    Builder builder{book, report, data, ArcPointNames(book)};
    for (const ProcedureKind kind : {kSids, kStars}) {
        std::map<std::string, std::size_t> counts;
        for (const auto& [key, procedure] : book.procedures[kind]) {
            BuildTerminal(builder, procedure, kind, counts);
        }
    }
    BuildApproaches(builder);
    const std::vector<Fix>& points = builder.arcNames.Points();
    data.fixes.insert(data.fixes.end(), points.begin(), points.end());
}

}  // namespace avqdata
