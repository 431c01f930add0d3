#pragma once

#include "app/common/ScannedItems.h"
#include "core/scanning/records/ScanCategory.h"

#include <array>
#include <cstdint>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace orvane {

// Largest, newest, alphabetically first, or longest out of use comes first.
enum class CleanupOrder : std::uint8_t { size, date, name, lastUse };

// Which items a list shows, and in which order.
struct CleanupQuery {
  std::string searchText;  // in the name or the path, ignoring case; everything when empty
  CleanupOrder order = CleanupOrder::size;
  bool isReversed = false;
  std::optional<RiskLabel> risk;
  std::optional<ScanCategory> category;
  std::string folder;  // as shownFolder() gives it; every one when empty
  std::string inside;  // path of a folder: items in it, and one that holds it; every one when empty
  bool operator==(const CleanupQuery&) const = default;
};

// The items to show of one category, as indexes into the scanned items.
struct ArrangedSection {
  std::vector<std::uint32_t> items;
  std::int64_t bytes = 0;
};
struct CleanupArrangement {
  std::array<ArrangedSection, allScanCategories.size()> sections;  // in the order of the categories
};

// Absent when it was stopped. Takes about half a second for a million items, so it is no work for the main thread.
[[nodiscard]] std::optional<CleanupArrangement> arrangeForCleanup(const ScannedItems::Snapshot& scanned,
                                                                  const CleanupQuery& query,
                                                                  const std::stop_token& stop);

}  // namespace orvane
