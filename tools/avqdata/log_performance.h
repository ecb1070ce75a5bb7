// avqdata/log_performance.h - rows for an aircraft's performance tables file from flights that were
// flown, so that predictions become what the aircraft does.
#pragma once

#include <string>
#include <vector>

#include "avqdata/log_records.h"

namespace avqdata {

// A flight's records one by one, as items of their segments; the weight is fuel and zero fuel
// weight. Level records in a climb or descent are left out.
FlightSummary ItemsOfRecords(const LoggedFlight& flight);

// The [CLIMB], [GRWT], [CRUISE] and [DESCENT] rows of all these flights of one aircraft, averaged
// per altitude of 5000 ft and weight column, lowest altitude first. Empty when there is none.
std::string PerformanceTablesText(const std::vector<FlightSummary>& flights);

}  // namespace avqdata
