#pragma once

#include "core/base/values/Uuid.h"
#include "core/platform/PendingMove.h"
#include "core/safety/records/JournalEntry.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace orvane {

class RunLog;

// One item of a batch: how it moves, and what the journal is to say of it.
struct BatchItem {
  std::unique_ptr<PendingMove> move;
  JournalEntry entry;

  enum class State : std::uint8_t { planned, moved, failed, cancelled };
  State state = State::planned;
  std::string error;                // when failed
  std::function<void()> lastCheck;  // right before the move; what it throws leaves the item where it is
  // The state that another entry has once the item has moved.
  std::optional<JournalEntry> settles = std::nullopt;
};

// Most items that one batch takes: it holds up to two descriptors for each.
constexpr std::size_t maxBatchSize = 512;

// Moves a group of items so that after a crash or a power cut at any instant each of them is whole in one place and the
// log tells which: intents durable; the Trash's own records durable; renames; folders durable; "done" durable. An item
// that fails is left where it was and the others go on.
//
// Returns false when the disk refused to make something durable. Then items may have moved without "done" in the log,
// nothing more may be moved under this log, and the log must stay for the next start to settle.
[[nodiscard]] bool carryOutBatch(std::span<BatchItem> items, RunLog& log, std::stop_token stop = {});

}  // namespace orvane
