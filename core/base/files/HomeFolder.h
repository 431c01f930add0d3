#pragma once

#include <string>
#include <string_view>

namespace orvane {

// The current user's home folder: $HOME where it is an absolute path, else the password database's entry, without
// trailing slashes. Throws std::runtime_error, saying what to set, where neither gives one.
[[nodiscard]] std::string homeFolder();

// The path with a leading "~" replaced by the home folder, where "~" stands alone or before a slash. Any other path
// comes back as it is.
[[nodiscard]] std::string expandedHome(std::string_view path);

}  // namespace orvane
