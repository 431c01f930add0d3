#pragma once

#include "core/platform/Preferences.h"

#include <mutex>
#include <string>

namespace orvane {

// One JSON object in a file of the user's configuration folder. Writers of all processes take turns, and each reads
// the file again before it writes. A file that holds anything else is damaged: it cannot be read, stays as it is, and
// the error says what the user can do. A link is followed to such an object and to nothing else.
class LinuxPreferences : public Preferences {
 public:
  // Removes what a writer that died left beside the file.
  explicit LinuxPreferences(std::string path);
  // $XDG_CONFIG_HOME/orvane/preferences.json, below ~/.config where that is not set to an absolute path.
  static std::string defaultPath();

  [[nodiscard]] std::optional<Json> value(std::string_view key) const override;
  void setValue(std::string_view key, const Json& value) override;
  void update(std::string_view key, const std::function<Json(const Json* stored)>& change) override;

 private:
  [[nodiscard]] std::string lockPath() const;

  // One of this process's threads at a time.
  mutable std::mutex m_mutex;
  std::string m_path;
};

}  // namespace orvane
