#pragma once

#include "core/base/text/JsonFwd.h"
#include "core/base/values/EnumTable.h"
#include "core/scanning/records/RiskLabel.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace orvane {

// The kind of reclaimable item that a file is. Declaration order is the order in which categories are listed.
enum class ScanCategory : std::uint8_t {
  caches,
  logs,
  developerCaches,
  oldDownloads,
  screenshots,
  largeFiles,
  duplicates,
  appLeftovers,
  trash,
  messagingMedia,
  browserCaches,
  manualReview,
};

struct ScanCategoryRow {
  ScanCategory value;
  std::string_view rawValue;     // the case name; also the JSON form and the identity
  std::string_view displayName;  // English
  std::string_view systemImage;  // name of a symbol image, kept as an opaque text
  RiskLabel defaultRisk;
};

inline constexpr EnumTable scanCategories({
    ScanCategoryRow{ScanCategory::caches, "caches", "User Caches", "archivebox.fill", RiskLabel::safe},
    ScanCategoryRow{ScanCategory::logs, "logs", "System & App Logs", "doc.plaintext.fill", RiskLabel::safe},
    ScanCategoryRow{ScanCategory::developerCaches, "developerCaches", "Developer Caches", "hammer.fill",
                    RiskLabel::review},
    ScanCategoryRow{ScanCategory::oldDownloads, "oldDownloads", "Old Installers & Downloads", "arrow.down.circle.fill",
                    RiskLabel::safe},
    ScanCategoryRow{ScanCategory::screenshots, "screenshots", "Screenshots", "camera.viewfinder", RiskLabel::review},
    ScanCategoryRow{ScanCategory::largeFiles, "largeFiles", "Large Unused Files", "internaldrive.fill",
                    RiskLabel::review},
    ScanCategoryRow{ScanCategory::duplicates, "duplicates", "Duplicate Files", "doc.on.doc.fill", RiskLabel::review},
    ScanCategoryRow{ScanCategory::appLeftovers, "appLeftovers", "App Leftovers", "trash.slash.fill", RiskLabel::review},
    ScanCategoryRow{ScanCategory::trash, "trash", "Trash Can", "trash.fill", RiskLabel::safe},
    ScanCategoryRow{ScanCategory::messagingMedia, "messagingMedia", "Messaging Media", "message.fill",
                    RiskLabel::review},
    ScanCategoryRow{ScanCategory::browserCaches, "browserCaches", "Browser Caches", "globe", RiskLabel::safe},
    ScanCategoryRow{ScanCategory::manualReview, "manualReview", "Manual Review", "magnifyingglass.circle.fill",
                    RiskLabel::manual},
});
inline constexpr auto allScanCategories = scanCategories.values();

constexpr std::string_view rawValue(ScanCategory category) noexcept {
  return scanCategories[category].rawValue;
}
constexpr std::optional<ScanCategory> scanCategoryFromRawValue(std::string_view text) noexcept {
  return scanCategories.find(text);
}
constexpr std::string_view displayName(ScanCategory category) noexcept {
  return scanCategories[category].displayName;
}
constexpr std::string_view systemImage(ScanCategory category) noexcept {
  return scanCategories[category].systemImage;
}
constexpr RiskLabel defaultRisk(ScanCategory category) noexcept {
  return scanCategories[category].defaultRisk;
}

// From a JSON array of case names. Throws JsonError naming `what`.
[[nodiscard]] std::vector<ScanCategory> scanCategoriesFrom(const Json& value, std::string_view what);
// How the JSON library writes one.
void to_json(Json& json, ScanCategory category);

}  // namespace orvane
