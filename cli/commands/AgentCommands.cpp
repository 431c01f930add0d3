#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/FileArguments.h"
#include "cli/frame/Session.h"
#include "core/base/text/Json.h"
#include "core/rules/schedule/ScheduleCoordinator.h"
#include "core/rules/services/LaunchAgentManager.h"
#include "platform/SystemServices.h"

#include <fmt/format.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

namespace orvane::cli {
namespace {

ScheduleFrequency frequency() {
  return ScheduleCoordinator::shared().getSettings().frequency;
}

ExitStatus printStatus(Session& session) {
  const bool isInstalled = LaunchAgentManager::shared().isInstalled();
  const auto every = frequency();
  const auto interval = LaunchAgentManager::startInterval(every);
  if (session.isJson()) {
    Json json = Json::object();
    json["installed"] = isInstalled;
    json["label"] = LaunchAgentManager::agentLabel;
    json["frequency"] = jsonFromFrequency(every);
    json["intervalSeconds"] = interval.count();
    session.out().line(jsonText(json));
    return ExitStatus::done;
  }
  if (!isInstalled) {
    session.out().line("The background agent is not installed.");
    return ExitStatus::done;
  }
  session.out().line(fmt::format("The background agent is installed ({}).", displayName(every)));
  if (!ScheduleCoordinator::shared().getSettings().isEnabled) {
    session.out().line("Scheduled cleanups are off: 'orvanectl schedule enable' switches them on.");
  }
  return ExitStatus::done;
}

ExitStatus runShow(Session& session, const Arguments& /*arguments*/) {
  const auto text = LaunchAgentManager::shared().generatePlistContent(windowProgram(), frequency());
  if (session.isJson()) {
    session.out().line(
        jsonText(Json{{"installed", LaunchAgentManager::shared().isInstalled()}, {"propertyList", text}}));
  } else {
    session.out().write(text);
  }
  return ExitStatus::done;
}

ExitStatus runInstall(Session& session, const Arguments& /*arguments*/) {
  const auto program = windowProgram();
  if (::access(program.c_str(), X_OK) != 0) {
    throw std::runtime_error(
        fmt::format("there is no program at {}: the agent starts the one with the window, which is installed beside "
                    "orvanectl",
                    shownPath(FileUrl(program))));
  }
  LaunchAgentManager::shared().install(program, frequency());
  return printStatus(session);
}

ExitStatus runUninstall(Session& session, const Arguments& /*arguments*/) {
  LaunchAgentManager::shared().uninstall();
  return printStatus(session);
}

ExitStatus runStatus(Session& session, const Arguments& /*arguments*/) {
  return printStatus(session);
}

}  // namespace

constexpr CommandSpec agentShowCommand{
    .name = "agent show",
    .summary = "Print the background agent's property list",
    .details =
        "The agent as launchd reads it. Where systemd manages the user's services, the same agent is a service and a "
        "timer that are named com.orvane.cleanup.",
    .arguments = {},
    .options = {},
    .run = runShow,
};

constexpr CommandSpec agentInstallCommand{
    .name = "agent install",
    .summary = "Have scheduled cleanups started while the window is closed",
    .details =
        "From now on the user's service manager starts the program as often as 'orvanectl schedule show' says, also "
        "after the machine slept or was off. What it prints is kept in ~/Library/Logs/Orvane.",
    .arguments = {},
    .options = {},
    .run = runInstall,
};

constexpr CommandSpec agentUninstallCommand{
    .name = "agent uninstall",
    .summary = "Remove the background agent",
    .details = "The settings of scheduled cleanups stay.",
    .arguments = {},
    .options = {},
    .run = runUninstall,
};

constexpr CommandSpec agentStatusCommand{
    .name = "agent status",
    .summary = "Say whether the background agent is installed",
    .details = "And how often it starts the program.",
    .arguments = {},
    .options = {},
    .run = runStatus,
};

}  // namespace orvane::cli
