#pragma once

#include "core/platform/BackgroundScheduler.h"

#include <string>
#include <vector>

namespace orvane {

// Agents of launchd(8): a property list in the user's folder of agents for each job, loaded with launchctl(1).
class LaunchdScheduler : public BackgroundScheduler {
 public:
  explicit LaunchdScheduler(std::string agentsFolder, std::string launchctl = "/bin/launchctl");

  void install(const BackgroundJob& job) override;
  void uninstall(const std::string& label) override;
  [[nodiscard]] bool isInstalled(const std::string& label) const override;
  [[nodiscard]] std::vector<Definition> definitions(const BackgroundJob& job) const override;

 private:
  [[nodiscard]] std::string pathFor(const std::string& label) const;
  void tell(const std::string& subcommand, const std::string& path) const;

  std::string m_agentsFolder;
  std::string m_launchctl;
};

}  // namespace orvane
