#pragma once

#include "core/platform/Trash.h"
#include "platform/linux/OpenItem.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace orvane {

class TrashFolder;

// The Trash of the desktop (freedesktop.org, The Trash, 1.0): the home Trash for items of its own mount, else the
// Trash folder at the top of the item's mount. Never copies.
class LinuxTrash : public Trash {
 public:
  // `homeTrash` is usually $XDG_DATA_HOME/Trash; it is made when first needed.
  explicit LinuxTrash(std::string homeTrash);
  ~LinuxTrash() override;
  // $XDG_DATA_HOME/Trash or ~/.local/share/Trash.
  [[nodiscard]] static std::string defaultHomeTrash();

  std::unique_ptr<PendingMove> planTrash(std::unique_ptr<HeldItem> item) override;
  [[nodiscard]] bool holds(const FileUrl& item) const override;
  std::unique_ptr<PendingMove> planTakeOut(const FileUrl& trashed, const FileUrl& destination) override;
  [[nodiscard]] bool mayHold(const FileUrl& trashed, const FileUrl& original) noexcept override;
  [[nodiscard]] bool forget(const FileUrl& trashed) noexcept override;
  [[nodiscard]] bool takeBackRecord(const FileUrl& trashed, const FileUrl& original) noexcept override;
  void clearImmutableFlag(const FileUrl& item) noexcept override;
  void setImmutableFlag(const FileUrl& item) noexcept override;

 private:
  std::shared_ptr<TrashFolder> folderFor(const OpenItem& item, const std::string& parent);
  std::shared_ptr<TrashFolder> remembered(const Mount& mount);
  std::shared_ptr<TrashFolder> openHomeTrash() const;
  std::shared_ptr<TrashFolder> openTopTrash(const Mount& mount, const std::string& parent) const;
  // The Trash folder that a place in a Trash belongs to; absent where the path is no such place. Throws
  // std::system_error.
  static std::shared_ptr<TrashFolder> folderOf(const FileUrl& trashed);
  void refuseInTrash(const FileUrl& item) const;

  std::string m_homeTrash;
  std::mutex m_mutex;
  std::vector<std::shared_ptr<TrashFolder>> m_folders;
  SharedFolder m_trashed;
};

}  // namespace orvane
