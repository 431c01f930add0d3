#pragma once

#include "core/base/files/FileStatus.h"
#include "core/base/files/FileUrl.h"
#include "core/base/values/Date.h"
#include "core/base/values/Uuid.h"
#include "core/safety/records/Boundary.h"
#include "core/safety/records/JournalEntry.h"
#include "core/safety/records/MoveOutcome.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace orvane {

class RunLog;
class TrashMover;
class UndoJournal;

// One item to move.
struct MoveRequest {
  FileUrl source;
  std::int64_t fileSize = 0;            // bytes, as the journal is to show them
  std::optional<std::string> checksum;  // content digest, when the caller has one
  // The folder that the item goes into, created where it is missing; the Trash when absent.
  std::optional<FileUrl> destinationFolder;
  // Of the item that was approved, which alone may move: not another one that has its name by now.
  std::optional<ItemIdentity> expectedIdentity;
  // When the journal is to say that it happened; the time of the move when absent.
  std::optional<Date> timestamp;
  // A last look, taken right before the item moves, when everything else is ready; what std::runtime_error it throws
  // says why the item is left alone. For what may change between the approval and the move.
  std::function<void()> lastCheck;
};

// One user action. Everything it moves shares one run identifier and comes back together.
class CleanupRun {
 public:
  using Progress = RunProgress;

  CleanupRun(TrashMover& mover, UndoJournal& journal, Boundary roots);
  [[nodiscard]] const Uuid& id() const noexcept { return m_id; }

  // Validates, moves and journals each request in order. One that fails is reported and the rest go on. Outcomes are in
  // the order of the requests. Throws nothing for what the disk does: when nothing can be journalled, nothing is moved
  // and every outcome says so.
  std::vector<MoveOutcome> carryOut(std::span<const MoveRequest> requests, const Progress& progress = {},
                                    std::stop_token stop = {});

 private:
  // False when the disk refused to make the moves durable: nothing more may be moved under this log.
  bool carryOutGroup(std::span<const MoveRequest> requests, std::span<MoveOutcome> outcomes, RunLog& log,
                     const std::stop_token& stop);

  TrashMover& m_mover;
  UndoJournal& m_journal;
  Boundary m_roots;
  Uuid m_id = Uuid::random();
};

}  // namespace orvane
