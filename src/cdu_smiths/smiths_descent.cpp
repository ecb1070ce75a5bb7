#include "cdu_smiths/smiths_pages.h"

namespace avq1 {
namespace {

constexpr FieldRow kFields[] = {
    SmithsTitle("ECON  PATH  DES"),
    SmithsPrompt(kL6, "< INDEX", kSmithsIndex),
};

}  // namespace

constinit const PageRow kSmithsDescentPage{.page = kSmithsDescent, .fields = kFields};

}  // namespace avq1
