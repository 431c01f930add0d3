#include "core/scanning/walk/ListingChunk.h"

#include "core/base/values/CheckedArithmetic.h"

#include <utility>

namespace orvane {

void ListingChunk::digest(const std::function<void(std::vector<ScanEvent>&)>& by) {
  Digested sums;
  for (const auto& event : events) sums.bytes = checkedAdd(sums.bytes, std::get<FileItem>(event).fileSize());
  sums.items = static_cast<std::int64_t>(events.size());
  if (!others.empty() && others.back().position + 1 == examined) {
    sums.lastName = std::move(others.back().name);
  } else if (!events.empty()) {
    sums.lastName = std::get<FileItem>(events.back()).url().lastPathComponent();
  }
  digested = std::move(sums);
  // Memory is given back here and not by the reader, another thread.
  std::vector<Other>().swap(others);
  if (!events.empty()) by(events);
}

}  // namespace orvane
