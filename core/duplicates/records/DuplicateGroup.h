#pragma once

#include "core/base/text/JsonFwd.h"
#include "core/base/values/Uuid.h"
#include "core/duplicates/records/DuplicateKeepStrategy.h"
#include "core/scanning/records/FileItem.h"

#include <cstdint>
#include <string>
#include <vector>

namespace orvane {

// One set of identical files. A selected item is to be removed; a group that has items never has all of them selected
// once one of its operations has run.
struct DuplicateGroup {
  Uuid id = Uuid::random();
  std::int64_t fileSize = 0;  // bytes of each file
  std::string hash;           // digest of the content, 64 lower-case hexadecimal characters
  std::vector<FileItem> items;

  // Bytes of the selected items. An overflow ends the process.
  [[nodiscard]] std::int64_t selectedWastedBytes() const;
  // Bytes of all items but one. An overflow ends the process.
  [[nodiscard]] std::int64_t maxReclaimableBytes() const;

  // Unselects the first item where all are selected.
  void enforceKeepOneInvariant() noexcept;
  // Does nothing for an unknown item, and nothing where selecting would leave at most the item itself unselected: a
  // request to select what is selected already is refused too in a group with one unselected item. A manual item is
  // never selected.
  void setSelection(const Uuid& itemId, bool isSelected) noexcept;
  // Selects every item but the one that the strategy keeps, manual items left out. The first of equal ones is kept. A
  // group of less than two items stays as it is.
  void applyKeepStrategy(DuplicateKeepStrategy strategy);

  bool operator==(const DuplicateGroup&) const = default;

  [[nodiscard]] Json toJson() const;
  // Throws JsonError.
  static DuplicateGroup fromJson(const Json& json);
};

}  // namespace orvane
