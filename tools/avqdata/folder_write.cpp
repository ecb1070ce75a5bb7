#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <system_error>
#include <vector>

#include "avqdata/cycle.h"
#include "avqdata/folder.h"
#include "avqdata/limits.h"
#include "avqdata/os.h"
#include "avqdata/output_file.h"
#include "avqdata/source_file.h"
#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

namespace fs = std::filesystem;

void AppendPosition(std::string& text, const LatLon& at, int decimals, char between = ' ') {
    AppendFixed(text, at.latitude, decimals);
    text += between;
    AppendFixed(text, at.longitude, decimals);
}

// Words, numbers and all, one behind the other.
template <typename... Parts>
void Append(std::string& text, const Parts&... parts) {
    (text.append(parts), ...);
}

// Tenths of a degree in (0, 360].
void AppendHeading(std::string& text, double heading) {
    const double rounded = Normalized(std::round(heading * 10) / 10);
    AppendFixed(text, rounded < 0.05 ? 360.0 : rounded, 1);
}

std::string NavaidText(const Dataset& data) {
    std::string text = data.cycle != 0 ? CycleLine(data.cycle) : data.cycleLine;
    text += text.empty() ? "" : "\n";
    for (const Station& station : data.stations) {
        Append(text, station.ident, " ", station.name, " ");
        AppendPosition(text, station.at, kPointDecimals);
        Append(text, station.isVor ? " VOR " : " NDB ", station.frequency, "\n");
    }
    return text;
}

std::string FixText(const Dataset& data) {
    std::string text;
    for (const Fix& fix : data.fixes) {
        Append(text, fix.ident, " ", fix.ident, " ");
        AppendPosition(text, fix.at, kPointDecimals);
        text += '\n';
    }
    return text;
}

std::string AirwayText(const Dataset& data) {
    constexpr int kStep = 10;
    std::string text;
    for (const Airway& airway : data.airways) {
        int sequence = 0;
        for (const Fix& point : airway.points) {
            const std::string number = std::to_string(sequence += kStep);
            Append(text, airway.name, " ");
            text.append(number.size() < 4 ? 4 - number.size() : 0, '0');
            Append(text, number, " ", point.ident, " ");
            AppendPosition(text, point.at, kPointDecimals);
            text += '\n';
        }
    }
    return text;
}

std::string AirportText(const Dataset& data) {
    std::string text;
    for (const Airport& airport : data.airports) {
        Append(text, airport.ident, " ", airport.name, " ", std::to_string(airport.elevationFt),
               " ");
        AppendPosition(text, airport.at, kPointDecimals);
        for (const RunwayEnd& end : airport.runways) {
            Append(text, " ", end.ident, "_", std::to_string(end.lengthFt), "_");
            AppendPosition(text, end.at, kThresholdDecimals, '_');
            text += '_';
            AppendHeading(text, end.headingMag);
            Append(text, "_", end.ilsFrequency, "_", end.ils, "_");
            AppendHeading(text, end.courseMag);
        }
        text += '\n';
    }
    return text;
}

std::string ProcedureText(const ProcedureFile& file) {
    std::string text;
    for (const auto& [airport, lines] : file) {
        Append(text, "[", airport, "]\n");
        for (const std::string& line : lines) {
            Append(text, line, "\n");
        }
    }
    return text;
}

std::string BoundaryText(const Dataset& data) {
    std::string text;
    for (const Boundary& boundary : data.boundaries) {
        for (const LatLon& at : boundary.points) {
            Append(text, boundary.ident, " ", boundary.name, " ");
            AppendPosition(text, at, kPointDecimals);
            text += '\n';
        }
    }
    return text;
}

std::string LocalizerText(const Dataset& data) {
    if (data.localizers.empty()) {
        return {};
    }
    std::string text =
        ";ident freq lat lon course_true glide_deg elevation_ft airport runway antenna_lat "
        "antenna_lon\n";
    for (const Localizer& localizer : data.localizers) {
        Append(text, localizer.ident, " ", localizer.frequency, " ");
        AppendPosition(text, localizer.at, kThresholdDecimals);
        Append(text, " ", Fixed(localizer.courseTrue, 2), " ", Fixed(localizer.glideDeg, 2), " ",
               std::to_string(localizer.elevationFt), " ", localizer.airport, " ", localizer.runway,
               " ");
        AppendPosition(text, localizer.antenna, kThresholdDecimals);
        text += '\n';
    }
    return text;
}

