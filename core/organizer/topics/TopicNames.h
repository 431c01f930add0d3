#pragma once

#include "core/base/files/FileUrl.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace orvane {

// Whether a text may name a topic folder.
class TopicNames {
 public:
  static constexpr std::int64_t maxNameLength = 40;  // characters as a reader perceives them

  // The name without separators of paths, line breaks, control characters, runs of spaces, and dots and spaces at its
  // ends; absent when nothing is left or too much.
  [[nodiscard]] static std::optional<std::string> sanitize(std::string_view text);
  // The folder that a topic stands for beside the organizer's own; absent where it cannot be one, or is a folder of the
  // organizer's that says nothing about the topic. "installers" means the category of that name.
  [[nodiscard]] static std::optional<std::string> folderName(std::string_view topic);
  // The topics that stand for folders, each in one spelling, whatever the case of its letters: that of an existing
  // folder, else the first one.
  [[nodiscard]] static std::map<std::string, std::string> foldersOf(const std::map<std::string, std::string>& topics,
                                                                    const std::set<std::string>& existing);
  // The folders right below `parent` that may stand for topics and that `admits` takes for some.
  [[nodiscard]] static std::set<std::string> foldersBelow(const FileUrl& parent,
                                                          const std::function<bool(const std::string&)>& admits);
};

}  // namespace orvane
