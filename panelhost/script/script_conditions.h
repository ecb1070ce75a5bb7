// panelhost/script/script_conditions.h - what "expect" and "run-until" can ask of a session.
#pragma once

#include <string>
#include <vector>

#include "panelhost/session/session.h"

namespace panelhost {

struct Verdict {
    bool valid = false;  // the words are a condition
    bool holds = false;
    std::string found;  // what was there instead, or why the words are no condition
};

Verdict CheckCondition(Session& session, const std::vector<std::string>& words);

// Index of the window with this ident or title ("main" is ident 0); -1 when there is none.
int FindWindowIndex(const Session& session, const std::string& name);

}  // namespace panelhost
