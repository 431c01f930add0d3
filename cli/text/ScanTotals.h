#pragma once

#include "core/scanning/records/FileItem.h"
#include "core/scanning/records/RiskLabel.h"
#include "core/scanning/records/ScanCategory.h"

#include <array>
#include <cstdint>
#include <set>

namespace orvane::cli {

class Session;

// Counts and sizes of items by category. Keeps none of the items.
class ScanTotals {
 public:
  struct Sum {
    std::int64_t count = 0;
    std::int64_t bytes = 0;

    void add(std::int64_t size);
  };
  struct CategorySum : Sum {
    std::array<bool, allRiskLabels.size()> labels{};  // those that occur, by declaration
  };

  void add(const FileItem& item) { add(item, item.fileSize()); }
  // With a size that was read later than the item.
  void add(const FileItem& item, std::int64_t size);

  [[nodiscard]] const CategorySum& of(ScanCategory category) const;
  [[nodiscard]] const Sum& all() const noexcept { return m_all; }
  // Of the items that are selected from the start, without those that are in a Trash already.
  [[nodiscard]] const Sum& recommended() const noexcept { return m_recommended; }

  // A row for each category that has items, in declaration order, and one for all.
  void printTable(Session& session) const;

 private:
  std::array<CategorySum, allScanCategories.size()> m_categories;
  Sum m_all;
  Sum m_recommended;
};

}  // namespace orvane::cli
