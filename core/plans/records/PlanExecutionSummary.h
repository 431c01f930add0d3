#pragma once

#include "core/base/text/JsonFwd.h"
#include "core/base/values/Date.h"
#include "core/base/values/Uuid.h"

#include <cstdint>

namespace orvane {

// The result of a plan, an organizing batch or a set of rules.
struct PlanExecutionSummary {
  Uuid batchId = {};                // the run identifier that all its journal entries share
  std::int64_t itemsProcessed = 0;  // files actually trashed or moved
  std::int64_t bytesReclaimed = 0;  // of the files that went to the Trash
  Date timestamp = ReferenceClock::now();

  bool operator==(const PlanExecutionSummary&) const = default;

  // Keys in field order.
  [[nodiscard]] Json toJson() const;
};

}  // namespace orvane
