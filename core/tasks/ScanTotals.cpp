#include "core/tasks/ScanTotals.h"

namespace orvane {

void ScanTotals::add(const FileItem& item, std::int64_t size) {
  auto& sum = m_categories[static_cast<std::size_t>(item.category())];
  sum.add(size);
  sum.labels[static_cast<std::size_t>(item.riskLabel())] = true;
  m_all.add(size);
  if (item.isSelected() && item.category() != ScanCategory::trash) m_recommended.add(size);
}

const ScanTotals::CategorySum& ScanTotals::of(ScanCategory category) const {
  return m_categories[static_cast<std::size_t>(category)];
}

}  // namespace orvane
