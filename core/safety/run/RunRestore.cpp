#include "core/safety/run/RunRestore.h"

#include "core/base/files/AtomicFile.h"
#include "core/base/files/CanonicalPath.h"
#include "core/base/files/FreeName.h"
#include "core/base/files/PathAccess.h"
#include "core/base/files/PathText.h"
#include "core/platform/FileMover.h"
#include "core/platform/Trash.h"
#include "core/safety/journal/RunLog.h"
#include "core/safety/rules/PathValidator.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <unordered_set>
#include <utility>

namespace orvane {
namespace {

std::string nameOf(const JournalEntry& entry) {
  return std::string(entry.originalURL.lastPathComponent());
}

std::string failureWarning(const JournalEntry& entry, const std::string& reason) {
  return "Failed to restore " + nameOf(entry) + ": " + reason;
}

JournalEntry restoredState(JournalEntry entry) {
  entry.action = JournalAction::restored;
  entry.timestamp = ReferenceClock::now();
  return entry;
}

}  // namespace

// The state of one entry before its group moves: a planned move with what the journal is to say of it, or the warning
// that there is none.
struct RunRestore::Attempt {
  std::unique_ptr<PendingMove> move;
  std::optional<JournalEntry> entry;
  std::optional<JournalEntry> settles;
  std::string warning;
};

std::string RunRestore::goneWarning(std::string_view name) {
  return "Item was emptied from Trash or moved: " + std::string(name);
}

RunRestore::RunRestore(Trash& trash, FileMover& mover, const PathValidator& validator,
                       std::span<const JournalEntry> entries, Records records, Expected expected)
    : m_trash(trash),
      m_mover(mover),
      m_validator(validator),
      m_records(std::move(records)),
      m_expected(std::move(expected)) {
  std::unordered_set<FileUrl> copied;
  for (const auto& entry : entries) {
    if (entry.action == JournalAction::moved) copied.insert(entry.originalURL);
  }
  for (const auto& entry : entries) {
    if (entry.action == JournalAction::moved || !copied.contains(entry.originalURL)) continue;
    m_originals[entry.originalURL] = {entry, entry.action == JournalAction::restored};
  }
}

bool RunRestore::isCopy(const JournalEntry& entry) const {
  return entry.action == JournalAction::moved && m_originals.contains(entry.originalURL);
}

// Whether the item of the entry is still where it went, as far as that can be told.
bool RunRestore::isThere(const JournalEntry& entry) const {
  const auto status = readPathStatus(entry.trashedURL.path());
  if (!status) return false;
  const auto record = m_records.find(entry.id);
  if (record != m_records.end() && !record->second.describes(*status)) return false;
  return entry.action != JournalAction::trashed || m_trash.mayHold(entry.trashedURL, entry.originalURL);
}

// Whether the entry tells of a copy whose original did not follow it to the Trash: the run was cut off in between, or
// the system refused.
bool RunRestore::neverLeft(const JournalEntry& entry) const {
  const auto record = m_records.find(entry.id);
  if (entry.action != JournalAction::moved || record == m_records.end() || record->second.identity.inode != 0) {
    return false;
  }
  const auto status = readPathStatus(canonicalPlace(entry.originalURL.path()));
  return status && status->modified == record->second.identity.modified && record->second.describes(*status);
}

RunRestore::Attempt RunRestore::plan(const JournalEntry& entry, std::vector<FileUrl>& promised) {
  if (entry.action == JournalAction::restored) return {};
  try {
    const auto original = m_originals.find(entry.originalURL);
    if (entry.action == JournalAction::moved && original != m_originals.end()) {
      // The original itself comes back, so its copy goes to the Trash, or stays for as long as the original cannot
      // come.
      if (original->second.isBack) return isThere(entry) ? planSettingAside(entry) : Attempt{};
      if (isThere(original->second.entry)) return {};
      if (presenceAt(original->second.entry.trashedURL.path()) == Presence::unreachable) {
        return {nullptr,
                {},
                {},
                failureWarning(entry, "its original cannot be reached now, and the copy stays until it can")};
      }
    }
    if (!isThere(entry)) return {nullptr, {}, {}, goneWarning(nameOf(entry))};
    if (neverLeft(entry)) return planSettingAside(entry);
    return planReturn(entry, promised);
  } catch (const std::runtime_error& error) {
    return {nullptr, {}, {}, failureWarning(entry, error.what())};
  }
}

// Where the item is, with no link on the way. The journal is a file that anybody may have changed: an entry that names
// what its action cannot have made is not followed.
FileUrl RunRestore::placeOf(const JournalEntry& entry) const {
  FileUrl place(canonicalPlace(entry.trashedURL.path()));
  if (m_trash.holds(place) != (entry.action == JournalAction::trashed)) {
    throw std::runtime_error("the journal names a place where it cannot have gone");
  }
  if (entry.action == JournalAction::moved) requireAllowed(place);
  return place;
}

void RunRestore::requireAllowed(const FileUrl& place) const {
  if (auto refusal = m_validator.checkReturn(place.path())) throw SecurityError(*std::move(refusal));
}

// Where the item was, with no link on the way that was not there when it went.
FileUrl RunRestore::wantedPlace(const JournalEntry& entry, const FileUrl& place) const {
  FileUrl wanted(canonicalPlace(entry.originalURL.path()));
  const auto record = m_records.find(entry.id);
  const bool isKnownPlace = record == m_records.end()
                                ? entry.action != JournalAction::trashed || m_trash.mayHold(place, wanted)
                                : wanted == record->second.source.value_or(entry.originalURL);
  if (!isKnownPlace) throw std::runtime_error("its folder is now a link to another place");
  requireAllowed(wanted);
  return wanted;
}

RunRestore::Attempt RunRestore::planReturn(const JournalEntry& entry, std::vector<FileUrl>& promised) {
  const auto place = placeOf(entry);
  const auto wanted = wantedPlace(entry, place);
  createFoldersDurably(std::string(parentPath(wanted.path())), 0755);
  const auto isPromised = [&](const FileUrl& url) {
    return std::find(promised.begin(), promised.end(), url) != promised.end();
  };
  auto destination = freeUrl(wanted, NumberingStyle::restored, isPromised);
  auto move = entry.action == JournalAction::trashed ? m_trash.planTakeOut(place, destination)
                                                     : m_mover.planMove(held(place), destination);
  promised.push_back(destination);
  requireExpected(entry, *move);
  return {std::move(move), restoredState(entry), {}, {}};
}

std::unique_ptr<HeldItem> RunRestore::held(const FileUrl& place) const {
  return m_mover.hold(place, std::string(parentPath(place.path())));
}

void RunRestore::requireExpected(const JournalEntry& entry, const PendingMove& move) const {
  const auto expected = m_expected.find(entry.id);
  if (expected == m_expected.end() || expected->second.isStill(move.identity())) return;
  throw std::runtime_error("'" + entry.trashedURL.path() + "' has changed since it was looked at.");
}

// Under a run of its own.
RunRestore::Attempt RunRestore::planSettingAside(const JournalEntry& entry) {
  const auto place = placeOf(entry);
  JournalEntry aside;
  aside.runId = m_asideRun;
  aside.originalURL = entry.trashedURL;
  aside.fileSize = entry.fileSize;
  aside.checksum = entry.checksum;
  return {m_trash.planTrash(held(place)), std::move(aside), restoredState(entry), {}};
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
    auto& item = items.emplace_back();
    item.move = std::move(attempt.move);
    item.entry = *std::move(attempt.entry);
    item.settles = std::move(attempt.settles);
  }
  const bool durable = items.empty() || carryOutBatch(items, log, stop);
  for (std::size_t i = 0; i < items.size(); ++i) {
    const auto& entry = entries[positions[i]];
    if (items[i].state == BatchItem::State::moved) {
      noteMoved(entry, items[i]);
    } else if (items[i].state == BatchItem::State::failed) {
      warnings[positions[i]] = failureWarning(entry, items[i].error);
    }
  }
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (warnings[i].empty()) continue;
    m_result.warnings.push_back(std::move(warnings[i]));
    m_result.failed.push_back(entries[i].id);
  }
  return durable;
}

