#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

#include "avqdata/cycle.h"
#include "avqdata/folder.h"
#include "avqdata/limits.h"
#include "avqdata/source_file.h"
#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

namespace fs = std::filesystem;

std::string PositionText(const LatLon& at, int decimals) {
    return Fixed(at.latitude, decimals) + " " + Fixed(at.longitude, decimals);
}

// Tenths of a degree in (0, 360].
std::string HeadingText(double heading) {
    const double rounded = Normalized(std::round(heading * 10) / 10);
    return Fixed(rounded < 0.05 ? 360.0 : rounded, 1);
}

std::string NavaidText(const Dataset& data) {
    const std::string line = data.cycle != 0 ? CycleLine(data.cycle) : data.cycleLine;
    std::string text = line.empty() ? "" : line + "\n";
    for (const Station& station : data.stations) {
        text += station.ident + " " + station.name + " " +
                PositionText(station.at, kPointDecimals) + (station.isVor ? " VOR " : " NDB ") +
                station.frequency + "\n";
    }
    return text;
}

std::string FixText(const Dataset& data) {
    std::string text;
    for (const Fix& fix : data.fixes) {
        text += fix.ident + " " + fix.ident + " " + PositionText(fix.at, kPointDecimals) + "\n";
    }
    return text;
}

std::string AirwayText(const Dataset& data) {
    constexpr int kStep = 10;
    std::string text;
    for (const Airway& airway : data.airways) {
        int sequence = 0;
        for (const Fix& point : airway.points) {
            std::string number = std::to_string(sequence += kStep);
            number.insert(0, number.size() < 4 ? 4 - number.size() : 0, '0');
            text += airway.name + " " + number + " " + point.ident + " " +
                    PositionText(point.at, kPointDecimals) + "\n";
        }
    }
    return text;
}

std::string AirportText(const Dataset& data) {
    std::string text;
    for (const Airport& airport : data.airports) {
        std::string line = airport.ident + " " + airport.name + " " +
                           std::to_string(airport.elevationFt) + " " +
                           PositionText(airport.at, kPointDecimals);
        for (const RunwayEnd& end : airport.runways) {
            line += " " + end.ident + "_" + std::to_string(end.lengthFt) + "_" +
                    Fixed(end.at.latitude, kThresholdDecimals) + "_" +
                    Fixed(end.at.longitude, kThresholdDecimals) + "_" +
                    HeadingText(end.headingMag) + "_" + end.ilsFrequency + "_" + end.ils + "_" +
                    HeadingText(end.courseMag);
        }
        text += line + "\n";
    }
    return text;
}

std::string ProcedureText(const ProcedureFile& file) {
    std::string text;
    for (const auto& [airport, lines] : file) {
        text += "[" + airport + "]\n";
        for (const std::string& line : lines) {
            text += line + "\n";
        }
    }
    return text;
}

std::string BoundaryText(const Dataset& data) {
    std::string text;
    for (const Boundary& boundary : data.boundaries) {
        for (const LatLon& at : boundary.points) {
            text += boundary.ident + " " + boundary.name + " " + PositionText(at, kPointDecimals) +
                    "\n";
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
        text += localizer.ident + " " + localizer.frequency + " " +
                PositionText(localizer.at, kThresholdDecimals) + " " +
                Fixed(localizer.courseTrue, 2) + " " + Fixed(localizer.glideDeg, 2) + " " +
                std::to_string(localizer.elevationFt) + " " + localizer.airport + " " +
                localizer.runway + " " + PositionText(localizer.antenna, kThresholdDecimals) + "\n";
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

// One file on its way into the folder.
struct StagedFile {
    std::string staged;
    std::string target;
};

bool Stage(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    file.close();
    return !file.fail();
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

bool WriteFolder(const std::string& folder, const FolderTexts& texts, std::string& error) {
    std::error_code code;
    fs::create_directories(folder, code);
    std::vector<StagedFile> staged;
    const auto removeStaged = [&] {
        for (const StagedFile& file : staged) {
            fs::remove(file.staged, code);
        }
    };
    for (std::size_t role = 0; role < kFileRoles; ++role) {
        std::string path = FindSource(folder, {kFileNames[role]});
        std::string have;
        std::string ignored;
        const bool exists = !path.empty() && ReadSourceFile(path, have, ignored);
        if (have == texts[role] && (exists || texts[role].empty())) {
            continue;
        }
        path = path.empty() ? (fs::path(folder) / kFileNames[role]).string() : path;
        staged.push_back({path + ".new", path});
        if (!Stage(staged.back().staged, texts[role])) {
            error = staged.back().staged + ": cannot be written; the folder is as it was";
            removeStaged();
            return false;
        }
    }
    for (const StagedFile& file : staged) {
        fs::rename(file.staged, file.target, code);
        if (code) {
            error = file.target + ": cannot be replaced (" + code.message() + ")";
            removeStaged();
            return false;
        }
    }
    return true;
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
