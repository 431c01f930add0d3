#pragma once

#include "core/platform/TrashUsage.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace orvane {

// The home Trash and the user's Trash folders at the top of every mount (freedesktop.org, The Trash, 1.0).
class LinuxTrashUsage : public TrashUsage {
 public:
  // How long a disk may take: for a look at its top, and, where it is another machine's, for all that lies there.
  struct Patience {
    std::chrono::milliseconds look{2000};
    std::chrono::milliseconds content{10000};
  };
  explicit LinuxTrashUsage(std::string homeTrash) : LinuxTrashUsage(std::move(homeTrash), Patience()) {}
  LinuxTrashUsage(std::string homeTrash, Patience patience) : m_homeTrash(std::move(homeTrash)), m_patience(patience) {}
  [[nodiscard]] Totals read(const std::stop_token& stop) const override;

 private:
  // The answer of a look at a mount, on a thread that is left to itself where none comes in time. Until that ends, the
  // mount is not looked at again.
  template <typename Answer>
  [[nodiscard]] std::optional<Answer> answerOf(const std::string& top, std::chrono::milliseconds limit,
                                               std::function<Answer()> look) const;

  std::string m_homeTrash;
  Patience m_patience;
  mutable std::mutex m_mutex;
  mutable std::map<std::string, std::shared_ptr<std::atomic<bool>>> m_isWaitedFor;  // by the mount's top
};

}  // namespace orvane
