// gaugecheck/scenario.h - what happens while a module is looked at: a text file, one command a
// line.
//
//   set NUMBER VALUE         a numbered variable of the simulator
//   position LAT LONG        the aircraft's place, degrees
//   click GAUGE X Y          the area of a gauge that holds the point, gauge pixels, then a frame
//   frames COUNT             ticks of the simulator
//   snapshot NAME            pictures and texts of every gauge, written under that name
//   click-everything         every area of every gauge, a frame of that gauge after each
// Empty lines and those that begin with "#" are skipped.
#pragma once

#include <string>

namespace gaugecheck {

// Runs the commands of `text`; what is written goes to `outputFolder`. False with what went wrong
// in `error`.
bool RunScenario(const std::string& text, const std::string& outputFolder, std::string& error);

// Where no file is given: a flight near Boston on the demo data, with power on.
extern const char* const kPlainScenario;

}  // namespace gaugecheck
