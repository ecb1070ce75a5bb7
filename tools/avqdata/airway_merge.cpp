#include <algorithm>
#include <iterator>
#include <map>
#include <unordered_map>

#include "avqdata/airway_pieces.h"
#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

constexpr double kSameFixNm = 10.0;  // of one identifier
constexpr double kSamePlaceNm = 0.05;

using Points = std::vector<Fix>;
using PiecesByName = std::multimap<std::string, std::size_t>;

struct Merge {
    std::vector<Airway>& incoming;
    PiecesByName byName;
    std::vector<Airway> kept;  // stretches of the old pieces that the source has not
    Report& report;
};

std::string Ends(const std::string& name, const Points& points, std::size_t first,
                 std::size_t last) {
    return name + " " + points[first].ident + " to " + points[last].ident;
}

// Where on the old piece the new one's points lie, at the new one's places.
std::map<std::size_t, std::size_t> CommonPoints(const Airway& old, const Airway& piece) {
    std::unordered_multimap<std::string, std::size_t> byIdent;
    for (std::size_t i = 0; i < piece.points.size(); ++i) {
        byIdent.emplace(piece.points[i].ident, i);
    }
    std::map<std::size_t, std::size_t> common;
    for (std::size_t i = 0; i < old.points.size(); ++i) {
        const auto [first, last] = byIdent.equal_range(old.points[i].ident);
        for (auto candidate = first; candidate != last; ++candidate) {
            if (DistanceNm(old.points[i].at, piece.points[candidate->second].at) < kSameFixNm) {
                common.emplace(i, candidate->second);
            }
        }
    }
    return common;
}

bool SameIdents(const Points& a, std::size_t firstOfA, std::size_t lastOfA, const Points& b,
                std::size_t endOfB, std::size_t otherEndOfB) {
    const auto [firstOfB, lastOfB] = std::minmax(endOfB, otherEndOfB);
    if (lastOfA - firstOfA != lastOfB - firstOfB) {
        return false;
    }
    for (std::size_t i = 0; i <= lastOfA - firstOfA; ++i) {
        const std::size_t j = endOfB <= otherEndOfB ? firstOfB + i : lastOfB - i;
        if (a[firstOfA + i].ident != b[j].ident) {
            return false;
        }
    }
    return true;
}

// Keeps of an old piece what lies outside the stretches that new pieces have from end to end.
void CutOldPiece(Merge& merge, Airway old) {
    std::vector<bool> replaced(old.points.size(), false);  // the leg behind each point
    const auto [first, last] = merge.byName.equal_range(old.name);
    for (auto named = first; named != last; ++named) {
        const Airway& piece = merge.incoming[named->second];
        const std::map<std::size_t, std::size_t> common = CommonPoints(old, piece);
        if (common.empty()) {
            continue;
        }
        const auto from = *common.begin();
        const auto to = *common.rbegin();
        std::fill(replaced.begin() + static_cast<std::ptrdiff_t>(from.first),
                  replaced.begin() + static_cast<std::ptrdiff_t>(to.first), true);
        for (const auto& [ofOld, ofPiece] : common) {
            old.points[ofOld].at = piece.points[ofPiece].at;
        }
        if (from.first == to.first) {
            continue;
        }
        const bool same =
            SameIdents(old.points, from.first, to.first, piece.points, from.second, to.second);
        merge.report.Add(Topic::Changed,
                         same ? "stretches of airways that were there already"
                              : "stretches of airways replaced by the source's way",
                         same ? "" : Ends(old.name, old.points, from.first, to.first));
    }
    const bool isCut = std::find(replaced.begin(), replaced.end(), true) != replaced.end();
    for (std::size_t i = 0; i + 1 < old.points.size(); ++i) {
        std::size_t end = i;
        while (end + 1 < old.points.size() && !replaced[end]) {
            ++end;
        }
        if (end > i) {
            if (isCut) {
                merge.report.Add(Topic::Changed, "stretches of airways kept, as the source ends",
                                 Ends(old.name, old.points, i, end));
            }
            merge.kept.push_back(
                {old.name, Points(old.points.begin() + static_cast<std::ptrdiff_t>(i),
                                  old.points.begin() + static_cast<std::ptrdiff_t>(end) + 1)});
            i = end;
        }
    }
}

bool SamePlace(const Fix& a, const Fix& b) {
    return a.ident == b.ident && DistanceNm(a.at, b.at) < kSamePlaceNm;
}

// The piece of the name that begins or ends at the fix; the count of all when there is none.
std::size_t PieceEndingAt(const Merge& merge, const std::string& name, const Fix& fix) {
    const auto [first, last] = merge.byName.equal_range(name);
    for (auto named = first; named != last; ++named) {
        const Points& points = merge.incoming[named->second].points;
        if (!points.empty() && (SamePlace(points.front(), fix) || SamePlace(points.back(), fix))) {
            return named->second;
        }
    }
    return merge.incoming.size();
}

// Flies the stretch on along the piece that it meets end to end, which is thereby used up.
void GoOnBehind(Merge& merge, Airway& stretch) {
    const std::size_t at = PieceEndingAt(merge, stretch.name, stretch.points.back());
    if (at == merge.incoming.size()) {
        return;
    }
    Points points = std::move(merge.incoming[at].points);
    merge.incoming[at].points.clear();
    if (!SamePlace(points.front(), stretch.points.back())) {
        std::reverse(points.begin(), points.end());
    }
    stretch.points.insert(stretch.points.end(), points.begin() + 1, points.end());
}

}  // namespace

void MergeAirways(std::vector<Airway>&& incoming, std::vector<Airway>& target, Report& report) {
    Merge merge{incoming, {}, {}, report};
    for (std::size_t i = 0; i < incoming.size() && !target.empty(); ++i) {
        merge.byName.emplace(incoming[i].name, i);
    }
    std::vector<Airway> others;
    for (Airway& old : target) {
        if (merge.byName.contains(old.name)) {
            CutOldPiece(merge, std::move(old));
        } else {
            others.push_back(std::move(old));
        }
    }
    for (Airway& stretch : merge.kept) {
        for (int end = 0; end < 2; ++end) {
            GoOnBehind(merge, stretch);
            std::reverse(stretch.points.begin(), stretch.points.end());
        }
        merge.byName.emplace(stretch.name, incoming.size());
        incoming.push_back(std::move(stretch));
    }
    target = std::move(others);
    std::erase_if(incoming, [](const Airway& piece) { return piece.points.empty(); });
    target.insert(target.end(), std::make_move_iterator(incoming.begin()),
                  std::make_move_iterator(incoming.end()));
}

}  // namespace avqdata
