#pragma once

#include "core/base/text/JsonFwd.h"
#include "core/base/values/Date.h"
#include "core/base/values/Uuid.h"

#include <cstdint>
#include <optional>
#include <string>

namespace orvane {

// The facts about one file that a remote planner may receive: never its content, never where on the disk it is.
struct FileMetadataEntry {
  Uuid id = Uuid::random();
  std::string filename;       // with its extension
  std::string fileExtension;  // without the dot; empty when there is none
  std::int64_t sizeBytes = 0;
  std::optional<Date> createdDate;
  std::optional<Date> modifiedDate;
  std::optional<Date> lastAccessDate;
  std::string relativeFolderPath;  // of the containing folder, below the managed folder that the file was found in

  bool operator==(const FileMetadataEntry&) const = default;

  // Keys in field order; unknown dates are left out.
  [[nodiscard]] Json toJson() const;
  // Throws JsonError.
  static FileMetadataEntry fromJson(const Json& json);
};

}  // namespace orvane
