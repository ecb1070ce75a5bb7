#include "panelhost/panel/panel_config.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>

#include "panelhost/base/text.h"

namespace panelhost {
namespace {

constexpr int kDefaultWidthMm = 640;
constexpr int kDefaultHeightMm = 480;
constexpr int kMaxCoordinate = 100000;
constexpr std::size_t kMaxWarnings = 100;

struct Reader {
    PanelConfig config;
    std::map<int, PanelWindow> windows;
    std::map<int, std::string> titles;
    int line = 0;

    void Warn(const std::string& what) {
        if (config.warnings.size() < kMaxWarnings) {
            config.warnings.push_back(Format("panel file line %d: %s", line, what.c_str()));
        } else if (config.warnings.size() == kMaxWarnings) {
            config.warnings.push_back("panel file: more lines cannot be used");
        }
    }
};

std::string Quoted(std::string_view text) {
    constexpr std::size_t kShown = 60;
    std::string shown;
    for (const char c : text.substr(0, kShown)) {
        shown += c >= 0x20 && c < 0x7F ? c : '?';
    }
    return "\"" + shown + (text.size() > kShown ? "...\"" : "\"");
}

std::string_view WithoutComment(std::string_view line) {
    line = Trim(line.substr(0, line.find("//")));
    for (std::size_t at = 0; at < line.size(); ++at) {
        if (line[at] == ';' && (at == 0 || line[at - 1] == ' ' || line[at - 1] == '\t')) {
            return Trim(line.substr(0, at));
        }
    }
    return line;
}

// "window07" with prefix "window" gives 7; anything but one or two digits behind it nothing.
std::optional<int> NumberAfter(std::string_view name, std::string_view prefix) {
    if (name.size() <= prefix.size() || name.size() > prefix.size() + 3 ||
        !EqualNoCase(name.substr(0, prefix.size()), prefix)) {
        return std::nullopt;
    }
    int number = 0;
    for (const char c : name.substr(prefix.size())) {
        if (c < '0' || c > '9') {
            return std::nullopt;
        }
        number = number * 10 + (c - '0');
    }
    return number;
}

std::optional<int> Coordinate(std::string_view text, int lowest, int highest) {
    const std::optional<double> value = ToNumber(text);
    if (!value || *value < lowest || *value > highest) {
        return std::nullopt;
    }
    return static_cast<int>(*value);
}

std::string Unquoted(std::string_view text) {
    text = Trim(text);
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
        text = text.substr(1, text.size() - 2);
    }
    return std::string(text);
}

bool ReadPair(std::string_view value, double& first, double& second) {
    const std::vector<std::string_view> parts = SplitOn(value, ',');
    if (parts.size() != 2) {
        return false;
    }
    const std::optional<double> a = ToNumber(parts[0]);
    const std::optional<double> b = ToNumber(parts[1]);
    if (!a || !b || std::fabs(*a) > kMaxCoordinate || std::fabs(*b) > kMaxCoordinate) {
        return false;
    }
    first = *a;
    second = *b;
    return true;
}

bool ReadSizeMm(PanelWindow& window, std::string_view value) {
    double width = 0;
    double height = 0;
    if (!ReadPair(value, width, height) || width < 1 || height < 1 || width > kMaxWindowMm ||
        height > kMaxWindowMm) {
        return false;
    }
    window.widthMm = static_cast<int>(width);
    window.heightMm = static_cast<int>(height);
    return true;
}

bool ReadPosition(PanelWindow& window, std::string_view value) {
    const std::optional<int> code = Coordinate(value, 0, 8);
    window.positionCode = code.value_or(window.positionCode);
    return code.has_value();
}

bool ReadIdent(PanelWindow& window, std::string_view value) {
    if (!value.empty() && (value.front() < '0' || value.front() > '9')) {
        // The simulator's own windows have words for idents; only the main panel's matters here.
        window.ident = EqualNoCase(value, "MAIN_PANEL")
                           ? 0
                           : kNamedIdents + static_cast<std::uint32_t>(window.number);
        return true;
    }
    const std::optional<std::int64_t> ident = ToInteger(value);
    if (!ident || *ident < 0 || *ident > 0x7FFFFFFF) {
        return false;
    }
    window.ident = static_cast<std::uint32_t>(*ident);
    return true;
}

bool ReadVisible(PanelWindow& window, std::string_view value) {
    const std::optional<int> visible = Coordinate(value, 0, 1);
    window.visible = visible.value_or(1) != 0;
    return visible.has_value();
}

bool ReadPlace(PanelWindow& window, std::string_view value) {
    window.hasPlace = ReadPair(value, window.placeX, window.placeY);
    return window.hasPlace;
}

bool ReadShownSize(PanelWindow& window, std::string_view value) {
    window.hasShownSize = ReadPair(value, window.shownX, window.shownY) && window.shownX > 0 &&
                          window.shownY > 0 && window.shownX <= kMaxWindowMm &&
                          window.shownY <= kMaxWindowMm;
    return window.hasShownSize;
}

bool ReadBackground(PanelWindow& window, std::string_view value) {
    window.backgroundFile = Unquoted(value);
    return true;
}

struct WindowKey {
    const char* name;
    bool (*read)(PanelWindow&, std::string_view);
};

constexpr WindowKey kWindowKeys[] = {
    {"size_mm", ReadSizeMm},  {"position", ReadPosition},    {"ident", ReadIdent},
    {"visible", ReadVisible}, {"window_pos", ReadPlace},     {"window_size", ReadShownSize},
    {"file", ReadBackground}, {"file_1024", ReadBackground},
};

void ReadGauge(Reader& reader, PanelWindow& window, int number, std::string_view value) {
    const std::vector<std::string_view> parts = SplitOn(value, ',');
    const std::size_t mark = parts[0].find('!');
    GaugePlacement gauge;
    gauge.number = number;
    gauge.line = reader.line;
    if (mark == std::string_view::npos || mark == 0 || mark + 1 == parts[0].size()) {
        reader.Warn("a gauge needs module!NAME, not " + Quoted(parts[0]));
        return;
    }
    gauge.module = std::string(Trim(parts[0].substr(0, mark)));
    gauge.gauge = std::string(Trim(parts[0].substr(mark + 1)));
    if (parts.size() < 3) {
        reader.Warn("gauge " + Quoted(gauge.gauge) + " has no place (x,y)");
        return;
    }
    int* const fields[] = {&gauge.x, &gauge.y, &gauge.width, &gauge.height};
    for (std::size_t i = 0; i < 4 && i + 1 < parts.size(); ++i) {
        if (i >= 2 && parts[i + 1].empty()) {
            continue;
        }
        const std::optional<int> number = Coordinate(parts[i + 1], i < 2 ? -kMaxCoordinate : 0,
                                                     i < 2 ? kMaxCoordinate : kMaxWindowMm);
        if (!number) {
            reader.Warn("gauge " + Quoted(gauge.gauge) + ": " + Quoted(parts[i + 1]) +
                        " is no usable number");
            return;
        }
        *fields[i] = *number;
    }
    if (parts.size() > 5) {
        const std::size_t start = static_cast<std::size_t>(parts[5].data() - value.data());
        gauge.parameter = Unquoted(value.substr(start));
    }
    if (window.gauges.size() >= static_cast<std::size_t>(kMaxGaugesPerWindow)) {
        reader.Warn("too many gauges in one window");
        return;
    }
    window.gauges.push_back(gauge);
}

void ReadWindowLine(Reader& reader, PanelWindow& window, std::string_view key,
                    std::string_view value) {
    if (const std::optional<int> number = NumberAfter(key, "gauge")) {
        ReadGauge(reader, window, *number, value);
        return;
    }
    for (const WindowKey& row : kWindowKeys) {
        if (EqualNoCase(key, row.name)) {
            if (!row.read(window, value)) {
                reader.Warn(Format("%s cannot be %s", row.name, Quoted(value).c_str()));
            }
            return;
        }
    }
    // Panel files carry keys for other programs (view_dir, background_color and so on): not ours.
}

// The window a section header opens: its number, or nothing when the section is not a window.
std::optional<int> OpenSection(Reader& reader, std::string_view header) {
    if (header.size() < 2 || header.back() != ']') {
        reader.Warn("section header without ]: " + Quoted(header));
        return std::nullopt;
    }
    const std::string_view name = Trim(header.substr(1, header.size() - 2));
    const std::optional<int> number = NumberAfter(name, "window");
    if (!number) {
        return std::nullopt;
    }
    if (*number >= kMaxWindows) {
        reader.Warn("window numbers end at 99: " + Quoted(name));
        return std::nullopt;
    }
    const auto [window, isNew] = reader.windows.try_emplace(*number);
    window->second.number = *number;
    if (isNew) {
        window->second.ident =
            *number == 0 ? 0 : kNamedIdents + static_cast<std::uint32_t>(*number);
        window->second.line = reader.line;
    } else {
        reader.Warn(Format("section [Window%02d] is repeated; its lines are added", *number));
    }
    return number;
}

void ReadLine(Reader& reader, std::string_view line, std::string& section,
              std::optional<int>& window) {
    if (line.front() == '[') {
        section = Lower(line);
        window = OpenSection(reader, line);
        return;
    }
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || equals == 0) {
        if (window || section.empty()) {
            reader.Warn("no key=value: " + Quoted(line));
        }
        return;
    }
    const std::string_view key = Trim(line.substr(0, equals));
    const std::string_view value = Trim(line.substr(equals + 1));
    if (window) {
        ReadWindowLine(reader, reader.windows[*window], key, value);
    } else if (section == "[window titles]") {
        if (const std::optional<int> number = NumberAfter(key, "window")) {
            reader.titles[*number] = Unquoted(value);
        }
    }
}

