#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orvane {

// A program as a file of the desktop entry standard 1.5 tells of it.
struct DesktopEntry {
  std::string file;        // absolute
  std::string identifier;  // the file's name without ".desktop"
  std::string name;
  std::string icon;
  std::string windowClass;  // StartupWMClass
  std::string version;      // X-AppImage-Version
  std::string program;      // first word of TryExec or Exec; empty where "env" starts it

  // Absent for what is no program, is hidden or shows in no menu.
  [[nodiscard]] static std::optional<DesktopEntry> read(const std::string& file);
  // Those of a folder, by name.
  [[nodiscard]] static std::vector<DesktopEntry> allIn(const std::string& folder);
};

}  // namespace orvane
