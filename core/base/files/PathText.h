#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvane {

// Text rules of paths; nothing here looks at the disk. Paths are raw bytes with "/" between components.

// Of a file's name, on every file system that counts: NAME_MAX.
inline constexpr std::size_t maxNameBytes = 255;

// The last component; empty for "/" and for an empty path. Trailing slashes do not count.
[[nodiscard]] std::string_view lastComponent(std::string_view path) noexcept;
// Everything before the last component, without a trailing slash; "/" for a component directly below the root.
[[nodiscard]] std::string_view parentPath(std::string_view path) noexcept;
[[nodiscard]] std::string joinPath(std::string_view folder, std::string_view name);

// A file name cut at its last dot. A name whose only dots lead it (".bashrc"), or that ends in a dot, has no extension;
// nor is text with white space one ("Dr. Smith").
struct NameParts {
  std::string_view base;
  std::string_view extension;  // without the dot
};
[[nodiscard]] NameParts splitName(std::string_view name) noexcept;

// The longest beginning of `text` of at most `bytes` bytes that does not cut a UTF-8 character.
[[nodiscard]] std::string_view shortenedToBytes(std::string_view text, std::size_t bytes) noexcept;

// Whether `path` is `folder` itself or lies inside it, by whole components: "/a/bc" is not inside "/a/b".
// Nothing is inside an empty path.
[[nodiscard]] bool isSameOrInside(std::string_view path, std::string_view folder) noexcept;

// Collapses "." and "..", repeated slashes and a trailing slash, by text alone. A relative path stays relative.
[[nodiscard]] std::string standardizedPath(std::string_view path);

}  // namespace orvane
