#pragma once

#include "core/platform/Desktop.h"

namespace orvane {

// The freedesktop.org tools: whatever xdg-open(1) finds for a URL. A folder shows in the file manager.
class LinuxDesktop : public Desktop {
 public:
  bool openUrl(const std::string& url) override;
  bool reveal(const FileUrl& item) override;
};

}  // namespace orvane
