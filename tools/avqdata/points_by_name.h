// avqdata/points_by_name.h - what has an identifier, found by it: a table of the world's points.
//
// One identifier may stand for many places. Entries lie one behind the other and are chained by
// number, so that a table of a hundred thousand costs two allocations and few misses of the cache.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "avqdata/dataset.h"
#include "avqdata/text_tools.h"

namespace avqdata {

template <typename Value>
class ByName {
  public:
    ByName() : ByName(0) {}
    explicit ByName(std::size_t expected) {
        entries_.reserve(expected);
        Spread(expected);
    }

    void Add(std::string_view name, const Value& value) {
        if (entries_.size() >= heads_.size()) {
            Spread(entries_.size() * 2);
        }
        entries_.push_back({std::string(name), value, kNone});
        Chain(static_cast<std::uint32_t>(entries_.size() - 1));
    }

    std::size_t Size() const { return entries_.size(); }

    // Calls `onValue` with each value of the name, the latest first, until it returns false.
    template <typename OnValue>
    void ForEach(std::string_view name, OnValue onValue) const {
        for (std::uint32_t i = heads_[HeadOf(name)]; i != kNone; i = entries_[i].next) {
            if (entries_[i].name == name && !onValue(entries_[i].value)) {
                return;
            }
        }
    }

  private:
    static constexpr std::uint32_t kNone = ~std::uint32_t{0};

    struct Entry {
        std::string name = {};
        Value value = {};
        std::uint32_t next = kNone;  // of the same head
    };

    std::size_t HeadOf(std::string_view name) const {
        return std::hash<std::string_view>{}(name) & (heads_.size() - 1);
    }
    void Chain(std::uint32_t index) {
        std::uint32_t& head = heads_[HeadOf(entries_[index].name)];
        entries_[index].next = head;
        head = index;
    }
    void Spread(std::size_t expected) {
        std::size_t size = 64;
        while (size < expected) {
            size *= 2;
        }
        heads_.assign(size, kNone);
        for (std::uint32_t i = 0; i < entries_.size(); ++i) {
            Chain(i);
        }
    }

    std::vector<Entry> entries_;
    std::vector<std::uint32_t> heads_;  // by hash; a power of two
};

using PointsByName = ByName<LatLon>;

// Told by their latitudes alone: most points of one name lie in different countries.
inline bool LieFarApart(const LatLon& a, const LatLon& b, double nm) {
    constexpr double kLeastNmOfDegree = 59;
    return std::abs(a.latitude - b.latitude) * kLeastNmOfDegree >= nm;
}

// The nearest point of that identifier within so many nm, null when there is none.
inline const LatLon* Nearest(const PointsByName& points, std::string_view ident, const LatLon& at,
                             double withinNm) {
    const LatLon* best = nullptr;
    points.ForEach(ident, [&](const LatLon& point) {
        if (point.latitude == at.latitude && point.longitude == at.longitude) {
            best = &point;
            return false;
        }
        const double nm = LieFarApart(point, at, withinNm) ? withinNm : DistanceNm(point, at);
        if (nm < withinNm) {
            withinNm = nm;
            best = &point;
        }
        return true;
    });
    return best;
}

}  // namespace avqdata
