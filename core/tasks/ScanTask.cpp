#include "core/tasks/ScanTask.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/PathSet.h"
#include "core/base/files/PathText.h"
#include "core/base/values/CheckedArithmetic.h"
#include "core/safety/records/Boundary.h"
#include "core/scanning/scan/StorageScanner.h"
#include "core/tasks/KeptRows.h"
#include "core/tasks/ScanTotals.h"
#include "core/tasks/TaskServices.h"

#include <algorithm>
#include <mutex>
#include <string>
#include <unordered_set>
#include <utility>
#include <variant>

namespace orvane {
namespace {

bool overlap(const std::vector<FileUrl>& folders) {
  const auto paths = Boundary(folders).canonicalPaths();
  for (std::size_t one = 0; one < paths.size(); ++one) {
    for (std::size_t other = 0; other < paths.size(); ++other) {
      if (one != other && isSameOrInside(paths[one], paths[other])) return true;
    }
  }
  return false;
}

// Joins the known places to the events of a walk, as if it had found them.
class KnownPlacesFirst {
 public:
  KnownPlacesFirst(std::vector<FileItem> items, const std::vector<FileUrl>& folders) : m_items(std::move(items)) {
    const Boundary walked(folders);
    for (const auto& item : m_items) {
      m_bytes = checkedAdd(m_bytes, item.fileSize());
      const auto& path = item.url().path();
      const auto meets = [&](const auto& folder) {
        return isSameOrInside(path, folder) || isSameOrInside(folder, path);
      };
      if (std::ranges::any_of(walked.canonicalPaths(), meets)) m_walkedTwice.insert(path);
    }
  }

  [[nodiscard]] std::vector<ScanEvent> events() const { return {m_items.begin(), m_items.end()}; }

  // Takes out what the walk finds of them.
  void leaveOut(std::vector<ScanEvent>& batch) {
    if (!m_walkedTwice.empty()) std::erase_if(batch, [this](const ScanEvent& event) { return leavesOut(event); });
  }

  void addTo(std::vector<ScanEvent>& batch) const {
    if (m_items.empty()) return;
    for (auto& event : batch) {
      if (auto* progress = std::get_if<ScanProgress>(&event)) progress->bytesFound += m_bytes - m_leftOut.bytes;
      if (auto* end = std::get_if<ScanCompleted>(&event)) {
        end->totalItems += static_cast<std::int64_t>(m_items.size()) - m_leftOut.count;
        end->totalBytes += m_bytes - m_leftOut.bytes;
      }
    }
  }

 private:
  bool leavesOut(const ScanEvent& event) {
    const auto* item = std::get_if<FileItem>(&event);
    if (item == nullptr) return false;
    const auto path = canonicalPlace(item->url().path());
    if (!m_walkedTwice.contains(path) && !m_walkedTwice.holds(path)) return false;
    m_leftOut.add(item->fileSize());
    return true;
  }

