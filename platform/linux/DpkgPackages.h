#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

namespace orvane {

struct DpkgPackage {
  std::string name;
  std::string version;
  std::int64_t bytes = 0;  // as the package says of itself
};

// The packages that own files of a folder, by the files' paths. Reads dpkg's lists of files: asking dpkg-query takes a
// process, and its answer's form follows the user's language. Empty where there is no dpkg.
[[nodiscard]] std::unordered_map<std::string, DpkgPackage> dpkgOwnersIn(std::string_view folder,
                                                                        const std::string& database = "/var/lib/dpkg");

}  // namespace orvane
