#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

// What may be the name of a topic folder.
class TopicNames {
 public:
  static constexpr std::int64_t longestName = 40;  // characters as a reader perceives them

  // The name without separators of paths, line breaks, control characters, runs of spaces, and dots and spaces at its
  // ends; absent when nothing is left or too much.
  [[nodiscard]] static std::optional<std::string> sanitize(std::string_view text);
};

}  // namespace orvane
