#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// Whether a process of this user has the file open, or any process holds a lock on it. Links are followed.
[[nodiscard]] bool isOpenAnywhere(const std::string& path);

// The files that other processes of this user have open, as one look at all of them finds them.
class OpenPaths {
 public:
  [[nodiscard]] static OpenPaths read();
  // By a canonical path. Folders do not count: searches and backups hold them open too, Orvane's own scans among them.
  [[nodiscard]] bool areAtOrBelow(std::string_view path) const;

 private:
  std::vector<std::string> m_paths;  // sorted
};

// Whether a process holds a record lock on the file.
[[nodiscard]] bool isLocked(const std::string& path);

}  // namespace orvane
