#pragma once

#include "core/platform/TrashUsage.h"
#include "platform/linux/MountedTrashes.h"

#include <string>
#include <utility>

namespace orvane {

// The home Trash and the user's Trash folders at the top of every mount.
class LinuxTrashUsage : public TrashUsage {
 public:
  explicit LinuxTrashUsage(std::string homeTrash, MountedTrashes::Patience patience = {})
      : m_homeTrash(std::move(homeTrash)), m_trashes(patience) {}
  [[nodiscard]] Totals read(const std::stop_token& stop) const override;

 private:
  std::string m_homeTrash;
  MountedTrashes m_trashes;
};

}  // namespace orvane
