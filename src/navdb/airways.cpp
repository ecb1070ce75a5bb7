#include "navdb/airways.h"

#include <utility>

#include "base/module_state.h"
#include "base/sim_folder.h"
#include "base/text.h"

namespace avq1 {
namespace {

// Shorter than a table's lines: a longer one comes in pieces.
constexpr std::size_t kAirwayLineLength = 200;
constexpr std::string_view kNotOnAirway = " (N/A)";

struct AirwayFile {
    std::string_view text;
    bool exists = false;
    FileStamp stamp;
    std::string laterText;  // of a file written since the database was loaded, which keeps its own
};

AirwayFile airwayFile;

const StateReset kReset([] { airwayFile = {}; });

// Whether a line can be told from one of the airway without taking its words.
bool IsPlainlyOther(std::string_view line, std::string_view name) {
    return line.empty() || (!IsSpace(line.front()) && !line.starts_with(name));
}

void AppendFix(std::string_view name, std::string_view rest, SearchResults& results) {
    FoundPoint fix;
    NextWord(rest);  // the sequence
    fix.ident = NextWord(rest);
    fix.name = name;
    fix.latitude = NextNumber(rest);
    fix.longitude = NextNumber(rest);
    results.Append(fix);
}

void FollowFile() {
    const std::string path = SimPath(kAirwayFile);
    const FileStamp stamp = StampOf(path);
    if (stamp != airwayFile.stamp) {
        airwayFile.stamp = stamp;
        airwayFile.exists = ReadWholeFile(path, airwayFile.laterText);
        airwayFile.text = airwayFile.laterText;
    }
}

}  // namespace

AirwayLookup ReadAirway(std::string_view text, std::string_view name, std::string_view entryFix) {
    AirwayLookup lookup;
    SearchResults& results = lookup.fixes;
    LineReader lines(text, kAirwayLineLength);
    std::string_view line;
    while (!name.empty() && results.count < kSearchResultCapacity && lines.Next(line)) {
        if (lookup.entryIndex == 0 && IsPlainlyOther(line, name)) {
            continue;
        }
        const bool comment = line.starts_with(';');
        const std::string_view lineName = NextWord(line);
        if (comment || lineName.empty()) {
            continue;
        }
        if (lineName == name) {
            AppendFix(lineName, line, results);
            if (!entryFix.empty() && results[results.count].ident == entryFix) {
                lookup.entryIndex = results.count;
            }
        } else if (lookup.entryIndex > 0) {
            break;
        }
    }
    lookup.text = name;
    lookup.text += lookup.entryIndex == 0 ? kNotOnAirway : "";
    lookup.exitIndex = lookup.entryIndex;
    lookup.entryPage = (lookup.entryIndex + kAirwayFixesOnPage - 1) / kAirwayFixesOnPage;
    return lookup;
}

bool FindAirway(std::string_view name, std::string_view entryFix, AirwayLookup& lookup) {
    FollowFile();
    std::string textBefore = std::move(lookup.text);
    lookup = ReadAirway(airwayFile.text, name, entryFix);
    if (!airwayFile.exists) {
        lookup.text = std::move(textBefore);
    }
    return airwayFile.exists;
}

void SetAirwayText(std::string_view text, bool fileExists, const FileStamp& stamp) {
    airwayFile = {text, fileExists, stamp, {}};
}

}  // namespace avq1
