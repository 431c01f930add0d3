#include "platform/linux/XdgFolders.h"

#include "core/base/files/HomeFolder.h"
#include "core/base/files/PathText.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdlib>

namespace orvane {

XdgFolders XdgFolders::below(const std::string& home) {
  return {.home = home,
          .cache = joinPath(home, ".cache"),
          .config = joinPath(home, ".config"),
          .data = joinPath(home, ".local/share"),
          .state = joinPath(home, ".local/state"),
          .runtime = fmt::format("/run/user/{}", ::getuid())};
}

XdgFolders XdgFolders::fromEnvironment() {
  auto folders = below(homeFolder());
  const auto take = [](std::string& folder, const char* variable) {
    const char* configured = std::getenv(variable);
    if (configured != nullptr && configured[0] == '/') folder = standardizedPath(configured);
  };
  take(folders.cache, "XDG_CACHE_HOME");
  take(folders.config, "XDG_CONFIG_HOME");
  take(folders.data, "XDG_DATA_HOME");
  take(folders.state, "XDG_STATE_HOME");
  take(folders.runtime, "XDG_RUNTIME_DIR");
  return folders;
}

}  // namespace orvane
