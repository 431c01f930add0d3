#pragma once

#include "core/platform/PendingMove.h"

#include <functional>
#include <memory>
#include <string>

namespace orvane {

// Moves without ever replacing, across volumes too.
class FileMover {
 public:
  virtual ~FileMover() = default;

  // Tells where an item that was found goes, or throws when it may not move. The folder exists then and is canonical.
  using Destination = std::function<FileUrl(const FileStatus&)>;

  // Decides how `item` (a canonical folder path and a name, beneath the canonical folder `boundary`) goes to
  // `destination`, which is asked before anything is changed. Throws std::runtime_error when the item is gone
  // (std::system_error) or its folder cannot be opened.
  virtual std::unique_ptr<PendingMove> planMove(const FileUrl& item, const std::string& boundary,
                                                const Destination& destination) = 0;

  // Removes what a copy that died left at its partial place. Touches nothing that is not such a place. False
  // when the system refuses, so that something may be left.
  [[nodiscard]] virtual bool discardPartial(const FileUrl& partial) noexcept = 0;

  // Where renames are made of a link and an unlink, one that died in between leaves a file under both names. Takes the
  // second one back, at `destination`, where both are names of that inode; else nothing happens. False when the system
  // refuses.
  [[nodiscard]] virtual bool undoLink(const FileUrl& source, const FileUrl& destination,
                                      std::uint64_t inode) noexcept = 0;
};

}  // namespace orvane
