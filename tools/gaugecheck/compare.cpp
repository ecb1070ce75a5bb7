// gauge_compare FOLDER FOLDER - whether two runs of gaugecheck show the same: the same texts of the
// same size and colour within a pixel of each other, and pictures that look alike.
//
// Drawing libraries smooth edges differently or not at all. So each bright pixel of one picture
// must be found in the other: the same tint, at least half as strong, at most two pixels away; or a
// mix of the colours there. What
// one picture lacks, shows in another colour or elsewhere is counted, a few stray pixels are
// allowed. Exit status 0 when all are alike.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "gaugecheck/picture.h"

namespace {

namespace fs = std::filesystem;
using gaugecheck::Picture;

constexpr double kTextTolerancePx = 1.0;
constexpr int kBright = 128;            // strength of a pixel that must be found, of 255
constexpr int kReach = 2;               // how far away it may be found, pixels
constexpr double kWeakest = 0.45;       // of its strength: a hyphen may be smoothed over two rows
constexpr double kTintTolerance = 0.3;  // of a channel's share
constexpr int kMixTolerance = 8;        // of a channel beyond the colours it can be a mix of
constexpr int kPixelsAllowed =
    45;  // not found, in a whole picture: where lines cross and tints mix
constexpr std::size_t kBmpFileHeader = 14;

std::string ReadFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// ---- texts ----
struct TextLine {
    std::string gauge, colour, text;
    double x = 0, y = 0, size = 0;
};

std::vector<TextLine> ReadTexts(const fs::path& path) {
    std::vector<TextLine> texts;
    std::istringstream lines(ReadFile(path));
    std::string line;
    while (std::getline(lines, line)) {
        std::istringstream words(line);
        TextLine text;
        std::getline(words, text.gauge, '\t');
        words >> text.x >> text.y >> text.size >> text.colour;
        words.ignore(1);
        std::getline(words, text.text);
        texts.push_back(text);
    }
    return texts;
}

bool SameText(const TextLine& a, const TextLine& b) {
    return a.gauge == b.gauge && a.text == b.text && a.colour == b.colour &&
           std::abs(a.x - b.x) <= kTextTolerancePx && std::abs(a.y - b.y) <= kTextTolerancePx &&
           std::abs(a.size - b.size) <= 0.01 * a.size;
}

int CompareTexts(const fs::path& first, const fs::path& second) {
    const std::vector<TextLine> a = ReadTexts(first);
    const std::vector<TextLine> b = ReadTexts(second);
    int differences = 0;
    for (std::size_t i = 0; i < std::max(a.size(), b.size()); ++i) {
        if (i >= a.size() || i >= b.size() || !SameText(a[i], b[i])) {
            const auto show = [i](const std::vector<TextLine>& texts) {
                if (i >= texts.size()) {
                    return std::string("nothing");
                }
                const TextLine& text = texts[i];
                return text.gauge + " \"" + text.text + "\" at " + std::to_string(text.x) + " " +
                       std::to_string(text.y) + " " + text.colour;
            };
            std::printf("  %s / %s\n", show(a).c_str(), show(b).c_str());
            ++differences;
        }
    }
    std::printf("%s: %zu texts, %d different\n", first.c_str(), a.size(), differences);
    return differences;
}

// ---- pictures ----
bool ReadPicture(const fs::path& path, Picture& picture) {
    const std::string bytes = ReadFile(path);
    return bytes.size() > kBmpFileHeader &&
           gaugecheck::ReadDib(reinterpret_cast<const std::uint8_t*>(bytes.data()) + kBmpFileHeader,
                               bytes.size() - kBmpFileHeader, picture);
}

struct Colour {
    int strength = 0;  // of the strongest channel
    std::array<int, 3> channels{};
};

Colour ColourAt(const Picture& picture, int x, int y) {
    const std::uint32_t pixel = picture.pixels[static_cast<std::size_t>(y) * picture.width + x];
    Colour colour;
    for (std::size_t channel = 0; channel < 3; ++channel) {
        colour.channels[channel] = static_cast<int>(pixel >> (8 * channel) & 0xFF);
        colour.strength = std::max(colour.strength, colour.channels[channel]);
    }
    return colour;
}

// Whether `other` can be the same stroke as `colour`, smoothed more or less: of the same tint and
// not much weaker.
bool CanBeSame(const Colour& colour, const Colour& other) {
    if (other.strength < kWeakest * colour.strength) {
        return false;
    }
    for (std::size_t channel = 0; channel < 3; ++channel) {
        const double tint = static_cast<double>(colour.channels[channel]) / colour.strength;
        const double otherTint = static_cast<double>(other.channels[channel]) / other.strength;
        if (std::abs(tint - otherTint) > kTintTolerance) {
            return false;
        }
    }
    return true;
}

// Whether the picture has the colour near a point, or colours on both sides of it that mix to it.
bool FoundNear(const Colour& colour, const Picture& picture, int x, int y) {
    std::array<int, 3> least{255, 255, 255};
    std::array<int, 3> most{};
    for (int nearY = std::max(y - kReach, 0); nearY <= std::min(y + kReach, picture.height - 1);
         ++nearY) {
        for (int nearX = std::max(x - kReach, 0); nearX <= std::min(x + kReach, picture.width - 1);
             ++nearX) {
            const Colour other = ColourAt(picture, nearX, nearY);
            if (CanBeSame(colour, other)) {
                return true;
            }
            for (std::size_t channel = 0; channel < 3; ++channel) {
                least[channel] = std::min(least[channel], other.channels[channel]);
                most[channel] = std::max(most[channel], other.channels[channel]);
            }
        }
    }
    for (std::size_t channel = 0; channel < 3; ++channel) {
        if (colour.channels[channel] < least[channel] - kMixTolerance ||
            colour.channels[channel] > most[channel] + kMixTolerance) {
            return false;
        }
    }
    return true;
}

// Counts the bright pixels of `a` that `b` has nothing like near them.
int CountMissing(const Picture& a, const Picture& b) {
    int missing = 0;
    for (int y = 0; y < a.height; ++y) {
        for (int x = 0; x < a.width; ++x) {
            const Colour colour = ColourAt(a, x, y);
            missing += colour.strength >= kBright && !FoundNear(colour, b, x, y) ? 1 : 0;
        }
    }
    return missing;
}

bool SamePicture(const fs::path& first, const fs::path& second) {
    Picture a;
    Picture b;
    if (!ReadPicture(first, a) || !ReadPicture(second, b) || a.width != b.width ||
        a.height != b.height) {
        std::printf("  %s: one of the two is missing or of another size\n", first.c_str());
        return false;
    }
    const int missing = CountMissing(a, b);
    const int added = CountMissing(b, a);
    const bool same = missing + added <= kPixelsAllowed;
    std::printf("%s %4d missing %4d added  %s\n", same ? " " : "*", missing, added, first.c_str());
    return same;
}

int CompareFolders(const fs::path& first, const fs::path& second) {
    std::set<fs::path> names;
    for (const fs::path& root : {first, second}) {
        std::error_code ignored;
        for (const auto& entry : fs::recursive_directory_iterator(root, ignored)) {
            if (entry.is_regular_file()) {
                names.insert(fs::relative(entry.path(), root));
            }
        }
    }
    int different = 0;
    int pictures = 0;
    for (const fs::path& name : names) {
        if (name.extension() == ".bmp") {
            ++pictures;
            different += SamePicture(first / name, second / name) ? 0 : 1;
        } else {
            different += CompareTexts(first / name, second / name) == 0 ? 0 : 1;
        }
    }
    std::printf("%d pictures compared, %d files differ\n", pictures, different);
    return pictures > 0 && different == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: gauge_compare FOLDER FOLDER\n");
        return 2;
    }
    return CompareFolders(argv[1], argv[2]);
}
