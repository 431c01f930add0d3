#pragma once

#include "core/scanning/records/FileItem.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace orvane {

// A stretch of found items. Never changes once it is handed over, so any thread may read it.
using ItemPiece = std::vector<FileItem>;
using SharedPiece = std::shared_ptr<const ItemPiece>;

// Found items in the order in which they were found. Copies share the items.
class ItemList {
 public:
  [[nodiscard]] std::size_t size() const noexcept { return m_size; }
  [[nodiscard]] const FileItem& item(std::size_t index) const {
    const auto& entry = *pieceAt(index);
    return (*entry.piece)[index - entry.start];
  }
  void append(SharedPiece piece);

  // Calls `visit(index, item)` for each in order until it returns false.
  template <typename Visit>
  void forEach(Visit visit) const {
    forEachFrom(0, visit);
  }
  template <typename Visit>
  void forEachFrom(std::size_t first, Visit visit) const {
    for (auto entry = first < m_size ? pieceAt(first) : m_pieces.end(); entry != m_pieces.end(); ++entry) {
      const auto& items = *entry->piece;
      for (std::size_t at = first > entry->start ? first - entry->start : 0; at < items.size(); ++at) {
        if (!visit(entry->start + at, items[at])) return;
      }
    }
  }

 private:
  struct Entry {
    std::size_t start;
    SharedPiece piece;
  };
  [[nodiscard]] std::vector<Entry>::const_iterator pieceAt(std::size_t index) const;

  std::vector<Entry> m_pieces;
  std::size_t m_size = 0;
};

}  // namespace orvane
