#include "cdu_smiths/smiths_pages.h"

namespace avq1 {
namespace {

constexpr FieldRow kFields[] = {
    SmithsTitle("SELECT WAYPOINT"),
    SmithsPrompt(kL6, "< INDEX", kSmithsIndex),
};

}  // namespace

constinit const PageRow kSmithsSelectPage{.page = kSmithsSelectWaypoint, .fields = kFields};

}  // namespace avq1
