#pragma once

#include "core/platform/PendingMove.h"

#include <memory>

namespace orvane {

// The user's Trash on every volume.
class Trash {
 public:
  virtual ~Trash() = default;

  // Chooses a free name in the Trash of the item's volume. Throws std::runtime_error when the item lies inside a Trash,
  // or its volume has no usable Trash.
  virtual std::unique_ptr<PendingMove> planTrash(std::unique_ptr<HeldItem> item) = 0;

  // Whether the item of that canonical path lies inside a Trash.
  [[nodiscard]] virtual bool holds(const FileUrl& item) const = 0;

  // Decides how an item leaves the Trash for `destination`, whose folder exists. `trashed` is what planTrash() said.
  virtual std::unique_ptr<PendingMove> planTakeOut(const FileUrl& trashed, const FileUrl& destination) = 0;

  // Whether the item at `trashed` may be the one that came from `original`: false when the Trash's own record there
  // names another item. The record may come from anyone; it is never followed.
  [[nodiscard]] virtual bool mayHold(const FileUrl& trashed, const FileUrl& original) noexcept = 0;

  // Removes the record of an item that left: nothing is at `trashed`. Never touches an item. False when the system
  // refuses, so that something may be left.
  [[nodiscard]] virtual bool forget(const FileUrl& trashed) noexcept = 0;
  // Removes what was written for an item from `original` that never came to `trashed`. As forget(), but leaves the
  // record of another item.
  [[nodiscard]] virtual bool takeBackRecord(const FileUrl& trashed, const FileUrl& original) noexcept = 0;

  // The flag that keeps the owner from moving an item; failures are ignored.
  virtual void clearImmutableFlag(const FileUrl& item) noexcept = 0;
  virtual void setImmutableFlag(const FileUrl& item) noexcept = 0;
};

}  // namespace orvane
