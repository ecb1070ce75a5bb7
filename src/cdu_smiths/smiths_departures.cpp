// DEPARTURES: departures and runways of the route's origin, or of an airport to look at.
#include "cdu_smiths/smiths_procedures.h"

namespace avq1 {

constinit const PageRow kSmithsDeparturesPage{
    .page = kSmithsDepartures, .fields = kSmithsPickFields, .compose = ComposeSmithsProcedures};

}  // namespace avq1
