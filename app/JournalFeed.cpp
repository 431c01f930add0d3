#include "app/JournalFeed.h"

#include "core/base/CheckedArithmetic.h"
#include "core/safety/UndoJournal.h"

#include <algorithm>
#include <utility>

namespace orvane {
namespace {

constexpr std::string_view journalName = "undo_journal.json";

bool liesInTrash(const JournalEntry& entry) {
  const auto& path = entry.trashedURL.path();
  return path.find("/Trash/files/") != std::string::npos || path.find("/.Trash") != std::string::npos;
}

bool liesInTidyFolder(const JournalEntry& entry) {
  const auto& path = entry.trashedURL.path();
  return path.find("/Recents/") != std::string::npos || path.find("/Sorted/") != std::string::npos;
}

template <typename Predicate>
bool all(const std::vector<JournalEntry>& entries, Predicate predicate) {
  return std::all_of(entries.begin(), entries.end(), predicate);
}

std::string_view runStateKey(const CleanupRunSummary& run, const std::vector<JournalEntry>& entries,
                             std::int64_t remaining) {
  if (run.isRestored || remaining == 0) return "state.restored";
  const bool areMoved = all(entries, [](const auto& entry) { return entry.action != JournalAction::trashed; });
  return areMoved ? "state.moved" : "state.in_trash";
}

JournalContents readJournal(UndoJournal& journal) {
  JournalContents contents;
  for (const auto& summary : journal.getRuns()) {
    const auto entries = journal.getEntries(summary.runId);
    JournalRun run;
    for (const auto& entry : entries) {
      if (entry.action == JournalAction::restored) continue;
      ++run.remaining;
      if (entry.action == JournalAction::trashed) {
        contents.lifetimeReclaimedBytes = checkedAdd(contents.lifetimeReclaimedBytes, entry.fileSize);
      }
    }
    run.kindKey = runKindKey(entries);
    run.stateKey = runStateKey(summary, entries, run.remaining);
    run.summary = summary;
    contents.runs.push_back(run);
  }
  return contents;
}

}  // namespace

std::string_view runKindKey(const std::vector<JournalEntry>& entries) {
  if (all(entries, [](const auto& entry) { return liesInTrash(entry); })) {
    const bool areCopies = all(entries, [](const auto& entry) { return entry.checksum.has_value(); });
    return areCopies ? "run.duplicates" : "run.clean";
  }
  if (all(entries, [](const auto& entry) { return liesInTidyFolder(entry); })) return "run.tidy";
  return std::none_of(entries.begin(), entries.end(), liesInTrash) ? "run.organize" : "run.other";
}

JournalFeed::JournalFeed(WindowServices services, QObject* parent) : QObject(parent), m_services(std::move(services)) {
  connect(&m_watch, &FileWatch::changed, this, &JournalFeed::reload);
  m_queue.post([this](const std::stop_token&) {
    const auto folder = m_services.journal().storageFolder();
    callOn(this, [this, folder] { m_watch.watch(folder + "/" + std::string(journalName)); });
  });
  reload();
}

void JournalFeed::reload() {
  m_queue.post([this](const std::stop_token&) { load(); });
}

void JournalFeed::load() {
  auto& journal = m_services.journal();
  auto contents = std::make_shared<const JournalContents>(readJournal(journal));
  auto lines = journal.takeNotices();
  callOn(this, [this, contents = std::move(contents), lines = std::move(lines)] {
    m_contents = contents;
    Q_EMIT loaded();
    if (!lines.empty()) Q_EMIT noticed(lines);
  });
}

}  // namespace orvane
