// ARRIVALS: arrivals, approaches and runways of the route's destination, or of an airport to look
// at.
#include "cdu_smiths/smiths_procedures.h"

namespace avq1 {

constinit const PageRow kSmithsArrivalsPage{
    .page = kSmithsArrivals, .fields = kSmithsPickFields, .compose = ComposeSmithsProcedures};

}  // namespace avq1
