#include "cdu_smiths/smiths_pages.h"

namespace avq1 {
namespace {

constexpr FieldRow kFields[] = {
    SmithsTitle("REF  NAV  DATA"),
    SmithsPrompt(kL6, "< INDEX", kSmithsIndex),
};

}  // namespace

constinit const PageRow kSmithsRefNavDataPage{.page = kSmithsRefNavData, .fields = kFields};

}  // namespace avq1
