#pragma once

#include "core/scanning/walk/ListingChunk.h"

#include <memory>
#include <vector>

namespace orvane {

// The result of the scan of one folder, bit by bit.
struct ScanListing {
  std::vector<ListingChunk> chunks;
  // The folders to go through after this one, in order; valid once complete.
  std::vector<std::unique_ptr<ScanListing>> subfolders;
  bool isComplete = false;
};

}  // namespace orvane
