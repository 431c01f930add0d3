#include "core/safety/RunRestore.h"

#include "core/base/AtomicFile.h"
#include "core/base/CanonicalPath.h"
#include "core/base/FreeName.h"
#include "core/base/PathAccess.h"
#include "core/base/PathText.h"
#include "core/platform/FileMover.h"
#include "core/platform/Trash.h"
#include "core/safety/PathValidator.h"
#include "core/safety/RunLog.h"

#include <algorithm>
#include <optional>
#include <unordered_set>
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

// What became of one entry before its group moves: a planned move with what the journal is to say of it, or the warning
// that there is none.
struct RunRestore::Attempt {
  std::unique_ptr<PendingMove> move;
  std::optional<JournalEntry> entry;
  std::string warning;
};

RunRestore::RunRestore(Trash& trash, FileMover& mover, const PathValidator& validator,
                       std::span<const JournalEntry> entries, Before before)
    : m_trash(trash), m_mover(mover), m_validator(validator), m_before(before) {
  std::unordered_set<FileUrl> moved;
  for (const auto& entry : entries) {
    if (entry.action == JournalAction::moved) moved.insert(entry.originalURL);
    if (entry.action == JournalAction::trashed && moved.contains(entry.originalURL)) {
      m_originals.emplace(entry.originalURL, entry.trashedURL);
    }
  }
}

RunRestore::Attempt RunRestore::plan(const JournalEntry& entry, std::vector<FileUrl>& promised) {
  // A restored entry's place in the Trash is free again: whatever stands there now is another item.
  if (entry.action == JournalAction::restored) {
    return {nullptr, {}, m_before == Before::restored ? goneWarning(entry) : std::string()};
  }
  if (!readPathStatus(entry.trashedURL.path())) return {nullptr, {}, goneWarning(entry)};
  try {
    if (entry.action == JournalAction::trashed) {
      if (!m_trash.mayHold(entry.trashedURL, entry.originalURL)) return {nullptr, {}, goneWarning(entry)};
      return planReturn(entry, promised);
    }
    const auto original = m_originals.find(entry.originalURL);
    const bool originalComesBack = original != m_originals.end() && readPathStatus(original->second.path()) &&
                                   m_trash.mayHold(original->second, entry.originalURL);
    return originalComesBack ? planSettingAside(entry) : planReturn(entry, promised);
  } catch (const std::runtime_error& error) {
    return {nullptr, {}, failureWarning(entry, error.what())};
  }
}

RunRestore::Attempt RunRestore::planReturn(const JournalEntry& entry, std::vector<FileUrl>& promised) {
  createFoldersDurably(std::string(parentPath(entry.originalURL.path())), 0755);
  const FileUrl wanted(canonicalPlace(entry.originalURL.path()));
  const std::string folder(parentPath(wanted.path()));
  if (auto refusal = m_validator.checkCanonical(wanted.path(), Boundary({FileUrl(folder)})))
    throw SecurityError(*std::move(refusal));
  const auto isPromised = [&](const FileUrl& url) {
    return std::find(promised.begin(), promised.end(), url) != promised.end();
  };
  auto destination = freeUrl(wanted, NumberingStyle::restored, isPromised);
  const FileUrl place(canonicalPlace(entry.trashedURL.path()));
  auto move = entry.action == JournalAction::trashed ? m_trash.planTakeOut(place, destination)
                                                     : m_mover.planMove(place, std::string(parentPath(place.path())),
                                                                        [&](const FileStatus&) { return destination; });
  promised.push_back(destination);
  JournalEntry restored = entry;
  restored.action = JournalAction::restored;
  restored.timestamp = ReferenceClock::now();
  return {std::move(move), std::move(restored), {}};
}

// The original itself comes back from the Trash, so the copy on the other volume goes there, under a run of its own.
RunRestore::Attempt RunRestore::planSettingAside(const JournalEntry& entry) {
  const FileUrl place(canonicalPlace(entry.trashedURL.path()));
  JournalEntry aside;
  aside.runId = m_asideRun;
  aside.originalURL = entry.trashedURL;
  aside.fileSize = entry.fileSize;
  aside.checksum = entry.checksum;
  return {
      m_trash.planTrash(place, std::string(parentPath(place.path())), [](const FileStatus&) {}), std::move(aside), {}};
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
    positions.push_back(i);
    items.push_back({std::move(attempt.move), *std::move(attempt.entry), BatchItem::State::planned, {}, {}});
  }
  const bool durable = items.empty() || carryOutBatch(items, log, stop);
  for (std::size_t i = 0; i < items.size(); ++i) {
    const auto& entry = entries[positions[i]];
    if (items[i].state == BatchItem::State::moved) {
      noteMoved(entry, std::move(items[i].entry));
    } else if (items[i].state == BatchItem::State::failed) {
      warnings[positions[i]] = failureWarning(entry, items[i].error);
    }
  }
  std::copy_if(std::make_move_iterator(warnings.begin()), std::make_move_iterator(warnings.end()),
               std::back_inserter(m_result.warnings), [](const std::string& text) { return !text.empty(); });
  return durable;
}

void RunRestore::noteMoved(const JournalEntry& entry, JournalEntry recorded) {
  const bool setAside = recorded.id != entry.id;
  m_restored.push_back(std::move(recorded));
  if (!setAside) {
    ++m_result.restoredCount;
    return;
  }
  // Its original is counted.
  JournalEntry settled = entry;
  settled.action = JournalAction::restored;
  settled.timestamp = ReferenceClock::now();
  m_restored.push_back(std::move(settled));
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
