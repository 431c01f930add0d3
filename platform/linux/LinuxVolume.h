#pragma once

#include "core/platform/Volume.h"

namespace orvane {

// statvfs(3).
class LinuxVolume : public Volume {
 public:
  [[nodiscard]] std::optional<VolumeCapacity> capacity(const FileUrl& location) const override;
};

}  // namespace orvane
