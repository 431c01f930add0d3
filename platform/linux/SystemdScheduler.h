#pragma once

#include "core/base/values/Date.h"
#include "core/platform/BackgroundScheduler.h"

#include <string>
#include <vector>

namespace orvane {

// User units of systemd: LABEL.service and LABEL.timer in the folder of the user's own units (systemd.unit(5)). The
// timer counts its interval from the installation by the wall clock, so that a start which fell into sleep or while the
// machine was off is made up for.
class SystemdScheduler : public BackgroundScheduler {
 public:
  explicit SystemdScheduler(std::string unitFolder, std::string systemctl = "systemctl");
  // $XDG_CONFIG_HOME/systemd/user, below ~/.config where that is not set to an absolute path.
  static std::string defaultFolder();

  void install(const BackgroundJob& job) override;
  void uninstall(const std::string& label) override;
  [[nodiscard]] bool isInstalled(const std::string& label) const override;
  [[nodiscard]] std::vector<Definition> definitions(const BackgroundJob& job) const override;

  [[nodiscard]] static std::string serviceText(const BackgroundJob& job);
  [[nodiscard]] static std::string timerText(const BackgroundJob& job, Date installed);

 private:
  [[nodiscard]] std::string servicePath(const std::string& label) const;
  [[nodiscard]] std::string timerPath(const std::string& label) const;

  std::string m_unitFolder;
  std::string m_systemctl;
};

}  // namespace orvane
