#pragma once

#include <string>

namespace orvane {

// The current user's home folder: $HOME where it is an absolute path, else the password database's entry, without
// trailing slashes. Throws std::runtime_error, saying what to set, where neither gives one.
[[nodiscard]] std::string homeFolder();

}  // namespace orvane
