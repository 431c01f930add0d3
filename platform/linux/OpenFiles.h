#pragma once

#include <string>

namespace orvane {

// Whether a process of this user has the file open, or any process holds a lock on it. Links are followed.
[[nodiscard]] bool isOpenAnywhere(const std::string& path);

// Whether a process holds a record lock on the file.
[[nodiscard]] bool isLocked(const std::string& path);

}  // namespace orvane
