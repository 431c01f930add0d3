#pragma once

#include "core/base/files/FileUrl.h"

#include <string>

namespace orvane {

// The services of the user's desktop.
class Desktop {
 public:
  virtual ~Desktop() = default;

  // Opens a URL, of any scheme, with the program that the user prefers for it. False when nothing could be started.
  virtual bool openUrl(const std::string& url) = 0;
  // Shows an item in the file manager. False when nothing could be started.
  virtual bool reveal(const FileUrl& item) = 0;
};

}  // namespace orvane
