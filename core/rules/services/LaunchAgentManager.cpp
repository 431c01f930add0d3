#include "core/rules/services/LaunchAgentManager.h"

#include "core/base/files/PathText.h"

#include <fmt/format.h>

#include <array>
#include <utility>

namespace orvane {
namespace {

// By the index of the frequency's case.
constexpr std::array<std::chrono::seconds, std::variant_size_v<ScheduleFrequency>> startIntervals{
    std::chrono::seconds(900),      // on low disk space
    std::chrono::seconds(86400),    // daily
    std::chrono::seconds(604800),   // weekly
    std::chrono::seconds(2592000),  // monthly
};

std::string escapedForXml(std::string_view text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      case '\'':
        result += "&apos;";
        break;
      case '\n':  // a parser reads these three as they are only when they are written as references
        result += "&#10;";
        break;
      case '\r':
        result += "&#13;";
        break;
      case '\t':
        result += "&#9;";
        break;
      default:
        result += c;
    }
  }
  return result;
}

}  // namespace

LaunchAgentManager::LaunchAgentManager(BackgroundScheduler& scheduler, std::string homeFolder)
    : m_scheduler(scheduler), m_homeFolder(std::move(homeFolder)) {}

std::chrono::seconds LaunchAgentManager::startInterval(const ScheduleFrequency& frequency) {
  return startIntervals.at(frequency.index());
}

std::string LaunchAgentManager::launchAgentsDirectory() const {
  return joinPath(m_homeFolder, "Library/LaunchAgents");
}

std::string LaunchAgentManager::plistFilePath() const {
  return joinPath(launchAgentsDirectory(), plistFileName);
}

std::string LaunchAgentManager::logsDirectory() const {
  return joinPath(m_homeFolder, "Library/Logs/Orvane");
}

BackgroundJob LaunchAgentManager::job(const std::string& executable, const ScheduleFrequency& frequency) const {
  return {.label = std::string(agentLabel),
          .executable = executable,
          .interval = startInterval(frequency),
          .outputPath = joinPath(logsDirectory(), "stdout.log"),
          .errorPath = joinPath(logsDirectory(), "stderr.log")};
}

std::string LaunchAgentManager::generatePlistContent(const std::string& executable,
                                                     const ScheduleFrequency& frequency) const {
  return propertyList(job(executable, frequency));
}

std::vector<BackgroundScheduler::Definition> LaunchAgentManager::definitions(const std::string& executable,
                                                                             const ScheduleFrequency& frequency) const {
  return m_scheduler.definitions(job(executable, frequency));
}

void LaunchAgentManager::install(const std::string& executable, const ScheduleFrequency& frequency) {
  m_scheduler.install(job(executable, frequency));
}

void LaunchAgentManager::uninstall() {
  m_scheduler.uninstall(std::string(agentLabel));
}

bool LaunchAgentManager::isInstalled() const {
  return m_scheduler.isInstalled(std::string(agentLabel));
}

std::string propertyList(const BackgroundJob& job) {
  return fmt::format(
      R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
    <key>Label</key>
    <string>{}</string>
    <key>ProgramArguments</key>
    <array>
        <string>{}</string>
        <string>{}</string>
    </array>
    <key>StartInterval</key>
    <integer>{}</integer>
    <key>RunAtLoad</key>
    <false/>
    <key>ProcessType</key>
    <string>Background</string>
    <key>LowPriorityIO</key>
    <true/>
    <key>StandardOutPath</key>
    <string>{}</string>
    <key>StandardErrorPath</key>
    <string>{}</string>
</dict>
</plist>
)",
      escapedForXml(job.label), escapedForXml(job.executable), BackgroundJob::argument, job.interval.count(),
      escapedForXml(job.outputPath), escapedForXml(job.errorPath));
}

}  // namespace orvane
