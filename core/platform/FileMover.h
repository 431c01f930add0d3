#pragma once

#include "core/platform/PendingMove.h"

#include <memory>
#include <string>

namespace orvane {

// Moves without ever replacing, across volumes too.
class FileMover {
 public:
  virtual ~FileMover() = default;

  // Opens the folder of `item` (a canonical folder path and a name) without following links from the canonical folder
  // `boundary` down, and looks at the item. Throws std::system_error when the item is gone or its folder cannot be
  // opened.
  virtual std::unique_ptr<HeldItem> hold(const FileUrl& item, const std::string& boundary) = 0;

  // Decides how the item goes to `destination`, whose folder exists and is canonical. Throws std::system_error.
  virtual std::unique_ptr<PendingMove> planMove(std::unique_ptr<HeldItem> item, const FileUrl& destination) = 0;

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
