#include "avqdata/outline_union.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <map>
#include <numbers>
#include <set>
#include <utility>

#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

using avq1::LatLon;

// A place on the grid. With whole numbers every question of sides has an exact answer.
struct Cell {
    std::int64_t x = 0;
    std::int64_t y = 0;

    friend bool operator==(const Cell& a, const Cell& b) { return a.x == b.x && a.y == b.y; }
    friend bool operator<(const Cell& a, const Cell& b) {
        return a.x != b.x ? a.x < b.x : a.y < b.y;
    }
};

Cell operator-(const Cell& a, const Cell& b) {
    return {a.x - b.x, a.y - b.y};
}

std::int64_t Cross(const Cell& a, const Cell& b) {
    return a.x * b.y - a.y * b.x;
}

std::int64_t Dot(const Cell& a, const Cell& b) {
    return a.x * b.x + a.y * b.y;
}

int Sign(std::int64_t value) {
    return value > 0 ? 1 : value < 0 ? -1 : 0;
}

using Edge = std::pair<Cell, Cell>;  // the lesser cell first
using Graph = std::map<Cell, std::vector<Cell>>;

// Cells and what lies there; the earth is flat enough across an airspace for who touches whom.
struct Grid {
    LatLon origin;
    double cellsPerLongitude = 1;
    std::map<Cell, LatLon> places;  // the first point of each cell

    static constexpr double kCellsPerDegree = 60.0 / kGridNm;

    explicit Grid(const std::vector<Ring>& outlines) : origin(outlines.front().front()) {
        double south = 90;
        double north = -90;
        for (const Ring& outline : outlines) {
            for (const LatLon& at : outline) {
                south = std::min(south, at.latitude);
                north = std::max(north, at.latitude);
            }
        }
        constexpr double kLeastShrink = 0.01;  // at the poles
        cellsPerLongitude = kCellsPerDegree *
                            std::max(kLeastShrink, std::cos((south + north) / 2 * avq1::kDegToRad));
    }
    Cell Add(const LatLon& at) {
        const Cell cell{std::llround(TurnDeg(origin.longitude, at.longitude) * cellsPerLongitude),
                        std::llround((at.latitude - origin.latitude) * kCellsPerDegree)};
        places.try_emplace(cell, at);
        return cell;
    }
    void Add(const Cell& cell) {
        const double east = static_cast<double>(cell.x) / cellsPerLongitude;
        const double north = static_cast<double>(cell.y) / kCellsPerDegree;
        places.try_emplace(cell,
                           LatLon{origin.latitude + north, TurnDeg(0, origin.longitude + east)});
    }
};

std::vector<Edge> CollectEdges(const std::vector<Ring>& outlines, Grid& grid) {
    std::set<Edge> edges;
    for (const Ring& outline : outlines) {
        Cell before = grid.Add(outline.back());
        for (const LatLon& at : outline) {
            const Cell cell = grid.Add(at);
            if (cell != before) {
                edges.insert(std::minmax(before, cell));
            }
            before = cell;
        }
    }
    return {edges.begin(), edges.end()};
}

// Gives the places where edges cross a cell of their own. False when there are too many.
bool AddCrossings(const std::vector<Edge>& edges, Grid& grid) {
    for (std::size_t i = 0; i < edges.size(); ++i) {
        const auto& [a, b] = edges[i];
        for (std::size_t j = i + 1; j < edges.size() && edges[j].first.x <= b.x; ++j) {
            const auto& [c, d] = edges[j];
            if (std::max(c.y, d.y) < std::min(a.y, b.y) ||
                std::min(c.y, d.y) > std::max(a.y, b.y)) {
                continue;
            }
            const std::int64_t toC = Cross(b - a, c - a);
            const std::int64_t toD = Cross(b - a, d - a);
            const bool apart = Sign(toC) * Sign(toD) < 0 &&
                               Sign(Cross(d - c, a - c)) * Sign(Cross(d - c, b - c)) < 0;
            if (apart) {
                const double part = static_cast<double>(toC) / static_cast<double>(toC - toD);
                const auto along = [&](std::int64_t from, std::int64_t to) {
                    return from + std::llround(part * static_cast<double>(to - from));
                };
                grid.Add(Cell{along(c.x, d.x), along(c.y, d.y)});
            }
        }
        if (grid.places.size() > 2 * kMostUnionPoints) {
            return false;
        }
    }
    return true;
}

// Every edge by way of all the cells that it touches: where two had touched, they now share a cell.
Graph Link(const std::vector<Edge>& edges, const Grid& grid) {
    Graph graph;
    std::vector<Cell> way;
    for (const auto& [a, b] : edges) {
        way.clear();
        const Cell along = b - a;
        const std::int64_t reach = along.x + std::abs(along.y);  // of half a cell to either side
        const auto [low, high] = std::minmax(a.y, b.y);
        for (auto place = grid.places.lower_bound({a.x, low});
             place != grid.places.end() && place->first.x <= b.x; ++place) {
            const Cell& cell = place->first;
            if (cell.y >= low && cell.y <= high && 2 * std::abs(Cross(along, cell - a)) <= reach) {
                way.push_back(cell);
            }
        }
        std::sort(way.begin(), way.end(), [&along](const Cell& p, const Cell& q) {
            return std::pair(Dot(along, p), p) < std::pair(Dot(along, q), q);
        });
        for (std::size_t i = 1; i < way.size(); ++i) {
            graph[way[i - 1]].push_back(way[i]);
            graph[way[i]].push_back(way[i - 1]);
        }
    }
    for (auto& [cell, links] : graph) {
        std::sort(links.begin(), links.end());
        links.erase(std::unique(links.begin(), links.end()), links.end());
    }
    return graph;
}

