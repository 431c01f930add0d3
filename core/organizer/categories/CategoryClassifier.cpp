#include "core/organizer/categories/CategoryClassifier.h"

#include "core/organizer/categories/ClassifierTables.h"

#include <algorithm>

namespace orvane {

ScanCategory CategoryClassifier::classify(const FileUrl& url, std::int64_t fileSize,
                                          std::optional<Date> /*createdDate*/, std::optional<Date> /*lastOpenedDate*/) {
  const std::string_view path = url.path();
  const auto contains = [&](std::string_view fragment) { return path.find(fragment) != std::string_view::npos; };
  if (path.ends_with(trashFolderEnding)) return ScanCategory::trash;
  for (const auto& row : pathFragments) {
    if (contains(row.fragment)) return row.category;
  }
  FolderFacts facts;
  facts.inLogs = contains(logsFragment);
  facts.inCaches = contains(cachesFragment);
  facts.inDownloads = contains(downloadsFragment);
  facts.inLeftovers = std::any_of(leftoverFragments.begin(), leftoverFragments.end(), contains);
  return categoryByName(url.lastPathComponent(), fileSize, facts);
}

bool CategoryClassifier::isScreenshot(std::string_view filename) noexcept {
  return hasScreenshotPrefix(filename);
}

}  // namespace orvane
