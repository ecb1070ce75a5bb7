// panelhost/script/script.h - the script language that drives a session without a browser.
//
// One command per line, words split at blanks, "..." keeps blanks together, # opens a comment.
// ParseScript checks every line before anything runs: an unknown command or a wrong count of words
// is an error that names the line. RunScript obeys in order, stepping panel time frame by frame as
// fast as the machine can; the first command that fails ends it.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "panelhost/session/session.h"

namespace panelhost {

struct ScriptLine {
    int line = 0;
    int command = 0;                 // row of the command table
    std::vector<std::string> words;  // without the command itself
};

struct Script {
    std::vector<ScriptLine> lines;
    std::vector<std::string> errors;
};

struct ScriptResult {
    int exitStatus = 0;  // 0 done, 1 a command or expectation failed
    bool quit = false;   // the script asked to end the program
    std::string error;   // one line with the script's line number; empty when all went well
};

struct ScriptCommandName {
    const char* name;
    const char* usage;
    const char* meaning;
};

inline constexpr double kDefaultFrameRate = 20;

Script ParseScript(std::string_view text);
// Files the script names are written relative to `folder`; what it prints goes to `out`.
ScriptResult RunScript(Session& session, const Script& script, const std::string& folder,
                       std::FILE* out);
std::vector<ScriptCommandName> ScriptCommands();

// A value by name: one of the status names, "#65" a numbered variable, else a named variable.
// Empty when there is no such value.
std::optional<NamedVariable> FindValue(const Session& session, std::string_view name);
std::vector<const char*> StatusValueNames();

}  // namespace panelhost
