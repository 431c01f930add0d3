#pragma once

#include "core/base/text/JsonFwd.h"
#include "core/base/values/Uuid.h"

#include <cstdint>
#include <vector>

namespace orvane {

// The moves of one run of the automatic organizer.
struct AutoOrganizeResult {
  std::int64_t movedToRecents = 0;
  std::int64_t sorted = 0;
  std::vector<Uuid> batchIDs;  // run identifiers, one for each folder in which something moved

  [[nodiscard]] std::int64_t totalMoved() const;
  bool operator==(const AutoOrganizeResult&) const = default;

  // Keys in field order.
  [[nodiscard]] Json toJson() const;
};

}  // namespace orvane
