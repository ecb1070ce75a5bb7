// avqdata/build_verb.h - one command from what people have to a Navdata folder.
#pragma once

#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include "avqdata/dataset.h"
#include "avqdata/source_file.h"

namespace avqdata {

struct BuildRequest {
    std::string target;                // the Navdata folder; what it held of ours is replaced
    std::vector<std::string> sources;  // folders, files, archives, in any order
    ImportOptions options = {};
    std::map<std::string, std::vector<std::string>> onlyOf = {};  // tables, by a format's name
    bool dryRun = false;
    bool verbose = false;
};

// Recognises what the sources hold, combines it in its order and writes the folder, which appears
// whole or not at all. The report goes to `out`. 0: done; 1: done, and the check of the new folder
// finds faults; 2: nothing was written, `err` says why.
int RunBuild(const BuildRequest& request, const Progress& progress, std::ostream& out,
             std::ostream& err);

// Which sources there are, what each gives, where people get them.
void PrintSourceList(std::ostream& out);

}  // namespace avqdata
