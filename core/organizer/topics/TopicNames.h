#pragma once

#include "core/base/files/FileUrl.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
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
  // Whether a folder may have that name at all.
  [[nodiscard]] static bool canNameFolder(std::string_view topic) noexcept;
  // The folders right below `parent` that may stand for topics and that `admits` takes for some.
  [[nodiscard]] static std::set<std::string> foldersBelow(const FileUrl& parent,
                                                          const std::function<bool(const std::string&)>& admits);
};

}  // namespace orvane
