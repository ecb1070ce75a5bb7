// Any text read as a panel file or a script gives records within their bounds.
#include "fuzz/fuzz_text.h"
#include "panelhost/panel/panel_config.h"
#include "panelhost/script/script.h"
#include "panelhost/session/session.h"

void FuzzText(std::string_view text) {
    using namespace panelhost;
    const PanelConfig config = ParsePanelConfig(text);
    Require(config.windows.size() <= static_cast<std::size_t>(kMaxWindows));
    Require(!config.windows.empty() || !config.warnings.empty());
    for (const PanelWindow& window : config.windows) {
        Require(window.widthMm >= 1 && window.widthMm <= kMaxWindowMm);
        Require(window.heightMm >= 1 && window.heightMm <= kMaxWindowMm);
        Require(window.gauges.size() <= static_cast<std::size_t>(kMaxGaugesPerWindow));
        const DeskBox box = PlaceOnDesk(window, kDeskWidth, kDeskHeight);
        Require(box.width >= 1 && box.height >= 1);
        for (const GaugePlacement& gauge : window.gauges) {
            Require(!gauge.gauge.empty() && gauge.width >= 0 && gauge.width <= kMaxWindowMm);
        }
    }
    for (const ScriptLine& line : ParseScript(text).lines) {
        Require(line.line >= 1 && line.command >= 0);
    }
}
