#pragma once

#include "core/base/files/FileStatus.h"
#include "core/base/files/FileUrl.h"
#include "core/base/text/JsonFwd.h"
#include "core/base/values/Uuid.h"

#include <cstdint>
#include <optional>
#include <string>

namespace orvane {

// One file or folder that the organizer proposes to move. Equality looks at every field of the record, but not at the
// identity, which the given form does not have.
struct ProposedMove {
  Uuid id = Uuid::random();
  FileUrl originalURL;
  FileUrl targetURL;          // changes when the move's group is renamed
  std::string categoryName;   // category path below the destination root, such as "Media/Images"
  std::int64_t fileSize = 0;  // bytes; of everything inside for a folder
  bool isSelected = true;
  bool isDirectory = false;        // a folder that moves as a whole
  std::string sourceRelativePath;  // below the analysed folder, for display

  // Of the item that was looked at, which alone may move. Absent in a record that was made by hand.
  std::optional<ItemIdentity> identity;

  bool operator==(const ProposedMove& other) const;

  // Keys in field order.
  [[nodiscard]] Json toJson() const;
};

}  // namespace orvane
