#pragma once

#include "core/base/text/Json.h"
#include "tests/support/LiveProgram.h"
#include "tests/support/TemporaryTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::test {

// The real orvanectl in a home of its own.
class Orvanectl : public testing::Test {
 public:
  using Words = std::vector<std::string>;

  Orvanectl() {
    environment = {
        {"HOME", home.path()}, {"PATH", "/usr/bin:/bin"},      {"LANG", "en_US.UTF-8"}, {"TERM", "xterm"},
        {"TZ", "UTC"},         {"ORVANE_MOUNTS", "/dev/null"},
    };
    // Options of the sanitizers reach the program too.
    for (const char* name : {"ASAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS"}) {
      if (const char* value = std::getenv(name)) environment[name] = value;
    }
  }

  [[nodiscard]] LiveProgram::Setup setup(const Words& words) const {
    LiveProgram::Setup result{.arguments = {ORVANECTL}, .environment = environment, .workingFolder = home.path()};
    result.arguments.insert(result.arguments.end(), words.begin(), words.end());
    return result;
  }
  [[nodiscard]] LiveProgram::Setup terminalSetup(const Words& words) const {
    auto result = setup(words);
    result.terminal = LiveProgram::Terminal::all;
    return result;
  }
  [[nodiscard]] ChildResult run(const Words& words) const { return LiveProgram(setup(words)).finish(); }
  // Its output, which must be one JSON document and nothing else.
  Json json(Words words, int exitStatus = 0) const {
    words.push_back("--json");
    const auto result = run(words);
    EXPECT_EQ(result.exitStatus, exitStatus) << result.errors;
    return parseJson(result.output);
  }
  // The items of a scan by their paths relative to the folder walked.
  [[nodiscard]] std::map<std::string, Json> scanned(const Words& words) const {
    std::map<std::string, Json> items;
    const auto output = run(words).output;
    for (std::size_t start = 0; start < output.size();) {
      const auto end = output.find('\n', start);
      const auto event = parseJson(output.substr(start, end - start));
      if (event["event"] == "itemDiscovered") items[event["item"]["relativePath"]] = event["item"];
      start = end + 1;
    }
    return items;
  }

  // A log: safe, and so recommended.
  std::string recommended(std::string_view name = "old.log", std::string_view content = "1234567") const {
    return home.file("Downloads/" + std::string(name), content);
  }
  [[nodiscard]] std::string trashed(std::string_view name) const {
    return home.path(".local/share/Trash/files/" + std::string(name));
  }
  // Nothing of the program's own and no Trash.
  [[nodiscard]] bool isUntouched() const { return !exists(home.path("Library")) && !exists(home.path(".local")); }

  TemporaryTree home;
  std::map<std::string, std::string> environment;
};

}  // namespace orvane::test
