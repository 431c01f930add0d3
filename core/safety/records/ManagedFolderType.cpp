#include "core/safety/records/ManagedFolderType.h"

#include "core/base/files/PathText.h"

namespace orvane {

FileUrl defaultURL(ManagedFolderType type, const std::string& homeFolder) {
  return FileUrl(joinPath(homeFolder, managedFolders[type].pathInHome));
}

}  // namespace orvane
