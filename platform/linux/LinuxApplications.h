#pragma once

#include "core/platform/SystemApplications.h"
#include "platform/linux/DesktopEntry.h"
#include "platform/linux/XdgFolders.h"

#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// AppImages, Flatpaks, the user's own entries in the menu of programs, folders of versioned tools, and packages that
// have an entry there.
class LinuxApplications : public SystemApplications {
 public:
  struct Folders {
    XdgFolders user;
    std::string downloads;
    std::string root = "/";  // of the system
  };
  explicit LinuxApplications(Folders places) : m_places(std::move(places)) {}
  [[nodiscard]] static Folders foldersFromEnvironment();

  [[nodiscard]] std::vector<SystemApplication> list(const std::stop_token& stop) const override;

 private:
  class Listing;
  Folders m_places;
};

}  // namespace orvane
