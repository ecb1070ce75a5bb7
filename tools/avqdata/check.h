// avqdata/check.h - a Navdata folder judged line by line, ours or one a user brings.
//
// Faults are what the module would read wrongly or not at all; warnings what it reads but a pilot
// may stumble over. Each names its file and line.
#pragma once

#include "avqdata/folder.h"
#include "avqdata/report.h"

namespace avqdata {

void CheckFolder(const FolderTexts& texts, Report& report);

}  // namespace avqdata
