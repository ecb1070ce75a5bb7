#include "cdu_smiths/smiths_pages.h"

namespace avq1 {
namespace {

constexpr FieldRow kFields[] = {
    SmithsTitle("RTE    LEGS"),
};

}  // namespace

constinit const PageRow kSmithsLegsPage{.page = kSmithsLegs, .fields = kFields};

}  // namespace avq1
