#include "app/MovedItems.h"

#include "core/base/FileStatus.h"
#include "core/base/PathText.h"
#include "core/safety/UndoJournal.h"

#include <string>
#include <string_view>
#include <unordered_set>

namespace orvane {
namespace {

using Paths = std::unordered_set<std::string>;

// Where the items of those runs came from. A run that was brought back tells of items that are there again.
Paths originsSince(UndoJournal& journal, Date since) {
  Paths origins;
  for (const auto& run : journal.getRuns()) {
    for (const auto& entry : journal.getEntries(run.runId)) {
      if (entry.timestamp >= since) origins.insert(entry.originalURL.path());
    }
  }
  return origins;
}

// Whether the item moved, or a folder that it lies in.
bool isAmong(const Paths& origins, std::string_view path) {
  while (path.size() > 1) {
    if (origins.contains(std::string(path))) return true;
    path = parentPath(path);
  }
  return false;
}

}  // namespace

MovedItems movedSince(UndoJournal& journal, const ScannedItems::Snapshot& scanned, Date since) {
  MovedItems moved;
  const auto origins = originsSince(journal, since);
  if (origins.empty()) return moved;
  scanned.items.forEach([&](std::size_t index, const FileItem& item) {
    const auto& path = item.url().path();
    if (!isAmong(origins, path)) return true;
    const bool isThere = itemExists(path.c_str());
    const bool wasThere = scanned.gone[index] == 0;
    if (isThere != wasThere) (isThere ? moved.back : moved.gone).push_back(static_cast<std::uint32_t>(index));
    return true;
  });
  return moved;
}

}  // namespace orvane
