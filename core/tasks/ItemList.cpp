#include "core/tasks/ItemList.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace orvane {

void ItemList::append(SharedPiece piece) {
  if (piece->empty()) return;
  const auto count = piece->size();
  m_pieces.push_back({m_size, std::move(piece)});
  m_size += count;
}

std::vector<ItemList::Entry>::const_iterator ItemList::pieceAt(std::size_t index) const {
  const auto after = std::upper_bound(m_pieces.begin(), m_pieces.end(), index,
                                      [](std::size_t value, const Entry& entry) { return value < entry.start; });
  return std::prev(after);
}

}  // namespace orvane
