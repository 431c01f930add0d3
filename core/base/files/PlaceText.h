#pragma once

#include "core/base/files/FileUrl.h"

#include <optional>
#include <string>
#include <string_view>

namespace orvane {

// The path; where it is not UTF-8, its URL.
[[nodiscard]] std::string pathOrUrl(const FileUrl& place);
// Reads an absolute path or a "file:" URL; absent for anything else.
[[nodiscard]] std::optional<FileUrl> placeFromPathOrUrl(std::string_view text);

// A path for people: escaped, with "~" for the home folder that it lies in.
[[nodiscard]] std::string displayPath(std::string_view path, std::string_view home);

}  // namespace orvane
