#include "cdu_smiths/smiths_pages.h"

namespace avq1 {
namespace {

constexpr FieldRow kFields[] = {
    SmithsTitle("ARRIVALS"),
    SmithsPrompt(kL6, "< INDEX", kSmithsIndex),
};

}  // namespace

constinit const PageRow kSmithsArrivalsPage{.page = kSmithsArrivals, .fields = kFields};

}  // namespace avq1
