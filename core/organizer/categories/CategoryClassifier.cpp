#include "core/organizer/categories/CategoryClassifier.h"

#include "core/organizer/categories/ClassifierTables.h"

#include <algorithm>

namespace orvane {

namespace {

// The row that decides: one of those of whole paths, else one of those of names.
struct Decision {
  const PathFragmentRow* row = nullptr;
  NameRule rule = NameRule::none;
};

Decision decide(const FileUrl& url, std::int64_t fileSize) {
  const std::string_view path = url.path();
  const auto contains = [&](std::string_view fragment) { return path.find(fragment) != std::string_view::npos; };
  static_assert(pathFragments.front().category == ScanCategory::trash);
  if (path.ends_with(trashFolderEnding)) return {.row = &pathFragments.front()};
  for (const auto& row : pathFragments) {
    if (contains(row.fragment)) return {.row = &row};
  }
  FolderFacts facts;
  facts.inLogs = contains(logsFragment);
  facts.inCaches = contains(cachesFragment);
  facts.inDownloads = contains(downloadsFragment);
  facts.inLeftovers = std::any_of(leftoverFragments.begin(), leftoverFragments.end(), contains);
  return {.rule = nameRuleOf(url.lastPathComponent(), fileSize, facts)};
}

}  // namespace

ScanCategory CategoryClassifier::classify(const FileUrl& url, std::int64_t fileSize,
                                          std::optional<Date> /*createdDate*/, std::optional<Date> /*lastOpenedDate*/) {
  const auto decision = decide(url, fileSize);
  if (decision.row != nullptr) return decision.row->category;
  return nameRules[static_cast<std::size_t>(decision.rule)].category;
}

std::string CategoryClassifier::reasonFor(const FileUrl& url, std::int64_t fileSize) {
  const auto decision = decide(url, fileSize);
  if (decision.row == nullptr) return std::string(nameRules[static_cast<std::size_t>(decision.rule)].words);
  if (decision.row->category == ScanCategory::trash) return "it lies in a Trash";
  return "its path holds " + std::string(decision.row->fragment);
}

bool CategoryClassifier::isScreenshot(std::string_view filename) noexcept {
  return hasScreenshotPrefix(filename);
}

}  // namespace orvane
