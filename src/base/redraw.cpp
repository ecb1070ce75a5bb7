#include "base/redraw.h"

#include "base/module_state.h"

namespace avq1 {
namespace {

std::uint32_t requestCount = 0;
const StateReset resetRedraw([] { requestCount = 0; });

}  // namespace

void RequestUnitRedraw() {
    ++requestCount;
}

std::uint32_t UnitRedrawCount() {
    return requestCount;
}

}  // namespace avq1
