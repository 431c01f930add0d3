#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvane {

// The current user's home folder: $HOME where it is an absolute path, else the password database's entry, without
// trailing slashes. Throws std::runtime_error, saying what to set, where neither gives one.
[[nodiscard]] std::string homeFolder();

// Why root must not work in the home folder, as after sudo that kept HOME: it belongs to another user, who could use
// nothing any more that root makes there. Absent where all is well.
[[nodiscard]] std::optional<std::string> problemWithHome();

// The path with a leading "~" replaced by the home folder, where "~" stands alone or before a slash. A folder that the
// user keeps elsewhere is meant by its usual name: "~/Downloads" and all below it. Any other path comes back as it is.
[[nodiscard]] std::string expandedHome(std::string_view path);

}  // namespace orvane
