#include "core/safety/run/RunRecovery.h"

#include "core/base/files/PathAccess.h"
#include "core/base/text/UnicodeText.h"
#include "core/platform/FileMover.h"
#include "core/platform/Trash.h"

#include <fmt/format.h>

#include <algorithm>

namespace orvane {
namespace {

// Whether the item of an intent is at a place.
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
  return presenceAt(place.path()) == Presence::unreachable ? Finding::unreachable : Finding::nothing;
}

std::string describe(const MoveIntent& intent, std::string_view what) {
  return fmt::format("An interrupted run was moving '{}' to '{}': {}", escapedForDisplay(intent.source.path()),
                     escapedForDisplay(intent.destination.path()), what);
}

class Settlement {
 public:
  Settlement(const OtherRuns& others, Trash& trash, FileMover& mover)
      : m_others(others), m_trash(trash), m_mover(mover) {}

  void settle(const LoggedIntent& logged) {
    const auto& intent = logged.intent;
    const bool isAnothers = !logged.done && m_others.claims(intent.destination, intent.entry.id);
    auto atDestination = lookAt(intent.destination, intent, intent.partial.has_value());
    if (atDestination == Finding::there && !logged.done && !isAnothers && isUnderBothNames(intent)) {
      if (!m_mover.undoLink(intent.source, intent.destination, intent.identity.inode)) {
        worsen(SettledRun::Log::pending);
        return;
      }
      atDestination = Finding::nothing;
    }
    // A logged "done" counts as moved, even if the item has since changed or vanished.
    if (logged.done || (atDestination == Finding::there && !isAnothers)) {
      m_result.entries.push_back(intent.entry);
      if (intent.settles) m_result.entries.push_back(*intent.settles);
      if (intent.entry.action == JournalAction::restored) {
        forgetInTrash(intent);
      } else {
        m_result.records.push_back(intent.record());
      }
      discardPartial(intent);
      return;
    }
    if (intent.entry.action == JournalAction::restored && cameBackAndLeft(intent)) {
      m_result.entries.push_back(intent.entry);
      if (intent.settles) m_result.entries.push_back(*intent.settles);
      forgetInTrash(intent);
      discardPartial(intent);
      return;
    }
    const auto atSource = lookAt(intent.source, intent, false);
    if (atSource == Finding::there || isElsewhere(intent)) {
      if (isAnothers) return;
      if (intent.isLocked && atSource == Finding::there) m_trash.setImmutableFlag(intent.source);
      takeBack(intent);
    } else if (atSource == Finding::unreachable || atDestination == Finding::unreachable) {
      m_result.notices.push_back(describe(intent, "its folder cannot be looked at now; this is tried again later."));
      worsen(SettledRun::Log::pending);
    } else {
      m_result.notices.push_back(
          describe(intent, "it is in neither place any more, or has changed. Nothing was touched."));
      worsen(SettledRun::Log::unclear);
    }
  }

  [[nodiscard]] SettledRun result() && { return std::move(m_result); }

 private:
  // Whether the item of a restore came home, by this run or another, and was taken from there since.
  [[nodiscard]] bool cameBackAndLeft(const MoveIntent& intent) const {
    const auto& entry = intent.entry.id;
    const auto& recorded = m_others.recorded();
    if (recorded.isRestored(entry) || recorded.isOfAnother(intent.source, entry)) return true;
    return std::ranges::any_of(m_others.placesOf(intent.destination), [&](const FileUrl& place) {
      return place != intent.source && lookAt(place, intent, false) == Finding::there;
    });
  }

  // Whether another run has taken the item.
  [[nodiscard]] bool isElsewhere(const MoveIntent& intent) const {
    return std::ranges::any_of(m_others.placesOf(intent.source),
                               [&](const FileUrl& place) { return lookAt(place, intent, false) == Finding::there; });
  }

  // The item never went: nothing of its way may stay.
  void takeBack(const MoveIntent& intent) {
    const bool hasRecord = intent.entry.action == JournalAction::trashed;
    if (hasRecord && !(isInReach(intent.destination) && m_trash.takeBackRecord(intent.destination, intent.source))) {
      worsen(SettledRun::Log::pending);
    }
    discardPartial(intent);
  }

  // Where renames are made of a link and an unlink, a kill in between leaves both.
  static bool isUnderBothNames(const MoveIntent& intent) {
    if (intent.partial) return false;
    const auto destination = readPathStatus(intent.destination.path());
    const auto source = readPathStatus(intent.source.path());
    return source && destination && source->type != FileType::directory && source->device == destination->device &&
           source->inode == destination->inode;
  }

  void discardPartial(const MoveIntent& intent) {
    if (!intent.partial) return;
    const auto folder = intent.partial->deletingLastPathComponent();
    const bool isReachable = presenceAt(folder.path()) != Presence::unreachable;
    if (!isReachable || !m_mover.discardPartial(*intent.partial)) worsen(SettledRun::Log::pending);
  }

  // The Trash folder itself stands two levels above its items.
  static bool isInReach(const FileUrl& trashed) {
    const auto trashFolder = trashed.deletingLastPathComponent().deletingLastPathComponent();
    return presenceAt(trashFolder.path()) != Presence::unreachable;
  }

  // The item of a restore left the Trash: its record may have stayed. Where a living run wants the name, the record may
  // be that run's, written before its item arrives.
  void forgetInTrash(const MoveIntent& intent) {
    const auto& trashed = intent.source;
    const bool isSettled =
        !m_others.areMovingTo(trashed, intent.entry.id) && isInReach(trashed) && m_trash.forget(trashed);
    if (!isSettled) worsen(SettledRun::Log::pending);
  }

  void worsen(SettledRun::Log log) { m_result.log = std::max(m_result.log, log); }

  const OtherRuns& m_others;
  Trash& m_trash;
  FileMover& m_mover;
  SettledRun m_result;
};

}  // namespace

void OtherRuns::add(std::span<const LoggedIntent> log, State state) {
  for (const auto& [intent, done] : log) {
    if (done || state == State::alive) m_claimed.insert(intent.destination);
    if (state == State::alive) m_arriving.emplace(intent.destination, intent.entry.id);
    m_places.emplace(intent.source, intent.destination);
  }
}

bool OtherRuns::areMovingTo(const FileUrl& place, const Uuid& entry) const {
  const auto [first, last] = m_arriving.equal_range(place);
  return std::any_of(first, last, [&](const auto& arriving) { return arriving.second != entry; });
}

std::vector<FileUrl> OtherRuns::placesOf(const FileUrl& source) const {
  auto places = m_recorded.placesOf(source);
  const auto [first, last] = m_places.equal_range(source);
  for (auto place = first; place != last; ++place) places.push_back(place->second);
  return places;
}

SettledRun settleRunLog(std::span<const LoggedIntent> log, const OtherRuns& others, Trash& trash, FileMover& mover) {
  Settlement settlement(others, trash, mover);
  for (const auto& logged : log) settlement.settle(logged);
  return std::move(settlement).result();
}

}  // namespace orvane
