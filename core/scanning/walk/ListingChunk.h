#pragma once

#include "core/scanning/records/ScanEvent.h"
#include "core/scanning/walk/FolderSize.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

// A run of entries of one folder, in the order in which the file system gives them.
struct ListingChunk {
  // An entry that is no finding, by its place among the chunk's entries.
  struct Other {
    std::uint32_t position;
    std::string name;
  };
  // A folder that is one finding; its size may still be in the making, and its category too where the fields have no
  // label. Its event holds nothing yet.
  struct WholeFolder {
    std::size_t eventIndex;
    FileItem::Fields fields;
    std::shared_ptr<const FolderSize> size;
  };

  // The sums of all findings, and the name of the entry examined last.
  struct Digested {
    std::int64_t items = 0;
    std::int64_t bytes = 0;
    std::string lastName;
  };

  std::uint32_t examined = 0;  // entries, those that are no findings counted
  std::vector<ScanEvent> events;
  std::vector<Other> others;
  std::vector<WholeFolder> wholeFolders;
  std::optional<Digested> digested;  // `events` are those that the digest left, in order; `others` is empty then

  // Shows the findings, whose whole folders must have their sizes, to a digest: it takes out those that nobody is to
  // get.
  void digest(const std::function<void(std::vector<ScanEvent>&)>& by);
  [[nodiscard]] bool isSized() const noexcept {
    for (const auto& folder : wholeFolders) {
      if (!folder.size->isComplete()) return false;
    }
    return true;
  }
};

}  // namespace orvane
