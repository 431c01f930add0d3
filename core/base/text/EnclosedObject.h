#pragma once

#include <string_view>

namespace orvane {

// The text from the first opening to the last closing brace, as models put prose or a fence around an object; empty
// where there is none.
[[nodiscard]] constexpr std::string_view enclosedObject(std::string_view text) noexcept {
  const auto start = text.find('{');
  const auto end = text.rfind('}');
  if (start == std::string_view::npos || end == std::string_view::npos || end < start) return {};
  return text.substr(start, end - start + 1);
}

}  // namespace orvane
