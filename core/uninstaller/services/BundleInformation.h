#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/values/Date.h"

#include <optional>
#include <string>

namespace orvane {

// The facts that an application bundle states in its information list.
struct BundleInformation {
  // The bundle's file name without extension where the list has no name or cannot be read. As the list gives it,
  // whatever the user's language: it is by this name that applications name their folders.
  std::string displayName;
  std::optional<std::string> identifier;
  std::optional<std::string> version;
  std::optional<std::string> executableName;
};

// Looks inside the bundle only: a list that a link puts elsewhere does not count.
[[nodiscard]] BundleInformation readBundleInformation(const FileUrl& bundle);

// The picture that the bundle's information list names as its icon: a file inside the bundle. Absent when there is
// none.
[[nodiscard]] std::optional<FileUrl> bundleIconFile(const FileUrl& bundle);

// The newest access time of the bundle's executable: of the file that the information list names, else of all files
// that lie where executables belong. Absent when there is none.
[[nodiscard]] std::optional<Date> newestExecutableAccess(const FileUrl& bundle, const BundleInformation& information);

}  // namespace orvane
