#include "core/base/files/HomeFolder.h"

#include "core/base/files/PathText.h"
#include "core/base/files/UserFolders.h"

#include <fmt/format.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <stdexcept>

namespace orvane {

std::string homeFolder() {
  if (const char* home = std::getenv("HOME"); home != nullptr && home[0] == '/') return standardizedPath(home);
  passwd entry{};
  passwd* found = nullptr;
  std::array<char, 16384> buffer{};
  if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr &&
      found->pw_dir != nullptr && found->pw_dir[0] == '/') {
    return standardizedPath(found->pw_dir);
  }
  throw std::runtime_error("the home folder is unknown: set HOME to its absolute path");
}

std::optional<std::string> problemWithHome() {
  if (::geteuid() != 0) return std::nullopt;
  const auto home = homeFolder();
  struct stat status {};
  if (::stat(home.c_str(), &status) != 0 || status.st_uid == 0) return std::nullopt;
  return fmt::format("the home folder '{}' belongs to another user; run this without sudo, or as root with 'sudo -H'",
                     home);
}

std::string expandedHome(std::string_view path) {
  if (path == "~") return homeFolder();
  if (!path.starts_with("~/")) return std::string(path);
  const auto home = homeFolder();
  const auto below = path.substr(2);
  const auto name = below.substr(0, below.find('/'));
  if (const auto own = userFolder(name, home)) return *own + std::string(below.substr(name.size()));
  return joinPath(home, below);
}

}  // namespace orvane