std::string ScheduledText(const Dataset& data) {
    std::string text;
    for (const Airport& airport : data.airports) {
        text += airport.isScheduled ? airport.ident + "\n" : "";
    }
    return text;
}

constexpr const char* kStaged = ".avqdata-new";    // behind the folder's name: what it is to become
constexpr const char* kReplaced = ".avqdata-old";  // what it was, where it takes two steps

// Where a folder really lies, whatever links lead there.
fs::path PlaceOf(const std::string& path) {
    std::error_code code;
    const fs::path place = fs::weakly_canonical(fs::absolute(PathOf(path), code), code);
    return place.has_filename() ? place : place.parent_path();
}

fs::path Beside(const fs::path& folder, const char* extension) {
    return fs::path(folder) += extension;
}

// The same file at a second place, or a copy with its time where the disk knows no such thing.
void KeepFile(const fs::path& from, const fs::path& to, std::error_code& code) {
    fs::create_hard_link(from, to, code);
    if (code) {
        code.clear();
        fs::copy_file(from, to, code);
        if (!code) {
            const fs::file_time_type time = fs::last_write_time(from, code);
            fs::last_write_time(to, time, code);
        }
    }
}

// A folder's entry into another folder, with all that is below it.
void KeepEntry(const fs::path& from, const fs::path& to, std::error_code& code) {
    if (fs::is_symlink(from, code)) {
        fs::copy_symlink(from, to, code);
    } else if (fs::is_directory(from, code)) {
        fs::create_directory(to, from, code);
        for (fs::directory_iterator entry(from, code), end; !code && entry != end;
             entry.increment(code)) {
            KeepEntry(entry->path(), to / entry->path().filename(), code);
        }
    } else if (!code) {
        KeepFile(from, to, code);
    }
}

// Which of the folder's files are to be written anew, by name; those that say the same are kept.
std::map<std::string, const std::string*> ChangedFiles(const fs::path& folder,
                                                       const FolderTexts& texts) {
    std::map<std::string, const std::string*> changed;
    for (std::size_t role = 0; role < kFileRoles; ++role) {
        const std::string path = FindSource(TextOf(folder), {kFileNames[role]});
        std::string have;
        std::string ignored;
        const bool exists = !path.empty() && ReadSourceFile(path, have, ignored);
        if (have != texts[role] || (!exists && !texts[role].empty())) {
            changed[path.empty() ? kFileNames[role] : BaseName(path)] = &texts[role];
        }
    }
    return changed;
}

// Makes the folder that is to take the other's place; false with the path that could not be made
// and the reason.
bool StageFolder(const fs::path& folder, const fs::path& staged,
                 const std::map<std::string, const std::string*>& changed, fs::path& failed,
                 std::error_code& code) {
    failed = staged;
    fs::remove_all(staged, code);
    const bool exists = fs::is_directory(folder, code);
    code.clear();
    if (!(exists ? fs::create_directory(staged, folder, code)
                 : fs::create_directory(staged, code))) {
        code = code ? code : std::make_error_code(std::errc::file_exists);
        return false;
    }
    if (exists) {
        for (fs::directory_iterator entry(folder, code), end; !code && entry != end;
             entry.increment(code)) {
            failed = entry->path();
            if (!changed.contains(TextOf(entry->path().filename()))) {
                KeepEntry(entry->path(), staged / entry->path().filename(), code);
            }
        }
    }
    for (auto file = changed.begin(); !code && file != changed.end(); ++file) {
        failed = folder / PathOf(file->first);
        WriteWhole(staged / PathOf(file->first), *file->second, code);
    }
    return !code;
}

