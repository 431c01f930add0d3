#pragma once

#include "core/platform/SystemProfile.h"

namespace orvane {

class LinuxProfile : public SystemProfile {
 public:
  [[nodiscard]] std::span<const FileKind> fileKinds() const noexcept override;
  // By the Filesystem Hierarchy Standard, but for places that hold homes or users' disks on some systems.
  [[nodiscard]] std::span<const std::string_view> systemFolders() const noexcept override;
};

}  // namespace orvane
