#pragma once

#include <string>
#include <vector>

namespace orvane {

// Runs a program, whose path comes first, to its end with nothing at its standard input and its outputs dropped. False
// when it cannot be started or does not end with status 0.
bool runTool(const std::vector<std::string>& words);

// Starts a program and leaves it to itself, also beyond this process's end. False when it cannot be started.
bool startProgram(const std::vector<std::string>& words);

}  // namespace orvane
