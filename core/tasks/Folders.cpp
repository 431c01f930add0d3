#include "core/tasks/Folders.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/PathText.h"
#include "core/safety/access/FileAccessService.h"
#include "core/safety/records/ManagedFolderType.h"
#include "core/safety/records/SecurityError.h"
#include "core/safety/rules/PathValidator.h"
#include "core/tasks/TaskServices.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <set>
#include <string_view>

namespace orvane {
namespace {

constexpr std::ptrdiff_t maxSuggestions = 12;

std::optional<FolderLeftOut> problemListing(const FileUrl& folder) {
  if (DirectoryReader::open(AT_FDCWD, folder.path().c_str(), DirectoryReader::Links::follow)) return std::nullopt;
  return FolderLeftOut{folder, FolderLeftOut::Why::missing, errorText(errno)};
}

template <typename Bounds>
std::optional<FolderLeftOut> problemInside(const TaskServices& services, const FileUrl& folder, const Bounds& bounds) {
  if (auto problem = problemListing(folder)) return problem;
  auto refusal = services.validator.refusalText(folder, bounds);
  if (refusal.empty() || services.validator.isRefusedForContent(folder)) return std::nullopt;
  return FolderLeftOut{folder, FolderLeftOut::Why::refused, std::move(refusal)};
}

// A folder of the system, or one that holds the home folder and so everybody's things.
std::optional<FolderLeftOut> problemGranting(const TaskServices& services, const FileUrl& folder) {
  if (auto problem = problemWith(services, folder)) return problem;
  const auto path = canonicalPath(folder.path());
  const bool isSystems = std::ranges::any_of(services.profile.systemFolders(),
                                             [&](std::string_view place) { return isSameOrInside(path, place); });
  if (!isSystems && !isSameOrInside(canonicalPath(services.home.path()), path)) return std::nullopt;
  return FolderLeftOut{folder, FolderLeftOut::Why::refused, SecurityError(SecurityError::ProtectedPath{path}).what()};
}

// The folders that count as granted while nothing is stored; the first grant must not take these away unasked.
void keepDefaults(FileAccessService& service) {
  if (service.hasGrants()) return;
  for (const auto& folder : service.getManagedFolderURLs()) service.saveBookmark(folder);
}

}  // namespace

std::vector<FileUrl> grantedFolders(const TaskServices& services) {
  auto result = services.folders.getManagedFolderURLs();
  std::erase_if(result, [](const FileUrl& folder) { return problemListing(folder).has_value(); });
  return result;
}

std::vector<FileUrl> listedGrants(const TaskServices& services) {
  return services.folders.getManagedFolderURLs();
}

std::vector<FileUrl> namesOfGrantedFolders(const TaskServices& services) {
  auto result = listedGrants(services);
  if (!result.empty()) return result;
  for (const auto type : allManagedFolderTypes) result.push_back(defaultURL(type, services.home.path()));
  return result;
}

std::vector<FileUrl> suggestedFolders(const TaskServices& services) {
  const auto isThere = [&](ManagedFolderType type) {
    return !problemListing(defaultURL(type, services.home.path())).has_value();
  };
  std::vector<FileUrl> result;
  if (std::ranges::any_of(allManagedFolderTypes, isThere)) return result;
  const auto granted = Boundary(listedGrants(services));
  auto reader = DirectoryReader::open(AT_FDCWD, services.home.path().c_str(), DirectoryReader::Links::follow);
  while (const auto entry = reader ? reader->next() : std::nullopt) {
    if (entry->name.starts_with('.')) continue;
    auto folder = services.home.appendingPathComponent(entry->name);
    if (granted.contains(canonicalPath(folder.path())) || problemGranting(services, folder)) continue;
    result.push_back(std::move(folder));
  }
  std::ranges::sort(result);
  if (std::ssize(result) > maxSuggestions) result.erase(result.begin() + maxSuggestions, result.end());
  return result;
}

std::optional<FolderLeftOut> problemWith(const TaskServices& services, const FileUrl& folder) {
  return problemInside(services, folder, fixedRulesOnly);
}

std::optional<FolderLeftOut> problemWith(const TaskServices& services, const FileUrl& folder,
                                         const Boundary& boundary) {
  return problemInside(services, folder, boundary);
}

ChosenFolders chosenFolders(const TaskServices& services, std::span<const FileUrl> named) {
  ChosenFolders result;
  if (named.empty()) {
    result.folders = grantedFolders(services);
    return result;
  }
  const auto home = canonicalPath(services.home.path());
  for (const auto& folder : named) {
    auto problem = canonicalPath(folder.path()) == home ? problemListing(folder) : problemWith(services, folder);
    if (problem) {
      result.leftOut.push_back(*std::move(problem));
    } else {
      result.folders.push_back(folder);
    }
  }
  return result;
}

ChosenFolders foldersInside(const Boundary& boundary, std::span<const FileUrl> folders) {
  ChosenFolders result;
  for (const auto& folder : folders) {
    if (boundary.contains(canonicalPath(folder.path()))) {
      result.folders.push_back(folder);
    } else {
      result.leftOut.push_back({folder, FolderLeftOut::Why::notGranted});
    }
  }
  return result;
}

std::optional<FolderLeftOut> grantFolders(const TaskServices& services, std::span<const FileUrl> folders) {
  for (const auto& folder : folders) {
    if (auto problem = problemGranting(services, folder)) return problem;
  }
  keepDefaults(services.folders);
  for (const auto& folder : folders) services.folders.saveBookmark(folder);
  return std::nullopt;
}

std::optional<FileUrl> grantHolding(const TaskServices& services, const FileUrl& folder) {
  const auto path = canonicalPath(folder.path());
  for (const auto& granted : services.folders.getManagedFolderURLs()) {
    const auto holder = canonicalPath(granted.path());
    if (holder != path && isSameOrInside(path, holder)) return granted;
  }
  return std::nullopt;
}

GrantRemoval removeGrants(const TaskServices& services, std::span<const FileUrl> folders) {
  // Two names may mean one folder, and without any grant the defaults would count again.
  std::set<std::string> left;
  for (const auto& folder : services.folders.getManagedFolderURLs()) left.insert(canonicalPath(folder.path()));
  const auto granted = left;
  GrantRemoval removal;
  for (const auto& folder : folders) {
    const auto path = canonicalPath(folder.path());
    left.erase(path);
    if (!granted.contains(path)) removal.notGranted.push_back(folder);
  }
  removal.wouldLeaveNone = left.empty();
  if (!removal.notGranted.empty() || removal.wouldLeaveNone) return removal;
  keepDefaults(services.folders);
  for (const auto& folder : folders) services.folders.removeManagedFolder(folder);
  return removal;
}

}  // namespace orvane
