// panelhost/web/paired_file.h - the browsers and programs paired before, kept over a restart.
//
// A file only its owner may read, in the user's folder for such things: a line each, "touch" or
// "look" and the token. What cannot be read is no pairing; what cannot be written is told.
#pragma once

#include <string>

#include "panelhost/web/access.h"

namespace panelhost {

std::string PairedFilePath();  // empty without a home folder
void LoadPaired(const std::string& path, Pairing& pairing);
bool SavePaired(const std::string& path, const Pairing& pairing);

}  // namespace panelhost
