#include "cdu_smiths/smiths_pages.h"

namespace avq1 {
namespace {

constexpr FieldRow kFields[] = {
    SmithsTitle("TAKEOFF  REF"),
    SmithsPrompt(kL6, "< INDEX", kSmithsIndex),
};

}  // namespace

constinit const PageRow kSmithsTakeoffRefPage{.page = kSmithsTakeoffRef, .fields = kFields};

}  // namespace avq1
