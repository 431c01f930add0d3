#pragma once

#include "core/base/files/FileStatus.h"
#include "core/base/files/FileUrl.h"
#include "core/base/values/Uuid.h"

#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace orvane {

// Which item an entry of the journal means: a name in the Trash can be given to another item at any time.
struct ItemRecord {
  Uuid entryId;
  ItemIdentity identity;  // without its device; a copy has another inode than the original, and none is known
  // Where it was, with no link on the way; absent where the entry's own location is that.
  std::optional<FileUrl> source;
  // Whether it had a lock, which it is to have again when it comes back.
  bool isLocked = false;

  // Whether the item that was found is the one: a file by size and time, which it keeps when a home is copied to
  // another disk; a folder by its time or, as it may change while it lies in the Trash, by its inode.
  [[nodiscard]] bool describes(const FileStatus& status) const noexcept;
};

// Facts that the journal's own form has no place for, in a file beside it: a line for each entry, only ever appended.
// Without it, or without a line, nothing is known of an item but its name.
class ItemRecords {
 public:
  explicit ItemRecords(const std::string& folder);

  // Durable when it returns. Throws std::system_error.
  void append(std::span<const ItemRecord> records) const;
  // Those of the given entries that are recorded. Throws std::system_error when the file is there and cannot be read.
  [[nodiscard]] std::unordered_map<Uuid, ItemRecord> find(std::span<const Uuid> entryIds) const;

 private:
  std::string m_path;
};

}  // namespace orvane
