#include "cdu_smiths/smiths_pages.h"

namespace avq1 {
namespace {

constexpr FieldRow kFields[] = {
    SmithsTitle("INIT/REF   INDEX"),
    SmithsPrompt(kL1, "<IDENT", kSmithsIdent),
    SmithsPrompt(kL2, "<POS", kSmithsPos),
};

}  // namespace

constinit const PageRow kSmithsIndexPage{.page = kSmithsIndex, .fields = kFields};

}  // namespace avq1
