#pragma once

#include "core/base/files/FileUrl.h"
#include "core/base/values/Date.h"

#include <cstdint>
#include <map>
#include <string>

namespace orvane {

struct ItemIdentity;
class UndoJournal;

// Whether tidying takes what a restore brought back.
enum class ReturnedUse : std::uint8_t { leave, take };

// The items of one folder that restores brought back, by whichever run they had gone.
class ReturnedItems {
 public:
  ReturnedItems(UndoJournal& journal, const FileUrl& folder);

  // Whether the item is one of them and was not changed since it came back.
  [[nodiscard]] bool holds(const FileUrl& item, const ItemIdentity& identity) const;

 private:
  std::map<std::string, Date, std::less<>> m_times;  // of the last return, by name
};

}  // namespace orvane
