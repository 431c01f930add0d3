#pragma once

namespace orvane {

// Value of a hexadecimal digit in either case; -1 for any other character.
[[nodiscard]] constexpr int hexValue(char c) noexcept {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

}  // namespace orvane
