#pragma once

#include "core/organizer/AutoOrganizer.h"
#include "core/organizer/TopicCategorizerFactory.h"
#include "core/platform/FileStatusReader.h"
#include "core/platform/TopicModel.h"
#include "platform/linux/LinuxFileStatusReader.h"
#include "tests/support/OrganizerFixture.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::test {

// A model that answers as the test says; without an answer there is none.
class ScriptedModel : public TopicModel {
 public:
  [[nodiscard]] std::string unavailableReason() override { return reply ? "" : "no model"; }
  [[nodiscard]] std::string respond(const std::string& /*instructions*/, const std::string& prompt,
                                    const std::stop_token& /*stop*/) override {
    prompts.push_back(prompt);
    return reply(prompt);
  }
  std::function<std::string(const std::string& prompt)> reply;
  std::vector<std::string> prompts;
};

// Creation dates cannot be set, so files of a simulated past have none but their modification date.
class SimulatedStatusReader : public FileStatusReader {
 public:
  [[nodiscard]] std::optional<FileStatus> read(int folder, const char* name) const noexcept override {
    auto status = readFileStatus(folder, name);
    if (status) status->created = created;
    return status;
  }
  std::optional<FileTime> created;
};

// ~/Downloads is watched; days are counted from a fixed one.
class AutoOrganizerFixture : public OrganizerFixture {
 public:
  static constexpr std::int64_t dayZero = 1'700'000'000;
  static constexpr double minute = 60.0 / 86400;
  [[nodiscard]] static Date day(double number) { return dateFromUnix(dayZero) + daysLong(number); }

  // A file that is last changed on a day.
  std::string arrive(std::string_view name, double dayNumber, std::string_view content = "content") const {
    const auto path = tree.file("Downloads/" + std::string(name), content);
    touch(path, dayNumber);
    return path;
  }
  static void touch(const std::string& path, double dayNumber) {
    const auto seconds = static_cast<std::int64_t>(unixSeconds(day(dayNumber)));
    const timespec times[2] = {{seconds, 0}, {seconds, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
  }
  AutoOrganizeReport tidy(double dayNumber, TopicUse topics = TopicUse::never) {
    return organizer.run(request(dayNumber, topics));
  }
  [[nodiscard]] AutoOrganizeRequest request(double dayNumber, TopicUse topics = TopicUse::never) const {
    return {.folders = {tree.url("Downloads")}, .recentsDays = 3, .topics = topics, .now = day(dayNumber)};
  }
  // Paths of all files below ~/Downloads.
  [[nodiscard]] std::set<std::string> files() const {
    std::set<std::string> result;
    const auto top = tree.path("Downloads");
    for (const auto& entry : std::filesystem::recursive_directory_iterator(top)) {
      if (!entry.is_directory()) result.insert(entry.path().string().substr(top.size() + 1));
    }
    return result;
  }

  ScriptedModel model;
  TopicCategorizerFactory factory{model};
  SimulatedStatusReader statusReader;
  AutoOrganizer organizer{engine, factory, *journal, statusReader, validator};

 private:
  [[nodiscard]] static ReferenceClock::duration daysLong(double number) {
    return ReferenceClock::duration(number * 86400);
  }
};

}  // namespace orvane::test
