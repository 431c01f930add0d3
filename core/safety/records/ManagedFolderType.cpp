#include "core/safety/records/ManagedFolderType.h"

#include "core/base/files/PathText.h"
#include "core/base/files/UserFolders.h"

namespace orvane {

FileUrl defaultURL(ManagedFolderType type, const std::string& homeFolder) {
  const auto name = managedFolders[type].pathInHome;
  return FileUrl(userFolder(name, homeFolder).value_or(joinPath(homeFolder, name)));
}

}  // namespace orvane
