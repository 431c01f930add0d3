#pragma once

#include <string>

namespace orvane {

// Whether a process of this user has the file open, or any process holds a lock on it. Links are followed.
[[nodiscard]] bool isOpenAnywhere(const std::string& path);

}  // namespace orvane
