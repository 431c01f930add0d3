#include "platform/linux/LinuxDesktop.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

namespace orvane {

bool LinuxDesktop::openUrl(const std::string& url) {
  std::string program = "xdg-open";
  std::string argument = url;
  char* const arguments[] = {program.data(), argument.data(), nullptr};
  pid_t process = 0;
  if (::posix_spawnp(&process, program.c_str(), nullptr, nullptr, arguments, environ) != 0) return false;
  // The opener may live as long as what it opened; somebody has to take note of its end.
  std::thread([process] {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
  }).detach();
  return true;
}

bool LinuxDesktop::reveal(const FileUrl& item) {
  return openUrl(item.deletingLastPathComponent().absoluteString());
}

}  // namespace orvane
