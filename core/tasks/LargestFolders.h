#pragma once

#include "core/base/files/FileUrl.h"

#include <cstddef>
#include <cstdint>
#include <stop_token>
#include <vector>

namespace orvane {

struct FolderSum {
  FileUrl folder;
  std::int64_t bytes = 0;
};
// The folders right inside one, hidden ones too, the largest first, with the bytes of all files in them. Links are left
// out, and so are folders that hold nothing.
[[nodiscard]] std::vector<FolderSum> largestFolders(const FileUrl& folder, std::size_t count,
                                                    const std::stop_token& stop = {});

}  // namespace orvane
