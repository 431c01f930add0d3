#include "app/MovedItems.h"

#include "core/base/FileStatus.h"
#include "core/base/PathText.h"
#include "core/safety/UndoJournal.h"

#include <string>
#include <string_view>
#include <unordered_set>

namespace orvane {
namespace {

// Where the items of those runs came from. A run that was brought back tells of items that are there again.
std::vector<std::string> originsSince(UndoJournal& journal, Date since) {
  std::vector<std::string> origins;
  for (const auto& run : journal.getRuns()) {
    for (const auto& entry : journal.getEntries(run.runId)) {
      if (entry.timestamp >= since) origins.push_back(entry.originalURL.path());
    }
  }
  return origins;
}

// Whether the item moved, or a folder that it lies in.
bool isAmong(const std::unordered_set<std::string_view>& origins, std::string_view path) {
  while (path.size() > 1) {
    if (origins.contains(path)) return true;
    path = parentPath(path);
  }
  return false;
}

}  // namespace

MovedItems movedSince(UndoJournal& journal, const ScannedItems::Snapshot& scanned, Date since) {
  MovedItems moved;
  const auto origins = originsSince(journal, since);
  if (origins.empty()) return moved;
  const std::unordered_set<std::string_view> lookup(origins.begin(), origins.end());
  scanned.items.forEach([&](std::size_t index, const FileItem& item) {
    const auto& path = item.url().path();
    if (!isAmong(lookup, path)) return true;
    const bool isThere = itemExists(path.c_str());
    const bool wasThere = scanned.gone[index] == 0;
    if (isThere != wasThere) (isThere ? moved.back : moved.gone).push_back(static_cast<std::uint32_t>(index));
    return true;
  });
  return moved;
}

}  // namespace orvane
