#include "cli/Folders.h"

#include "cli/FileArguments.h"
#include "cli/Session.h"
#include "cli/UsageError.h"
#include "core/base/CanonicalPath.h"
#include "core/base/DirectoryReader.h"
#include "core/base/FileDescriptor.h"
#include "core/base/HomeFolder.h"
#include "core/base/UnicodeText.h"
#include "core/safety/FileAccessService.h"
#include "core/safety/ManagedFolderType.h"
#include "core/safety/PathValidator.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cerrno>
#include <optional>

namespace orvane::cli {
namespace {

std::optional<std::string> problemOpening(const FileUrl& folder) {
  if (DirectoryReader::open(AT_FDCWD, folder.path().c_str(), DirectoryReader::Links::follow)) return std::nullopt;
  return fmt::format("{}: {}", shownPath(folder), errorText(errno));
}

// Why a folder that the user names cannot be walked; absent when it can. The home folder as a whole may not be touched,
// but what is inside may.
std::optional<std::string> problemWith(const FileUrl& folder) {
  if (canonicalPath(folder.path()) == canonicalPath(homeFolder())) return problemOpening(folder);
  return refusalOf(folder);
}

}  // namespace

std::optional<std::string> refusalOf(const FileUrl& folder) {
  if (auto problem = problemOpening(folder)) return problem;
  try {
    PathValidator::shared().validate(folder, AllowedRoots());
  } catch (const SecurityError& error) {
    return escapedForDisplay(error.what());
  }
  return std::nullopt;
}

std::vector<FileUrl> grantedFolders() {
  auto result = FileAccessService::shared().getManagedFolderURLs();
  std::erase_if(result, [](const FileUrl& folder) {
    return !DirectoryReader::open(AT_FDCWD, folder.path().c_str(), DirectoryReader::Links::follow);
  });
  return result;
}

std::vector<FileUrl> requiredGrantedFolders(std::string_view instead) {
  auto result = grantedFolders();
  if (!result.empty()) return result;
  std::vector<std::string> names;
  for (const auto& folder : FileAccessService::shared().getManagedFolderURLs()) names.push_back(shownPath(folder));
  if (names.empty()) {
    names.reserve(allManagedFolderTypes.size());
    for (const auto type : allManagedFolderTypes) names.push_back(shownPath(defaultURL(type, homeFolder())));
  }
  throw UsageError(
      fmt::format("none of the folders that are looked after exists ({}): name {}", fmt::join(names, ", "), instead));
}

ChosenFolders chosenFolders(const std::vector<std::string>& named) {
  ChosenFolders result;
  if (named.empty()) {
    result.folders = requiredGrantedFolders("a FOLDER");
    return result;
  }
  for (auto& folder : placesFromArguments(named)) {
    if (const auto problem = problemWith(folder)) {
      Session::report(*problem);
      result.someAreUnusable = true;
    } else {
      result.folders.push_back(std::move(folder));
    }
  }
  return result;
}

}  // namespace orvane::cli
