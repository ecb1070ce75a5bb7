#include "cdu_smiths/smiths_pages.h"

namespace avq1 {
namespace {

constexpr FieldRow kFields[] = {
    SmithsTitle("RTE"),
};

}  // namespace

constinit const PageRow kSmithsRoutePage{.page = kSmithsRoute, .fields = kFields};

}  // namespace avq1
