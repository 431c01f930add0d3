#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace orvane {

// Folders whose contents are never searched: build products, dependency caches and version-control stores.
constexpr std::array<std::string_view, 10> blackHoleDirectoryNames{
    "node_modules", ".git", "Pods", ".build", "DerivedData", ".gradle", ".cargo", "venv", ".venv", "vendor",
};

[[nodiscard]] constexpr bool isBlackHoleName(std::string_view name) noexcept {
  return std::find(blackHoleDirectoryNames.begin(), blackHoleDirectoryNames.end(), name) !=
         blackHoleDirectoryNames.end();
}

}  // namespace orvane
