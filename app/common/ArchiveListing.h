#pragma once

#include <cstddef>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace orvane {

// The names in an archive, in its order.
struct ArchiveListing {
  std::vector<std::string> names;
  bool isCut = false;  // there may be more
};

// Reads the list of a tar, zip, 7z, rar, deb, cpio or ISO archive, compressed or not. Nothing is unpacked to the disk
// and no other program is started. A list that is too long, takes seconds, or breaks off ends where it is. Absent for a
// file that is no archive. Reads through the open file, from its beginning.
[[nodiscard]] std::optional<ArchiveListing> listArchive(int file, std::size_t maxNames, const std::stop_token& stop);

}  // namespace orvane
