#pragma once

#include <string_view>

namespace orvane {

// The marks of a sensitive path: its file is shown for information only, whatever its category.
inline constexpr std::string_view keychainsFragment = "/Keychains/";
inline constexpr std::string_view preferencesFragment = "/Preferences/";
inline constexpr std::string_view systemPreferencePrefix = "com.apple.";  // of a name inside a preferences folder
inline constexpr std::string_view systemPreferenceFragment = "/Preferences/com.apple.";
inline constexpr std::string_view propertyListEnding = ".plist";  // anywhere below a preferences folder

[[nodiscard]] constexpr bool containsFragment(std::string_view text, std::string_view fragment) noexcept {
  return text.find(fragment) != std::string_view::npos;
}

}  // namespace orvane
