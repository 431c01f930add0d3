#pragma once

#include <string>
#include <string_view>

namespace orvane {

// The path with every symbolic link in it resolved, its last component's too, and standardised. A part that
// does not exist or cannot be read is kept as it is, so that the answer always exists: a dangling link resolves to
// where it points. A relative path is taken from the current folder; an empty path stays empty. A loop of links is left
// unresolved where it begins. Paths longer than the system's limit for one call are resolved piece by piece.
[[nodiscard]] std::string canonicalPath(std::string_view path);

// The place of an entry: its folder's canonical path and its own name, a link at the name itself not followed.
// A path that ends in "." or ".." is resolved whole.
[[nodiscard]] std::string canonicalPlace(std::string_view path);

}  // namespace orvane
