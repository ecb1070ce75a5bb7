#include "avqdata/report.h"

#include <algorithm>
#include <array>
#include <ostream>

namespace avqdata {
namespace {

constexpr std::size_t kCasesShown = 8;

struct TopicRow {
    Topic topic;
    const char* title;
};
constexpr std::array<TopicRow, 7> kTopics{{
    {Topic::Read, "Read"},
    {Topic::Changed, "Combined with what was there"},
    {Topic::Dropped, "Left out"},
    {Topic::Unresolved, "Not resolved"},
    {Topic::Fault, "Faults"},
    {Topic::Warning, "Worth a look"},
    {Topic::Written, "In the folder now"},
}};

ReportEntry& Entry(Report& report, Topic topic, std::string_view kind) {
    const auto found = std::find_if(
        report.entries.begin(), report.entries.end(),
        [&](const ReportEntry& entry) { return entry.topic == topic && entry.kind == kind; });
    if (found != report.entries.end()) {
        return *found;
    }
    report.entries.push_back({topic, std::string(kind), 0, {}});
    return report.entries.back();
}

}  // namespace

void Report::Add(Topic topic, std::string_view kind, std::string oneCase) {
    ReportEntry& entry = Entry(*this, topic, kind);
    ++entry.count;
    if (!oneCase.empty() && (keepAll || entry.cases.size() < kCasesShown)) {
        entry.cases.push_back(std::move(oneCase));
    }
}

void Report::AddCount(Topic topic, std::string_view kind, std::size_t count) {
    if (count > 0) {
        Entry(*this, topic, kind).count += count;
    }
}

std::size_t Report::Count(Topic topic) const {
    std::size_t count = 0;
    for (const ReportEntry& entry : entries) {
        count += entry.topic == topic ? entry.count : 0;
    }
    return count;
}

std::size_t Report::Count(Topic topic, std::string_view kind) const {
    std::size_t count = 0;
    for (const ReportEntry& entry : entries) {
        count += entry.topic == topic && entry.kind == kind ? entry.count : 0;
    }
    return count;
}

std::string AtLine(std::string_view file, std::size_t line, std::string_view text) {
    std::string result(file);
    result += ':';
    result += std::to_string(line);
    result += ": ";
    result += text;
    return result;
}

void PrintCases(const Report& report, std::ostream& err) {
    for (const ReportEntry& entry : report.entries) {
        for (const std::string& oneCase : entry.cases) {
            err << oneCase << "\n";
        }
        if (entry.count > entry.cases.size()) {
            err << "... and " << entry.count - entry.cases.size() << " more: " << entry.kind
                << "\n";
        }
    }
}

void PrintReport(const Report& report, std::ostream& out) {
    for (const TopicRow& row : kTopics) {
        if (report.Count(row.topic) == 0) {
            continue;
        }
        out << row.title << ":\n";
        for (const ReportEntry& entry : report.entries) {
            if (entry.topic != row.topic) {
                continue;
            }
            out << "  " << entry.count << ' ' << entry.kind << '\n';
            for (const std::string& oneCase : entry.cases) {
                out << "      " << oneCase << '\n';
            }
            if (!entry.cases.empty() && entry.cases.size() < entry.count) {
                out << "      ... and " << entry.count - entry.cases.size() << " more\n";
            }
        }
    }
}

}  // namespace avqdata
