#pragma once

#include "core/organizer/tidy/AutoOrganizer.h"
#include "tests/support/TaskFixture.h"

namespace orvane::test {

// ~/Downloads is watched; days are counted from a fixed one.
class AutoOrganizerFixture : public TaskFixture {
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
  AutoOrganizeReport tidy(double dayNumber, TopicUse use = TopicUse::never) {
    return autoOrganizer.run(request(dayNumber, use));
  }
  [[nodiscard]] AutoOrganizeRequest request(double dayNumber, TopicUse use = TopicUse::never) const {
    return {.options = {.folders = {tree.url("Downloads")}, .recentsDays = 3, .topics = use}, .now = day(dayNumber)};
  }
  // Paths of all files below ~/Downloads.
  [[nodiscard]] std::set<std::string> files() const {
    const auto below = filesBelow(tree.path("Downloads"));
    return {below.begin(), below.end()};
  }

  AutoOrganizer autoOrganizer{taskServices()};

 private:
  [[nodiscard]] static ReferenceClock::duration daysLong(double number) {
    return ReferenceClock::duration(number * 86400);
  }
};

}  // namespace orvane::test
