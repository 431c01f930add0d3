#include "core/safety/services/PermissionsManager.h"

#include "core/base/files/DirectoryReader.h"
#include "core/base/files/PathText.h"
#include "core/platform/Desktop.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace orvane {
namespace {

// Below the home folder, in the order in which they are tried.
constexpr std::array<std::string_view, 3> probes{"Library/Safari", "Library/Mail", "Library/Preferences"};

bool canBeListed(const std::string& folder) {
  auto reader = DirectoryReader::open(AT_FDCWD, folder.c_str(), DirectoryReader::Links::follow);
  if (!reader) return false;
  // Some systems let a folder be opened and refuse to list it.
  errno = 0;
  return reader->next().has_value() || errno == 0;
}

}  // namespace

PermissionsManager::PermissionsManager(Desktop& desktop, std::string homeFolder)
    : m_desktop(desktop), m_homeFolder(std::move(homeFolder)) {}

bool PermissionsManager::checkFullDiskAccess() const {
  return std::any_of(probes.begin(), probes.end(),
                     [&](std::string_view probe) { return canBeListed(joinPath(m_homeFolder, probe)); });
}

bool PermissionsManager::openSystemSettings() {
  return m_desktop.openUrl(std::string(fullDiskAccessSettingsURL));
}

}  // namespace orvane
