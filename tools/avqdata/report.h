// avqdata/report.h - what an import or a check has to say: counts by kind, and the single cases.
//
// Kinds appear in the order of their first use. Of each kind the first cases are kept for the
// report, or all of them when the user asks; the count is always the whole.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace avqdata {

enum class Topic { Read, Changed, Dropped, Unresolved, Fault, Warning, Written };

struct ReportEntry {
    Topic topic;
    std::string kind;
    std::size_t count = 0;
    std::vector<std::string> cases;
};

struct Report {
    bool keepAll = false;
    std::vector<ReportEntry> entries;

    // One more of a kind; `oneCase` says which, empty when there is nothing to say of it.
    void Add(Topic topic, std::string_view kind, std::string oneCase = {});
    void AddCount(Topic topic, std::string_view kind, std::size_t count);
    std::size_t Count(Topic topic) const;
    std::size_t Count(Topic topic, std::string_view kind) const;
};

// "avq_navs.txt:12: " in front of what is wrong with that line.
std::string AtLine(std::string_view file, std::size_t line, std::string_view text);

// Only the cases that were kept, a line each, and how many more there are of a kind.
void PrintCases(const Report& report, std::ostream& err);

void PrintReport(const Report& report, std::ostream& out);

}  // namespace avqdata
