#include "core/tasks/RestoreTask.h"

#include "core/base/files/FileStatus.h"
#include "core/base/text/Json.h"
#include "core/safety/journal/UndoJournal.h"
#include "core/safety/run/RunRestore.h"
#include "core/tasks/CarryOut.h"
#include "core/tasks/RunReport.h"
#include "core/tasks/TaskServices.h"

#include <fcntl.h>

#include <algorithm>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace orvane {
namespace {

constexpr std::string_view restoredRunKey = "runId";

std::optional<FileStatus> statusOf(const JournalEntry& entry) {
  return readFileStatus(AT_FDCWD, entry.trashedURL.path().c_str());
}

std::string backAlready(const JournalEntry& entry) {
  return "Was brought back already: " + std::string(entry.originalURL.lastPathComponent());
}

// Adds the entries of one run as rows.
class RestoreRows {
 public:
  RestoreRows(ProposalBuilder& builder, const std::vector<JournalEntry>& entries, const std::vector<Uuid>& lost,
              const RestoreOptions& options)
      : m_builder(builder), m_lost(lost.begin(), lost.end()), m_wanted(options.entries.begin(), options.entries.end()) {
    for (const auto& entry : entries) {
      if (entry.action == JournalAction::restored) m_originsOfRestored.insert(entry.originalURL);
      const bool isInTrash = entry.action == JournalAction::trashed && !m_lost.contains(entry.id) && statusOf(entry);
      if (isInTrash) m_originalsInTrash.insert(entry.originalURL);
    }
    for (const auto& entry : entries) {
      if (m_wanted.contains(entry.id) && hasOriginalInTrash(entry)) m_wantedOriginals.insert(entry.originalURL);
    }
  }

  void add(const JournalEntry& entry) {
    if (!isWanted(entry) || hasOriginalInTrash(entry)) return;
    if (m_lost.contains(entry.id)) return addLost(entry);
    const std::string name(entry.originalURL.lastPathComponent());
    const auto group = groupFor(entry.originalURL.deletingLastPathComponent());
    m_builder.add(itemOf(entry), {Choice::selected, Lock::none, group},
                  name == entry.trashedURL.lastPathComponent() ? std::string() : name);
  }
  void addRefused(const JournalEntry& entry) {
    if (isWanted(entry)) refuse(entry, backAlready(entry));
  }

 private:
  void refuse(const JournalEntry& entry, std::string why) {
    const auto group = m_builder.addGroup({.refusal = std::move(why)});
    m_builder.add(itemOf(entry), {Choice::locked, Lock::refused, group});
  }
  void addLost(const JournalEntry& entry) {
    // Nobody misses the copy of an item that is home again.
    if (entry.action == JournalAction::moved && m_originsOfRestored.contains(entry.originalURL)) return;
    refuse(entry, RunRestore::goneWarning(entry.originalURL.lastPathComponent()));
  }
  // Of a copy on another volume: the original comes back instead.
  [[nodiscard]] bool hasOriginalInTrash(const JournalEntry& entry) const {
    return entry.action == JournalAction::moved && m_originalsInTrash.contains(entry.originalURL);
  }
  [[nodiscard]] bool isWanted(const JournalEntry& entry) const {
    return m_wanted.empty() || m_wanted.contains(entry.id) || m_wantedOriginals.contains(entry.originalURL);
  }

  static FileItem itemOf(const JournalEntry& entry) {
    FileItem::Fields fields;
    fields.id = entry.id;
    fields.url = entry.trashedURL;
    fields.fileSize = entry.fileSize;
    if (const auto status = entry.action == JournalAction::restored ? std::nullopt : statusOf(entry)) {
      fields.identity = ItemIdentity::of(*status);
    }
    return FileItem(std::move(fields));
  }

  std::uint32_t groupFor(FileUrl folder) {
    const auto [known, isNew] = m_groups.try_emplace(folder, 0);
    if (isNew) known->second = m_builder.addGroup({.destinationFolder = std::move(folder)});
    return known->second;
  }

  ProposalBuilder& m_builder;
  std::unordered_set<Uuid> m_lost;
  std::unordered_set<Uuid> m_wanted;
  std::unordered_set<FileUrl> m_wantedOriginals;
  std::unordered_set<FileUrl> m_originalsInTrash;
  std::unordered_set<FileUrl> m_originsOfRestored;
  std::unordered_map<FileUrl, std::uint32_t> m_groups;
};

// Tells of each approved row what became of its entry.
class RestoreOutcomes {
 public:
  RestoreOutcomes(const Approval& approval, RestoreResult result, const std::stop_token& stop)
      : m_result(std::move(result)), m_isStopped(stop.stop_requested()) {
    for (std::size_t at = 0; at < m_result.failed.size(); ++at) {
      m_warnings.emplace(m_result.failed[at], m_result.warnings[at]);
    }
    for (const auto index : approval.rows()) {
      const auto& item = approval.proposal().row(index).item;
      m_positions.emplace(item.id(), m_outcomes.size());
      m_outcomes.push_back({item.url(), MoveResult::cancelled, {}, item.fileSize(), {}});
    }
  }

