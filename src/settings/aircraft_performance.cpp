#include "settings/aircraft_performance.h"

#include "base/module_state.h"
#include "base/sim_folder.h"
#include "base/text.h"
#include "platform/files.h"
#include "settings/settings.h"

namespace avq1 {
namespace {

constexpr std::size_t kMaxLineLength = 300;

const StateReset kReset([] { AircraftName.clear(); });

}  // namespace

std::string AircraftName;

void LoadAircraftFile() {
    std::string text;
    if (!ReadWholeFile(SimPath("\\avq\\Aircraft\\") + AircraftName + ".cfg", text)) {
        return;
    }
    LineReader lines(text, kMaxLineLength);
    std::string_view line;
    while (lines.Next(line)) {
        std::string_view key;
        std::string_view value;
        if (SplitSetting(line, key, value)) {
            ApplySetting(key, value, SettingsFile::Aircraft, settings);
        }
    }
}

}  // namespace avq1
