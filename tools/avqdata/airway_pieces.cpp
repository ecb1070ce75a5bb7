#include "avqdata/airway_pieces.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <tuple>
#include <unordered_map>

#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

// Edges of a node are chained in the order in which the source has them.
struct Edge {
    std::array<std::size_t, 2> nodes{};
    std::array<std::size_t, 2> next{kNone, kNone};  // of each node's edges
    bool used = false;
};

struct Node {
    const Fix* fix = nullptr;
    std::size_t firstEdge = kNone;
    std::size_t lastEdge = kNone;
    std::size_t edges = 0;
};

// The segments of one name as a graph.
struct Graph {
    std::vector<Node> nodes;
    std::vector<Edge> edges;
};

using Segments = std::vector<const AirwaySegment*>;

std::size_t SideOf(const Edge& edge, std::size_t node) {
    return edge.nodes[0] == node ? 0 : 1;
}

std::size_t OtherEnd(const Edge& edge, std::size_t node) {
    return edge.nodes[1 - SideOf(edge, node)];
}

// Calls `onEdge` with the number of each edge of the node, until it returns false.
template <typename OnEdge>
void WalkEdges(const Graph& graph, std::size_t node, OnEdge onEdge) {
    std::size_t edge = graph.nodes[node].firstEdge;
    while (edge != kNone && onEdge(edge)) {
        edge = graph.edges[edge].next[SideOf(graph.edges[edge], node)];
    }
}

void Chain(Graph& graph, std::size_t number, std::size_t node) {
    Node& ends = graph.nodes[node];
    if (ends.lastEdge == kNone) {
        ends.firstEdge = number;
    } else {
        Edge& last = graph.edges[ends.lastEdge];
        last.next[SideOf(last, node)] = number;
    }
    ends.lastEdge = number;
    ++ends.edges;
}

void AddEdge(Graph& graph, std::size_t from, std::size_t to) {
    bool known = from == to;
    WalkEdges(graph, from, [&](std::size_t edge) {
        known = known || OtherEnd(graph.edges[edge], from) == to;
        return !known;
    });
    if (!known) {
        graph.edges.push_back({{from, to}});
        Chain(graph, graph.edges.size() - 1, from);
        Chain(graph, graph.edges.size() - 1, to);
    }
}

// One end of a segment: at even places where it begins, at odd ones where it ends.
struct SegmentEnd {
    long latitude = 0;  // about ten metres: ends as near as that are one
    long longitude = 0;
    const Fix* fix = nullptr;
    std::size_t place = 0;

    bool IsOnePoint(const SegmentEnd& other) const {
        return latitude == other.latitude && longitude == other.longitude &&
               fix->ident == other.fix->ident;
    }
    bool operator<(const SegmentEnd& other) const {
        return std::tie(latitude, longitude, fix->ident, place) <
               std::tie(other.latitude, other.longitude, other.fix->ident, other.place);
    }
};

// For each end of each segment the first place of the same point.
std::vector<std::size_t> FirstPlaces(const Segments& segments) {
    constexpr double kSteps = 1e4;
    std::vector<SegmentEnd> ends;
    ends.reserve(segments.size() * 2);
    for (const AirwaySegment* const segment : segments) {
        for (const Fix* const fix : {&segment->from, &segment->to}) {
            ends.push_back({std::lround(fix->at.latitude * kSteps),
                            std::lround(fix->at.longitude * kSteps), fix, ends.size()});
        }
    }
    std::sort(ends.begin(), ends.end());
    std::vector<std::size_t> firstPlaces(ends.size());
    for (std::size_t i = 0; i < ends.size(); ++i) {
        const bool isKnown = i > 0 && ends[i].IsOnePoint(ends[i - 1]);
        firstPlaces[ends[i].place] = isKnown ? firstPlaces[ends[i - 1].place] : ends[i].place;
    }
    return firstPlaces;
}

Graph GraphOf(const Segments& segments) {
    Graph graph;
    const std::vector<std::size_t> firstPlaces = FirstPlaces(segments);
    std::vector<std::size_t> nodeAt(firstPlaces.size());
    for (std::size_t place = 0; place < nodeAt.size(); ++place) {
        const AirwaySegment& segment = *segments[place / 2];
        if (firstPlaces[place] == place) {
            nodeAt[place] = graph.nodes.size();
            graph.nodes.push_back({place % 2 == 0 ? &segment.from : &segment.to});
        } else {
            nodeAt[place] = nodeAt[firstPlaces[place]];
        }
    }
    for (std::size_t i = 0; i < segments.size(); ++i) {
        AddEdge(graph, nodeAt[2 * i], nodeAt[2 * i + 1]);
    }
    return graph;
}

