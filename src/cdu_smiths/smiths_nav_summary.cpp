#include "cdu_smiths/smiths_pages.h"

namespace avq1 {
namespace {

constexpr FieldRow kFields[] = {
    SmithsTitle("TEMP  NAV  SUMMARY"),
    SmithsPrompt(kL6, "< INDEX", kSmithsIndex),
};

}  // namespace

constinit const PageRow kSmithsNavSummaryPage{.page = kSmithsNavSummary, .fields = kFields};

}  // namespace avq1
