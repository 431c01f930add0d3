#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/text/JsonFwd.h"
#include "core/base/values/Uuid.h"
#include "core/organizer/records/ProposedMove.h"

#include <cstdint>
#include <string>
#include <vector>

namespace orvane {

// The moves bound for one category folder. Equality looks at every field.
struct OrganizationCategoryGroup {
  Uuid id = Uuid::random();
  std::string name;  // the category path, as in ProposedMove::categoryName
  FileUrl destinationFolder;
  std::vector<ProposedMove> moves;

  // Bytes of the selected moves; an overflow ends the process.
  [[nodiscard]] std::int64_t totalSize() const;
  [[nodiscard]] std::string formattedTotalSize() const;

  bool operator==(const OrganizationCategoryGroup&) const = default;

  // Keys "id", "name", "destinationFolder", "moves".
  [[nodiscard]] Json toJson() const;
};

}  // namespace orvane
