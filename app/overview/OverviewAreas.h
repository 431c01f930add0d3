#pragma once

#include "app/common/ScannedItems.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <stop_token>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace orvane {

// The meaning of one part of the overview's picture.
struct OverviewArea {
  enum class Kind : std::uint8_t { category, folder, rest };
  Kind kind = Kind::category;
  ScanCategory category = ScanCategory::caches;
  std::string folder = {};  // as shownFolder() gives it; only of a folder
  std::int64_t bytes = 0;
  std::int64_t count = 0;
  std::vector<OverviewArea> parts = {};  // of a category: the largest folders, and what is left as one more
};

// The sums of a scan's items by category and folder, added up as they come in. Knows none that went meanwhile: then it
// is made anew.
class OverviewSums {
 public:
  // Counts the items that came since the last call; fewer when it is stopped.
  void add(const ScannedItems::Snapshot& scanned, const std::stop_token& stop);
  // The categories that have items and their folders, largest first.
  [[nodiscard]] std::vector<OverviewArea> areas() const;

 private:
  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept { return std::hash<std::string_view>()(text); }
  };
  struct Sum {
    OverviewArea whole;
    std::unordered_map<std::string, OverviewArea, TextHash, std::equal_to<>> folders;
  };
  std::array<Sum, allScanCategories.size()> m_sums;
  std::size_t m_counted = 0;
};

// The areas in the order of those that are shown already, and so in each; new ones come after them.
[[nodiscard]] std::vector<OverviewArea> inShownOrder(std::vector<OverviewArea> areas,
                                                     const std::vector<OverviewArea>& shown);

}  // namespace orvane
