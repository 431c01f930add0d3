#pragma once

#include "core/platform/LoginItems.h"

#include <string>

namespace orvane {

// An entry in the user's autostart folder (freedesktop.org, Desktop Application Autostart 0.5).
class AutostartEntry : public LoginItems {
 public:
  // `executable` is the absolute path of the program to start.
  AutostartEntry(std::string path, std::string executable);
  // $XDG_CONFIG_HOME/autostart/orvane.desktop, below ~/.config where that is not set to an absolute path.
  static std::string defaultPath();

  // Whether the entry is there and neither hidden nor switched off by the desktop.
  [[nodiscard]] bool isEnabled() const override;
  void setEnabled(bool isEnabled) override;

 private:
  std::string m_path;
  std::string m_executable;
};

}  // namespace orvane
