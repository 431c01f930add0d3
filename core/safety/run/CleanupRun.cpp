#include "core/safety/run/CleanupRun.h"

#include "core/base/files/PathText.h"
#include "core/safety/journal/RunLog.h"
#include "core/safety/journal/UndoJournal.h"
#include "core/safety/rules/FolderLookups.h"
#include "core/safety/run/MoveBatch.h"
#include "core/safety/run/TrashMover.h"

#include <fmt/format.h>

#include <algorithm>
#include <system_error>
#include <unordered_set>
#include <variant>

namespace orvane {
namespace {

MoveResult resultOf(const TrashError& error) {
  if (std::holds_alternative<TrashError::PathValidationFailed>(error.which())) return MoveResult::refused;
  if (std::holds_alternative<TrashError::FileNotFound>(error.which())) return MoveResult::missing;
  return MoveResult::failed;
}

// Why an item was left. A failure of a move to another folder never names the Trash.
std::string failureText(const MoveRequest& request, const std::string& reason) {
  if (request.destinationFolder) return reason;
  return TrashError(TrashError::UnderlyingError{reason}).what();
}

std::string failureText(const MoveRequest& request, const TrashError& error) {
  const auto* underlying = std::get_if<TrashError::UnderlyingError>(&error.which());
  return underlying != nullptr ? failureText(request, underlying->message) : error.what();
}

// One group of requests on its way through planning, moving and reporting.
class Group {
 public:
  Group(TrashMover& mover, const Boundary& roots, const Uuid& runId, const std::string& journalFolder)
      : m_mover(mover), m_roots(roots), m_runId(runId), m_journalFolder(journalFolder) {}

  void plan(const MoveRequest& request, MoveOutcome& outcome) {
    try {
      auto move = planned(request);
      if (request.expectedIdentity && !request.expectedIdentity->isStill(move->identity())) {
        outcome.result = MoveResult::changed;
        outcome.error =
            failureText(request, fmt::format("'{}' has changed since it was looked at.", request.source.path()));
        return;
      }
      JournalEntry entry;
      entry.runId = m_runId;
      if (request.timestamp) entry.timestamp = *request.timestamp;
      entry.originalURL = request.source;
      entry.trashedURL = move->destination();
      entry.fileSize = request.fileSize;
      entry.checksum = request.checksum;
      entry.action = request.destinationFolder ? JournalAction::moved : JournalAction::trashed;
      m_promised.insert(move->destination());
      m_items.push_back({std::move(move), std::move(entry), BatchItem::State::planned, {}, request.lastCheck});
      m_outcomes.push_back(&outcome);
      m_requests.push_back(&request);
    } catch (const TrashError& error) {
      outcome.result = resultOf(error);
      outcome.error = failureText(request, error);
    }
  }

  [[nodiscard]] bool carryOut(RunLog& log, const std::stop_token& stop) {
    const bool durable = m_items.empty() || carryOutBatch(m_items, log, stop);
    for (std::size_t i = 0; i < m_items.size(); ++i) report(m_items[i], *m_requests[i], *m_outcomes[i]);
    return durable;
  }

  // The folders that were made for what was planned since the last call.
  [[nodiscard]] std::vector<std::string> takeMadeFolders() { return m_lookups.takeMade(); }

  // Entries of what moved.
  [[nodiscard]] std::vector<JournalEntry> entries() const {
    std::vector<JournalEntry> result;
    for (const auto& item : m_items) {
      if (item.state == BatchItem::State::moved) result.push_back(item.entry);
    }
    return result;
  }

  // Sets aside the sources of items that were copied to another volume; `outcomes` gets the result for each.
  [[nodiscard]] std::vector<MoveRequest> copiedSources(std::vector<MoveOutcome*>& outcomes) const {
    std::vector<MoveRequest> result;
    for (std::size_t i = 0; i < m_items.size(); ++i) {
      const auto& item = m_items[i];
      if (item.state != BatchItem::State::moved || !item.move->copies()) continue;
      MoveRequest request;
      request.source = item.entry.originalURL;
      request.fileSize = item.entry.fileSize;
      request.checksum = item.entry.checksum;
      request.expectedIdentity = item.move->identity();
      request.timestamp = item.entry.timestamp;
      result.push_back(std::move(request));
      outcomes.push_back(m_outcomes[i]);
    }
    return result;
  }

 private:
  std::unique_ptr<PendingMove> planned(const MoveRequest& request) {
    auto move = request.destinationFolder ? m_mover.planMove(
                                                request.source, m_roots, *request.destinationFolder,
                                                [&](const FileUrl& url) { return m_promised.contains(url); }, m_lookups)
                                          : m_mover.planTrash(request.source, m_roots, m_lookups);
    const auto& place = move->source().path();
    if (isSameOrInside(place, m_journalFolder) || isSameOrInside(m_journalFolder, place)) {
      throw TrashError(TrashError::PathValidationFailed{
          fmt::format("'{}' holds Orvane's own undo journal.", request.source.path())});
    }
    return move;
  }

