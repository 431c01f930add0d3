#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orvane::test {

struct ChildResult {
  int exitStatus = -1;  // 128 + signal when a signal ended it
  std::string output;
  std::string errors;
};

// Runs a program to its end with standard input from `input`. `environment` is added to this process's own.
[[nodiscard]] ChildResult runProgram(const std::vector<std::string>& arguments,
                                     const std::map<std::string, std::string>& environment = {},
                                     const std::string& input = {});

}  // namespace orvane::test
