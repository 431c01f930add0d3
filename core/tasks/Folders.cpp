#include "core/tasks/Folders.h"

#include "core/base/CanonicalPath.h"
#include "core/base/DirectoryReader.h"
#include "core/base/FileDescriptor.h"
#include "core/safety/FileAccessService.h"
#include "core/safety/ManagedFolderType.h"
#include "core/safety/PathValidator.h"
#include "core/tasks/TaskServices.h"

#include <fcntl.h>

#include <cerrno>

namespace orvane {
namespace {

std::optional<FolderLeftOut> problemListing(const FileUrl& folder) {
  if (DirectoryReader::open(AT_FDCWD, folder.path().c_str(), DirectoryReader::Links::follow)) return std::nullopt;
  return FolderLeftOut{folder, FolderLeftOut::Why::missing, errorText(errno)};
}

}  // namespace

std::vector<FileUrl> grantedFolders(const TaskServices& services) {
  auto result = services.folders.getManagedFolderURLs();
  std::erase_if(result, [](const FileUrl& folder) { return problemListing(folder).has_value(); });
  return result;
}

std::vector<FileUrl> namesOfGrantedFolders(const TaskServices& services) {
  auto result = services.folders.getManagedFolderURLs();
  if (!result.empty()) return result;
  for (const auto type : allManagedFolderTypes) result.push_back(defaultURL(type, services.home.path()));
  return result;
}

std::optional<FolderLeftOut> problemWith(const TaskServices& services, const FileUrl& folder) {
  if (auto problem = problemListing(folder)) return problem;
  auto refusal = services.validator.refusalText(folder, fixedRulesOnly);
  if (refusal.empty()) return std::nullopt;
  return FolderLeftOut{folder, FolderLeftOut::Why::refused, std::move(refusal)};
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

}  // namespace orvane
