#pragma once

#include "core/base/FileUrl.h"
#include "core/scanning/FileItem.h"

#include <QObject>

#include <cstdint>
#include <memory>
#include <semaphore>
#include <span>
#include <stop_token>
#include <string_view>
#include <vector>

namespace orvane {

// A stretch of a scan's items. Never changes once it is handed over, so any thread may read it.
struct ItemPiece {
  std::vector<FileItem> items;
  std::vector<bool> isFolder;  // of the items, each
};
using SharedPiece = std::shared_ptr<const ItemPiece>;

// The items of a scan in the order in which they were found. Copies share the items.
class ItemList {
 public:
  [[nodiscard]] std::size_t size() const noexcept { return m_size; }
  [[nodiscard]] const FileItem& item(std::size_t index) const { return pieceOf(index).piece->items[offset(index)]; }
  [[nodiscard]] bool isFolder(std::size_t index) const { return pieceOf(index).piece->isFolder[offset(index)]; }
  void append(SharedPiece piece);

  // Calls `visit(index, item)` for each in order until it returns false.
  template <typename Visit>
  void forEach(Visit visit) const {
    forEachFrom(0, visit);
  }
  template <typename Visit>
  void forEachFrom(std::size_t first, Visit visit) const {
    for (auto entry = first < m_size ? pieceAt(first) : m_pieces.end(); entry != m_pieces.end(); ++entry) {
      const auto& items = entry->piece->items;
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
  [[nodiscard]] const Entry& pieceOf(std::size_t index) const { return *pieceAt(index); }
  [[nodiscard]] std::size_t offset(std::size_t index) const { return index - pieceOf(index).start; }

  std::vector<Entry> m_pieces;
  std::size_t m_size = 0;
};

// The folder that an item is shown under: the one right below the scanned folder that it lies in or is, or the scanned
// folder itself for a file directly in it.
[[nodiscard]] std::string_view shownFolder(const ItemList& items, std::size_t index,
                                           std::span<const FileUrl> scannedFolders);

// What the last scan found and is still there, for the screens that show it. Belongs to the main thread; a snapshot may
// go to any other.
class ScannedItems : public QObject {
  Q_OBJECT

 public:
  // A byte for each item: whether it has left its place since it was found.
  using GoneFlags = std::vector<std::uint8_t>;
  struct Snapshot {
    ItemList items;
    GoneFlags gone;
    std::vector<FileUrl> folders;
  };

  using QObject::QObject;

  [[nodiscard]] const ItemList& items() const noexcept { return m_items; }
  [[nodiscard]] bool isGone(std::size_t index) const { return m_gone[index] != 0; }
  [[nodiscard]] const std::vector<FileUrl>& folders() const noexcept { return m_folders; }
  // Of everything that is still there.
  [[nodiscard]] std::int64_t count() const noexcept { return m_count; }
  [[nodiscard]] std::int64_t bytes() const noexcept { return m_bytes; }
  [[nodiscard]] Snapshot snapshot() const { return {m_items, m_gone, m_folders}; }

  // Forgets everything for a scan of these folders.
  void begin(std::vector<FileUrl> folders);
  // `bytes` is the sum of the piece's sizes.
  void append(SharedPiece piece, std::int64_t bytes);
  // The same from any other thread: the piece is appended as soon as the main thread comes to it. Waits while a few
  // others are on their way, so that they never keep the main thread from what else there is to do.
  void appendLater(SharedPiece piece, std::int64_t bytes, const std::stop_token& stop);
  enum class Presence : std::uint8_t { there, gone };
  void setPresence(std::span<const std::uint32_t> indexes, Presence presence);

 Q_SIGNALS:
  void begun();
  void appended(std::size_t first);
  void presenceChanged();

 private:
  ItemList m_items;
  GoneFlags m_gone;
  std::vector<FileUrl> m_folders;
  std::int64_t m_count = 0;
  std::int64_t m_bytes = 0;

  // Pieces that may be on their way at a time.
  static constexpr int mostPending = 4;
  using Room = std::counting_semaphore<mostPending>;
  std::shared_ptr<Room> m_room = std::make_shared<Room>(mostPending);
};

}  // namespace orvane
