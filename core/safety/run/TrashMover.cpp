#include "core/safety/run/TrashMover.h"

#include "core/base/files/AtomicFile.h"
#include "core/base/files/CanonicalPath.h"
#include "core/base/files/FreeName.h"
#include "core/base/files/PathText.h"
#include "core/platform/FileMover.h"
#include "core/platform/SyncError.h"
#include "core/platform/Trash.h"
#include "core/safety/rules/FolderLookups.h"
#include "core/safety/rules/PathValidator.h"

#include <system_error>
#include <utility>

namespace orvane {

namespace {

std::string placeOf(const FileUrl& url, FolderLookups& lookups) {
  const auto& path = url.path();
  const auto name = lastComponent(path);
  if (!path.starts_with('/') || name.empty() || name == "." || name == "..") return canonicalPlace(path);
  return joinPath(lookups.canonical(parentPath(path)), name);
}

// The folder from which on no link may be followed on the way to an item.
std::string boundaryOf(const std::string& place, const Boundary& roots) {
  for (const auto& root : roots.canonicalPaths()) {
    if (place == root) return std::string(parentPath(root));
    if (isSameOrInside(place, root)) return root;
  }
  return "/";
}

// Passes on what a plan throws as a TrashError.
template <typename Plan>
auto planned(Plan plan) {
  try {
    return plan();
  } catch (const SecurityError& error) {
    throw TrashError(TrashError::PathValidationFailed{error.what()});
  } catch (const TrashError&) {
    throw;
  } catch (const std::runtime_error& error) {
    throw TrashError(TrashError::UnderlyingError{error.what()});
  }
}

}  // namespace

TrashMover::TrashMover(Trash& trash, FileMover& mover, const PathValidator& validator)
    : m_trash(trash), m_mover(mover), m_validator(validator) {}

std::unique_ptr<HeldItem> TrashMover::held(const FileUrl& url, const Boundary& allowedRoots,
                                           FolderLookups& lookups) const {
  const FileUrl place(placeOf(url, lookups));
  auto refusal = m_validator.checkCanonical(place.path(), allowedRoots);
  if (refusal || PathValidator::hasTraversal(url.path())) m_validator.validate(url, allowedRoots);
  if (refusal) throw SecurityError(*std::move(refusal));
  std::unique_ptr<HeldItem> item;
  try {
    item = m_mover.hold(place, boundaryOf(place.path(), allowedRoots));
  } catch (const std::system_error& error) {
    m_validator.validate(url, allowedRoots);
    const bool isMissing =
        error.code() == std::errc::no_such_file_or_directory || error.code() == std::errc::not_a_directory;
    if (isMissing) throw TrashError(TrashError::FileNotFound{url.path()});
    throw;
  }
  // The canonical path of an item that is no link is its place, which is allowed. The item that moves is the link, so
  // both its own place and what it points to must be.
  if (item->status().type == FileType::symbolicLink) m_validator.validate(url, allowedRoots);
  return item;
}

std::unique_ptr<PendingMove> TrashMover::planTrash(const FileUrl& url, const Boundary& allowedRoots,
                                                   FolderLookups& lookups) {
  const std::lock_guard lock(m_mutex);
  return planned([&] { return m_trash.planTrash(held(url, allowedRoots, lookups)); });
}

std::unique_ptr<PendingMove> TrashMover::planMove(const FileUrl& url, const Boundary& allowedRoots,
                                                  const FileUrl& destinationFolder,
                                                  const std::function<bool(const FileUrl&)>& isPromised,
                                                  FolderLookups& lookups) {
  const std::lock_guard lock(m_mutex);
  return planned([&] {
    auto item = held(url, allowedRoots, lookups);
    const FileUrl folder(lookups.destination(destinationFolder, [&](const FileUrl& wanted) {
      m_validator.validate(wanted, allowedRoots);
      lookups.noteMade(createFoldersDurably(wanted.path(), 0755));
    }));
    const auto wanted = folder.appendingPathComponent(item->place().lastPathComponent());
    return m_mover.planMove(std::move(item), freeUrl(wanted, NumberingStyle::plain, isPromised));
  });
}

FileUrl TrashMover::moveToTrash(const FileUrl& url, const Boundary& allowedRoots) {
  FolderLookups lookups;
  const auto move = planTrash(url, allowedRoots, lookups);
  const std::lock_guard lock(m_mutex);
  FolderSyncSet destinations;
  FolderSyncSet sources;
  try {
    FolderSyncSet records;
    move->prepare();
    while (!move->finishPreparing(records)) continue;
    records.syncAll();
    move->carryOut(destinations, sources);
  } catch (const std::runtime_error& error) {
    static_cast<void>(move->abandon());
    throw TrashError(TrashError::UnderlyingError{error.what()});
  }
  try {
    destinations.syncAll();
    sources.syncAll();
  } catch (const SyncError&) {
    // It has moved; whether a power cut could take that back makes no difference to where it is now.
  }
  static_cast<void>(move->finish());
  return move->destination();
}

void TrashMover::clearImmutableFlagIfNeeded(const FileUrl& url) noexcept {
  const std::lock_guard lock(m_mutex);
  m_trash.clearImmutableFlag(url);
}

bool TrashMover::isInTrash(const FileUrl& url) const {
  return m_trash.holds(FileUrl(canonicalPlace(url.path())));
}

}  // namespace orvane
