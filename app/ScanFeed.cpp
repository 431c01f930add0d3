#include "app/ScanFeed.h"

#include "app/Places.h"
#include "core/base/FileStatus.h"
#include "core/scanning/StorageScanner.h"
#include "core/scanning/WholeFolders.h"

#include <fcntl.h>

#include <chrono>
#include <memory>
#include <utility>

namespace orvane {
namespace {

using Clock = std::chrono::steady_clock;

// Taking over that many takes the main thread well under a millisecond.
constexpr std::size_t itemsPerPiece = 4096;
constexpr std::chrono::milliseconds handOverInterval{50};

bool isFolder(const FileItem& item) {
  if (!mayBeWholeFolder(item.url().path())) return false;
  const auto status = readFileStatus(AT_FDCWD, item.url().path().c_str());
  return status && status->type == FileType::directory;
}

class PieceMaker {
 public:
  explicit PieceMaker(const ScanFeed& feed) : m_feed(feed) {}

  void add(FileItem item) {
    m_bytes += item.fileSize();
    m_piece->isFolder.push_back(isFolder(item));
    m_piece->items.push_back(std::move(item));
    if (m_piece->items.size() >= itemsPerPiece) flush();
  }
  void note(const ScanProgress& progress) {
    m_examined = progress.itemsScanned;
    m_place = progress.currentPath;
  }
  void flushWhenDue() {
    const auto now = Clock::now();
    if (now - m_lastFlush < handOverInterval) return;
    flush();
    if (m_examined > 0) m_feed.progress(m_examined, m_place);
    m_lastFlush = now;
  }
  void flush() {
    if (m_piece->items.empty()) return;
    m_piece->items.shrink_to_fit();
    m_feed.found(std::exchange(m_piece, std::make_shared<ItemPiece>()), std::exchange(m_bytes, 0));
  }
  void finish() {
    flush();
    if (m_examined > 0) m_feed.progress(m_examined, m_place);
  }

 private:
  const ScanFeed& m_feed;
  std::shared_ptr<ItemPiece> m_piece = std::make_shared<ItemPiece>();
  std::int64_t m_bytes = 0;
  std::int64_t m_examined = 0;
  std::string m_place;
  Clock::time_point m_lastFlush = Clock::now();
};

}  // namespace

ScanOutcome scanGrantedFolders(const WindowServices& services, const ScanFeed& feed, const std::stop_token& stop) {
  auto folders = existingFolders(services.folders);
  feed.begun(folders);
  if (folders.empty()) return ScanOutcome::noFolders;

  auto stream = services.scanner.scan(std::move(folders), DeveloperCaches::include);
  const std::stop_callback whenStopped(stop, [&stream] { stream.cancel(); });
  PieceMaker pieces(feed);
  auto end = ScanOutcome::completed;
  for (auto events = stream.nextBatch(); !events.empty(); events = stream.nextBatch()) {
    for (auto& event : events) {
      if (auto* item = std::get_if<FileItem>(&event)) {
        pieces.add(std::move(*item));
      } else if (const auto* progress = std::get_if<ScanProgress>(&event)) {
        pieces.note(*progress);
      } else if (std::holds_alternative<ScanCancelled>(event)) {
        end = ScanOutcome::cancelled;
      }
    }
    pieces.flushWhenDue();
  }
  pieces.finish();
  return end;
}

}  // namespace orvane
