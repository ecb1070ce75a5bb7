#include "avqdata/source_finder.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <system_error>
#include <tuple>

#include "avqdata/arinc.h"
#include "avqdata/cycle.h"
#include "avqdata/os.h"
#include "avqdata/text_tools.h"
#include "avqdata/xplane.h"
#include "base/text.h"

namespace avqdata {
namespace {

namespace fs = std::filesystem;

using Row = std::vector<std::string_view>;

constexpr int kMostFoldersDown = 5;
constexpr int kMostArchivesDown = 3;
constexpr std::size_t kMostFiles = 300000;
constexpr std::uint64_t kMostArchiveBytes = std::uint64_t{512} << 20U;  // inside others, in all

constexpr std::array<const char*, static_cast<std::size_t>(SourceKind::None) + 1> kNames{
    "OurAirports' airports",
    "OurAirports' runways",
    "OurAirports' navaids",
    "X-Plane's navaids",
    "X-Plane's fixes",
    "X-Plane's airways",
    "X-Plane's airports",
    "X-Plane's holds",
    "X-Plane's procedures of an airport",
    "NASR's navaids",
    "NASR's fixes",
    "NASR's airways, a row a point",
    "NASR's airways, a row a leg",
    "NASR's airports",
    "NASR's runways",
    "NASR's runway ends",
    "coded procedures",
    "airspaces as GeoJSON",
    "airspaces as OpenAir",
    "nothing known"};

// ---- tables: by the columns that no other has all of ----

struct TableRow {
    SourceKind kind;
    std::array<std::string_view, 3> columns;
};
constexpr std::array<TableRow, 10> kTables{{
    {SourceKind::OurAirports, {"gps_code", "latitude_deg", "elevation_ft"}},
    {SourceKind::OurRunways, {"airport_ref", "le_ident", "he_ident"}},
    {SourceKind::OurNavaids, {"frequency_khz", "latitude_deg", "ident"}},
    {SourceKind::NasrNavaids, {"NAV_ID", "LAT_DECIMAL", "FREQ"}},
    {SourceKind::NasrFixes, {"FIX_ID", "LAT_DECIMAL", "FIX_USE_CODE"}},
    {SourceKind::NasrAirways, {"AWY_ID", "SEG_VALUE", "SEG_TYPE"}},
    {SourceKind::NasrAirwayLegs, {"AWY_ID", "FROM_POINT", "TO_POINT"}},
    {SourceKind::NasrAirports, {"ARPT_ID", "SITE_TYPE_CODE", "ELEV"}},
    {SourceKind::NasrRunways, {"RWY_ID", "RWY_LEN", "SITE_NO"}},
    {SourceKind::NasrRunwayEnds, {"RWY_END_ID", "TRUE_ALIGNMENT", "LAT_DECIMAL"}},
}};

std::vector<std::string_view> HeaderFields(std::string_view line) {
    std::vector<std::string_view> fields;
    while (!line.empty()) {
        const std::size_t comma = std::min(line.find(','), line.size());
        std::string_view field = Trim(line.substr(0, comma));
        if (field.size() > 1 && field.starts_with('"') && field.ends_with('"')) {
            field = field.substr(1, field.size() - 2);
        }
        fields.push_back(field);
        line.remove_prefix(std::min(comma + 1, line.size()));
    }
    return fields;
}

void RecogniseTable(const std::vector<std::string_view>& lines, FoundFile& found) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    std::string_view header = lines[0];
    header.remove_prefix(header.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0);
    const std::vector<std::string_view> fields = HeaderFields(header);
    const auto has = [&](std::string_view column) {
        return std::find(fields.begin(), fields.end(), column) != fields.end();
    };
    const auto* const row =
        std::find_if(kTables.begin(), kTables.end(), [&](const TableRow& table) {
            return std::all_of(table.columns.begin(), table.columns.end(), has);
        });
    if (row == kTables.end()) {
        return;
    }
    found.kind = row->kind;
    if (fields[0] == "EFF_DATE" && lines.size() > 1) {
        const std::vector<std::string_view> values = HeaderFields(lines[1]);
        found.cycle = values.empty() ? 0 : CycleOfDateText(values[0]);
    }
}

// ---- X-Plane's files: one header for all, so the rows tell ----

bool IsPointType(std::string_view word) {
    return word == "2" || word == "3" || word == "11";
}

bool HasPoint(const Row& words, std::size_t at) {
    return words[at].find('.') != std::string_view::npos &&
           Position(words[at], words[at + 1]).has_value();
}

SourceKind KindOfRow(const Row& words) {
    if (words.size() == 11 && IsPointType(words[2]) && IsPointType(words[5])) {
        return SourceKind::XplaneAirways;
    }
    if (words.size() >= 11 && IsPointType(words[3]) && (words[7] == "L" || words[7] == "R") &&
        !Number(words[2])) {
        return SourceKind::XplaneHolds;
    }
    if (words.size() >= 10 && HasPoint(words, 1) && HasPoint(words, 4)) {
        return SourceKind::XplaneAirways;
    }
    const int code = words.empty() ? 0 : WholeNumber(words[0]).value_or(0);
    if (words.size() >= 8 && code >= 2 && code <= 16 && HasPoint(words, 1)) {
        return SourceKind::XplaneNavaids;
    }
    if (words.size() >= 3 && HasPoint(words, 0) && IsIdent(words[2])) {
        return SourceKind::XplaneFixes;
    }
    if (words.size() >= 5 && (code == 1 || code == 16 || code == 17) && WholeNumber(words[1])) {
        return SourceKind::XplaneAirports;
    }
    return SourceKind::None;
}

// A file of that form without rows is what its name says.
SourceKind KindOfName(std::string_view name) {
    constexpr std::array<std::pair<std::string_view, SourceKind>, 5> kParts{{
        {"nav.dat", SourceKind::XplaneNavaids},
        {"fix.dat", SourceKind::XplaneFixes},
        {"awy.dat", SourceKind::XplaneAirways},
        {"apt.dat", SourceKind::XplaneAirports},
        {"hold.dat", SourceKind::XplaneHolds},
    }};
    for (const auto& [part, kind] : kParts) {
        if (name.find(part) != std::string_view::npos) {
            return kind;
        }
    }
    return SourceKind::None;
}

void RecogniseXplane(const std::vector<std::string_view>& lines, std::string_view name,
                     FoundFile& found) {
    constexpr int kOldest = 600;
    constexpr int kNewest = 1299;
    const std::string_view origin = Trim(lines[0]);
    const Row header = lines.size() > 1 ? Words(lines[1]) : Row{};
    const int version = header.empty() ? 0 : WholeNumber(header[0]).value_or(0);
    if (!(origin.empty() || origin == "I" || origin == "A") || version < kOldest ||
        version > kNewest) {
        return;
    }
    found.cycle = CycleOfHeader(lines[1]);
    for (std::size_t i = 2; i < lines.size() && found.kind == SourceKind::None; ++i) {
        found.kind = KindOfRow(Words(lines[i]));
    }
    found.kind = found.kind == SourceKind::None ? KindOfName(name) : found.kind;
}

// ---- the others ----

bool IsProcedureLine(std::string_view line) {
    return line.starts_with("SID:") || line.starts_with("STAR:") || line.starts_with("APPCH:") ||
           line.starts_with("RWY:") || line.starts_with("PRDAT:");
}

void RecogniseLines(const std::vector<std::string_view>& lines, FoundFile& found) {
    constexpr std::size_t kHeaderLines = 8;
    for (std::size_t i = 0; i < std::min(lines.size(), kHeaderLines); ++i) {
        if (IsArincRecord(lines[i])) {
            found.kind = SourceKind::Cifp;
            break;
        }
    }
    if (found.kind == SourceKind::Cifp && lines[0].starts_with("HDR01")) {
        found.cycle = WholeNumber(Column(lines[0], 36, 39)).value_or(0);
    } else if (found.kind == SourceKind::Cifp) {
        for (const std::string_view line : lines) {
            found.cycle = std::max(found.cycle, CycleOfRecord(line));
        }
    }
    for (const std::string_view whole : lines) {
        const std::string_view line = Trim(whole);
        if (line.empty() || line.starts_with('*')) {
            continue;
        }
        if (found.kind == SourceKind::None && line.starts_with("AC ")) {
            found.kind = SourceKind::OpenAir;
        } else if (found.kind == SourceKind::None && IsProcedureLine(line)) {
            found.kind = SourceKind::XplaneProcedures;
        }
        return;
    }
}

bool IsGeoJson(std::string_view start) {
    return Trim(start.substr(0, 100)).starts_with('{') &&
           start.find("\"features\"") != std::string_view::npos;
}

std::string LowerName(const std::string& path) {
    std::string name = BaseName(path);
    std::transform(name.begin(), name.end(), name.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return name;
}

std::string FolderOf(const std::string& path) {
    return TextOf(PathOf(path).parent_path());
}

std::string FolderName(const std::string& path) {
    return TextOf(PathOf(path).parent_path().filename());
}

// A whole folder of them need not be opened twice.
bool IsInProcedureFolder(const std::string& path) {
    const fs::path file = PathOf(path);
    return avq1::EqualsIgnoreCase(FolderName(path), "CIFP") &&
           avq1::EqualsIgnoreCase(TextOf(file.extension()), ".dat") && IsIdent(TextOf(file.stem()));
}

bool MayBeSource(const std::string& path) {
    constexpr std::array<std::string_view, 11> kExtensions{
        "", ".dat", ".csv", ".txt", ".gz", ".zip", ".json", ".geojson", ".pc", ".air", ".openair"};
    const std::string extension = TextOf(PathOf(LowerName(path)).extension());
    return std::find(kExtensions.begin(), kExtensions.end(), extension) != kExtensions.end();
}

// Names under which the sources give their files out: one of other content is worth a word.
bool HasSourceName(const std::string& path) {
    constexpr std::array<std::string_view, 18> kSourceNames{
        "airports.csv",  "runways.csv",     "navaids.csv",  "nav_base.csv", "fix_base.csv",
        "awy_seg.csv",   "awy_seg_alt.csv", "apt_base.csv", "apt_rwy.csv",  "apt_rwy_end.csv",
        "nav.dat",       "fix.dat",         "awy.dat",      "apt.dat",      "earth_nav.dat",
        "earth_fix.dat", "earth_awy.dat",   "faacifp18"};
    std::string name = LowerName(path);
    name.resize(name.ends_with(".gz") ? name.size() - 3 : name.size());
    return std::find(kSourceNames.begin(), kSourceNames.end(), name) != kSourceNames.end();
}

// ---- the walk ----

struct Finder {
    FoundSources& found;
    std::string error = {};
    std::size_t files = 0;
    std::uint64_t archiveBytes = 0;

    void LookIntoFolder(const fs::path& folder, int down);
    void LookIntoArchive(const SourceFile& file, int down);
    void Consider(const SourceFile& file, int archivesDown);
};

// Of an installed simulator: where its navigation data lies.
std::vector<fs::path> DataFolders(const fs::path& folder) {
    constexpr std::array<const char*, 7> kLayout{
        "Custom Data",
        "Resources/default data",
        "Global Scenery/Global Airports/Earth nav data",
        "Custom Scenery/Global Airports/Earth nav data",
        "Resources/default scenery/default apt dat/Earth nav data",
        "Navaids",
        "Airports"};
    std::vector<fs::path> folders;
    std::error_code code;
    bool isInstallation = false;
    for (const char* const below : kLayout) {
        if (fs::is_directory(folder / below, code)) {
            folders.push_back(folder / below);
            isInstallation = isInstallation || std::string_view(below) != "Airports";
        }
    }
    return isInstallation ? folders : std::vector<fs::path>{};
}

void Finder::LookIntoFolder(const fs::path& folder, int down) {
    std::vector<fs::path> entries;
    std::error_code code;
    for (fs::directory_iterator entry(folder, code), end; !code && entry != end;
         entry.increment(code)) {
        entries.push_back(entry->path());
        if (++files > kMostFiles) {
            error = "holds more than " + std::to_string(kMostFiles) +
                    " files: name the folder with the navigation data";
            return;
        }
    }
    std::sort(entries.begin(), entries.end());
    const std::vector<fs::path> parts = DataFolders(folder);
    for (const fs::path& entry : entries) {
        if (!fs::is_directory(entry, code)) {
            const std::string path = TextOf(entry);
            if (MayBeSource(path)) {
                Consider(path, 0);
            }
        } else if (parts.empty() && down < kMostFoldersDown) {
            LookIntoFolder(entry, down + 1);
        }
    }
    for (const fs::path& part : parts) {
        LookIntoFolder(part, std::max(down, kMostFoldersDown - 1));
    }
}

void Finder::LookIntoArchive(const SourceFile& file, int down) {
    std::string fault;
    std::shared_ptr<const ZipArchive> archive;
    if (file.archive == nullptr) {
        archive = ZipArchive::OfFile(file.path, fault);
    } else if (down > kMostArchivesDown) {
        fault = "lies too many archives deep";
    } else {
        auto bytes = std::make_shared<std::string>();
        if (ReadSourceFile(file, *bytes, fault)) {
            archiveBytes += bytes->size();
            archive = archiveBytes <= kMostArchiveBytes
                          ? ZipArchive::OfMemory(std::move(bytes), fault)
                          : nullptr;
            fault = archiveBytes <= kMostArchiveBytes ? fault : "the archives in it are too large";
        } else {
            fault.erase(0, file.path.size() + 2);  // its name
        }
    }
    if (archive == nullptr) {
        found.refused.push_back(file.path + ": " + fault);
        return;
    }
    for (std::size_t i = 0; i < archive->Members().size(); ++i) {
        const std::string& path = archive->Members()[i].path;
        if (MayBeSource(path)) {
            Consider({file.path + "/" + path, archive, i}, down);
        }
    }
}

void Finder::Consider(const SourceFile& file, int archivesDown) {
    if (IsInProcedureFolder(file.path)) {
        found.files.push_back({SourceKind::XplaneProcedures, file, 0});
        return;
    }
    const std::unique_ptr<ByteStream> bytes = OpenSource(file);
    std::string start(kSniffedBytes, '\0');
    start.resize(bytes->Read(start.data(), start.size()));
    if (BeginsAsZip(start)) {
        LookIntoArchive(file, archivesDown + 1);
        return;
    }
    const FoundFile recognised = Recognise(start, file);
    if (recognised.kind != SourceKind::None && bytes->Error().empty()) {
        found.files.push_back(recognised);
    } else if (!bytes->Error().empty() && HasSourceName(file.path)) {
        found.refused.push_back(file.path + ": " + bytes->Error());
    } else if (HasSourceName(file.path)) {
        found.refused.push_back(file.path + ": is not what its name says");
    }
}

// ---- the choice ----

bool ComesOnce(SourceKind kind) {
    return kind != SourceKind::XplaneProcedures && kind != SourceKind::Cifp &&
           kind != SourceKind::GeoJson && kind != SourceKind::OpenAir;
}

// What the user put in stands before what came with the simulator.
bool IsUsersOwn(const std::string& path) {
    return path.find("Custom Data") != std::string::npos;
}

// The user's few points beside the world's, which stand there as user_fix.dat and user_nav.dat.
bool IsAddition(const std::string& path) {
    return LowerName(path).starts_with("user_");
}

bool IsBetter(const FoundFile& one, const FoundFile& other) {
    const auto rank = [](const FoundFile& found) {
        const std::string& path = found.file.path;
        return std::tuple(!IsAddition(path), IsUsersOwn(path), found.cycle,
                          found.file.PackedBytes());
    };
    return rank(one) > rank(other);
}

// The folder whose procedures are taken: the user's own before others, then the one with the most.
std::string ProcedurePlace(const SourceFiles& found) {
    std::map<std::string, std::size_t> places;
    for (const FoundFile& file : found) {
        if (file.kind == SourceKind::XplaneProcedures) {
            ++places[FolderOf(file.file.path)];
        }
    }
    const auto best =
        std::max_element(places.begin(), places.end(), [](const auto& a, const auto& b) {
            return std::tuple(IsUsersOwn(a.first), a.second) <
                   std::tuple(IsUsersOwn(b.first), b.second);
        });
    return best == places.end() ? "" : best->first;
}

}  // namespace

FoundFile Recognise(std::string_view start, const SourceFile& file) {
    FoundFile found{SourceKind::None, file, 0};
    std::vector<std::string_view> lines;
    for (std::string_view rest = start; !rest.empty();) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        // The last is whole only where the file ends.
        if (end < rest.size() || start.size() < kSniffedBytes || lines.empty()) {
            const std::string_view line = rest.substr(0, end);
            lines.push_back(line.substr(0, line.size() - (line.ends_with('\r') ? 1 : 0)));
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    if (lines.empty()) {
        return found;
    }
    if (IsGeoJson(start)) {
        found.kind = SourceKind::GeoJson;
        return found;
    }
    RecogniseXplane(lines, LowerName(file.path), found);
    if (found.kind == SourceKind::None) {
        RecogniseTable(lines, found);
    }
    if (found.kind == SourceKind::None) {
        RecogniseLines(lines, found);
    }
    return found;
}

bool FindSources(const std::string& path, FoundSources& found, std::string& error) {
    std::error_code code;
    Finder finder{found};
    if (fs::is_directory(PathOf(path), code)) {
        finder.LookIntoFolder(PathOf(path), 0);
    } else if (fs::is_regular_file(PathOf(path), code)) {
        finder.Consider(path, 0);
    } else {
        finder.error = "is no file or folder";
    }
    if (!finder.error.empty()) {
        error = path + ": " + finder.error;
    }
    return finder.error.empty();
}

SourceFiles ChooseFiles(const SourceFiles& found, std::vector<std::string>& unused) {
    SourceFiles chosen;
    const std::string place = ProcedurePlace(found);
    for (const FoundFile& file : found) {
        if (file.kind == SourceKind::XplaneProcedures && FolderOf(file.file.path) != place) {
            unused.push_back(file.file.path);
            continue;
        }
        const auto have =
            ComesOnce(file.kind)
                ? std::find_if(chosen.begin(), chosen.end(),
                               [&](const FoundFile& other) { return other.kind == file.kind; })
                : chosen.end();
        if (have == chosen.end()) {
            chosen.push_back(file);
            continue;
        }
        unused.push_back(IsBetter(file, *have) ? have->file.path : file.file.path);
        if (IsBetter(file, *have)) {
            *have = file;
        }
    }
    return chosen;
}

const FoundFile* FileOf(const SourceFiles& files, SourceKind kind) {
    const auto found = std::find_if(files.begin(), files.end(),
                                    [&](const FoundFile& file) { return file.kind == kind; });
    return found == files.end() ? nullptr : &*found;
}

const char* NameOf(SourceKind kind) {
    return kNames[static_cast<std::size_t>(kind)];
}

}  // namespace avqdata
