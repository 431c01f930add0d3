#pragma once

#include <algorithm>
#include <string_view>

namespace orvane {

// Plain ASCII, which nearly every file name is: rules of Unicode need not be asked about it.

[[nodiscard]] constexpr bool isAscii(std::string_view text) noexcept {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

[[nodiscard]] constexpr char lowerAscii(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace orvane
