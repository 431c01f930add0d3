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

#include <array>
#include <stdexcept>
#include <string>
#include <string_view>

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

constexpr std::array showOptions{
    OptionSpec{.name = "--property-list", .valueName = "", .help = "Print the same agent as a property list instead."},
};

ExitStatus runAgentShow(Session& session, const Arguments& arguments) {
  const auto& agent = LaunchAgentManager::shared();
  const auto propertyList = agent.generatePlistContent(windowProgram(), frequency());
  const auto definitions = agent.definitions(windowProgram(), frequency());
  if (session.isJson()) {
    Json json{{"installed", agent.isInstalled()}, {"propertyList", propertyList}};
    auto& units = json["units"] = Json::array();
    for (const auto& [name, text] : definitions) units.push_back(Json{{"name", name}, {"text", text}});
    session.out().line(jsonText(json));
    return ExitStatus::done;
  }
  if (arguments.has("--property-list")) {
    session.out().write(propertyList);
    return ExitStatus::done;
  }
  std::string_view separator;
  for (const auto& [name, text] : definitions) {
    session.out().write(fmt::format("{}# {}\n{}", separator, name, text));
    separator = "\n";
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

ExitStatus runAgentUninstall(Session& session, const Arguments& /*arguments*/) {
  LaunchAgentManager::shared().uninstall();
  return printStatus(session);
}

ExitStatus runAgentStatus(Session& session, const Arguments& /*arguments*/) {
  return printStatus(session);
}

}  // namespace

constexpr CommandSpec agentShowCommand{
    .name = "agent show",
    .summary = "Print the background agent as the service manager gets it",
    .details =
        "The units of systemd that 'orvanectl agent install' would write now: a service and a timer that are named "
        "com.orvane.cleanup.",
    .arguments = {},
    .options = showOptions,
    .run = runAgentShow,
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
    .run = runAgentUninstall,
};

constexpr CommandSpec agentStatusCommand{
    .name = "agent status",
    .summary = "Say whether the background agent is installed",
    .details = "And how often it starts the program.",
    .arguments = {},
    .options = {},
    .run = runAgentStatus,
};

}  // namespace orvane::cli
