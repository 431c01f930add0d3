#pragma once

#include "core/base/files/FileUrl.h"

#include <cstdint>
#include <optional>

namespace orvane {

struct VolumeCapacity {
  std::int64_t totalBytes = 0;
  std::int64_t availableBytes = 0;  // to this user
};

class Volume {
 public:
  virtual ~Volume() = default;
  // Of the volume that holds `location`; absent where the system does not tell.
  [[nodiscard]] virtual std::optional<VolumeCapacity> capacity(const FileUrl& location) const = 0;
};

}  // namespace orvane
