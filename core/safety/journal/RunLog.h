#pragma once

#include "core/base/files/FileLock.h"
#include "core/base/files/FileStatus.h"
#include "core/base/files/FileUrl.h"
#include "core/base/values/Uuid.h"
#include "core/safety/journal/ItemRecords.h"
#include "core/safety/records/JournalEntry.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// The move that a run is about to make of one item. `entry` is what the journal is to say once the item is at
// `destination`.
struct MoveIntent {
  JournalEntry entry;
  FileUrl source;  // canonical folder and name
  FileUrl destination;
  ItemIdentity identity;
  // Where the item's copy grows when it goes to another volume: what arrives has another identity, but this size and
  // modification time. Absent for a plain move.
  std::optional<FileUrl> partial;
  // The state that another entry has once the item is at `destination`.
  std::optional<JournalEntry> settles;
  bool isLocked = false;  // as PendingMove has it

  // The facts about the item that the journal keeps beside the entry.
  [[nodiscard]] ItemRecord record() const;
};

// The log of one run beside the journal: one JSON object a line, appended and made durable before and after items move,
// so that the journal can always be completed. Locked for as long as this object lives; a log that nobody locks
// belongs to a process that died.
class RunLog {
 public:
  // Makes the log of a run in the folder. Throws std::system_error; LockTimeout where lockMoves() does.
  RunLog(const std::string& folder, const Uuid& runId);
  ~RunLog();
  RunLog(const RunLog&) = delete;
  RunLog& operator=(const RunLog&) = delete;

  void appendIntent(const MoveIntent& intent);
  void appendDone(std::span<const Uuid> entryIds);
  // Writes what was appended and makes it durable. Throws SyncError; nothing may move after that.
  void sync();

  // The facts to keep beside the journal about the items whose intents were appended since the last call.
  [[nodiscard]] std::vector<ItemRecord> takeRecords();

  // Every run shares this lock while it announces moves and makes them. Throws LockTimeout while a process that settles
  // dead runs keeps it for too long, std::system_error.
  [[nodiscard]] FileLock lockMoves() const;
  // For who settles them: waits for all moves that are under way in any process, and holds up others. The same errors.
  [[nodiscard]] static FileLock lockOutMoves(const std::string& folder);

  [[nodiscard]] std::int64_t size() const noexcept { return m_size; }
  // The journal file holds everything that the log holds. A failure only means that the log is read once more.
  void clear() noexcept;
  void remove() noexcept;
  // From now on these two do nothing: there is something left that the next start has to tidy.
  void keep() noexcept { m_isKept = true; }

  // File name of the log of a run, and the run of such a name.
  [[nodiscard]] static std::string fileName(const Uuid& runId);
  [[nodiscard]] static std::optional<Uuid> runOf(std::string_view fileName);
  // Ends the name of a log that is not locked yet.
  static constexpr std::string_view unlockedSuffix = ".log.new";

 private:
  int tryToMake();

  std::string m_folder;
  std::string m_path;
  std::optional<FileLock> m_lock;
  std::string m_unwritten;
  std::int64_t m_size = 0;
  bool m_isKept = false;
  std::vector<ItemRecord> m_records;
};

// A log as it was found: the intents in order, the last of each entry, with whether each is known to be done. A last
// line that was cut short by a crash is left out: what it announced had not begun.
struct LoggedIntent {
  MoveIntent intent;
  bool done = false;
};
[[nodiscard]] std::vector<LoggedIntent> readRunLog(std::string_view text);

}  // namespace orvane
