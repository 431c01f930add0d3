#pragma once

#include "core/platform/FileMover.h"
#include "platform/linux/OpenItem.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace orvane {

// A move to any folder: a rename on one mount, a verified copy to another.
class LinuxMove : public PendingMove {
 public:
  // `folder` is the destination's. Throws std::system_error.
  LinuxMove(const FileUrl& item, OpenItem open, const FileUrl& destination, const OpenFolder& folder);

  void carryOut(FolderSyncSet& destinations, FolderSyncSet& sources) override;
  [[nodiscard]] bool abandon() noexcept override;

 protected:
  [[nodiscard]] FileType itemType() const noexcept { return m_item.status.type; }

 private:
  OpenItem m_item;
  std::shared_ptr<const FileDescriptor> m_destinationFolder;
};

class LinuxHeldItem : public HeldItem {
 public:
  LinuxHeldItem(FileUrl place, OpenItem open) : HeldItem(std::move(place)), m_open(std::move(open)) {}

  // Of an item that LinuxFileMover holds.
  [[nodiscard]] static OpenItem take(HeldItem& item) { return std::move(dynamic_cast<LinuxHeldItem&>(item).m_open); }

  [[nodiscard]] const FileStatus& status() const noexcept override { return m_open.status; }

 private:
  OpenItem m_open;
};

class LinuxFileMover : public FileMover {
 public:
  std::unique_ptr<HeldItem> hold(const FileUrl& item, const std::string& boundary) override;
  std::unique_ptr<PendingMove> planMove(std::unique_ptr<HeldItem> item, const FileUrl& destination) override;
  [[nodiscard]] bool discardPartial(const FileUrl& partial) noexcept override;
  [[nodiscard]] bool undoLink(const FileUrl& source, const FileUrl& destination, std::uint64_t inode) noexcept override;

 private:
  SharedFolder m_sources;
  SharedFolder m_destinations;
};

}  // namespace orvane