void RunRestore::noteNotTried(std::span<const JournalEntry> entries) {
  for (const auto& entry : entries) {
    if (entry.action == JournalAction::restored) continue;
    m_result.warnings.push_back(failureWarning(entry, "not tried, the disk refused to record the moves before it"));
    m_result.failed.push_back(entry.id);
  }
}

void RunRestore::noteMoved(const JournalEntry& entry, BatchItem& item) {
  m_restored.push_back(std::move(item.entry));
  if (item.settles) {
    m_restored.push_back(*std::move(item.settles));
    m_result.places.emplace(entry.id, entry.originalURL);
    // An original that is in the journal too is counted itself.
    if (!m_originals.contains(entry.originalURL)) ++m_result.restoredCount;
    return;
  }
  m_result.places.emplace(entry.id, item.move->destination());
  if (const auto record = m_records.find(entry.id); record != m_records.end() && record->second.isLocked) {
    m_trash.setImmutableFlag(item.move->destination());
  }
  ++m_result.restoredCount;
  if (const auto original = m_originals.find(entry.originalURL); original != m_originals.end()) {
    original->second.isBack = original->second.isBack || entry.action == JournalAction::trashed;
  }
}

std::vector<JournalEntry> RunRestore::takeRestored() {
  return std::exchange(m_restored, {});
}

RestoreResult RunRestore::failAll(std::span<const JournalEntry> entries, const std::string& reason) const {
  RestoreResult result;
  for (const auto& entry : entries) {
    if (entry.action == JournalAction::restored) continue;
    result.warnings.push_back(failureWarning(entry, reason));
    result.failed.push_back(entry.id);
  }
  return result;
}

}  // namespace orvane
