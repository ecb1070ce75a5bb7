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
};

extern MessageList messages;
extern std::int32_t MessageLimit;  // 400; the count never passes it

void AppendMessage(std::string_view text);
void CutMessages(std::int32_t count);  // keeps the first `count` lines

}  // namespace avq1
