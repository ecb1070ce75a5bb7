#include "cdu_gns/gns_pages.h"
#include "cdu_gns/gns_plan.h"
namespace avq1 {
void OpenGnsCrossing() {}
void OpenGnsCrossingOf(std::int32_t) {}
void OpenGnsDirect() {}

void OpenGnsProcedure(GnsPage) {}
void OpenGnsSave() {}
EntryResult EnterGnsWaypoint(const LineRow&) { return EntryResult::None; }
}
