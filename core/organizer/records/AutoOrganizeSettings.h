#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/text/JsonFwd.h"
#include "core/base/values/Date.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

// How the automatic organizer works, and what its last run did.
struct AutoOrganizeSettings {
  struct DayRange {
    std::int64_t first;
    std::int64_t last;
  };
  // The values of recentsDays that the user may choose.
  static constexpr DayRange recentsDayRange{1, 30};
  // ~/Desktop and ~/Downloads, or where the user keeps them.
  [[nodiscard]] static std::vector<std::string> defaultFolderPaths();

  bool isEnabled = false;
  std::int64_t recentsDays = 3;
  // Path texts; a path that is not UTF-8 stands as its URL.
  std::vector<std::string> folderPaths = defaultFolderPaths();
  bool useAITopics = true;
  std::optional<Date> lastRunDate;
  std::int64_t lastRunMovedCount = 0;

  // Texts that name no absolute place are left out.
  [[nodiscard]] std::vector<FileUrl> folderURLs() const;

  bool operator==(const AutoOrganizeSettings&) const = default;

  // Keys in field order; "lastRunDate" is left out when absent.
  [[nodiscard]] Json toJson() const;
  // Every key but "lastRunDate" is required. Throws JsonError.
  [[nodiscard]] static AutoOrganizeSettings fromJson(const Json& json);
};

}  // namespace orvane
