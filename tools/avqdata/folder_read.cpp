#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>

#include "avqdata/cycle.h"
#include "avqdata/folder.h"
#include "avqdata/source_file.h"
#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

using Row = std::vector<std::string_view>;

// The position in two words, rounded as the files are written: what is sorted by it then keeps its
// order when it is read again. Most folders are our own and have no more decimals.
std::optional<LatLon> FilePosition(std::string_view latitude, std::string_view longitude,
                                   int decimals = kPointDecimals) {
    std::optional<LatLon> at = Position(latitude, longitude);
    const auto isLong = [&](std::string_view text) {
        const std::size_t point = text.find('.');
        const bool plain = text.find_first_of("eE") == std::string_view::npos;
        return !plain || (point != std::string_view::npos &&
                          text.size() - point - 1 > static_cast<std::size_t>(decimals));
    };
    if (at && (isLong(latitude) || isLong(longitude))) {
        *at = RoundedAsWritten(*at, decimals);
    }
    return at;
}

// Calls `onRow` for the lines of a file; it returns false for one that makes no sense. A record
// whose first word opens a comment, which a blank before it hides, could not be written again.
template <typename OnRow>
void ReadRows(const FolderTexts& texts, FileRole role, bool hasComments, Report& report,
              OnRow onRow) {
    LineSource lines = LineSource::OfText(texts[role], kFileNames[role]);
    std::string_view line;
    while (lines.Next(line)) {
        const Row words = Words(line);
        if (words.empty() || (hasComments && line.starts_with(';'))) {
            continue;
        }
        if ((hasComments && words[0].starts_with(';')) || !onRow(words)) {
            report.Add(Topic::Dropped, "lines of the folder's files that make no sense",
                       AtLine(lines.Name(), lines.LineNumber(), line.substr(0, 60)));
        }
    }
}

void ParseNavaids(const FolderTexts& texts, Report& report, Dataset& data) {
    ReadRows(texts, kNavaidFile, true, report, [&](const Row& words) {
        const std::optional<LatLon> at =
            words.size() > 5 ? FilePosition(words[2], words[3]) : std::nullopt;
        if (at) {
            data.stations.push_back({std::string(words[0]), std::string(words[1]), *at,
                                     words[4] == "VOR", std::string(words[5])});
        }
        return at.has_value();
    });
    LineSource lines = LineSource::OfText(texts[kNavaidFile], kFileNames[kNavaidFile]);
    std::string_view line;
    while (lines.Next(line)) {
        const Row words = Words(line);
        if (!words.empty() && words[0] == ";AIRAC") {
            data.cycleLine = line;
            break;
        }
    }
}

void ParseFixes(const FolderTexts& texts, Report& report, Dataset& data) {
    ReadRows(texts, kFixFile, true, report, [&](const Row& words) {
        const std::optional<LatLon> at =
            words.size() > 3 ? FilePosition(words[2], words[3]) : std::nullopt;
        if (at) {
            data.fixes.push_back({std::string(words[0]), *at});
        }
        return at.has_value();
    });
}

// A new piece begins with another name, or where the sequence does not go on.
void ParseAirways(const FolderTexts& texts, Report& report, Dataset& data) {
    int previous = 0;
    ReadRows(texts, kAirwayFile, true, report, [&](const Row& words) {
        const std::optional<LatLon> at =
            words.size() > 4 ? FilePosition(words[3], words[4]) : std::nullopt;
        if (!at) {
            return false;
        }
        const int sequence = WholeNumber(words[1]).value_or(previous + 1);
        if (data.airways.empty() || data.airways.back().name != words[0] || sequence <= previous) {
            data.airways.push_back({std::string(words[0]), {}});
        }
        previous = sequence;
        data.airways.back().points.push_back({std::string(words[2]), *at});
        return true;
    });
}

std::optional<RunwayEnd> ParseRunway(std::string_view token) {
    const std::vector<std::string> fields = SplitList(token, '_');
    if (fields.size() < 8) {
        return std::nullopt;
    }
    const std::optional<LatLon> at = FilePosition(fields[2], fields[3], kThresholdDecimals);
    const std::optional<double> heading = Number(fields[4]);
    const std::optional<double> length = Number(fields[1]);
    if (!at || !heading || !length || *length < 0 || *length > 1e6) {
        return std::nullopt;
    }
    RunwayEnd end;
    end.ident = fields[0];
    end.lengthFt = static_cast<int>(*length);
    end.at = *at;
    end.headingMag = *heading;
    end.ilsFrequency = fields[5];
    end.ils = fields[6];
    end.courseMag = Number(fields[7]).value_or(*heading);
    return end;
}

