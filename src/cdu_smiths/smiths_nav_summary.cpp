// TEMP NAV SUMMARY: the message list, the latest page first.
#include "base/messages.h"
#include "cdu_smiths/smiths_pages.h"

namespace avq1 {
namespace {

constexpr std::int32_t kLinesPerPage = 9;
constexpr int kFirstY = 26;
constexpr int kLineHeight = 18;
constexpr int kTitleX = 20;

SubPage& CounterShown() {
    return smiths.Counter(SmithsCounter::NavSummary)
        .SetCount(PageCount(messages.count, kLinesPerPage));
}

// A page whose lines are the latest comes first; on it the latest line stands last.
void ComposeNavSummary(Screen& screen) {
    const SubPage& shown = CounterShown();
    PutSmithsCounter(screen, shown);
    const std::int32_t last = messages.count - (shown.n - 1) * kLinesPerPage;
    const std::int32_t first = std::max(last - kLinesPerPage, 0) + 1;
    for (std::int32_t i = first; i <= last; ++i) {
        screen.Put(kSmithsFittedLine, 0, kFirstY + (i - first) * kLineHeight, "%.44s",
                   messages.lines[static_cast<std::size_t>(i)].c_str());
    }
    if (messages.count == 0) {
        screen.Put(kSmithsLabel, 0, kFirstY, "N O   M E S S A G E S");
    }
}

constexpr FieldRow kFields[] = {
    SmithsTitle("TEMP  NAV  SUMMARY", kTitleX),
    SmithsPrompt(kL6, "< INDEX", kSmithsIndex),
};

}  // namespace

constinit const PageRow kSmithsNavSummaryPage{
    .page = kSmithsNavSummary, .fields = kFields, .compose = ComposeNavSummary};

}  // namespace avq1
