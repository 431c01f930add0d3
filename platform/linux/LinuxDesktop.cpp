#include "platform/linux/LinuxDesktop.h"

#include "platform/posix/RunTool.h"

namespace orvane {

bool LinuxDesktop::openUrl(const std::string& url) {
  return startProgram({"xdg-open", url});
}

bool LinuxDesktop::reveal(const FileUrl& item) {
  return openUrl(item.deletingLastPathComponent().absoluteString());
}

}  // namespace orvane
