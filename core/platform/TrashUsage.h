#pragma once

#include "core/base/values/Date.h"

#include <cstdint>
#include <optional>
#include <stop_token>

namespace orvane {

// The content of all Trash folders of the user, whoever put it there.
class TrashUsage {
 public:
  virtual ~TrashUsage() = default;

  struct Totals {
    std::int64_t count = 0;  // items, a folder being one
    std::int64_t bytes = 0;  // of the files in them
    // When the one that lies there longest went there; absent where nothing tells.
    std::optional<Date> oldest = {};
    std::int64_t unansweredDisks = 0;  // took too long, as a network's do that is gone, and are not counted
    bool operator==(const Totals&) const = default;
  };
  // Looks at every item, so it may take long, but waits for no disk that does not answer. Unreadable ones add nothing.
  // Without meaning once a stop is requested.
  [[nodiscard]] virtual Totals read(const std::stop_token& /*stop*/ = {}) const { return {}; }

  [[nodiscard]] static const TrashUsage& none() noexcept {
    static const TrashUsage nothing;
    return nothing;
  }
};

}  // namespace orvane
