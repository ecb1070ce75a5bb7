// Any bytes as an archive and as a file to be told by its content, the first byte saying which:
// what it holds is read whole or refused in words; and as one airport's procedures beside its
// fixes.
#include "avqdata/source_finder.h"
#include "avqdata/xplane.h"
#include "fuzz/avqdata_sound.h"

namespace {

using namespace avqdata;

void ReadArchive(std::string_view text) {
    constexpr std::size_t kMembersRead = 20;
    std::string error;
    const auto archive = ZipArchive::OfMemory(std::make_shared<std::string>(text), error);
    Require((archive == nullptr) == !error.empty());
    for (std::size_t i = 0; archive != nullptr && i < archive->Members().size(); ++i) {
        Require(archive->Members()[i].path.find("../") == std::string::npos);
        const SourceFile file("fuzz", archive, i);
        std::string whole;
        if (i < kMembersRead && !ReadSourceFile(file, whole, error, std::size_t{1} << 20U)) {
            Require(error.starts_with("fuzz: ") && whole.empty());
        }
    }
}

void ReadProcedures(std::string_view rest) {
    FuzzImport import;
    auto& [options, report, data, error] = import;
    XplaneTables tables;
    LineSource navaids = LineSource::OfText(TakeFile(rest), "nav");
    ReadXplaneNavaids(navaids, report, data, tables, error);
    LineSource fixes = LineSource::OfText(TakeFile(rest), "fix");
    ReadXplaneFixes(fixes, report, data, tables, error);
    LineSource lines = LineSource::OfText(rest, "QAAA.dat");
    if (ReadXplaneProcedures(lines, "QAAA", report, tables.book, error)) {
        BuildProcedures(tables.book, report, data);
    }
    import.RequireSoundFolder();
}

}  // namespace

void FuzzText(std::string_view text) {
    if (text.empty()) {
        return;
    }
    const std::string_view rest = text.substr(1);
    switch (static_cast<unsigned char>(text[0]) % 3) {
        case 0:
            ReadArchive(rest);
            break;
        case 1: {
            const FoundFile found = Recognise(rest, SourceFile("earth_nav.dat"));
            Require(NameOf(found.kind) != nullptr && found.cycle >= 0);
            break;
        }
        default:
            ReadProcedures(rest);
    }
}
