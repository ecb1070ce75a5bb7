#include "base/module_state.h"

namespace avq1 {
namespace {

const StateReset*& FirstReset() {
    static const StateReset* first = nullptr;
    return first;
}

}  // namespace

StateReset::StateReset(Function reset) : reset_(reset), next_(FirstReset()) {
    FirstReset() = this;
}

void ResetModuleState() {
    for (const StateReset* reset = FirstReset(); reset != nullptr; reset = reset->next_) {
        reset->reset_();
    }
}

}  // namespace avq1
