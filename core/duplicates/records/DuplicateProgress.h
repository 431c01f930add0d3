#pragma once

#include <cstdint>

namespace orvane {

// How far a search for duplicates is.
struct DuplicateProgress {
  enum class Stage : std::uint8_t { listing, comparingBeginnings, comparingContents };

  Stage stage = Stage::listing;
  std::int64_t filesFound = 0;  // while listing; then of all
  std::int64_t filesLeft = 0;   // of the stage; none while listing
  std::int64_t bytesLeft = 0;   // of these files, as much as may have to be read
};

}  // namespace orvane
