#pragma once

#include "core/scanning/scan/ScanContext.h"
#include "core/scanning/scan/StorageScanner.h"

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

namespace orvane {

// One running scan. Threads list folders into the board; whoever reads the stream puts what they found in the order
// of one walk and counts it, so that the reader's own pace holds nothing up.
class ScanStream::Walk {
 public:
  Walk(const PathValidator& validator, const FileStatusReader& statusReader, std::vector<FileUrl> folders,
       DeveloperCaches developerCaches, ScanDigest digest);
  ~Walk();

  [[nodiscard]] std::vector<ScanEvent> nextBatch();
  void cancel() noexcept;

 private:
  // The chunk's findings, with a progress event after every hundredth entry of the walk.
  [[nodiscard]] std::vector<ScanEvent> eventsOf(ListingChunk chunk);
  // Those that a digest left, behind a progress event for every hundredth entry.
  [[nodiscard]] std::vector<ScanEvent> digestedEvents(ListingChunk chunk, std::int64_t before);
  void count(const ScanEvent& event);

  std::vector<FileUrl> m_folders;
  ScanContext m_context;
  std::deque<ListingChunk> m_ready;
  std::int64_t m_examined = 0;
  std::int64_t m_itemsFound = 0;
  std::int64_t m_bytesFound = 0;
  bool m_hasThreads = false;
  bool m_isEnded = false;
};

}  // namespace orvane
