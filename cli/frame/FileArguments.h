#pragma once

#include "core/base/files/FileUrl.h"

#include <string>
#include <string_view>
#include <vector>

namespace orvane::cli {

// Locations as they are typed and as they are shown.

// Absolute place of what was typed: a path, relative to the current folder or not, or a "file:///" URL as the JSON
// output writes them. The folders on the way are resolved, a link at the name itself is not. Throws UsageError for an
// empty text and for a URL that is none.
[[nodiscard]] FileUrl placeFromArgument(const std::string& text);
// In the order given, each once.
[[nodiscard]] std::vector<FileUrl> placesFromArguments(const std::vector<std::string>& texts);

// For people: escaped, and with "~" for the home folder.
[[nodiscard]] std::string shownPath(const FileUrl& url);

}  // namespace orvane::cli
