#pragma once

#include "cli/frame/CommandSpec.h"
#include "core/base/files/FileUrl.h"
#include "core/safety/records/Boundary.h"
#include "core/tasks/KnownPlaces.h"

#include <optional>
#include <string>
#include <vector>

namespace orvane::cli {

class Arguments;

// The folders that the user has granted and that exist.
[[nodiscard]] std::vector<FileUrl> grantedFolders();
// Where a command may act: inside the folders of --root, else inside the granted ones. Throws UsageError.
[[nodiscard]] Boundary boundaryFrom(const Arguments& arguments);
// The granted folders. Throws UsageError, saying what to name instead (such as "a FOLDER"), where there is none.
[[nodiscard]] std::vector<FileUrl> requiredGrantedFolders(std::string_view instead);

// Inside the granted folders; an empty one where there is none and only known places are granted. Throws UsageError, as
// above, where these are not either.
[[nodiscard]] Boundary grantedBoundary(std::string_view instead);

// Why a folder cannot be walked, or is never touched as a whole, in one line for people; absent when neither is so.
[[nodiscard]] std::optional<std::string> refusalOf(const FileUrl& folder);

inline constexpr OptionSpec noKnownPlacesOption{
    .name = "--no-known-places",
    .valueName = "",
    .help = "Leave out the caches and logs of programs, which are looked through where no FOLDER is named.",
};
// Whether a command that takes folders looks into the known places too: where none is named, and as the user has it.
[[nodiscard]] KnownPlaces knownPlacesFrom(const Arguments& arguments);

struct ChosenFolders {
  std::vector<FileUrl> folders;
  bool someAreUnusable = false;  // named by the user, missing or refused, and reported
};
// The folders named, or the granted ones where none is named. Reports each unusable folder on standard error. Throws
// UsageError where there is none, unless the command looks into the known places.
[[nodiscard]] ChosenFolders chosenFolders(const std::vector<std::string>& named,
                                          KnownPlaces knownPlaces = KnownPlaces::leaveOut);

}  // namespace orvane::cli
