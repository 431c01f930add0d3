#include "app/common/ScannedItems.h"

#include "app/common/BackgroundQueue.h"
#include "core/base/files/PathText.h"
#include "core/tasks/Proposal.h"

#include <algorithm>
#include <chrono>

namespace orvane {

std::string_view shownFolder(const ItemList& items, std::size_t index, std::span<const FileUrl> scannedFolders) {
  const std::string_view path = items.item(index).url().path();
  std::string_view best;
  for (const auto& folder : scannedFolders) {
    const std::string_view root = folder.path();
    const bool isInside = path.size() > root.size() + 1 && path.starts_with(root) && path[root.size()] == '/';
    if (!isInside || root.size() <= best.size()) continue;
    best = root;
  }
  const auto next = path.find('/', best.size() + 1);
  if (next != std::string_view::npos) return path.substr(0, next);
  return items.item(index).isFolder() ? path : path.substr(0, best.size());
}

void ScannedItems::begin(std::vector<FileUrl> folders) {
  m_items = {};
  m_gone.clear();
  m_folders = std::move(folders);
  m_count = 0;
  m_bytes = 0;
  m_proposedBytes = 0;
  m_reviewBytes = 0;
  Q_EMIT begun();
}

void ScannedItems::append(SharedPiece piece, std::int64_t bytes) {
  const auto first = m_items.size();
  m_items.append(std::move(piece));
  m_gone.resize(m_items.size());
  m_count += static_cast<std::int64_t>(m_items.size() - first);
  m_bytes += bytes;
  m_items.forEachFrom(first, [this](std::size_t, const FileItem& item) {
    countIn(item, 1);
    return true;
  });
  Q_EMIT appended(first);
}

void ScannedItems::countIn(const FileItem& item, int sign) {
  const auto choice = scannedMark(item).choice;
  if (choice == Choice::selected) m_proposedBytes += sign * item.fileSize();
  if (choice == Choice::unselected) m_reviewBytes += sign * item.fileSize();
}

void ScannedItems::appendLater(SharedPiece piece, std::int64_t bytes, const std::stop_token& stop) {
  constexpr std::chrono::milliseconds lookInterval{20};
  while (!m_room->try_acquire_for(lookInterval)) {
    // The main thread may be waiting for this very thread to end.
    if (stop.stop_requested()) return;
  }
  // Gives the room back, even if the piece never arrives.
  const std::shared_ptr<void> place(nullptr, [room = m_room](void*) { room->release(); });
  callOn(this, [this, piece = std::move(piece), bytes, place] { append(piece, bytes); });
}

void ScannedItems::setPresence(std::span<const std::uint32_t> indexes, Presence presence) {
  const std::uint8_t flag = presence == Presence::gone ? 1 : 0;
  for (const auto index : indexes) {
    if (index >= m_gone.size() || m_gone[index] == flag) continue;
    m_gone[index] = flag;
    m_count += flag != 0 ? -1 : 1;
    const auto size = m_items.item(index).fileSize();
    m_bytes += flag != 0 ? -size : size;
    countIn(m_items.item(index), flag != 0 ? -1 : 1);
  }
  Q_EMIT presenceChanged();
}

}  // namespace orvane
