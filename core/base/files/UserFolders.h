#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvane {

// Where the user keeps the folder that texts call by its usual name in the home folder: "Downloads", "Documents",
// "Desktop", "Pictures", "Music", "Videos" or "Movies". Absolute. Absent where it has that name, where the system does
// not say, and for any other name. Reads the system's settings anew. Each system defines it.
[[nodiscard]] std::optional<std::string> userFolder(std::string_view usualName, const std::string& home);

}  // namespace orvane
