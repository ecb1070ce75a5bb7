#include "cdu_smiths/smiths_pages.h"

namespace avq1 {
namespace {

constexpr FieldRow kFields[] = {
    SmithsTitle("STORED FLIGHT PLANS", 10),
    SmithsPrompt(kL6, "< INDEX", kSmithsIndex),
};

}  // namespace

constinit const PageRow kSmithsStoredPlansPage{.page = kSmithsStoredPlans, .fields = kFields};

}  // namespace avq1
