#pragma once

#include "platform/posix/TimeLimit.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvane {

// The user's Trash folders at the top of every mount (freedesktop.org, The Trash, 1.0), read without waiting for a
// mount that does not answer.
class MountedTrashes {
 public:
  // How long a mount may take: for a look at its top, and, where it is another machine's, for all that lies there.
  struct Patience {
    std::chrono::milliseconds look{2000};
    std::chrono::milliseconds content{10000};
  };
  MountedTrashes() : MountedTrashes(Patience()) {}
  explicit MountedTrashes(Patience patience) : m_patience(patience) {}

  struct Folder {
    std::string path;
    std::string top;  // of its mount
    bool isRemote;    // its files lie on another machine
  };
  struct Found {
    std::vector<Folder> folders;
    std::int64_t unansweredMounts = 0;
  };
  // Each folder once, however many mounts show it; the one at `homeTrash` first.
  [[nodiscard]] Found folders(const std::string& homeTrash, const std::stop_token& stop) const;

  // The answer of a look at a folder, whose time is limited where its mount is remote.
  template <typename Answer>
  [[nodiscard]] std::optional<Answer> answerOf(const Folder& folder, std::function<Answer()> look) const {
    return folder.isRemote ? answerInTime<Answer>(folder.top, m_patience.content, std::move(look)) : look();
  }

  // Whether a path has the form of an item in such a folder.
  [[nodiscard]] static bool isItem(std::string_view path);

 private:
  // Looks on a thread that is left to itself where no answer comes in time. Until that ends, the mount is not looked at
  // again.
  template <typename Answer>
  [[nodiscard]] std::optional<Answer> answerInTime(const std::string& top, std::chrono::milliseconds limit,
                                                   std::function<Answer()> look) const;

  Patience m_patience;
  mutable std::mutex m_mutex;
  mutable std::map<std::string, std::shared_ptr<std::atomic<bool>>> m_isWaitedFor;  // by the mount's top
};

template <typename Answer>
std::optional<Answer> MountedTrashes::answerInTime(const std::string& top, std::chrono::milliseconds limit,
                                                   std::function<Answer()> look) const {
  auto isWaitedFor = std::make_shared<std::atomic<bool>>(true);
  {
    const std::lock_guard lock(m_mutex);
    auto& last = m_isWaitedFor[top];
    if (last && *last) return std::nullopt;
    last = isWaitedFor;
  }
  std::shared_ptr<void> end(nullptr, [isWaitedFor](void*) { *isWaitedFor = false; });
  return finishedWithin<Answer>(limit, [end = std::move(end), look = std::move(look)] { return look(); });
}

}  // namespace orvane
