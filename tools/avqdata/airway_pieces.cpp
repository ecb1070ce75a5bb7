#include "avqdata/airway_pieces.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <tuple>

#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

using NodeKey = std::tuple<std::string, long, long>;

NodeKey KeyOf(const Fix& fix) {
    constexpr double kSteps = 1e4;  // about ten metres
    return {fix.ident, std::lround(fix.at.latitude * kSteps),
            std::lround(fix.at.longitude * kSteps)};
}

struct Edge {
    std::array<std::size_t, 2> nodes{};
    bool used = false;
};

// The segments of one name as a graph.
struct Graph {
    std::vector<Fix> nodes;
    std::vector<std::vector<std::size_t>> edgesOf;
    std::vector<Edge> edges;
    std::map<NodeKey, std::size_t> indexes;
};

std::size_t NodeOf(Graph& graph, const Fix& fix) {
    const auto [found, isNew] = graph.indexes.emplace(KeyOf(fix), graph.nodes.size());
    if (isNew) {
        graph.nodes.push_back(fix);
        graph.edgesOf.emplace_back();
    }
    return found->second;
}

void AddEdge(Graph& graph, const AirwaySegment& segment) {
    const std::size_t from = NodeOf(graph, segment.from);
    const std::size_t to = NodeOf(graph, segment.to);
    const bool known =
        std::any_of(graph.edgesOf[from].begin(), graph.edgesOf[from].end(), [&](std::size_t edge) {
            const auto& nodes = graph.edges[edge].nodes;
            return nodes[0] == to || nodes[1] == to;
        });
    if (from == to || known) {
        return;
    }
    graph.edgesOf[from].push_back(graph.edges.size());
    graph.edgesOf[to].push_back(graph.edges.size());
    graph.edges.push_back({{from, to}, false});
}

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

std::size_t OtherEnd(const Edge& edge, std::size_t node) {
    return edge.nodes[0] == node ? edge.nodes[1] : edge.nodes[0];
}

// The unused edge that leads straightest on from `previous` over `node`.
std::size_t NextEdge(const Graph& graph, std::size_t previous, std::size_t node) {
    std::size_t best = kNone;
    double bestTurn = 0;
    for (const std::size_t edge : graph.edgesOf[node]) {
        if (graph.edges[edge].used) {
            continue;
        }
        double turn = 0;
        if (previous != kNone) {
            const LatLon& at = graph.nodes[node].at;
            const LatLon& next = graph.nodes[OtherEnd(graph.edges[edge], node)].at;
            turn =
                std::abs(TurnDeg(CourseTrue(graph.nodes[previous].at, at), CourseTrue(at, next)));
        }
        if (best == kNone || turn < bestTurn) {
            best = edge;
            bestTurn = turn;
        }
    }
    return best;
}

void WalkFrom(Graph& graph, std::size_t start, const std::string& name,
              std::vector<Airway>& pieces) {
    Airway piece{name, {graph.nodes[start]}};
    std::size_t previous = kNone;
    std::size_t node = start;
    for (std::size_t edge = NextEdge(graph, previous, node); edge != kNone;
         edge = NextEdge(graph, previous, node)) {
        graph.edges[edge].used = true;
        previous = node;
        node = OtherEnd(graph.edges[edge], node);
        piece.points.push_back(graph.nodes[node]);
    }
    if (piece.points.size() > 1) {
        pieces.push_back(std::move(piece));
    }
}

void WalkAll(Graph& graph, const std::string& name, std::vector<Airway>& pieces) {
    // Ends and forks first: what then is left are rings.
    for (const bool rings : {false, true}) {
        for (std::size_t node = 0; node < graph.nodes.size(); ++node) {
            while (rings || graph.edgesOf[node].size() % 2 == 1) {
                const std::size_t before = pieces.size();
                WalkFrom(graph, node, name, pieces);
                if (pieces.size() == before || !rings) {
                    break;
                }
            }
        }
    }
}

}  // namespace

std::vector<Airway> JoinSegments(const std::vector<AirwaySegment>& segments) {
    std::map<std::string, Graph> graphs;
    for (const AirwaySegment& segment : segments) {
        AddEdge(graphs[segment.name], segment);
    }
    std::vector<Airway> pieces;
    for (auto& [name, graph] : graphs) {
        const auto first = static_cast<std::ptrdiff_t>(pieces.size());
        WalkAll(graph, name, pieces);
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
