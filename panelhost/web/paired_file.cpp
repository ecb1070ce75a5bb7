#include "panelhost/web/paired_file.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "panelhost/base/text.h"
#include "panelhost/base/whole_file.h"

namespace panelhost {
namespace {

constexpr std::size_t kMaxFileBytes = 16384;

bool IsToken(std::string_view text) {
    return text.size() == kTokenCharacters && std::all_of(text.begin(), text.end(), [](char c) {
               return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
           });
}

}  // namespace

std::string PairedFilePath() {
    const char* const state = std::getenv("XDG_STATE_HOME");
    if (state != nullptr && *state == '/') {
        return std::string(state) + "/avqpanel/paired";
    }
    const char* const home = std::getenv("HOME");
    return home != nullptr && *home == '/' ? std::string(home) + "/.local/state/avqpanel/paired"
                                           : "";
}

void LoadPaired(const std::string& path, Pairing& pairing) {
    const std::string text = path.empty() ? "" : ReadWholeFile(path, kMaxFileBytes).value_or("");
    for (const std::string_view line : Lines(text)) {
        const std::vector<std::string_view> words = Words(line);
        if (words.size() == 2 && IsToken(words[1]) && (words[0] == "touch" || words[0] == "look") &&
            pairing.tokens.size() < kMaxPairedBrowsers) {
            pairing.tokens.push_back(
                {std::string(words[1]), words[0] == "touch" ? Access::Touch : Access::Look});
        }
    }
}

bool SavePaired(const std::string& path, const Pairing& pairing) {
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), error);
    const mode_t before = umask(077);
    WholeFile file;
    const bool opened = !path.empty() && file.Open(path);
    umask(before);
    if (!opened) {
        return false;
    }
    for (const Token& token : pairing.tokens) {
        std::fprintf(file.file(), "%s %s\n", token.access == Access::Touch ? "touch" : "look",
                     token.text.c_str());
    }
    return file.Finish();
}

}  // namespace panelhost
