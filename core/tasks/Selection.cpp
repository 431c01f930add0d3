#include "core/tasks/Selection.h"

namespace orvane {

void Selection::clear() {
  m_flags.clear();
  m_sizes.clear();
  m_count = 0;
  m_bytes = 0;
}

void Selection::append(Choice choice, std::int64_t bytes) {
  std::uint8_t flags = choice == Choice::locked ? 0 : selectableFlag;
  if (choice == Choice::selected) flags |= proposedFlag;
  m_flags.push_back(flags);
  m_sizes.push_back(bytes);
  if (choice == Choice::selected) set(m_flags.size() - 1, Whether::selected);
}

void Selection::set(std::size_t index, Whether whether) {
  auto& flags = m_flags[index];
  const bool isWanted = whether == Whether::selected;
  if ((flags & selectableFlag) == 0 || (flags & goneFlag) != 0 || isSelected(index) == isWanted) return;
  flags ^= selectedFlag;
  m_count += isWanted ? 1 : -1;
  m_bytes += isWanted ? m_sizes[index] : -m_sizes[index];
}

void Selection::selectProposed() {
  for (std::size_t index = 0; index < m_flags.size(); ++index) {
    set(index, (m_flags[index] & proposedFlag) != 0 ? Whether::selected : Whether::unselected);
  }
}

void Selection::selectAll() {
  for (std::size_t index = 0; index < m_flags.size(); ++index) set(index, Whether::selected);
}

void Selection::deselectAll() {
  for (std::size_t index = 0; index < m_flags.size(); ++index) set(index, Whether::unselected);
}

void Selection::setThere(std::size_t index, bool isThere) {
  if (isThere) {
    m_flags[index] &= static_cast<std::uint8_t>(~goneFlag);
    return;
  }
  set(index, Whether::unselected);
  m_flags[index] |= goneFlag;
}

std::vector<std::uint32_t> Selection::selected() const {
  std::vector<std::uint32_t> result;
  result.reserve(static_cast<std::size_t>(m_count));
  for (std::size_t index = 0; index < m_flags.size(); ++index) {
    if (isSelected(index)) result.push_back(static_cast<std::uint32_t>(index));
  }
  return result;
}

}  // namespace orvane
