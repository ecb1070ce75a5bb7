// base/module_state.h - one call that returns the module-wide records to their initial values.
//
// What the host filled in and the drawing backend's caches stay. A topic defines its record and,
// beside it, a StateReset. The module itself never resets: its state lives as long as it is loaded.
// Tests start each case with ResetModuleState().
#pragma once

namespace avq1 {

class StateReset {
  public:
    using Function = void (*)();
    explicit StateReset(Function reset);

  private:
    friend void ResetModuleState();
    Function reset_;
    const StateReset* next_;
};

void ResetModuleState();

}  // namespace avq1