  // `entries` is the whole run as the journal has it now.
  [[nodiscard]] std::vector<MoveOutcome> take(const std::vector<JournalEntry>& entries) {
    std::unordered_map<FileUrl, MoveOutcome*> byOrigin;
    for (const auto& entry : entries) {
      const auto position = m_positions.find(entry.id);
      if (position == m_positions.end()) continue;
      auto& outcome = m_outcomes[position->second];
      settle(outcome, entry);
      byOrigin.emplace(entry.originalURL, &outcome);
    }
    // The other half of an item that went to another volume has no row of its own.
    for (const auto& entry : entries) {
      const auto row = byOrigin.find(entry.originalURL);
      if (row == byOrigin.end() || m_positions.contains(entry.id)) continue;
      if (const auto warning = m_warnings.find(entry.id); warning != m_warnings.end())
        row->second->error = warning->second;
      if (row->second->result != MoveResult::moved) noteMoved(*row->second, entry.id);
    }
    return std::move(m_outcomes);
  }

 private:
  bool noteMoved(MoveOutcome& outcome, const Uuid& entry) {
    const auto place = m_result.places.find(entry);
    if (place == m_result.places.end()) return false;
    outcome.result = MoveResult::moved;
    outcome.destination = place->second;
    return true;
  }

  void settle(MoveOutcome& outcome, const JournalEntry& entry) {
    if (noteMoved(outcome, entry.id)) return;
    if (const auto warning = m_warnings.find(entry.id); warning != m_warnings.end()) {
      outcome.result = MoveResult::failed;
      outcome.error = warning->second;
    } else if (entry.action == JournalAction::restored) {
      // Somebody else was faster.
      outcome.result = MoveResult::missing;
      outcome.error = backAlready(entry);
    } else if (!m_isStopped) {
      outcome.result = MoveResult::failed;
      outcome.error = "Not tried: the disk refused to record the moves before it.";
    }
  }

  RestoreResult m_result;
  bool m_isStopped;
  std::unordered_map<Uuid, std::string> m_warnings;
  std::unordered_map<Uuid, std::size_t> m_positions;
  std::vector<MoveOutcome> m_outcomes;
};

}  // namespace

Proposal proposeRestore(const TaskServices& services, const RestoreOptions& options) {
  ProposalBuilder builder(TaskKind::restore, Boundary(), options.now);
  builder.setSubject(Json{{restoredRunKey, jsonFromUuid(options.runId)}});
  const auto entries = services.journal().getEntries(options.runId);
  if (entries.empty()) throw UndoError(UndoError::RunNotFound{options.runId});
  const auto isBack = [](const JournalEntry& entry) { return entry.action == JournalAction::restored; };
  const bool areAllBack = std::ranges::all_of(entries, isBack);
  RestoreRows rows(builder, entries, services.journal().lostEntries(options.runId), options);
  for (const auto& entry : entries) {
    if (!isBack(entry)) {
      rows.add(entry);
    } else if (areAllBack) {
      rows.addRefused(entry);
    }
  }
  return builder.take();
}

std::vector<MoveOutcome> bringBack(const TaskServices& services, const Approval& approval, const RunProgress& progress,
                                   const std::stop_token& stop) {
  const auto& proposal = approval.proposal();
  const auto runId = uuidAt(proposal.subject(), restoredRunKey);
  std::vector<RestoreRequest> requests;
  requests.reserve(approval.rows().size());
  for (const auto index : approval.rows()) {
    const auto& item = proposal.row(index).item;
    requests.push_back({item.id(), item.identity().value_or(ItemIdentity{})});
  }
  auto& journal = services.journal();
  try {
    auto result = journal.restoreEntries(runId, requests, progress, stop);
    return RestoreOutcomes(approval, std::move(result), stop).take(journal.getEntries(runId));
  } catch (const UndoError& error) {
    std::vector<MoveOutcome> outcomes;
    for (const auto index : approval.rows()) {
      const auto& item = proposal.row(index).item;
      outcomes.push_back({item.url(), MoveResult::failed, {}, item.fileSize(), error.what()});
    }
    return outcomes;
  }
}

std::vector<std::string> restoreWarnings(const Proposal& proposal, const RunReport& report) {
  std::vector<std::string> result;
  proposal.forEach([&](std::size_t, const ProposedRow& row) {
    if (row.lock == Lock::refused) result.push_back(row.group->refusal);
  });
  for (const auto& outcome : report.outcomes) {
    if (!outcome.error.empty()) result.push_back(outcome.error);
  }
  return result;
}

FileUrl placeToReturnTo(const ProposedRow& row) {
  const auto& folder = *row.destinationFolder();
  return folder.appendingPathComponent(row.newName.empty() ? row.item.url().lastPathComponent() : row.newName);
}

std::vector<RenamedItem> renamedItems(const Proposal& proposal, const RunReport& report) {
  std::vector<RenamedItem> result;
  for (std::size_t at = 0; at < report.outcomes.size(); ++at) {
    const auto& outcome = report.outcomes[at];
    if (outcome.result != MoveResult::moved) continue;
    auto wanted = placeToReturnTo(proposal.row(report.rows[at]));
    // Its folder may be known by another name.
    if (wanted.lastPathComponent() == outcome.destination.lastPathComponent()) continue;
    result.push_back({std::move(wanted), outcome.destination});
  }
  return result;
}

Restored restoreNow(const TaskServices& services, const RestoreOptions& options, const RunProgress& progress,
                    const std::stop_token& stop) {
  try {
    const auto proposal = proposeRestore(services, options);
    const auto report = carryOut(services, proposal.approve(), progress, stop);
    return {report.moved(), restoreWarnings(proposal, report), renamedItems(proposal, report)};
  } catch (const UndoError& error) {
    return {0, {error.what()}, {}};
  }
}

}  // namespace orvane
