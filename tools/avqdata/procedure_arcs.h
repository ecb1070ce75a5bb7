// avqdata/procedure_arcs.h - arcs of procedures (AF, RF) as named points for a route of fixes.
//
// The route from point to point keeps within kFarthestOffArcNm of the arc, with no more points than
// that takes. A name is three letters of the fix at which the arc ends and a number, "SAU01": of
// one airport each place has one name and each name one place, whatever procedures pass it; and it
// is no name of the source's own.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "avqdata/arinc.h"
#include "avqdata/dataset.h"

namespace avqdata {

inline constexpr double kFarthestOffArcNm = 0.3;

class ArcPointNames {
  public:
    explicit ArcPointNames(const CifpBook& book) : book_(book) {}
    std::string NameOf(const std::string& airport, const std::string& end, const LatLon& at);
    const std::vector<Fix>& Points() const { return points_; }  // each once

  private:
    const CifpBook& book_;
    std::map<std::string, std::map<std::string, LatLon>> places_;  // of airports, by name
    std::vector<Fix> points_;
};

// What stands between `begin`, where the route has come to, and the leg's fix. An arc about a
// station may begin elsewhere; its beginning is then the first point. Nothing when it cannot be
// followed: its centre cannot be found or does not fit, or nobody says where it begins.
std::optional<std::vector<Fix>> FollowArc(const CifpBook& book, const std::string& airport,
                                          const ProcedureLegRecord& leg, const LatLon& end,
                                          const std::optional<LatLon>& begin, ArcPointNames& names);

}  // namespace avqdata
