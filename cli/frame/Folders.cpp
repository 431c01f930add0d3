#include "cli/frame/Folders.h"

#include "cli/frame/Arguments.h"
#include "cli/frame/FileArguments.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "cli/frame/UsageError.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/files/FileStatus.h"
#include "core/tasks/Folders.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cerrno>
#include <utility>

namespace orvane::cli {

std::optional<std::string> refusalOf(const FileUrl& folder) {
  const auto problem = problemWith(TaskServices::shared(), folder);
  return problem ? std::optional(textOf(*problem)) : std::nullopt;
}

std::vector<FileUrl> grantedFolders() {
  return orvane::grantedFolders(TaskServices::shared());
}

std::vector<FileUrl> requiredGrantedFolders(std::string_view instead) {
  auto result = grantedFolders();
  if (!result.empty()) return result;
  std::vector<std::string> names;
  for (const auto& folder : namesOfGrantedFolders(TaskServices::shared())) names.push_back(shownPath(folder));
  throw UsageError(
      fmt::format("none of the folders that are looked after exists ({}): name {}", fmt::join(names, ", "), instead));
}

Boundary grantedBoundary(std::string_view instead) {
  if (grantedKnownPlaces(TaskServices::shared()) == KnownPlaces::include) return Boundary(grantedFolders());
  return Boundary(requiredGrantedFolders(instead));
}

Boundary boundaryFrom(const Arguments& arguments) {
  auto folders = placesFromArguments(arguments.values("--root"));
  if (folders.empty()) return Boundary(requiredGrantedFolders("the folder that may be acted in with --root FOLDER"));
  for (const auto& folder : folders) {
    if (!itemExists(folder.path().c_str())) {
      throw UsageError(fmt::format("--root {}: {}", shownPath(folder), errorText(ENOENT)));
    }
  }
  return Boundary(std::move(folders));
}

KnownPlaces knownPlacesFrom(const Arguments& arguments) {
  if (!arguments.plain().empty() || arguments.has(noKnownPlacesOption.name)) return KnownPlaces::leaveOut;
  return grantedKnownPlaces(TaskServices::shared());
}

ChosenFolders chosenFolders(const std::vector<std::string>& named, KnownPlaces knownPlaces) {
  if (named.empty()) {
    return {knownPlaces == KnownPlaces::include ? grantedFolders() : requiredGrantedFolders("a FOLDER")};
  }
  auto chosen = orvane::chosenFolders(TaskServices::shared(), placesFromArguments(named));
  for (const auto& leftOut : chosen.leftOut) Session::report(textOf(leftOut));
  return {std::move(chosen.folders), !chosen.leftOut.empty()};
}

}  // namespace orvane::cli