void ParseAirports(const FolderTexts& texts, Report& report, Dataset& data) {
    ReadRows(texts, kAirportFile, false, report, [&](const Row& words) {
        const std::optional<LatLon> at =
            words.size() > 4 ? FilePosition(words[3], words[4]) : std::nullopt;
        const std::optional<double> elevation = at ? Number(words[2]) : std::nullopt;
        if (!elevation || std::abs(*elevation) > 1e5) {
            return false;
        }
        Airport airport{std::string(words[0]),
                        std::string(words[1]),
                        static_cast<int>(*elevation),
                        *at,
                        {},
                        true};
        for (std::size_t i = 5; i < words.size(); ++i) {
            if (const std::optional<RunwayEnd> end = ParseRunway(words[i])) {
                airport.runways.push_back(*end);
            } else {
                report.Add(Topic::Dropped, "runways of the folder's airports that make no sense",
                           airport.ident + " " + std::string(words[i].substr(0, 60)));
            }
        }
        data.airports.push_back(std::move(airport));
        return true;
    });
}

// Sections are kept as they are written; what stands before the first belongs to nobody.
void ParseProcedures(const std::string& text, ProcedureFile& file) {
    LineSource lines = LineSource::OfText(text, "");
    std::string_view line;
    SectionLines* section = nullptr;
    SectionLines second;  // of an airport that had its section: the module reads the first
    while (lines.Next(line)) {
        if (line.starts_with('[')) {
            const std::string ident(line.substr(1, std::min(line.find(']'), line.size()) - 1));
            section = file.contains(ident) ? &second : &file[ident];
        } else if (section != nullptr) {
            section->emplace_back(line);
        }
    }
}

void ParseBoundaries(const FolderTexts& texts, Report& report, Dataset& data) {
    ReadRows(texts, kBoundaryFile, true, report, [&](const Row& words) {
        const std::optional<LatLon> at =
            words.size() > 3 ? FilePosition(words[2], words[3]) : std::nullopt;
        if (!at) {
            return false;
        }
        if (data.boundaries.empty() || data.boundaries.back().ident != words[0]) {
            data.boundaries.push_back({std::string(words[0]), std::string(words[1]), {}});
        }
        data.boundaries.back().points.push_back(*at);
        return true;
    });
}

void ParseLocalizers(const FolderTexts& texts, Report& report, Dataset& data) {
    ReadRows(texts, kLocalizerFile, true, report, [&](const Row& words) {
        const std::optional<LatLon> at =
            words.size() > 10 ? FilePosition(words[2], words[3], kThresholdDecimals) : std::nullopt;
        const std::optional<LatLon> antenna =
            at ? FilePosition(words[9], words[10], kThresholdDecimals) : std::nullopt;
        if (!antenna) {
            return false;
        }
        data.localizers.push_back({std::string(words[0]), std::string(words[1]), *at,
                                   Number(words[4]).value_or(0), Number(words[5]).value_or(0),
                                   WholeNumber(words[6]).value_or(0), std::string(words[7]),
                                   std::string(words[8]), *antenna});
        return true;
    });
}

void ParseScheduled(const FolderTexts& texts, Report& report, Dataset& data) {
    std::set<std::string, std::less<>> scheduled;
    ReadRows(texts, kScheduledFile, true, report, [&](const Row& words) {
        scheduled.emplace(words[0]);
        return true;
    });
    for (Airport& airport : data.airports) {
        airport.isScheduled = scheduled.contains(airport.ident);
    }
}

}  // namespace

bool ReadFolder(const std::string& folder, FolderTexts& texts, std::string& error) {
    FinishReplacing(folder);
    for (std::size_t role = 0; role < kFileRoles; ++role) {
        texts[role].clear();
        const std::string path = FindSource(folder, {kFileNames[role]});
        if (!path.empty() && !ReadSourceFile(path, texts[role], error)) {
            return false;
        }
    }
    return true;
}

Dataset ParseFolder(const FolderTexts& texts, Report& report) {
    Dataset data;
    ParseNavaids(texts, report, data);
    ParseFixes(texts, report, data);
    ParseAirways(texts, report, data);
    ParseAirports(texts, report, data);
    ParseProcedures(texts[kSidFile], data.procedures[kSids]);
    ParseProcedures(texts[kStarFile], data.procedures[kStars]);
    ParseProcedures(texts[kApproachFile], data.procedures[kApproaches]);
    ParseBoundaries(texts, report, data);
    ParseLocalizers(texts, report, data);
    ParseScheduled(texts, report, data);
    return data;
}

}  // namespace avqdata
