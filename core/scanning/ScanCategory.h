#pragma once

#include "core/base/JsonFwd.h"
#include "core/scanning/RiskLabel.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace orvane {

// What kind of reclaimable item a file is. Declaration order is the order in which categories are listed.
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

inline constexpr std::array allScanCategories{
    ScanCategory::caches,      ScanCategory::logs,           ScanCategory::developerCaches, ScanCategory::oldDownloads,
    ScanCategory::screenshots, ScanCategory::largeFiles,     ScanCategory::duplicates,      ScanCategory::appLeftovers,
    ScanCategory::trash,       ScanCategory::messagingMedia, ScanCategory::browserCaches,   ScanCategory::manualReview,
};

// The case name; also the JSON form and the identity.
[[nodiscard]] std::string_view rawValue(ScanCategory category) noexcept;
[[nodiscard]] std::optional<ScanCategory> scanCategoryFromRawValue(std::string_view text) noexcept;
// From and to a JSON array of case names. The first throws JsonError naming `what`.
[[nodiscard]] std::vector<ScanCategory> scanCategoriesFrom(const Json& value, std::string_view what);
[[nodiscard]] Json scanCategoriesToJson(std::span<const ScanCategory> categories);
// English title.
[[nodiscard]] std::string_view displayName(ScanCategory category) noexcept;
// Name of a symbol image, kept as an opaque text.
[[nodiscard]] std::string_view systemImage(ScanCategory category) noexcept;
[[nodiscard]] RiskLabel defaultRisk(ScanCategory category) noexcept;

}  // namespace orvane
