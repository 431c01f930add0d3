#include "core/safety/run/MoveBatch.h"

#include "core/platform/SyncError.h"
#include "core/safety/journal/RunLog.h"

#include <fmt/format.h>

#include <exception>
#include <optional>
#include <stdexcept>
#include <system_error>

namespace orvane {
namespace {

using State = BatchItem::State;

class Batch {
 public:
  Batch(std::span<BatchItem> items, RunLog& log, const std::stop_token& stop)
      : m_items(items), m_log(log), m_stop(stop) {}

  void logIntents() {
    forEach(State::planned, [&](BatchItem& item) { logIntent(item); });
    m_log.sync();
  }

  void prepare() {
    FolderSyncSet folders;
    bool anyRenamed = false;
    forEach(State::planned, [&](BatchItem& item) {
      item.move->prepare();
      if (item.move->destination() == destinationOf(item)) return;
      logIntent(item);
      anyRenamed = true;
    });
    if (anyRenamed) m_log.sync();
    forEach(State::planned, [&](BatchItem& item) {
      while (!item.move->finishPreparing(folders)) {
        logIntent(item);
        m_log.sync();
      }
    });
    folders.syncAll();
  }

  void move() {
    FolderSyncSet destinations;
    FolderSyncSet sources;
    forEach(State::planned, [&](BatchItem& item) {
      if (m_stop.stop_requested() || !passesLastCheck(item)) {
        item.state = State::cancelled;
        abandon(item);
        return;
      }
      item.move->carryOut(destinations, sources);
      item.state = State::moved;
    });
    destinations.syncAll();
    sources.syncAll();
  }

  void logDone() {
    std::vector<Uuid> done;
    forEach(State::moved, [&](BatchItem& item) {
      if (!item.move->finish()) m_log.keep();
      done.push_back(item.entry.id);
    });
    if (done.empty()) return;
    m_log.appendDone(done);
    m_log.sync();
  }

  // Items that had not moved when the disk failed stay where they are.
  void failRest(const std::string& reason) {
    for (auto& item : m_items) {
      if (item.state == State::planned) fail(item, reason);
    }
  }

 private:
  // False when it was stopped meanwhile. Throws what the check throws.
  bool passesLastCheck(const BatchItem& item) const {
    try {
      if (item.lastCheck) item.lastCheck();
    } catch (const std::runtime_error&) {
      if (!m_stop.stop_requested()) throw;
    }
    return !m_stop.stop_requested();
  }

  template <typename Action>
  void forEach(State state, Action action) {
    for (auto& item : m_items) {
      if (item.state != state) continue;
      try {
        action(item);
      } catch (const SyncError&) {
        throw;
      } catch (const std::exception& error) {
        fail(item, error.what());
      }
    }
  }

  void fail(BatchItem& item, const std::string& reason) {
    item.state = State::failed;
    item.error = reason;
    abandon(item);
  }

  void abandon(BatchItem& item) {
    if (!item.move->abandon()) m_log.keep();
  }

  // A restored entry keeps telling where in the Trash its item was.
  static const FileUrl& destinationOf(const BatchItem& item) {
    return item.entry.action == JournalAction::restored ? item.move->destination() : item.entry.trashedURL;
  }

  void logIntent(BatchItem& item) {
    if (item.entry.action != JournalAction::restored) item.entry.trashedURL = item.move->destination();
    m_log.appendIntent({item.entry, item.move->source(), item.move->destination(), item.move->identity(),
                        item.move->partial(), item.settles, item.move->isLocked()});
  }

  std::span<BatchItem> m_items;
  RunLog& m_log;
  const std::stop_token& m_stop;
};

}  // namespace

bool carryOutBatch(std::span<BatchItem> items, RunLog& log, std::stop_token stop) {
  Batch batch(items, log, stop);
  std::optional<FileLock> moving;
  try {
    moving = log.lockMoves();
  } catch (const std::system_error& error) {
    batch.failRest(fmt::format("the move cannot be recorded: {}", error.what()));
    return false;
  }
  try {
    batch.logIntents();
    batch.prepare();
    batch.move();
    batch.logDone();
    return true;
  } catch (const SyncError& error) {
    batch.failRest(fmt::format("the disk cannot record the move: {}", error.what()));
    return false;
  }
}

}  // namespace orvane
