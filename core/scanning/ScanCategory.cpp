#include "core/scanning/ScanCategory.h"

#include "core/base/Json.h"
#include "core/base/PathText.h"

#include <fmt/format.h>

namespace orvane {
namespace {

struct CategoryRow {
  ScanCategory category;
  std::string_view rawValue;
  std::string_view displayName;
  std::string_view systemImage;
  RiskLabel defaultRisk;
};

constexpr std::array rows{
    CategoryRow{ScanCategory::caches, "caches", "User Caches", "archivebox.fill", RiskLabel::safe},
    CategoryRow{ScanCategory::logs, "logs", "System & App Logs", "doc.plaintext.fill", RiskLabel::safe},
    CategoryRow{ScanCategory::developerCaches, "developerCaches", "Developer Caches", "hammer.fill", RiskLabel::review},
    CategoryRow{ScanCategory::oldDownloads, "oldDownloads", "Old Installers & Downloads", "arrow.down.circle.fill",
                RiskLabel::safe},
    CategoryRow{ScanCategory::screenshots, "screenshots", "Screenshots", "camera.viewfinder", RiskLabel::review},
    CategoryRow{ScanCategory::largeFiles, "largeFiles", "Large Unused Files", "internaldrive.fill", RiskLabel::review},
    CategoryRow{ScanCategory::duplicates, "duplicates", "Duplicate Files", "doc.on.doc.fill", RiskLabel::review},
    CategoryRow{ScanCategory::appLeftovers, "appLeftovers", "App Leftovers", "trash.slash.fill", RiskLabel::review},
    CategoryRow{ScanCategory::trash, "trash", "Trash Can", "trash.fill", RiskLabel::safe},
    CategoryRow{ScanCategory::messagingMedia, "messagingMedia", "Messaging Media", "message.fill", RiskLabel::review},
    CategoryRow{ScanCategory::browserCaches, "browserCaches", "Browser Caches", "globe", RiskLabel::safe},
    CategoryRow{ScanCategory::manualReview, "manualReview", "Manual Review", "magnifyingglass.circle.fill",
                RiskLabel::manual},
};

constexpr bool rowsFollowDeclaration() {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows[i].category != allScanCategories[i] || static_cast<std::size_t>(rows[i].category) != i) return false;
  }
  return rows.size() == allScanCategories.size();
}
static_assert(rowsFollowDeclaration());

constexpr const CategoryRow& rowOf(ScanCategory category) {
  return rows[static_cast<std::size_t>(category)];
}

}  // namespace

std::string_view rawValue(ScanCategory category) noexcept {
  return rowOf(category).rawValue;
}

std::optional<ScanCategory> scanCategoryFromRawValue(std::string_view text) noexcept {
  for (const auto& row : rows) {
    if (row.rawValue == text) return row.category;
  }
  return std::nullopt;
}

std::string_view displayName(ScanCategory category) noexcept {
  return rowOf(category).displayName;
}

std::string_view systemImage(ScanCategory category) noexcept {
  return rowOf(category).systemImage;
}

RiskLabel defaultRisk(ScanCategory category) noexcept {
  return rowOf(category).defaultRisk;
}

std::vector<ScanCategory> scanCategoriesFrom(const Json& value, std::string_view what) {
  constexpr std::size_t quotedBytes = 100;
  std::vector<ScanCategory> result;
  for (const auto& text : stringsFrom(value, what)) {
    const auto category = scanCategoryFromRawValue(text);
    if (!category) {
      throw JsonError(fmt::format("unknown category \"{}\" in \"{}\"", shortenedToBytes(text, quotedBytes), what));
    }
    result.push_back(*category);
  }
  return result;
}

Json scanCategoriesToJson(std::span<const ScanCategory> categories) {
  Json json = Json::array();
  for (const auto category : categories) json.push_back(rawValue(category));
  return json;
}

}  // namespace orvane
