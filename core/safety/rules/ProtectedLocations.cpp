#include "core/safety/rules/ProtectedLocations.h"

#include "core/base/files/CanonicalPath.h"
#include "core/base/files/PathText.h"

#include <algorithm>
#include <array>

namespace orvane {
namespace {

constexpr std::array<std::string_view, 19> systemLocations{
    "/System",
    "/Library",
    "/usr",
    "/bin",
    "/sbin",
    "/private/etc",
    "/private/var/root",
    "/private/var/db",
    "/private/var/log",
    "/private/var/vm",
    "/private/var/run",
    "/etc",
    "/opt",
    "/dev",
    "/Volumes",
    "/System/Applications",
    "/System/Library",
    "/Applications/Utilities",
    "/Applications/Safari.app",
};

constexpr std::array<std::string_view, 13> homeEntries{
    ".ssh",
    ".gnupg",
    ".aws",
    ".zshrc",
    ".bashrc",
    ".bash_profile",
    ".profile",
    ".gitconfig",
    ".config",
    "Library/Keychains",
    "Library/IdentityServices",
    "Library/Mail",
    "Pictures/Photos Library.photoslibrary",
};

constexpr std::array<std::string_view, 3> versionControlNames{".git", ".svn", ".hg"};

}  // namespace

ProtectedLocations::ProtectedLocations(const std::string& homeFolder)
    : m_trees(systemLocations.begin(), systemLocations.end()) {
  m_places.push_back(standardizedPath(homeFolder));
  if (auto real = canonicalPath(homeFolder); real != m_places.front()) m_places.push_back(std::move(real));
  for (const auto& home : m_places) {
    for (const auto entry : homeEntries) m_trees.push_back(joinPath(home, entry));
  }
}

bool isVersionControlName(std::string_view name) noexcept {
  return std::find(versionControlNames.begin(), versionControlNames.end(), name) != versionControlNames.end();
}

bool isAtOrBelow(std::string_view path, std::string_view folder) noexcept {
  return path == folder || isBelow(path, folder);
}

bool isBelow(std::string_view path, std::string_view folder) noexcept {
  return !folder.empty() && path.size() > folder.size() && path[folder.size()] == '/' && path.starts_with(folder);
}

}  // namespace orvane
