#include "base/key_area.h"

#include "platform/services.h"

namespace avq1 {

void ToggleKeyWindow(const KeyClick& click) {
    TogglePanelWindow(static_cast<std::uint32_t>(click.key.code));
}

}  // namespace avq1
