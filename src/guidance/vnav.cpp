#include "guidance/vnav.h"

#include "base/module_state.h"

namespace avq1 {

VnavProfile vnav;

namespace {

const StateReset resetVnav([] { vnav = {}; });

}  // namespace

// The vertical profile is not flown yet: no phase ever begins, so these steps have no work.
void ApplyTopOfDescentActions() {}
void TargetOnPassing() {}
void RunVerticalGuidance() {}
void ApplyClimbFallback() {}

void EndVerticalFrame() {
    vnav.restart = 0;
}

}  // namespace avq1
