#pragma once

#include <string>

namespace orvane {

// The folders of the XDG base directory standard 0.8: what a variable names where that is an absolute path, else
// the default in the home folder. Standardised.
struct XdgFolders {
  std::string home;
  std::string cache;   // $XDG_CACHE_HOME or ~/.cache
  std::string config;  // $XDG_CONFIG_HOME or ~/.config
  std::string data;    // $XDG_DATA_HOME or ~/.local/share
  std::string state;   // $XDG_STATE_HOME or ~/.local/state
  // $XDG_RUNTIME_DIR or /run/user/UID, where a login makes it: what a login did not start is not told of it.
  std::string runtime;

  [[nodiscard]] static XdgFolders fromEnvironment();
  // The defaults.
  [[nodiscard]] static XdgFolders below(const std::string& home);
};

}  // namespace orvane
