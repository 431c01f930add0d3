#pragma once

#include "core/base/FileUrl.h"
#include "core/base/JsonFwd.h"
#include "core/base/Uuid.h"

#include <cstdint>
#include <string>

namespace orvane {

// One file or folder that the organizer proposes to move. Equality looks at every field.
struct ProposedMove {
  Uuid id = Uuid::random();
  FileUrl originalURL;
  FileUrl targetURL;          // changes when the move's group is renamed
  std::string categoryName;   // category path below the destination root, such as "Media/Images"
  std::int64_t fileSize = 0;  // bytes; of everything inside for a folder
  bool isSelected = true;
  bool isDirectory = false;        // a folder that moves as a whole
  std::string sourceRelativePath;  // below the analysed folder, for display

  bool operator==(const ProposedMove&) const = default;

  // Keys in field order.
  [[nodiscard]] Json toJson() const;
};

}  // namespace orvane
