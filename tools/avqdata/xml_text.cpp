#include "avqdata/xml_text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "avqdata/text_tools.h"
#include "base/text.h"

namespace avqdata {
namespace {

constexpr std::size_t kMostElements = 100000;
constexpr std::size_t kDeepest = 64;
constexpr auto kNpos = std::string_view::npos;

void AppendUtf8(std::uint32_t code, std::string& text) {
    constexpr std::uint32_t kHighest = 0x10FFFF;
    if (code == 0 || code > kHighest) {
        return;
    }
    if (code < 0x80) {
        text += static_cast<char>(code);
        return;
    }
    const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    constexpr std::array<std::uint32_t, 4> kLead{0, 0xC0, 0xE0, 0xF0};
    text += static_cast<char>(kLead.at(static_cast<std::size_t>(more)) | (code >> (6 * more)));
    for (int i = more - 1; i >= 0; --i) {
        text += static_cast<char>(0x80U | ((code >> (6 * i)) & 0x3FU));
    }
}

// The character that "amp", "#38" or "#x26" stands for. False for anything else.
bool AppendEntity(std::string_view name, std::string& text) {
    constexpr std::array<std::pair<std::string_view, char>, 5> kNames{
        {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};
    for (const auto& [known, letter] : kNames) {
        if (name == known) {
            text += letter;
            return true;
        }
    }
    if (!name.starts_with('#') || name.size() < 2) {
        return false;
    }
    const bool isHex = name[1] == 'x';
    const std::string digits(name.substr(isHex ? 2 : 1));
    const char* const allowed = isHex ? "0123456789abcdefABCDEF" : "0123456789";
    if (digits.empty() || digits.size() > 7 || digits.find_first_not_of(allowed) != kNpos) {
        return false;
    }
    AppendUtf8(static_cast<std::uint32_t>(std::stoul(digits, nullptr, isHex ? 16 : 10)), text);
    return true;
}

void AppendDecoded(std::string_view raw, std::string& text) {
    constexpr std::size_t kLongestEntity = 10;
    while (!raw.empty()) {
        const std::size_t start = std::min(raw.find('&'), raw.size());
        text += raw.substr(0, start);
        raw.remove_prefix(start);
        if (raw.empty()) {
            return;
        }
        const std::size_t end = raw.substr(0, kLongestEntity).find(';');
        if (end != kNpos && AppendEntity(raw.substr(1, end - 1), text)) {
            raw.remove_prefix(end + 1);
        } else {
            text += '&';
            raw.remove_prefix(1);
        }
    }
}

bool BeginsName(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || (c & 0x80) != 0;
}

std::string_view NameOf(std::string_view tag) {
    const std::string_view name = tag.substr(0, tag.find_first_of(" \t\r\n/"));
    const std::size_t colon = name.rfind(':');
    return colon == kNpos ? name : name.substr(colon + 1);
}

// A '>' inside quotes does not end a tag.
std::size_t TagEnd(std::string_view text, std::size_t from) {
    char quote = '\0';
    for (std::size_t i = from; i < text.size(); ++i) {
        const char c = text[i];
        if (quote != '\0') {
            quote = c == quote ? '\0' : quote;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '>') {
            return i;
        }
    }
    return kNpos;
}

struct XmlParser {
    std::string_view text;
    XmlText result;
    std::vector<std::size_t> open;  // places of the elements that are not closed yet
    std::size_t at = 0;
    std::size_t counted = 0;  // so much of the text has its line ends counted
    std::size_t line = 1;

    std::size_t LineHere() {
        line += static_cast<std::size_t>(
            std::count(text.begin() + static_cast<std::ptrdiff_t>(counted),
                       text.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
        counted = at;
        return line;
    }

    void AppendText(std::string_view raw, bool decoded) {
        if (!open.empty()) {
            std::string& own = result.elements[open.back()].text;
            decoded ? void(own += raw) : AppendDecoded(raw, own);
        }
    }

    void CloseDownTo(std::size_t depth) {
        while (open.size() > depth) {
            XmlElement& element = result.elements[open.back()];
            element.text = std::string(Trim(element.text));
            element.end = result.elements.size();
            open.pop_back();
        }
    }

    // Passes over a comment, a declaration, an instruction; takes the text of a CDATA section.
    bool TakeMarkup() {
        constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kKinds{
            {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}, {"<!", ">"}}};
        for (const auto& [opening, closing] : kKinds) {
            if (text.substr(at).starts_with(opening)) {
                const std::size_t start = at + opening.size();
                const std::size_t end = text.find(closing, start);
                if (opening == kKinds[1].first) {
                    AppendText(text.substr(start, end == kNpos ? kNpos : end - start), true);
                }
                result.isCut = result.isCut || end == kNpos;
                at = end == kNpos ? text.size() : end + closing.size();
                return true;
            }
        }
        return false;
    }

    void TakeClosingTag() {
        const std::size_t end = text.find('>', at);
        const std::string_view name =
            NameOf(text.substr(at + 2, end == kNpos ? kNpos : end - at - 2));
        for (std::size_t depth = open.size(); depth > 0; --depth) {
            if (result.elements[open[depth - 1]].name == name) {
                CloseDownTo(depth - 1);
                break;
            }
        }
        at = end == kNpos ? text.size() : end + 1;
    }

    void TakeOpeningTag() {
        const std::size_t end = TagEnd(text, at);
        if (end == kNpos || open.size() == kDeepest || result.elements.size() == kMostElements) {
            result.isCut = true;
            at = text.size();
            return;
        }
        const std::string_view tag = text.substr(at + 1, end - at - 1);
        open.push_back(result.elements.size());
        result.elements.push_back({NameOf(tag), tag, {}, LineHere(), 0});
        if (tag.ends_with('/')) {
            CloseDownTo(open.size() - 1);
        }
        at = end + 1;
    }

    void Parse() {
        while (at < text.size()) {
            const std::size_t next = std::min(text.find('<', at), text.size());
            AppendText(text.substr(at, next - at), false);
            at = next;
            if (at + 1 >= text.size()) {
                result.isCut = result.isCut || at < text.size();
                break;
            }
            if (text[at + 1] == '/') {
                TakeClosingTag();
            } else if (BeginsName(text[at + 1])) {
                TakeOpeningTag();
            } else if (!TakeMarkup()) {
                AppendText("<", true);
                ++at;
            }
        }
        result.isCut = result.isCut || !open.empty();
        CloseDownTo(0);
    }
};

}  // namespace

XmlText ParseXml(std::string_view text) {
    XmlParser parser{text, {}, {}};
    parser.Parse();
    return std::move(parser.result);
}

std::vector<std::size_t> XmlText::Children(std::size_t parent, std::string_view name) const {
    std::vector<std::size_t> children;
    if (parent < elements.size()) {
        for (std::size_t i = parent + 1; i < elements[parent].end; i = elements[i].end) {
            if (elements[i].name == name) {
                children.push_back(i);
            }
        }
    }
    return children;
}

const XmlElement* XmlText::Find(std::size_t parent, std::string_view path) const {
    const std::size_t slash = std::min(path.find('/'), path.size());
    const std::vector<std::size_t> children = Children(parent, path.substr(0, slash));
    if (children.empty()) {
        return nullptr;
    }
    return slash == path.size() ? &elements[children.front()]
                                : Find(children.front(), path.substr(slash + 1));
}

std::string_view XmlText::Text(std::size_t parent, std::string_view path) const {
    const XmlElement* const found = Find(parent, path);
    return found == nullptr ? std::string_view{} : std::string_view(found->text);
}

std::size_t XmlText::First(std::string_view name) const {
    const auto found =
        std::find_if(elements.begin(), elements.end(),
                     [&](const XmlElement& element) { return element.name == name; });
    return static_cast<std::size_t>(found - elements.begin());
}

std::string Attribute(const XmlElement& element, std::string_view name) {
    std::string_view rest = element.tag;
    rest.remove_prefix(std::min(rest.find_first_of(" \t\r\n/"), rest.size()));
    while (!rest.empty()) {
        const std::size_t equals = std::min(rest.find('='), rest.size());
        const std::string_view key = Trim(rest.substr(0, equals));
        rest.remove_prefix(std::min(rest.find_first_of("\"'", equals), rest.size()));
        if (rest.empty()) {
            break;
        }
        const std::size_t close = rest.find(rest.front(), 1);
        const std::string_view value = rest.substr(1, close == kNpos ? kNpos : close - 1);
        if (key == name) {
            std::string decoded;
            AppendDecoded(value, decoded);
            return decoded;
        }
        rest.remove_prefix(close == kNpos ? rest.size() : close + 1);
    }
    return {};
}

}  // namespace avqdata