bool Overlap(const DeskBox& a, const DeskBox& b) {
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height &&
           b.y < a.y + a.height;
}

void CheckWindows(PanelConfig& config) {
    for (std::size_t i = 0; i < config.windows.size(); ++i) {
        const PanelWindow& a = config.windows[i];
        for (std::size_t j = i + 1; j < config.windows.size(); ++j) {
            const PanelWindow& b = config.windows[j];
            if (a.ident == b.ident) {
                config.warnings.push_back(Format("panel file: windows %02d and %02d share ident %u",
                                                 a.number, b.number, a.ident));
            }
            if (a.visible && b.visible &&
                Overlap(PlaceOnDesk(a, kDeskWidth, kDeskHeight),
                        PlaceOnDesk(b, kDeskWidth, kDeskHeight))) {
                config.warnings.push_back(
                    Format("panel file: windows %02d \"%s\" and %02d \"%s\" overlap", a.number,
                           a.title.c_str(), b.number, b.title.c_str()));
            }
        }
    }
}

}  // namespace

PanelConfig ParsePanelConfig(std::string_view text) {
    Reader reader;
    std::string section;
    std::optional<int> window;
    for (const std::string_view raw : Lines(text)) {
        ++reader.line;
        const std::string_view line = WithoutComment(raw);
        if (!line.empty()) {
            ReadLine(reader, line, section, window);
        }
    }
    for (auto& [number, record] : reader.windows) {
        const auto title = reader.titles.find(number);
        record.title = title != reader.titles.end() && !title->second.empty()
                           ? title->second
                           : Format("Window %02d", number);
        if (record.widthMm == 0) {
            reader.line = record.line;
            reader.Warn(Format("[Window%02d] has no size_mm; taken as %d,%d", number,
                               kDefaultWidthMm, kDefaultHeightMm));
            record.widthMm = kDefaultWidthMm;
            record.heightMm = kDefaultHeightMm;
        }
        std::stable_sort(
            record.gauges.begin(), record.gauges.end(),
            [](const GaugePlacement& a, const GaugePlacement& b) { return a.number < b.number; });
        reader.config.windows.push_back(std::move(record));
    }
    if (reader.config.windows.empty()) {
        reader.config.warnings.push_back("panel file: no [WindowNN] section");
    }
    CheckWindows(reader.config);
    return std::move(reader.config);
}