// The unused edge that leads straightest on from `previous` over `node`.
std::size_t NextEdge(const Graph& graph, std::size_t previous, std::size_t node) {
    std::size_t best = kNone;
    std::size_t count = 0;
    WalkEdges(graph, node, [&](std::size_t edge) {
        count += graph.edges[edge].used ? 0 : 1;
        best = best == kNone && count == 1 ? edge : best;
        return true;
    });
    if (previous == kNone || count < 2) {
        return best;
    }
    const LatLon& at = graph.nodes[node].fix->at;
    const double course = CourseTrue(graph.nodes[previous].fix->at, at);
    double bestTurn = 360;
    WalkEdges(graph, node, [&](std::size_t edge) {
        if (!graph.edges[edge].used) {
            const LatLon& next = graph.nodes[OtherEnd(graph.edges[edge], node)].fix->at;
            const double turn = std::abs(TurnDeg(course, CourseTrue(at, next)));
            best = turn < bestTurn ? edge : best;
            bestTurn = std::min(turn, bestTurn);
        }
        return true;
    });
    return best;
}

void WalkFrom(Graph& graph, std::size_t start, const std::string& name,
              std::vector<Airway>& pieces) {
    std::vector<std::size_t> way{start};
    std::size_t previous = kNone;
    std::size_t node = start;
    for (std::size_t edge = NextEdge(graph, previous, node); edge != kNone;
         edge = NextEdge(graph, previous, node)) {
        graph.edges[edge].used = true;
        previous = node;
        node = OtherEnd(graph.edges[edge], node);
        way.push_back(node);
    }
    if (way.size() > 1) {
        Airway& piece = pieces.emplace_back(Airway{name, {}});
        piece.points.reserve(way.size());
        for (const std::size_t number : way) {
            piece.points.push_back(*graph.nodes[number].fix);
        }
    }
}

void WalkAll(Graph& graph, const std::string& name, std::vector<Airway>& pieces) {
    // Ends and forks first: what then is left are rings.
    for (const bool rings : {false, true}) {
        for (std::size_t node = 0; node < graph.nodes.size(); ++node) {
            while (rings || graph.nodes[node].edges % 2 == 1) {
                const std::size_t before = pieces.size();
                WalkFrom(graph, node, name, pieces);
                if (pieces.size() == before || !rings) {
                    break;
                }
            }
        }
    }
}

// Those of one name together, the names in order.
std::vector<Segments> ByNames(const std::vector<AirwaySegment>& segments) {
    std::unordered_map<std::string_view, std::size_t> numbers;
    std::vector<Segments> groups;
    for (const AirwaySegment& segment : segments) {
        const auto [found, isNew] = numbers.emplace(segment.name, groups.size());
        if (isNew) {
            groups.emplace_back();
        }
        groups[found->second].push_back(&segment);
    }
    std::sort(groups.begin(), groups.end(), [](const Segments& a, const Segments& b) {
        return a.front()->name < b.front()->name;
    });
    return groups;
}

}  // namespace

std::vector<Airway> JoinSegments(const std::vector<AirwaySegment>& segments) {
    std::vector<Airway> pieces;
    for (const Segments& group : ByNames(segments)) {
        Graph graph = GraphOf(group);
        const auto first = static_cast<std::ptrdiff_t>(pieces.size());
        WalkAll(graph, group.front()->name, pieces);
        std::stable_sort(
            pieces.begin() + first, pieces.end(),
            [](const Airway& a, const Airway& b) { return a.points.size() > b.points.size(); });
    }
    return pieces;
}

std::vector<Airway> CutToRegion(const Airway& airway, const Region& region) {
    std::vector<Airway> parts;
    Airway part{airway.name, {}};
    const auto close = [&] {
        if (part.points.size() > 1) {
            parts.push_back(part);
        }
        part.points.clear();
    };
    for (const Fix& point : airway.points) {
        if (region.Contains(point.at)) {
            part.points.push_back(point);
        } else {
            close();
        }
    }
    close();
    return parts;
}

}  // namespace avqdata
