#include "platform/gdiplus/font_cache.h"

#include <cstdint>
#include <cstring>
#include <string_view>

namespace avq1::gdiplus {
namespace {

using namespace Gdiplus::DllExports;
using Gdiplus::GpFont;
using Gdiplus::GpFontFamily;

constexpr std::size_t kFaceLimit = 16;
constexpr std::size_t kFontLimit = 64;

// Families that stand for another one wherever they are not installed.
constexpr const char* kArialVariant = "HW Arial";
constexpr const char* kTypewriter = "Courier New";

struct SizedFont {
    const FontFace* face = nullptr;
    double sizePx = 0;
    GpFont* font = nullptr;
};

std::array<FontFace, kFaceLimit> faces;
std::array<SizedFont, kFontLimit> fonts;
std::size_t nextFont = 0;

GpFontFamily* FamilyNamed(const char* name) {
    std::array<wchar_t, 32> wide{};
    for (std::size_t i = 0; i + 1 < wide.size() && name[i] != '\0'; ++i) {
        wide[i] = static_cast<unsigned char>(name[i]);
    }
    GpFontFamily* family = nullptr;
    return GdipCreateFontFamilyFromName(wide.data(), nullptr, &family) == Gdiplus::Ok ? family
                                                                                      : nullptr;
}

GpFontFamily* FindFamily(const char* name) {
    if (GpFontFamily* const family = FamilyNamed(name)) {
        return family;
    }
    if (std::strcmp(name, kArialVariant) == 0) {
        return FindFamily("Arial");
    }
    GpFontFamily* fallback = nullptr;
    const bool found = (std::strcmp(name, kTypewriter) == 0
                            ? GdipGetGenericFontFamilyMonospace(&fallback)
                            : GdipGetGenericFontFamilySansSerif(&fallback)) == Gdiplus::Ok;
    return found ? fallback : nullptr;
}

int StyleOf(const FontFace& face) {
    BOOL available = FALSE;
    const int wanted = face.bold ? Gdiplus::FontStyleBold : Gdiplus::FontStyleRegular;
    GdipIsStyleAvailable(face.family, wanted, &available);
    return available != FALSE ? wanted : Gdiplus::FontStyleRegular;
}

// The advances of all characters as the font's designer set them: read at the size at which one
// design unit is one pixel.
bool ReadAdvances(FontFace& face, int emHeight) {
    LOGFONTW wanted = {};
    wanted.lfHeight = -emHeight;
    wanted.lfWeight = face.bold ? FW_BOLD : FW_NORMAL;
    wanted.lfCharSet = ANSI_CHARSET;
    wanted.lfOutPrecision = OUT_TT_ONLY_PRECIS;
    if (GdipGetFamilyName(face.family, wanted.lfFaceName, LANG_NEUTRAL) != Gdiplus::Ok) {
        return false;
    }
    const HDC dc = CreateCompatibleDC(nullptr);
    const HFONT font = CreateFontIndirectW(&wanted);
    const HGDIOBJ previous = SelectObject(dc, font);
    std::array<INT, 256> widths{};
    const bool read = GetCharWidth32W(dc, 0, 255, widths.data()) != 0;
    SelectObject(dc, previous);
    DeleteObject(font);
    DeleteDC(dc);
    for (std::size_t i = 0; i < widths.size(); ++i) {
        const bool control = i < 0x20 || (i >= 0x7F && i < 0xA0);  // drawn as a blank
        face.advances[i] = static_cast<double>(widths[control ? ' ' : i]) / emHeight;
    }
    return read;
}

bool Create(FontFace& face, const char* name, bool bold) {
    std::strncpy(face.name.data(), name, face.name.size() - 1);
    face.bold = bold;
    face.family = FindFamily(face.name.data());
    if (face.family == nullptr) {
        return false;
    }
    const int style = StyleOf(face);
    std::uint16_t emHeight = 0;
    std::uint16_t ascent = 0;
    std::uint16_t descent = 0;
    if (GdipGetEmHeight(face.family, style, &emHeight) != Gdiplus::Ok || emHeight == 0 ||
        GdipGetCellAscent(face.family, style, &ascent) != Gdiplus::Ok ||
        GdipGetCellDescent(face.family, style, &descent) != Gdiplus::Ok ||
        !ReadAdvances(face, emHeight)) {
        GdipDeleteFontFamily(face.family);
        face = FontFace{};
        return false;
    }
    face.ascent = static_cast<double>(ascent) / emHeight;
    face.descent = static_cast<double>(descent) / emHeight;
    return true;
}

}  // namespace

const FontFace* FindFontFace(const CanvasFont& font) {
    const std::string_view name = font.family != nullptr ? font.family : "Arial";
    for (FontFace& face : faces) {
        if (face.family == nullptr) {
            return Create(face, std::string_view(name).data(), font.bold) ? &face : nullptr;
        }
        if (face.bold == font.bold && name.substr(0, face.name.size() - 1) == face.name.data()) {
            return &face;
        }
    }
    return &faces.front();  // more families than any screen uses
}

GpFont* FindFont(const FontFace& face, double sizePx) {
    for (const SizedFont& sized : fonts) {
        if (sized.face == &face && sized.sizePx == sizePx) {
            return sized.font;
        }
    }
    GpFont* font = nullptr;
    if (GdipCreateFont(face.family, static_cast<float>(sizePx), StyleOf(face), Gdiplus::UnitPixel,
                       &font) != Gdiplus::Ok) {
        return nullptr;
    }
    SizedFont& place = fonts[nextFont];
    nextFont = (nextFont + 1) % fonts.size();
    if (place.font != nullptr) {
        GdipDeleteFont(place.font);
    }
    place = {&face, sizePx, font};
    return font;
}

void DropFonts() {
    for (SizedFont& sized : fonts) {
        if (sized.font != nullptr) {
            GdipDeleteFont(sized.font);
        }
        sized = SizedFont{};
    }
    for (FontFace& face : faces) {
        if (face.family != nullptr) {
            GdipDeleteFontFamily(face.family);
        }
        face = FontFace{};
    }
}

}  // namespace avq1::gdiplus
