#pragma once

#include "core/base/files/FileLock.h"
#include "core/base/files/FileStatus.h"
#include "core/safety/journal/JournalModel.h"

#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace orvane {

// The journal file on the disk, shared by several processes. Not safe for several threads at once.
class JournalStore {
 public:
  // Removes what a writer that died left in the folder.
  explicit JournalStore(std::string folder);

  [[nodiscard]] const std::string& folder() const noexcept { return m_folder; }
  // Size of the file as it was last read or written, in bytes.
  [[nodiscard]] std::int64_t fileSize() const noexcept { return m_fileSize; }

  // Takes into `model` what another process wrote since the last call. A file that cannot be read, or does not decode,
  // leaves the model as it is.
  void refresh(JournalModel& model);
  // Why the file could not be read at the last look; it may be whole, so nothing is saved over it. A file that was read
  // and does not decode is no such problem: it is set aside.
  [[nodiscard]] const std::optional<std::error_code>& problem() const noexcept { return m_problem; }
  // Writes the model, with what another process wrote meanwhile taken in first. False when the disk refuses; the model
  // then is the only copy of what is new.
  [[nodiscard]] bool save(JournalModel& model);

  // The faults since the last call, one line each.
  [[nodiscard]] std::vector<std::string> takeNotices();

 private:
  [[nodiscard]] std::string lockPath() const;
  // Throws LockTimeout and std::system_error.
  [[nodiscard]] FileLock lock();
  // Throws JsonError for what was read whole and is no journal, anything else for what could not be read.
  void read(JournalModel& model);
  void noteProblem(std::error_code problem);
  void setAsideIfDamaged();
  void note(std::string line);

  std::string m_folder;
  std::string m_path;
  std::optional<ItemIdentity> m_lastSeen;
  std::int64_t m_fileSize = 0;
  // Identity of a file that did not decode, until it is out of the way.
  std::optional<ItemIdentity> m_damaged;
  std::optional<std::error_code> m_problem;
  // Nobody waits again for a lock that somebody keeps.
  bool m_isLockKept = false;
  std::vector<std::string> m_notices;
};

}  // namespace orvane
