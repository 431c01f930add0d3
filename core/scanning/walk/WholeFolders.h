#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace orvane {

// Folders that a scan lists as one item each: those of caches, which nobody wants to see file by file.
inline constexpr std::string_view applicationCachesName = "Caches";
inline constexpr std::string_view applicationCachesFragment = "Library/Caches";
inline constexpr std::array<std::string_view, 2> developerCacheFragments{"Library/Developer/Xcode/DerivedData",
                                                                         "Library/Developer/CoreSimulator/Caches"};

[[nodiscard]] inline bool isBelowDeveloperCaches(std::string_view path) noexcept {
  return std::any_of(developerCacheFragments.begin(), developerCacheFragments.end(),
                     [&](auto fragment) { return path.find(fragment) != std::string_view::npos; });
}

}  // namespace orvane
