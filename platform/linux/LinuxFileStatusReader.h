#pragma once

#include "core/platform/FileStatusReader.h"

struct statx;

namespace orvane {

// statx(2).
class LinuxFileStatusReader : public FileStatusReader {
 public:
  [[nodiscard]] std::optional<FileStatus> read(int folder, const char* name) const noexcept override;
};

// The creation date is there where it was asked for and the file system keeps one.
[[nodiscard]] FileStatus fileStatusFrom(const struct statx& status) noexcept;

}  // namespace orvane
