#pragma once

#include "platform/linux/OpenItem.h"

#include <string>

namespace orvane {

// Copies an item to another volume as `name` in the open folder, durably, with content, holes, mode, owner (where this
// user may set it), times, extended attributes and hard links inside the item, then compares the copy with the original
// byte by byte. Throws std::runtime_error, with no copy left, also when the item changed meanwhile.
void copyToVolume(const OpenItem& item, int destinationFolder, const std::string& name);

// Removes a copy that this program made. Never follows a link.
void removeCopy(int folder, const std::string& name) noexcept;

}  // namespace orvane
