#pragma once

#include "core/platform/PendingMove.h"
#include "platform/linux/OpenItem.h"

#include <memory>

namespace orvane {

class TrashFolder;

// An item on its way into a Trash folder of its own mount.
[[nodiscard]] std::unique_ptr<PendingMove> makeMoveIntoTrash(const FileUrl& item, OpenItem open,
                                                             std::shared_ptr<TrashFolder> folder);

// An item on its way out. `folder` is absent where the place has no records. On another mount it is copied, and stays
// in the Trash too.
[[nodiscard]] std::unique_ptr<PendingMove> makeMoveOutOfTrash(const FileUrl& trashed, OpenItem open,
                                                              std::shared_ptr<TrashFolder> folder,
                                                              const FileUrl& destination);

}  // namespace orvane
