#include "app/common/ScanFeed.h"

#include "app/common/NoticeTexts.h"
#include "core/tasks/Folders.h"
#include "core/tasks/KnownPlaces.h"
#include "core/tasks/ScanTask.h"
#include "core/tasks/TaskServices.h"

#include <chrono>
#include <memory>
#include <stdexcept>
#include <utility>

namespace orvane {
namespace {

using Clock = std::chrono::steady_clock;

// Taking over that many takes the main thread well under a millisecond.
constexpr std::size_t itemsPerPiece = 4096;
constexpr std::chrono::milliseconds handOverInterval{50};

class PieceMaker {
 public:
  explicit PieceMaker(const ScanFeed& feed) : m_feed(feed) {}

  void add(FileItem item) {
    m_bytes += item.fileSize();
    m_piece->push_back(std::move(item));
    if (m_piece->size() >= itemsPerPiece) flush();
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
    if (m_piece->empty()) return;
    m_piece->shrink_to_fit();
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

ScanOutcome scanForWindow(const TaskServices& services, const std::vector<FileUrl>& named, const ScanFeed& feed,
                          const std::stop_token& stop) {
  auto [folders, leftOut] = chosenFolders(services, named);
  if (!leftOut.empty()) {
    throw std::runtime_error(leftOutFolders({leftOut.front()}, services.home).front().toStdString());
  }
  feed.begun(folders);
  // A bare account has known places all the same.
  const bool hasFolders = !folders.empty();
  if (!hasFolders && !named.empty()) return ScanOutcome::noFolders;

  PieceMaker pieces(feed);
  const TaskMonitor monitor{.stop = stop,
                            .scanning = [&](const ScanProgress& progress) { pieces.note(progress); },
                            .keptBack = feed.keptBack};
  const auto end = scanFolders(
      services, std::move(folders), DeveloperCaches::include, monitor,
      [&](std::vector<ScanEvent>& events) {
        for (auto& event : events) {
          if (auto* item = std::get_if<FileItem>(&event)) pieces.add(std::move(*item));
        }
        pieces.flushWhenDue();
      },
      grantedKnownPlaces(services));
  pieces.finish();
  if (!hasFolders) return ScanOutcome::noFolders;
  return end == ScanEnd::completed ? ScanOutcome::completed : ScanOutcome::cancelled;
}

}  // namespace orvane