DeskBox PlaceOnDesk(const PanelWindow& window, int deskWidth, int deskHeight) {
    const auto pixels = [](double value, int desk) {
        // Fractions of the desk up to 1; larger numbers are pixels already.
        return static_cast<int>(std::lround(std::fabs(value) <= 1.0 ? value * desk : value));
    };
    DeskBox box{0, 0, window.widthMm, window.heightMm};
    if (window.hasShownSize) {
        box.width = std::max(1, pixels(window.shownX, deskWidth));
        box.height = std::max(1, pixels(window.shownY, deskHeight));
    }
    if (window.hasPlace) {
        box.x = pixels(window.placeX, deskWidth);
        box.y = pixels(window.placeY, deskHeight);
    } else {
        box.x = std::max(0, (deskWidth - box.width) * (window.positionCode % 3) / 2);
        box.y = std::max(0, (deskHeight - box.height) * (window.positionCode / 3) / 2);
    }
    return box;
}

std::string ModuleStem(std::string_view moduleName) {
    const std::size_t slash = moduleName.find_last_of("/\\");
    if (slash != std::string_view::npos) {
        moduleName.remove_prefix(slash + 1);
    }
    return Lower(Trim(moduleName.substr(0, moduleName.find_last_of('.'))));
}

}  // namespace panelhost
