#include "core/tasks/ReturnedItems.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/FileStatus.h"
#include "core/base/files/FreeName.h"
#include "core/safety/journal/UndoJournal.h"

#include <algorithm>

namespace orvane {

ReturnedItems::ReturnedItems(UndoJournal& journal, const FileUrl& folder) {
  const auto add = [&](const FileUrl& place) {
    for (const auto& entry : journal.restoredInto(place)) {
      auto& time =
          m_times.try_emplace(std::string(entry.originalURL.lastPathComponent()), entry.timestamp).first->second;
      time = std::max(time, entry.timestamp);
    }
  };
  add(folder);
  if (const FileUrl canonical(canonicalPath(folder.path())); canonical != folder) add(canonical);
}

bool ReturnedItems::holds(const FileUrl& item, const ItemIdentity& identity) const {
  const auto name = item.lastPathComponent();
  auto found = m_times.find(name);
  if (found == m_times.end()) {
    // Where its place was taken it came back under a number.
    const auto original = unnumberedName(name, NumberingStyle::restored);
    if (original) found = m_times.find(*original);
  }
  return found != m_times.end() && identity.modified.date() <= found->second;
}

}  // namespace orvane
