// navdb/section_index.h - finds one airport's section in a file of "[IDENT]" sections without
// reading the rest.
//
// The index remembers where each section begins. It is built by one pass over the file, which is
// never in memory as a whole, at the database load or at the first look-up, and again when the
// file's size or time says that it was written since. Of several sections of one airport the first
// counts.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace avq1 {

struct FileSection {
    std::string ident;       // between the brackets
    std::size_t offset = 0;  // of the "["
    std::size_t size = 0;    // up to the next section
};

struct SectionIndex {
    std::string path;                   // of the file it was built from; empty until built
    FileStamp stamp;                    // of the file when it was read
    std::vector<FileSection> sections;  // by identifier, equals in file order
};

// The identifier of a section line: the text between its brackets.
std::string_view SectionIdent(std::string_view line);

// Sections of a file's text, in file order. It is gone through in pieces of this size.
std::vector<FileSection> FindSections(std::string_view text, std::size_t pieceSize);

// Builds the index of the file. A file that cannot be opened has no sections.
void BuildSectionIndex(std::string_view path, SectionIndex& index);

// Reads the section of `ident`, its section line included. False, with `text` empty, when there is
// none.
bool ReadSection(std::string_view path, std::string_view ident, SectionIndex& index,
                 std::string& text);

}  // namespace avq1