// Puts the staged folder into the other's place: in one step where the system can, else in two
// renames; a stop between those leaves the old one under its other name, and the next run finds it.
bool PutInPlace(const fs::path& folder, const fs::path& staged, const fs::path& replaced,
                std::error_code& code) {
    std::error_code ignored;
    if (!fs::exists(folder, ignored)) {
        fs::rename(staged, folder, code);
        return !code;
    }
    if (ExchangeFolders(staged, folder)) {
        fs::remove_all(staged, ignored);
        return true;
    }
    fs::rename(folder, replaced, code);
    if (code) {
        return false;
    }
    fs::rename(staged, folder, code);
    if (code) {
        fs::rename(replaced, folder, ignored);
        return false;
    }
    fs::remove_all(replaced, ignored);
    return true;
}

}  // namespace

FolderTexts FormatFolder(const Dataset& data) {
    FolderTexts texts;
    texts[kNavaidFile] = NavaidText(data);
    texts[kFixFile] = FixText(data);
    texts[kAirwayFile] = AirwayText(data);
    texts[kAirportFile] = AirportText(data);
    texts[kSidFile] = ProcedureText(data.procedures[kSids]);
    texts[kStarFile] = ProcedureText(data.procedures[kStars]);
    texts[kApproachFile] = ProcedureText(data.procedures[kApproaches]);
    texts[kBoundaryFile] = BoundaryText(data);
    texts[kLocalizerFile] = LocalizerText(data);
    texts[kScheduledFile] = ScheduledText(data);
    return texts;
}

void FinishReplacing(const std::string& path) {
    const fs::path folder = PlaceOf(path);
    const fs::path replaced = Beside(folder, kReplaced);
    std::error_code code;
    if (fs::exists(replaced, code) && fs::exists(folder, code)) {
        fs::remove_all(replaced, code);
    } else if (fs::exists(replaced, code)) {
        fs::rename(replaced, folder, code);
    }
}

bool WriteFolder(const std::string& path, const FolderTexts& texts, std::string& error) {
    std::error_code code;
    const fs::path folder = PlaceOf(path);
    const fs::path staged = Beside(folder, kStaged);
    const fs::path replaced = Beside(folder, kReplaced);
    fs::create_directories(folder.parent_path(), code);
    FinishReplacing(path);
    const std::map<std::string, const std::string*> changed = ChangedFiles(folder, texts);
    if (changed.empty() && fs::is_directory(folder, code)) {
        return true;
    }
    fs::path failed;
    if (!StageFolder(folder, staged, changed, failed, code)) {
        error = TextOf(failed) + ": cannot be written (" + code.message() +
                "); the folder is as it was";
    } else if (!PutInPlace(folder, staged, replaced, code)) {
        error = TextOf(folder) + ": cannot be replaced (" + code.message() + ")";
    } else {
        return true;
    }
    fs::remove_all(staged, code);
    return false;
}

void CountTables(const Dataset& data, Report& report) {
    const auto vors = static_cast<std::size_t>(
        std::count_if(data.stations.begin(), data.stations.end(),
                      [](const Station& station) { return station.isVor; }));
    report.AddCount(Topic::Written, "VORs", vors);
    report.AddCount(Topic::Written, "NDBs", data.stations.size() - vors);
    report.AddCount(Topic::Written, "fixes", data.fixes.size());
    std::size_t points = 0;
    std::size_t names = 0;
    for (std::size_t i = 0; i < data.airways.size(); ++i) {
        points += data.airways[i].points.size();
        names += i == 0 || data.airways[i].name != data.airways[i - 1].name ? 1 : 0;
    }
    report.AddCount(Topic::Written, "airways", names);
    report.AddCount(Topic::Written, "unbroken pieces of airways", data.airways.size());
    report.AddCount(Topic::Written, "points of airways", points);
    report.AddCount(Topic::Written, "airports", data.airports.size());
    std::size_t ends = 0;
    for (const Airport& airport : data.airports) {
        ends += airport.runways.size();
    }
    report.AddCount(Topic::Written, "runway ends", ends);
    report.AddCount(Topic::Written, "airports with departures", data.procedures[kSids].size());
    report.AddCount(Topic::Written, "airports with arrivals", data.procedures[kStars].size());
    report.AddCount(Topic::Written, "airports with approaches",
                    data.procedures[kApproaches].size());
    report.AddCount(Topic::Written, "boundaries", data.boundaries.size());
    report.AddCount(Topic::Written, "localizers with glideslope", data.localizers.size());
}

}  // namespace avqdata
