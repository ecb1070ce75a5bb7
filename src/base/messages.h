// base/messages.h - the message list: text lines from the loaders, the plan files and the flight
// log, shown by the control units. Lines are numbered from 1. A line that finds the list full is
// dropped.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace avq1 {

struct MessageList {
    std::vector<std::string> lines{1};  // lines[0] holds no message
    std::int32_t count = 0;
    std::int32_t lastNotice = 0;  // the last line that is no record of the flight log, 0 without
};

extern MessageList messages;
extern std::int32_t MessageLimit;  // 400; the count never passes it

void AppendMessage(std::string_view text);
void AppendLogRecord(std::string_view text);  // as a message, but no notice
void CutMessages(std::int32_t count);         // keeps the first `count` lines

}  // namespace avq1
