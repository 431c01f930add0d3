#pragma once

#include "core/assistant/records/FileMetadataEntry.h"
#include "core/base/text/JsonFwd.h"

#include <string>
#include <vector>

namespace orvane {

// Everything that a planner is given.
struct MetadataOnlyRequest {
  std::string userPrompt;                  // as typed
  std::vector<FileMetadataEntry> files;    // samples, in the order given
  std::vector<std::string> targetFolders;  // that the plan may address; never sent

  bool operator==(const MetadataOnlyRequest&) const = default;

  // Keys in field order.
  [[nodiscard]] Json toJson() const;
  // Throws JsonError.
  static MetadataOnlyRequest fromJson(const Json& json);

  // The text that a remote planner reads: the user's words, then a line for each file with its name, extension, size
  // and relative folder. Neither identities, dates nor target folders are in it.
  [[nodiscard]] std::string userMessage() const;
};

}  // namespace orvane
