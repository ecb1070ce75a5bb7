#include "cdu_smiths/smiths_pages.h"

namespace avq1 {
namespace {

constexpr FieldRow kFields[] = {
    SmithsTitle("DEP / ARR  INDEX"),
    SmithsPrompt(kL6, "< INDEX", kSmithsIndex),
};

}  // namespace

constinit const PageRow kSmithsDepArrPage{.page = kSmithsDepArr, .fields = kFields};

}  // namespace avq1
