// panelhost/web/server_messages.h - what the server says on the socket: JSON texts, made whole.
//
// Units as in session.h. Text that is not UTF-8 is shown with replacement marks.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "panelhost/session/session.h"

namespace panelhost {

std::string HelloMessage(const Session& session);
std::string StatusMessage(const SessionStatus& status);
std::string WindowMessage(const WindowInfo& window);
// Pixels are divided by the scale of the view they come from: a page gets design pixels.
std::string TextsMessage(int display, int scale, const std::vector<DrawnText>& texts);
std::string AreasMessage(int display, int scale, const std::vector<ClickArea>& areas,
                         const std::vector<GaugeBox>& gauges);
// Lines of the flight log: all there are, or what comes `more` behind those told before.
std::string LogMessage(std::string_view lines, bool more);
std::string ProfileMessage(const VerticalProfile& profile);
std::string RefusalMessage(int display);  // too much is shown already
std::string KeyMessage(int scanCode, int virtualKey, bool swallowed);
std::string EventsMessage(const std::vector<KeyEventRecord>& events);
std::string ProblemMessage(std::string_view problem);

}  // namespace panelhost
