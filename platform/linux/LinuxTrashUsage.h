#pragma once

#include "core/platform/TrashUsage.h"

#include <string>
#include <vector>

namespace orvane {

// The home Trash and the user's Trash folders at the top of every mount (freedesktop.org, The Trash, 1.0).
class LinuxTrashUsage : public TrashUsage {
 public:
  explicit LinuxTrashUsage(std::string homeTrash) : m_homeTrash(std::move(homeTrash)) {}
  [[nodiscard]] Totals read(const std::stop_token& stop) const override;

 private:
  [[nodiscard]] std::vector<std::string> folders() const;
  std::string m_homeTrash;
};

}  // namespace orvane