// Takes away lines that enclose nothing: what is left where an outline is thinner than a cell.
void DropLooseEnds(Graph& graph) {
    std::vector<Cell> ends;
    for (const auto& [cell, links] : graph) {
        if (links.size() == 1) {
            ends.push_back(cell);
        }
    }
    while (!ends.empty()) {
        const auto end = graph.find(ends.back());
        ends.pop_back();
        if (end == graph.end() || end->second.size() != 1) {
            continue;
        }
        std::vector<Cell>& others = graph[end->second.front()];
        std::erase(others, end->first);
        if (others.size() == 1) {
            ends.push_back(end->second.front());
        }
        graph.erase(end);
    }
    std::erase_if(graph, [](const auto& node) { return node.second.empty(); });
}

// Where the outside of all leads on: the first way to the right of the one that `back` looks along.
Cell RightmostWay(const std::vector<Cell>& links, const Cell& at, const Cell& back) {
    const auto angle = [](const Cell& to) {
        return std::atan2(static_cast<double>(to.y), static_cast<double>(to.x));
    };
    const double behind = angle(back);
    return *std::min_element(links.begin(), links.end(), [&](const Cell& p, const Cell& q) {
        const auto turn = [&](const Cell& to) {
            const double left = angle(to - at) - behind;
            return left > 0 ? left : left + 2 * std::numbers::pi;
        };
        return turn(p) < turn(q);
    });
}

// Once around a part of the graph, counter-clockwise from its southernmost cell.
std::vector<Cell> WalkAround(const Graph& graph, const Cell& start) {
    std::vector<Cell> ring{start};
    const Cell second = RightmostWay(graph.at(start), start, {0, -1});
    Cell before = start;
    Cell at = second;
    std::size_t ways = 0;
    for (const auto& [cell, links] : graph) {
        ways += links.size();
    }
    for (; ways > 0; --ways) {  // none is gone twice
        const Cell next = RightmostWay(graph.at(at), at, before - at);
        if (at == start && next == second) {
            return ring;
        }
        ring.push_back(at);
        before = at;
        at = next;
    }
    return {};
}

// All cells that can be reached from one.
std::set<Cell> PartOf(const Graph& graph, const Cell& first) {
    std::set<Cell> part{first};
    std::vector<Cell> open{first};
    while (!open.empty()) {
        const Cell at = open.back();
        open.pop_back();
        for (const Cell& next : graph.at(at)) {
            if (part.insert(next).second) {
                open.push_back(next);
            }
        }
    }
    return part;
}

// Closes bays with a narrow mouth: between two cells near each other the ring runs the other way.
void CloseBays(std::vector<Cell>& ring) {
    constexpr std::int64_t kMouth = static_cast<std::int64_t>(kMouthNm / kGridNm);
    for (std::size_t i = 0; i + 2 < ring.size(); ++i) {
        for (std::size_t j = ring.size() - 1; j > i + 1; --j) {
            const Cell mouth = ring[j] - ring[i];
            if (std::abs(mouth.x) > kMouth || std::abs(mouth.y) > kMouth) {
                continue;
            }
            std::int64_t area = 0;
            for (std::size_t k = i + 1; k < j; ++k) {
                area += Cross(ring[k] - ring[i], ring[k + 1] - ring[i]);
            }
            if (area < 0 || (area == 0 && mouth == Cell{})) {
                ring.erase(ring.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                           ring.begin() + static_cast<std::ptrdiff_t>(j));
                break;
            }
        }
    }
}

bool IsInside(const Cell& cell, const std::vector<Cell>& ring) {
    bool inside = false;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Cell& a = ring[i];
        const Cell& b = ring[(i + 1) % ring.size()];
        if ((a.y > cell.y) != (b.y > cell.y)) {
            const Cell& low = a.y < b.y ? a : b;
            const Cell& high = a.y < b.y ? b : a;
            inside = inside != (Cross(high - low, cell - low) > 0);
        }
    }
    return inside;
}

}  // namespace

std::vector<Ring> OuterRings(const std::vector<Ring>& outlines) {
    std::size_t points = 0;
    for (const Ring& outline : outlines) {
        points += outline.size();
    }
    if (points > kMostUnionPoints) {
        return {};
    }
    std::vector<Ring> solid;
    std::copy_if(outlines.begin(), outlines.end(), std::back_inserter(solid),
                 [](const Ring& outline) { return !outline.empty(); });
    if (solid.empty()) {
        return {};
    }
    Grid grid(solid);
    const std::vector<Edge> edges = CollectEdges(solid, grid);
    if (!AddCrossings(edges, grid)) {
        return {};
    }
    Graph graph = Link(edges, grid);
    DropLooseEnds(graph);

    std::vector<std::vector<Cell>> around;
    std::set<Cell> seen;
    for (const auto& [cell, links] : graph) {
        if (seen.contains(cell)) {
            continue;
        }
        const std::set<Cell> part = PartOf(graph, cell);
        seen.insert(part.begin(), part.end());
        const Cell start = *std::min_element(
            part.begin(), part.end(),
            [](const Cell& a, const Cell& b) { return std::pair(a.y, a.x) < std::pair(b.y, b.x); });
        around.push_back(WalkAround(graph, start));
        CloseBays(around.back());
    }
    std::vector<Ring> rings;
    for (const std::vector<Cell>& ring : around) {
        const bool inside = std::any_of(around.begin(), around.end(), [&](const auto& other) {
            return &other != &ring && !ring.empty() && IsInside(ring.front(), other);
        });
        if (inside || ring.size() < 3) {
            continue;
        }
        rings.emplace_back();
        for (const Cell& cell : ring) {
            rings.back().push_back(grid.places.at(cell));
        }
        rings.back().push_back(rings.back().front());
    }
    return rings;
}

}  // namespace avqdata
