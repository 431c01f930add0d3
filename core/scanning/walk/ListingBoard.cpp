#include "core/scanning/walk/ListingBoard.h"

#include <chrono>
#include <iterator>

namespace orvane {
namespace {

// Waking the reader costs more than listing a small folder, so it sleeps until much has come or some time has passed.
constexpr std::size_t eventsWorthWaking = 2048;
constexpr std::chrono::milliseconds maxSleep{20};

}  // namespace

ListingBoard::~ListingBoard() {
  // By hand: a deep tree would destroy itself by recursion.
  while (!m_waiting.empty()) {
    auto folder = std::move(m_waiting.back());
    m_waiting.pop_back();
    std::move(folder->subfolders.begin(), folder->subfolders.end(), std::back_inserter(m_waiting));
  }
}

ScanListing& ListingBoard::addStart() {
  ++m_openWork;
  return **m_waiting.insert(m_waiting.begin(), std::make_unique<ScanListing>());
}

void ListingBoard::publish(ScanListing& folder, Part part, ListingChunk chunk, Folders subfolders) {
  const std::lock_guard lock(m_mutex);
  m_openWork += subfolders.size() + chunk.wholeFolders.size();
  std::move(subfolders.begin(), subfolders.end(), std::back_inserter(folder.subfolders));
  m_newEvents += chunk.events.size();
  if (chunk.examined > 0) folder.chunks.push_back(std::move(chunk));
  if (part == Part::last) {
    folder.isComplete = true;
    --m_openWork;
  }
  if (m_isReaderWaiting && (m_newEvents >= eventsWorthWaking || m_openWork == 0)) m_changed.notify_one();
}

void ListingBoard::sizeCompleted() {
  const std::lock_guard lock(m_mutex);
  --m_openWork;
  if (m_isReaderWaiting && m_openWork == 0) m_changed.notify_one();
}

void ListingBoard::wake() noexcept {
  {
    const std::lock_guard lock(m_mutex);
    m_isWakened = true;
  }
  m_changed.notify_one();
}

void ListingBoard::take(std::deque<ListingChunk>& chunks) {
  Folders done;
  std::unique_lock lock(m_mutex);
  m_isReaderWaiting = true;
  m_changed.wait_for(lock, maxSleep,
                     [&] { return m_newEvents >= eventsWorthWaking || m_openWork == 0 || m_isWakened; });
  m_isReaderWaiting = false;
  m_isWakened = false;
  m_newEvents = 0;
  while (!m_waiting.empty()) {
    auto& folder = *m_waiting.back();
    std::size_t taken = 0;
    while (taken < folder.chunks.size() && folder.chunks[taken].isSized()) {
      chunks.push_back(std::move(folder.chunks[taken]));
      ++taken;
    }
    folder.chunks.erase(folder.chunks.begin(), folder.chunks.begin() + static_cast<std::ptrdiff_t>(taken));
    if (!folder.chunks.empty() || !folder.isComplete) return;
    done.push_back(std::move(m_waiting.back()));
    m_waiting.pop_back();
    auto& subfolders = done.back()->subfolders;
    std::move(subfolders.rbegin(), subfolders.rend(), std::back_inserter(m_waiting));
    subfolders.clear();
  }
}

bool ListingBoard::isFinished() const {
  const std::lock_guard lock(m_mutex);
  return m_waiting.empty();
}

}  // namespace orvane
