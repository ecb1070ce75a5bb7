// avqdata/source_formats.h - the public sources: what each gives, where people get it, how it is
// read. One table, in the order in which they are combined: what comes later is nearer to its
// authority and replaces what came before.
#pragma once

#include <array>
#include <string>

#include "avqdata/importers.h"
#include "avqdata/source_finder.h"

namespace avqdata {

struct SourceFormat {
    const char* name;  // of the verb
    const char* argument;
    const char* title;
    const char* gives;
    const char* where;    // people get it
    const char* licence;  // what may be done with it and with what is made of it
    SourceKind first;     // its kinds of files, first to last
    SourceKind last;
    bool (*import)(const SourceFiles&, const ImportContext&, Dataset&, std::string&);
    Coverage coverage;
};

extern const std::array<SourceFormat, 5> kSourceFormats;

const SourceFormat& FormatOf(SourceKind kind);  // of a kind other than None

SourceFiles FilesOf(const SourceFormat& format, const SourceFiles& files);

// What `import FORMAT PATH` reads: the files of the format in a folder or an archive; a single file
// is taken for one of it where the format may be one file. False with `error` when there is none.
bool FindFilesOf(const SourceFormat& format, const std::string& path, SourceFiles& files,
                 std::string& error);

}  // namespace avqdata
