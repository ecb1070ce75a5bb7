#include "settings/parking.h"

#include <array>

#include "base/module_state.h"
#include "base/sim_folder.h"
#include "base/text.h"
#include "platform/files.h"
#include "settings/settings.h"

namespace avq1 {
namespace {

constexpr std::size_t kMaxLineLength = 300;

const StateReset kReset([] { parkingPosition = {}; });

}  // namespace

ParkingPosition parkingPosition;

ParkingPosition FindParkingPosition(std::string_view airportIdent) {
    std::string text;
    if (airportIdent.empty() || settings.ParkingFile.empty() ||
        !ReadWholeFile(SimPath("\\avq\\Aircraft\\") + settings.ParkingFile, text)) {
        return {};
    }
    LineReader lines(text, kMaxLineLength);
    std::string_view line;
    while (lines.Next(line)) {
        std::array<std::string_view, 4> words;
        SplitWords(line, words);
        if (words[0] != airportIdent) {
            continue;
        }
        const double headingDeg = ToNumber(words[3]);
        return {ToNumber(words[1]), ToNumber(words[2]), headingDeg == 360 ? 0 : headingDeg};
    }
    return {};
}

}  // namespace avq1
