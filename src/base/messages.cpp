#include "base/messages.h"

#include <algorithm>

#include "base/module_state.h"

namespace avq1 {
namespace {

constexpr std::int32_t kMessageLimit = 400;

const StateReset kReset([] {
    messages = {};
    MessageLimit = kMessageLimit;
});

}  // namespace

MessageList messages;
std::int32_t MessageLimit = kMessageLimit;

void AppendMessage(std::string_view text) {
    const std::int32_t before = messages.count;
    AppendLogRecord(text);
    if (messages.count > before) {
        messages.lastNotice = messages.count;
    }
}

void AppendLogRecord(std::string_view text) {
    if (messages.count >= MessageLimit) {
        return;
    }
    const auto index = static_cast<std::size_t>(++messages.count);
    if (messages.lines.size() <= index) {
        messages.lines.resize(index + 1);
    }
    messages.lines[index] = text;
}

void CutMessages(std::int32_t count) {
    messages.count = std::clamp(count, 0, messages.count);
    messages.lastNotice = std::min(messages.lastNotice, messages.count);
    messages.lines.resize(static_cast<std::size_t>(messages.count) + 1);
}

}  // namespace avq1
