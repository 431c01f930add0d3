#include "core/safety/RunRecovery.h"

#include "core/base/PathAccess.h"
#include "core/base/UnicodeText.h"
#include "core/platform/FileMover.h"
#include "core/platform/Trash.h"
#include "core/safety/RunLog.h"

#include <fmt/format.h>

#include <cerrno>

namespace orvane {
namespace {

enum class Finding { there, another, nothing, unreachable };

// Devices are numbered anew at every start of the system, so a device number tells nothing here. Nor do size and time
// of an item that was renamed: whoever had it open may have gone on writing.
bool isSameItem(const FileStatus& status, const MoveIntent& intent, bool copied) {
  if (!copied) return status.inode == intent.identity.inode;
  // A folder's own size is the file system's affair.
  const bool sameSize = status.type == FileType::directory || status.size == intent.identity.size;
  return sameSize && status.modified == intent.identity.modified;
}

Finding lookAt(const FileUrl& place, const MoveIntent& intent, bool copied) {
  if (const auto status = readPathStatus(place.path())) {
    return isSameItem(*status, intent, copied) ? Finding::there : Finding::another;
  }
  if (errno != ENOENT && errno != ENOTDIR) return Finding::unreachable;
  // A folder that is gone as well speaks of a volume that is not mounted.
  return readPathStatus(place.deletingLastPathComponent().path()) ? Finding::nothing : Finding::unreachable;
}

std::string describe(const MoveIntent& intent, std::string_view what) {
  return fmt::format("An interrupted run was moving '{}' to '{}': {}", escapedForDisplay(intent.source.path()),
                     escapedForDisplay(intent.destination.path()), what);
}

}  // namespace

SettledRun settleRunLog(std::string_view logText, Trash& trash, FileMover& mover) {
  SettledRun result;
  const auto worsen = [&](SettledRun::Log log) { result.log = std::max(result.log, log); };
  for (const auto& [intent, done] : readRunLog(logText)) {
    const auto atDestination = lookAt(intent.destination, intent, intent.partial.has_value());
    // What was done and has changed or gone since was moved all the same.
    if (done || atDestination == Finding::there) {
      result.entries.push_back(intent.entry);
      if (intent.entry.action == JournalAction::restored) trash.forget(intent.source);
      continue;
    }
    const auto atSource = lookAt(intent.source, intent, false);
    if (atSource == Finding::there) {
      const bool recordedInTrash = intent.entry.action == JournalAction::trashed && atDestination == Finding::nothing;
      if (recordedInTrash && trash.mayHold(intent.destination, intent.source)) trash.forget(intent.destination);
      if (intent.partial) mover.discardPartial(*intent.partial);
      continue;
    }
    if (atSource == Finding::unreachable || atDestination == Finding::unreachable) {
      result.notices.push_back(describe(intent, "its folder cannot be looked at now; this is tried again later."));
      worsen(SettledRun::Log::pending);
    } else {
      result.notices.push_back(
          describe(intent, "it is in neither place any more, or has changed. Nothing was touched."));
      worsen(SettledRun::Log::unclear);
    }
  }
  return result;
}

}  // namespace orvane
