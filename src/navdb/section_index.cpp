#include "navdb/section_index.h"

#include <algorithm>
#include <utility>

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

// Where a file's sections begin, from pieces of its text in their order.
class SectionFinder {
  public:
    // Those that begin in the first `size` characters of `text`, which goes on for at least a line,
    // or to the file's end.
    void TakePiece(std::string_view text, std::size_t size) {
        constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
        std::size_t searched = 0;  // for the line feed before the bracket
        if (pieceStart_ == 0 && text.starts_with(kByteOrderMark)) {
            lineStart_ = searched = kByteOrderMark.size();
        }
        const std::string_view piece = text.substr(0, size);
        // From bracket to bracket instead of from line to line: hardly another line has one.
        for (std::size_t at = piece.find('[', searched); at != std::string_view::npos;
             at = piece.find('[', at + 1)) {
            FindLineStart(piece.substr(searched, at - searched), searched);
            searched = at;
            if ((pieceStart_ + at - lineStart_) % kNavdataLineLength != 0) {
                continue;  // neither a line's beginning nor that of a long line's next piece
            }
            std::string_view line;
            LineReader(text.substr(at), kNavdataLineLength).Next(line);
            sections_.push_back({std::string(SectionIdent(line)), pieceStart_ + at, 0});
        }
        FindLineStart(piece.substr(std::min(searched, piece.size())), searched);
        pieceStart_ += piece.size();
    }

    // A section reaches to the next.
    std::vector<FileSection> Sections() {
        std::size_t end = pieceStart_;
        for (auto section = sections_.rbegin(); section != sections_.rend(); ++section) {
            section->size = end - section->offset;
            end = section->offset;
        }
        return std::move(sections_);
    }

  private:
    void FindLineStart(std::string_view text, std::size_t at) {
        const std::size_t lineFeed = text.rfind('\n');
        lineStart_ =
            lineFeed == std::string_view::npos ? lineStart_ : pieceStart_ + at + lineFeed + 1;
    }

    std::vector<FileSection> sections_;
    std::size_t pieceStart_ = 0;  // in the file, as is
    std::size_t lineStart_ = 0;   // of the last line begun
};

}  // namespace

std::string_view SectionIdent(std::string_view line) {
    return line.substr(1, std::min(line.find(']'), line.size()) - 1);
}

std::vector<FileSection> FindSections(std::string_view text, std::size_t pieceSize) {
    SectionFinder finder;
    for (std::size_t at = 0; at < text.size(); at += pieceSize) {
        finder.TakePiece(text.substr(at), pieceSize);
    }
    return finder.Sections();
}

void BuildSectionIndex(std::string_view path, SectionIndex& index) {
    // Small enough to stay in a processor's memory, and reused: a file may have hundreds of
    // megabytes.
    constexpr std::size_t kPieceSize = std::size_t{1} << 21;
    SectionFinder finder;
    std::string text;
    index.stamp = StampOf(path);  // before it is read: what is written meanwhile is read next time
    std::size_t at = 0;
    do {
        if (!ReadFilePart(path, at, kPieceSize + kNavdataLineLength + 2, text)) {
            finder = {};
            break;
        }
        finder.TakePiece(text, kPieceSize);
        at += kPieceSize;
    } while (text.size() > kPieceSize);
    index.path = path;
    index.sections = finder.Sections();
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
