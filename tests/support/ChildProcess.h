#pragma once

#include <functional>
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

// Forks that all run at once; whether each answers true. `number` counts from 0.
[[nodiscard]] bool inProcesses(int count, const std::function<bool(int number)>& body);
// One fork, as nobody where the test runs as root.
[[nodiscard]] bool withoutPrivileges(const std::function<bool()>& body);

}  // namespace orvane::test