  static void report(const BatchItem& item, const MoveRequest& request, MoveOutcome& outcome) {
    switch (item.state) {
      case BatchItem::State::moved:
        outcome.result = MoveResult::moved;
        outcome.destination = item.move->destination();
        break;
      case BatchItem::State::failed:
        outcome.result = MoveResult::failed;
        outcome.error = failureText(request, item.error);
        break;
      case BatchItem::State::planned:
      case BatchItem::State::cancelled:
        break;
    }
  }

  TrashMover& m_mover;
  const Boundary& m_roots;
  const Uuid& m_runId;
  const std::string& m_journalFolder;
  std::vector<BatchItem> m_items;
  std::vector<MoveOutcome*> m_outcomes;
  std::vector<const MoveRequest*> m_requests;
  std::unordered_set<FileUrl> m_promised;
  FolderLookups m_lookups;
};

// Its copy is whole and recorded: restoring the run sets it aside.
void noteSourceStays(MoveOutcome& outcome, const std::string& reason) {
  outcome.result = MoveResult::failed;
  outcome.error = fmt::format("'{}' was copied to '{}', and the original stays where it is: {}", outcome.source.path(),
                              outcome.destination.path(), reason.empty() ? "the disk refused to record it" : reason);
}

void failAll(std::span<MoveOutcome> outcomes, const std::string& reason) {
  for (auto& outcome : outcomes) {
    if (outcome.result != MoveResult::cancelled) continue;
    outcome.result = MoveResult::failed;
    outcome.error = reason;
  }
}

}  // namespace

CleanupRun::CleanupRun(TrashMover& mover, UndoJournal& journal, Boundary roots)
    : m_mover(mover), m_journal(journal), m_roots(std::move(roots)) {}

std::vector<MoveOutcome> CleanupRun::carryOut(std::span<const MoveRequest> requests, const Progress& progress,
                                              std::stop_token stop) {
  std::vector<MoveOutcome> outcomes;
  outcomes.reserve(requests.size());
  for (const auto& request : requests) outcomes.push_back({request.source, {}, {}, request.fileSize, {}});
  for (auto& outcome : outcomes) outcome.result = MoveResult::cancelled;

  std::unique_ptr<RunLog> log;
  try {
    log = m_journal.beginRun(m_id);
  } catch (const std::system_error& error) {
    failAll(outcomes, fmt::format("Nothing was moved: the undo journal in '{}' cannot be written ({}).",
                                  m_journal.storageFolder(), error.code().message()));
    return outcomes;
  }
  for (std::size_t start = 0; start < requests.size() && !stop.stop_requested(); start += maxBatchSize) {
    const auto count = std::min(maxBatchSize, requests.size() - start);
    if (!carryOutGroup(requests.subspan(start, count), std::span(outcomes).subspan(start, count), *log, stop)) {
      failAll(outcomes, "Not tried: the disk refused to record the moves before it.");
      return outcomes;
    }
    if (progress) progress(start + count, requests.size());
  }
  m_journal.recordLogged({}, *log, UndoJournal::Checkpoint::atEnd);
  return outcomes;
}

bool CleanupRun::carryOutGroup(std::span<const MoveRequest> requests, std::span<MoveOutcome> outcomes, RunLog& log,
                               const std::stop_token& stop) {
  Group group(m_mover, m_roots, m_id, m_journal.storageFolder());
  for (std::size_t i = 0; i < requests.size() && !stop.stop_requested(); ++i) group.plan(requests[i], outcomes[i]);
  m_journal.recordMade(group.takeMadeFolders());
  if (!group.carryOut(log, stop)) {
    m_journal.recordUnsettled(group.entries());
    std::vector<MoveOutcome*> copied;
    static_cast<void>(group.copiedSources(copied));
    for (auto* outcome : copied) noteSourceStays(*outcome, {});
    return false;
  }
  m_journal.recordLogged(group.entries(), log, UndoJournal::Checkpoint::whenDue);
  std::vector<MoveOutcome*> copied;
  const auto sources = group.copiedSources(copied);
  if (sources.empty()) return true;
  std::vector<MoveOutcome> followed(sources.size());
  const bool durable = carryOutGroup(sources, followed, log, {});
  for (std::size_t i = 0; i < followed.size(); ++i) {
    if (followed[i].result != MoveResult::moved) noteSourceStays(*copied[i], followed[i].error);
  }
  return durable;
}

}  // namespace orvane
