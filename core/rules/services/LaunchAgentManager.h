#pragma once

#include "core/platform/BackgroundScheduler.h"
#include "core/rules/records/ScheduleFrequency.h"

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// Lets the system start the program for scheduled runs while its window is closed. Keeps no state of its own.
class LaunchAgentManager {
 public:
  static constexpr std::string_view agentLabel = "com.orvane.cleanup";
  static constexpr std::string_view plistFileName = "com.orvane.cleanup.plist";

  LaunchAgentManager(BackgroundScheduler& scheduler, std::string homeFolder);
  static LaunchAgentManager& shared();

  // How long the system waits between two starts. Free space is looked at every quarter of an hour.
  [[nodiscard]] static std::chrono::seconds startInterval(const ScheduleFrequency& frequency);

  // Where launchd(8) looks for agents of this user.
  [[nodiscard]] std::string launchAgentsDirectory() const;
  [[nodiscard]] std::string plistFilePath() const;
  [[nodiscard]] std::string logsDirectory() const;

  // The agent's property list, as launchd.plist(5) wants it. A path that is not UTF-8 keeps its bytes.
  [[nodiscard]] std::string generatePlistContent(const std::string& executable,
                                                 const ScheduleFrequency& frequency) const;

  // The files that this system's service manager gets.
  [[nodiscard]] std::vector<BackgroundScheduler::Definition> definitions(const std::string& executable,
                                                                         const ScheduleFrequency& frequency) const;

  // Writes the agent and loads it anew. Throws std::system_error when a file or folder cannot be written.
  void install(const std::string& executable, const ScheduleFrequency& frequency);
  void uninstall();
  [[nodiscard]] bool isInstalled() const;

 private:
  [[nodiscard]] BackgroundJob job(const std::string& executable, const ScheduleFrequency& frequency) const;

  BackgroundScheduler& m_scheduler;
  std::string m_homeFolder;
};

// A job as a property list for launchd.
[[nodiscard]] std::string propertyList(const BackgroundJob& job);

}  // namespace orvane
