#include "core/organizer/records/AutoOrganizeSettings.h"

#include "core/base/files/HomeFolder.h"
#include "core/base/text/Json.h"

#include <string_view>

namespace orvane {
namespace {
constexpr std::string_view urlStart = "file:///";
}

std::vector<std::string> AutoOrganizeSettings::defaultFolderPaths() {
  return {expandedHome("~/Desktop"), expandedHome("~/Downloads")};
}

std::vector<FileUrl> AutoOrganizeSettings::folderURLs() const {
  std::vector<FileUrl> result;
  for (const auto& text : folderPaths) {
    if (text.starts_with(urlStart)) {
      if (auto url = FileUrl::fromAbsoluteString(text)) result.push_back(*std::move(url));
      continue;
    }
    auto path = expandedHome(text);
    if (path.starts_with('/')) result.emplace_back(std::move(path));
  }
  return result;
}

Json AutoOrganizeSettings::toJson() const {
  Json json = Json::object();
  json["isEnabled"] = isEnabled;
  json["recentsDays"] = recentsDays;
  json["folderPaths"] = folderPaths;
  json["useAITopics"] = useAITopics;
  if (lastRunDate) json["lastRunDate"] = jsonFromDate(*lastRunDate);
  json["lastRunMovedCount"] = lastRunMovedCount;
  return json;
}

AutoOrganizeSettings AutoOrganizeSettings::fromJson(const Json& json) {
  AutoOrganizeSettings settings;
  settings.isEnabled = booleanAt(json, "isEnabled");
  settings.recentsDays = integerAt(json, "recentsDays");
  const auto& paths = requiredKey(json, "folderPaths");
  if (!paths.is_array()) throw JsonError("\"folderPaths\" must be a list");
  settings.folderPaths.clear();
  for (const auto& path : paths) settings.folderPaths.push_back(stringFrom(path, "folderPaths"));
  settings.useAITopics = booleanAt(json, "useAITopics");
  if (const auto* date = optionalKey(json, "lastRunDate")) settings.lastRunDate = dateFrom(*date, "lastRunDate");
  settings.lastRunMovedCount = integerAt(json, "lastRunMovedCount");
  return settings;
}

}  // namespace orvane
