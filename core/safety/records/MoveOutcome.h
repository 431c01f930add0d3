#pragma once

#include "core/base/files/FileUrl.h"

#include <cstdint>
#include <functional>
#include <string>

namespace orvane {

enum class MoveResult : std::uint8_t {
  moved,
  refused,    // by the path validator
  missing,    // nothing at the source
  changed,    // another item than the one that was approved, or it was written to since
  failed,     // the system refused
  cancelled,  // not tried: the run was stopped
};

// The outcome of one requested move.
struct MoveOutcome {
  FileUrl source;
  MoveResult result = MoveResult::cancelled;
  FileUrl destination;  // when moved
  std::int64_t fileSize = 0;
  std::string error;  // why not, when not moved
};

// Called with the number of items settled so far, from the thread that moves them.
using RunProgress = std::function<void(std::size_t done, std::size_t total)>;

}  // namespace orvane
