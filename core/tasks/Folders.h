#pragma once

#include "core/base/files/FileUrl.h"
#include "core/safety/records/Boundary.h"
#include "core/tasks/Notice.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace orvane {

struct TaskServices;

// The folders that the user has granted and that can be listed.
[[nodiscard]] std::vector<FileUrl> grantedFolders(const TaskServices& services);
// The granted folders, whether they can be listed or not.
[[nodiscard]] std::vector<FileUrl> listedGrants(const TaskServices& services);
// The same for a message; where nothing was ever granted and no default exists, the defaults.
[[nodiscard]] std::vector<FileUrl> namesOfGrantedFolders(const TaskServices& services);

// Where none of the default folders exists: those right in the home folder that could be granted and are not, by name.
// Hidden ones are left out, and after a dozen the rest.
[[nodiscard]] std::vector<FileUrl> suggestedFolders(const TaskServices& services);

// Why a folder cannot be walked, or is never touched as a whole; absent when neither is so.
[[nodiscard]] std::optional<FolderLeftOut> problemWith(const TaskServices& services, const FileUrl& folder);
// The same, or that it lies outside the boundary.
[[nodiscard]] std::optional<FolderLeftOut> problemWith(const TaskServices& services, const FileUrl& folder,
                                                       const Boundary& boundary);

struct ChosenFolders {
  std::vector<FileUrl> folders;
  std::vector<FolderLeftOut> leftOut;  // of those named
};
// The folders named, or the granted ones where none is named. The home folder may be named: what is inside may be
// touched, though it may not.
[[nodiscard]] ChosenFolders chosenFolders(const TaskServices& services, std::span<const FileUrl> named);

// Those of the folders that lie inside a boundary; the others are left out as not granted.
[[nodiscard]] ChosenFolders foldersInside(const Boundary& boundary, std::span<const FileUrl> folders);

// Grants folders; those that count by default until the first grant stay. Links are resolved. Folders of the system,
// and those that hold the home folder, are refused. On a problem with one nothing is granted. Throws std::runtime_error
// when it cannot be stored.
[[nodiscard]] std::optional<FolderLeftOut> grantFolders(const TaskServices& services, std::span<const FileUrl> folders);

// The granted folder that holds another one, which then counts once with it; absent where none does.
[[nodiscard]] std::optional<FileUrl> grantHolding(const TaskServices& services, const FileUrl& folder);

struct GrantRemoval {
  std::vector<FileUrl> notGranted;
  bool wouldLeaveNone = false;  // at least one folder has to stay
};
// Takes grants back, by where the folders lead. On a problem with one nothing changes. Throws std::runtime_error.
[[nodiscard]] GrantRemoval removeGrants(const TaskServices& services, std::span<const FileUrl> folders);

}  // namespace orvane
