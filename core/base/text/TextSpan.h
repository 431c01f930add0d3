#pragma once

#include <cstddef>
#include <string_view>

namespace orvane {

// Part of a text, in bytes.
struct TextSpan {
  std::size_t start = 0;
  std::size_t length = 0;

  [[nodiscard]] constexpr std::size_t end() const noexcept { return start + length; }
  [[nodiscard]] constexpr std::string_view in(std::string_view text) const { return text.substr(start, length); }
  // Whether they share a byte.
  [[nodiscard]] constexpr bool touches(const TextSpan& other) const noexcept {
    return start < other.end() && other.start < end();
  }
  bool operator==(const TextSpan&) const = default;
};

}  // namespace orvane
