#pragma once

#include "core/base/text/JsonFwd.h"
#include "core/base/values/Uuid.h"
#include "core/scanning/records/FileItem.h"
#include "core/uninstaller/records/InstalledApp.h"

#include <vector>

namespace orvane {

// An application with what it left in the user's Library, for review: the leftovers that are selected go with it.
struct AppUninstallBundle {
  Uuid id = Uuid::random();
  InstalledApp app;
  std::vector<FileItem> leftovers;

  [[nodiscard]] Json toJson() const;
};

}  // namespace orvane
