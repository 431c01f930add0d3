#pragma once

#include "core/scanning/records/FileItem.h"
#include "core/scanning/records/RiskLabel.h"
#include "core/scanning/records/ScanCategory.h"
#include "core/tasks/Notice.h"

#include <array>
#include <cstdint>

namespace orvane {

// Counts and sizes of items by category. Keeps none of the items.
class ScanTotals {
 public:
  struct CategorySum : RowSum {
    std::array<bool, allRiskLabels.size()> labels{};  // those that occur, by declaration
  };

  void add(const FileItem& item) { add(item, item.fileSize()); }
  // With a size that was read later than the item.
  void add(const FileItem& item, std::int64_t size);

  [[nodiscard]] const CategorySum& of(ScanCategory category) const;
  [[nodiscard]] const RowSum& all() const noexcept { return m_all; }
  // Of the items that are selected from the start, without those that are in a Trash already.
  [[nodiscard]] const RowSum& recommended() const noexcept { return m_recommended; }

 private:
  std::array<CategorySum, allScanCategories.size()> m_categories;
  RowSum m_all;
  RowSum m_recommended;
};

}  // namespace orvane
