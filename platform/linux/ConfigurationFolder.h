#pragma once

#include <string>

namespace orvane {

// $XDG_CONFIG_HOME, or ~/.config where that is not set to an absolute path (XDG Base Directories 0.8).
[[nodiscard]] std::string configurationFolder();

}  // namespace orvane
