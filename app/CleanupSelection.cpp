#include "app/CleanupSelection.h"

namespace orvane {

bool CleanupSelection::isSelectable(const FileItem& item) noexcept {
  return orvane::isSelectable(item.riskLabel()) && item.category() != ScanCategory::trash;
}

void CleanupSelection::clear() {
  m_flags.clear();
  m_sizes.clear();
  m_count = 0;
  m_bytes = 0;
}

void CleanupSelection::append(const FileItem& item) {
  std::uint8_t flags = 0;
  if (isSelectable(item)) {
    flags |= selectableFlag;
    if (item.riskLabel() == RiskLabel::safe) flags |= recommendedFlag;
  }
  m_flags.push_back(flags);
  m_sizes.push_back(item.fileSize());
  if (item.isSelected()) set(m_flags.size() - 1, Whether::selected);
}

void CleanupSelection::set(std::size_t index, Whether whether) {
  auto& flags = m_flags[index];
  const bool isWanted = whether == Whether::selected;
  if ((flags & selectableFlag) == 0 || (flags & goneFlag) != 0 || isSelected(index) == isWanted) return;
  flags ^= selectedFlag;
  m_count += isWanted ? 1 : -1;
  m_bytes += isWanted ? m_sizes[index] : -m_sizes[index];
}

void CleanupSelection::selectRecommended() {
  for (std::size_t index = 0; index < m_flags.size(); ++index) {
    set(index, (m_flags[index] & recommendedFlag) != 0 ? Whether::selected : Whether::unselected);
  }
}

void CleanupSelection::deselectAll() {
  for (std::size_t index = 0; index < m_flags.size(); ++index) set(index, Whether::unselected);
}

void CleanupSelection::setThere(std::size_t index, bool isThere) {
  if (isThere) {
    m_flags[index] &= static_cast<std::uint8_t>(~goneFlag);
    return;
  }
  set(index, Whether::unselected);
  m_flags[index] |= goneFlag;
}

std::vector<std::uint32_t> CleanupSelection::selected() const {
  std::vector<std::uint32_t> result;
  result.reserve(static_cast<std::size_t>(m_count));
  for (std::size_t index = 0; index < m_flags.size(); ++index) {
    if (isSelected(index)) result.push_back(static_cast<std::uint32_t>(index));
  }
  return result;
}

}  // namespace orvane
