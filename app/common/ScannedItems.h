#pragma once

#include "core/base/files/FileUrl.h"
#include "core/tasks/ItemList.h"

#include <QObject>

#include <cstdint>
#include <memory>
#include <semaphore>
#include <span>
#include <stop_token>
#include <string_view>
#include <vector>

namespace orvane {

// The folder that an item is shown under: the one right below the scanned folder that it lies in or is, or the scanned
// folder itself for a file directly in it.
[[nodiscard]] std::string_view shownFolder(const ItemList& items, std::size_t index,
                                           std::span<const FileUrl> scannedFolders);

// The items of the last scan that are still there, for the screens that show them. Belongs to the main thread; a
// snapshot may go to any other.
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
  // Bytes that one cleanup takes as it is proposed, and bytes that somebody has to look at first.
  [[nodiscard]] std::int64_t proposedBytes() const noexcept { return m_proposedBytes; }
  [[nodiscard]] std::int64_t reviewBytes() const noexcept { return m_reviewBytes; }
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
  // Adds an item's size to the sums by how it stands, or takes it away.
  void countIn(const FileItem& item, int sign);

  ItemList m_items;
  GoneFlags m_gone;
  std::vector<FileUrl> m_folders;
  std::int64_t m_count = 0;
  std::int64_t m_bytes = 0;
  std::int64_t m_proposedBytes = 0;
  std::int64_t m_reviewBytes = 0;

  // Pieces that may be on their way at a time.
  static constexpr int maxPending = 4;
  using Room = std::counting_semaphore<maxPending>;
  std::shared_ptr<Room> m_room = std::make_shared<Room>(maxPending);
};

}  // namespace orvane
