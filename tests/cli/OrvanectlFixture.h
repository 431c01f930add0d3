#pragma once

#include "core/base/text/Json.h"
#include "core/base/values/Uuid.h"
#include "tests/support/LiveProgram.h"
#include "tests/support/Parts.h"
#include "tests/support/TemporaryTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::test {

inline void PrintTo(const ChildResult& result, std::ostream* out) {
  *out << "status " << result.exitStatus << "\n" << result.output << result.errors;
}

// A program that ended well and said all of this on standard output, and one that failed and said it as an error.
template <typename... Parts>
auto Says(const Parts&... parts) {
  return AllOf(Field(&ChildResult::exitStatus, 0), Field(&ChildResult::output, AllOf(HasSubstr(parts)...)));
}
template <typename... Parts>
auto Fails(int exitStatus, const Parts&... parts) {
  return AllOf(Field(&ChildResult::exitStatus, exitStatus), Field(&ChildResult::errors, AllOf(HasSubstr(parts)...)));
}

inline std::vector<std::string> wordsOf(const std::string& text) {
  std::istringstream words(text);
  return {std::istream_iterator<std::string>(words), {}};
}

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
  // Started by another program, whose own words come first.
  [[nodiscard]] ChildResult runUnder(const Words& wrapper, const Words& words) const {
    auto program = setup(words);
    program.arguments.insert(program.arguments.begin(), wrapper.begin(), wrapper.end());
    program.environment["ASAN_OPTIONS"] = "detect_leaks=0";  // one that is traced cannot look for leaks
    return LiveProgram(program).finish();
  }
  // As a user who may not read everything of the home; where the tests are not root's, as their own.
  [[nodiscard]] ChildResult runAsNobody(const Words& words) const {
    ::chmod(home.path().c_str(), 0755);
    auto program = setup(words);
    if (::geteuid() == 0) program.user = LiveProgram::User::nobody;
    return LiveProgram(program).finish();
  }
  // At a terminal: the answer is typed once the question stands there and `meanwhile` has happened.
  ChildResult answered(
      const Words& words, std::string_view question, std::string_view answer,
      const std::function<void()>& meanwhile = [] {}) const {
    LiveProgram program(terminalSetup(words));
    program.waitForOutput(question);
    meanwhile();
    program.send(answer);
    return program.finish();
  }
  // Its output, which must be one JSON document and nothing else.
  Json json(const Words& words, int exitStatus = 0) const {
    const auto result = run(joined(words, {"--json"}));
    EXPECT_EQ(result.exitStatus, exitStatus) << result.errors;
    return parseJson(result.output);
  }
  [[nodiscard]] static Words joined(Words words, const Words& more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
  }
  [[nodiscard]] static Words keysOf(const Json& object) {
    Words keys;
    for (const auto& [key, value] : object.items()) keys.push_back(key);
    return keys;
  }
  [[nodiscard]] static std::vector<Json> eventsIn(const std::string& output) {
    std::vector<Json> events;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) events.push_back(parseJson(line));
    return events;
  }
  // The items of a scan by their paths relative to the folder walked.
  [[nodiscard]] std::map<std::string, Json> scanned(const Words& words) const {
    std::map<std::string, Json> items;
    for (const auto& event : eventsIn(run(words).output)) {
      if (event["event"] == "itemDiscovered") items[event["item"]["relativePath"]] = event["item"];
    }
    return items;
  }

  // The file of a plan of these steps.
  std::string plan(Json::array_t steps) const { return home.file("plan.json", planOf(std::move(steps)).dump()); }
  [[nodiscard]] static Json planOf(Json::array_t steps) {
    return {{"id", Uuid::random().toString()}, {"userGoal", "tidy"}, {"steps", std::move(steps)},
            {"summary", "All of it."},         {"isDryRun", true},   {"createdAt", 0}};
  }
  // Of every file, unless the filter says other.
  [[nodiscard]] static Json stepOf(std::string_view folder, std::string_view action,
                                   Json filter = {{"minimumSizeBytes", 0}}) {
    return {{"id", Uuid::random().toString()},
            {"targetFolder", folder},
            {"filter", std::move(filter)},
            {"action", action},
            {"explanation", "because"}};
  }
  void addRule(const std::string& text) const {
    const auto result = run({"rules", "add", home.file("rule.json", text)});
    EXPECT_EQ(result.exitStatus, 0) << result.errors;
  }

  // A log: safe, and so recommended.
  std::string recommended(std::string_view name = "old.log", std::string_view content = "1234567") const {
    return home.file("Downloads/" + std::string(name), content);
  }
  [[nodiscard]] std::string trashed(std::string_view name) const {
    return home.path(".local/share/Trash/files/" + std::string(name));
  }
  // Of paths below the home.
  [[nodiscard]] testing::AssertionResult holds(const Words& there, const Words& gone = {}) const {
    return test::holds(home, there, gone);
  }
  // Nothing of the program's own and no Trash.
  [[nodiscard]] bool isUntouched() const { return !exists(home.path("Library")) && !exists(home.path(".local")); }

  TemporaryTree home;
  std::map<std::string, std::string> environment;
};

}  // namespace orvane::test
