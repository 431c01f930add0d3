#pragma once

#include "core/platform/FileStatusReader.h"

namespace orvane {

// statx(2).
class LinuxFileStatusReader : public FileStatusReader {
 public:
  [[nodiscard]] std::optional<FileStatus> read(int folder, const char* name) const noexcept override;
};

}  // namespace orvane
