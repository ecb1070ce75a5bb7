#include "navdb/section_index.h"

#include <algorithm>

#include "base/text.h"
#include "navdb/navdata_text.h"

namespace avq1 {
namespace {

const FileSection* FindSection(const SectionIndex& index, std::string_view ident) {
    const auto found = std::lower_bound(
        index.sections.begin(), index.sections.end(), ident,
        [](const FileSection& section, std::string_view wanted) { return section.ident < wanted; });
    return found != index.sections.end() && found->ident == ident ? &*found : nullptr;
}

bool BeginsSection(std::string_view text, std::string_view ident) {
    return text.size() > ident.size() && text.front() == '[' && text.substr(1).starts_with(ident) &&
           SectionIdent(text.substr(0, text.find_first_of("\r\n"))) == ident;
}

}  // namespace

std::string_view SectionIdent(std::string_view line) {
    return line.substr(1, std::min(line.find(']'), line.size()) - 1);
}

std::vector<FileSection> FindSections(std::string_view text) {
    // From bracket to bracket instead of from line to line: hardly another line has one.
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    std::vector<FileSection> sections;
    std::size_t lineStart = text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
    std::size_t searched = lineStart;
    for (std::size_t at = text.find('[', searched); at != std::string_view::npos;
         at = text.find('[', at + 1)) {
        const std::size_t lineFeed = text.substr(searched, at - searched).rfind('\n');
        lineStart = lineFeed == std::string_view::npos ? lineStart : searched + lineFeed + 1;
        searched = at;
        if ((at - lineStart) % kNavdataLineLength != 0) {
            continue;  // neither a line's beginning nor that of a long line's next piece
        }
        std::string_view line;
        LineReader(text.substr(at), kNavdataLineLength).Next(line);
        if (!sections.empty()) {
            sections.back().size = at - sections.back().offset;
        }
        sections.push_back({std::string(SectionIdent(line)), at, text.size() - at});
    }
    return sections;
}

void BuildSectionIndex(std::string_view path, SectionIndex& index) {
    std::string text;
    index.stamp = StampOf(path);  // before it is read: what is written meanwhile is read next time
    ReadWholeFile(path, text);
    index.path = path;
    index.sections = FindSections(text);
    std::stable_sort(index.sections.begin(), index.sections.end(),
                     [](const FileSection& a, const FileSection& b) { return a.ident < b.ident; });
}

bool ReadSection(std::string_view path, std::string_view ident, SectionIndex& index,
                 std::string& text) {
    if (index.path != path || index.stamp != StampOf(path)) {
        BuildSectionIndex(path, index);
    }
    const FileSection* const section = FindSection(index, ident);
    if (section != nullptr && ReadFilePart(path, section->offset, section->size, text) &&
        BeginsSection(text, ident)) {
        return true;
    }
    text.clear();
    return false;
}

}  // namespace avq1
