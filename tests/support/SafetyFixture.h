#pragma once

#include "core/base/files/PathAccess.h"
#include "core/safety/journal/RunLog.h"
#include "core/safety/journal/UndoJournal.h"
#include "core/safety/rules/PathValidator.h"
#include "core/safety/run/CleanupRun.h"
#include "core/safety/run/TrashMover.h"
#include "platform/linux/LinuxFileMover.h"
#include "platform/linux/LinuxTrash.h"
#include "tests/support/TemporaryTree.h"

namespace orvane::test {

// A home of its own with the real Trash, mover and journal in it. Files lie in ~/Downloads, the one allowed root.
class SafetyFixture : public testing::Test {
 public:
  SafetyFixture() : validator(tree.path()), trash(trashPath()) {
    tree.folder("Downloads");
    reopenJournal();
  }

  // As the next start of the program does.
  void reopenJournal() {
    journal = std::make_unique<UndoJournal>(trash, fileMover, validator, FileUrl(journalFolder()));
  }

  [[nodiscard]] std::string trashPath() const { return tree.path(".local/share/Trash"); }
  [[nodiscard]] std::string journalFolder() const { return tree.path("State"); }
  [[nodiscard]] std::string journalPath() const { return tree.path("State/undo_journal.json"); }
  [[nodiscard]] std::string recordOf(const FileUrl& trashed) const {
    return trashPath() + "/info/" + std::string(trashed.lastPathComponent()) + ".trashinfo";
  }
  [[nodiscard]] Boundary roots() const { return Boundary({tree.url("Downloads")}); }

  [[nodiscard]] static MoveRequest request(const std::string& path, std::int64_t size = 7) {
    MoveRequest result;
    result.source = FileUrl(path);
    result.fileSize = size;
    return result;
  }
  [[nodiscard]] static std::vector<MoveRequest> requests(const std::vector<std::string>& paths) {
    std::vector<MoveRequest> result;
    for (const auto& path : paths) result.push_back(request(path));
    return result;
  }

  // One run over the paths.
  std::vector<MoveOutcome> clean(const std::vector<std::string>& paths) {
    CleanupRun run(mover, *journal, roots());
    lastRun = run.id();
    return run.carryOut(requests(paths));
  }

  // To move what lies at a place, as a run writes it into its log first.
  [[nodiscard]] static MoveIntent intentFor(const JournalEntry& entry, const FileUrl& from, const FileUrl& to) {
    MoveIntent intent;
    intent.entry = entry;
    intent.source = from;
    intent.destination = to;
    intent.identity = ItemIdentity::of(readPathStatus(from.path()).value());
    return intent;
  }
  // To bring an item back.
  [[nodiscard]] static MoveIntent intentToRestore(const JournalEntry& entry) {
    auto intent = intentFor(entry, entry.trashedURL, entry.originalURL);
    intent.entry.action = JournalAction::restored;
    return intent;
  }
  // The log of a run that dies.
  void leaveLog(const std::vector<MoveIntent>& intents, const Uuid& run = Uuid::random()) const {
    RunLog log(journalFolder(), run);
    for (const auto& intent : intents) log.appendIntent(intent);
    log.sync();
  }

  // One entry of the last run.
  RestoreResult restoreOne(const Uuid& entry) {
    return journal->restoreEntries(lastRun, std::vector{RestoreRequest{entry, {}}});
  }

  TemporaryTree tree;
  PathValidator validator;
  LinuxTrash trash;
  LinuxFileMover fileMover;
  TrashMover mover{trash, fileMover, validator};
  std::unique_ptr<UndoJournal> journal;
  Uuid lastRun;
};

}  // namespace orvane::test