  std::vector<FileItem> m_items;
  std::int64_t m_bytes = 0;
  PathSet m_walkedTwice;
  RowSum m_leftOut;
};

using TakeBatch = std::function<void(std::vector<ScanEvent>&)>;
using AddUp = std::function<void(const std::vector<ScanEvent>&)>;

// Where `addUp` is given, items go to it and not to `take`: on any thread, one call at a time.
ScanEnd walk(const TaskServices& services, std::vector<FileUrl> folders, DeveloperCaches developerCaches,
             const TaskMonitor& monitor, const TakeBatch& take, KnownPlaces knownPlaces, const AddUp& addUp = {}) {
  std::vector<FileItem> items;
  if (knownPlaces == KnownPlaces::include) items = knownPlaceItems(services, developerCaches, monitor.stop);
  KnownPlacesFirst known(std::move(items), folders);
  if (auto events = known.events(); !events.empty()) addUp ? addUp(events) : take(events);
  std::mutex mutex;
  const auto look = [&](std::vector<ScanEvent>& batch) {
    if (monitor.looked != nullptr) monitor.looked->fetch_add(batch.size(), std::memory_order_relaxed);
    known.leaveOut(batch);
  };
  ScanDigest digest;
  if (addUp) {
    digest = [&](std::vector<ScanEvent>& found) {
      {
        const std::lock_guard lock(mutex);
        look(found);
        addUp(found);
      }
      found.clear();
    };
  }
  auto stream = services.scanner.scan(std::move(folders), developerCaches, std::move(digest));
  const std::stop_callback whenStopped(monitor.stop, [&stream] { stream.cancel(); });
  auto end = ScanEnd::cancelled;
  for (auto batch = stream.nextBatch(); !batch.empty(); batch = stream.nextBatch()) {
    {
      const std::lock_guard lock(mutex);
      look(batch);
      known.addTo(batch);
    }
    if (batch.empty()) continue;
    if (monitor.scanning) {
      for (const auto& event : batch) {
        if (const auto* progress = std::get_if<ScanProgress>(&event)) monitor.scanning(*progress);
      }
    }
    if (std::holds_alternative<ScanCompleted>(batch.back())) end = ScanEnd::completed;
    take(batch);
  }
  return end;
}

// Takes out what is kept, of the sum at the end too.
void sift(std::vector<ScanEvent>& batch, KeptRows& kept) {
  std::erase_if(batch, [&](const ScanEvent& event) {
    const auto* item = std::get_if<FileItem>(&event);
    return item != nullptr && kept.hold(*item);
  });
  if (batch.empty()) return;
  if (auto* completed = std::get_if<ScanCompleted>(&batch.back())) {
    completed->totalItems -= kept.sum().count;
    completed->totalBytes -= kept.sum().bytes;
  }
}

}  // namespace

ScanEnd scanFolders(const TaskServices& services, std::vector<FileUrl> folders, DeveloperCaches developerCaches,
                    const TaskMonitor& monitor, const TakeBatch& take, KnownPlaces knownPlaces) {
  KeptRows kept(services);
  const auto takeRest = [&](std::vector<ScanEvent>& batch) {
    sift(batch, kept);
    if (!batch.empty()) take(batch);
  };
  const auto end = walk(services, std::move(folders), developerCaches, monitor, takeRest, knownPlaces);
  if (monitor.keptBack) monitor.keptBack(kept.sum());
  return end;
}

ScanEnd addUpFolders(const TaskServices& services, std::vector<FileUrl> folders, DeveloperCaches developerCaches,
                     const TaskMonitor& monitor, ScanTotals& totals, KnownPlaces knownPlaces) {
  KeptRows kept(services);
  const auto addUp = [&](const std::vector<ScanEvent>& found) {
    for (const auto& event : found) {
      const auto& item = std::get<FileItem>(event);
      if (!kept.hold(item)) totals.add(item);
    }
  };
  const auto end = walk(
      services, std::move(folders), developerCaches, monitor, [](auto&) {}, knownPlaces, addUp);
  if (monitor.keptBack) monitor.keptBack(kept.sum());
  return end;
}

ScanEnd scanItems(const TaskServices& services, std::vector<FileUrl> folders, DeveloperCaches developerCaches,
                  const TaskMonitor& monitor, const std::function<void(FileItem)>& take) {
  const bool mayComeTwice = overlap(folders);
  std::unordered_set<std::string> seen;
  const auto takeItems = [&](std::vector<ScanEvent>& batch) {
    for (auto& event : batch) {
      auto* item = std::get_if<FileItem>(&event);
      if (item == nullptr || (mayComeTwice && !seen.insert(item->url().path()).second)) continue;
      take(std::move(*item));
    }
  };
  return walk(services, std::move(folders), developerCaches, monitor, takeItems, KnownPlaces::leaveOut);
}

}  // namespace orvane
