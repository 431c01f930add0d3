#include "core/safety/RunRestore.h"

#include "core/base/AtomicFile.h"
#include "core/base/CanonicalPath.h"
#include "core/base/FreeName.h"
#include "core/base/OpenFolder.h"
#include "core/base/PathText.h"
#include "core/platform/FileMover.h"
#include "core/platform/Trash.h"
#include "core/safety/PathValidator.h"
#include "core/safety/RunLog.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace orvane {
namespace {

std::string nameOf(const JournalEntry& entry) {
  return std::string(entry.originalURL.lastPathComponent());
}

std::string goneWarning(const JournalEntry& entry) {
  return "Item was emptied from Trash or moved: " + nameOf(entry);
}

std::string failureWarning(const JournalEntry& entry, const std::string& reason) {
  return "Failed to restore " + nameOf(entry) + ": " + reason;
}

}  // namespace

// What became of one entry before its group moves: a planned move, or the warning that there is none.
struct RunRestore::Attempt {
  std::unique_ptr<PendingMove> move;
  std::string warning;
};

RunRestore::RunRestore(Trash& trash, FileMover& mover, const PathValidator& validator, bool wasRestored)
    : m_trash(trash), m_mover(mover), m_validator(validator), m_wasRestored(wasRestored) {}

RunRestore::Attempt RunRestore::plan(const JournalEntry& entry, std::vector<FileUrl>& promised) {
  const auto& trashed = entry.trashedURL;
  // A restored entry's place in the Trash is free again: whatever stands there now is another item.
  if (entry.action == JournalAction::restored) return {nullptr, m_wasRestored ? goneWarning(entry) : std::string()};
  if (!readPathStatus(trashed.path())) return {nullptr, goneWarning(entry)};
  const bool inTrash = entry.action == JournalAction::trashed;
  if (inTrash && !m_trash.mayHold(trashed, entry.originalURL)) return {nullptr, goneWarning(entry)};
  try {
    createFoldersDurably(std::string(parentPath(entry.originalURL.path())), 0755);
    const FileUrl wanted(canonicalPlace(entry.originalURL.path()));
    const std::string folder(parentPath(wanted.path()));
    if (auto refusal = m_validator.checkCanonical(wanted.path(), {folder})) throw SecurityError(*std::move(refusal));
    const auto isPromised = [&](const FileUrl& url) {
      return std::find(promised.begin(), promised.end(), url) != promised.end();
    };
    const auto destination = freeUrl(wanted, NumberingStyle::restored, isPromised);
    const FileUrl place(canonicalPlace(trashed.path()));
    auto move = inTrash ? m_trash.planTakeOut(place, destination)
                        : m_mover.planMove(place, std::string(parentPath(place.path())), destination);
    promised.push_back(destination);
    return {std::move(move), {}};
  } catch (const std::runtime_error& error) {
    return {nullptr, failureWarning(entry, error.what())};
  }
}

bool RunRestore::carryOut(std::span<const JournalEntry> entries, RunLog& log, std::stop_token stop) {
  std::vector<std::string> warnings(entries.size());
  std::vector<std::size_t> positions;
  std::vector<BatchItem> items;
  std::vector<FileUrl> promised;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    auto attempt = plan(entries[i], promised);
    warnings[i] = std::move(attempt.warning);
    if (!attempt.move) continue;
    JournalEntry restored = entries[i];
    restored.action = JournalAction::restored;
    restored.timestamp = ReferenceClock::now();
    positions.push_back(i);
    items.push_back({std::move(attempt.move), std::move(restored), BatchItem::State::planned, {}});
  }
  const bool durable = items.empty() || carryOutBatch(items, log, stop);
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (items[i].state == BatchItem::State::moved) {
      ++m_result.restoredCount;
      m_restored.push_back(std::move(items[i].entry));
    } else if (items[i].state == BatchItem::State::failed) {
      warnings[positions[i]] = failureWarning(entries[positions[i]], items[i].error);
    }
  }
  std::copy_if(std::make_move_iterator(warnings.begin()), std::make_move_iterator(warnings.end()),
               std::back_inserter(m_result.warnings), [](const std::string& text) { return !text.empty(); });
  return durable;
}

std::vector<JournalEntry> RunRestore::takeRestored() {
  return std::exchange(m_restored, {});
}

RestoreResult RunRestore::failAll(std::span<const JournalEntry> entries, const std::string& reason) const {
  RestoreResult result;
  for (const auto& entry : entries) result.warnings.push_back(failureWarning(entry, reason));
  return result;
}

}  // namespace orvane
