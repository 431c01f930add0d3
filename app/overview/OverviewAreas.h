#pragma once

#include "app/common/ScannedItems.h"

#include <array>
#include <cstdint>
#include <stop_token>
#include <string>
#include <vector>

namespace orvane {

// The meaning of one part of the overview's picture.
struct OverviewArea {
  ScanCategory category = ScanCategory::caches;
  std::string folder;  // as shownFolder() gives it; empty for a whole category
  std::int64_t bytes = 0;
  std::int64_t count = 0;
  std::vector<OverviewArea> folders;  // of a category, the largest ones
};

// The categories that have items, largest first, each with its largest folders. Cut short when it is stopped.
[[nodiscard]] std::vector<OverviewArea> overviewAreas(const ScannedItems::Snapshot& scanned,
                                                      const std::stop_token& stop);

}  // namespace orvane
