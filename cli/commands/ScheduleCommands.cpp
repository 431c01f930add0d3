#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/Consent.h"
#include "cli/frame/ProgressLine.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "cli/frame/UsageError.h"
#include "cli/text/RuleText.h"
#include "core/base/files/HomeFolder.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/base/values/Calendar.h"
#include "core/platform/Volume.h"
#include "core/rules/schedule/ScheduleCoordinator.h"
#include "core/rules/services/LaunchAgentManager.h"
#include "platform/SystemServices.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace orvane::cli {
namespace {

constexpr std::string_view lowDiskPrefix = "low-disk:";

constexpr std::array scheduleRunOptions{
    saveOption,
    OptionSpec{.name = "--yes", .valueName = "", .help = "Do not ask."},
};

std::optional<std::int64_t> freeBytes() {
  const auto capacity = systemVolume().capacity(FileUrl(homeFolder()));
  return capacity ? std::optional(capacity->availableBytes) : std::nullopt;
}

void printScheduleSettings(Session& session, const ScheduleSettings& settings) {
  if (session.isJson()) {
    session.out().line(jsonText(settings.toJson()));
    return;
  }
  const auto row = [&](std::string_view title, std::string_view text) {
    session.out().line(fmt::format("{:<20}{}", title, text));
  };
  const bool hasAgent = LaunchAgentManager::shared().isInstalled();
  row("Scheduled cleanups", settings.isEnabled ? "on" : "off");
  row("Frequency", displayName(settings.frequency));
  row("Last run", settings.lastRunDate ? formatDateTime(*settings.lastRunDate) : "never");
  row("Background agent", hasAgent ? "installed" : "not installed");
  if (settings.isEnabled && !hasAgent) {
    session.out().line("Nothing starts them: 'orvanectl agent install' does.");
  }
}

// An agent that is there starts the program as often as the settings now say.
ExitStatus changeSchedule(Session& session, const std::function<void(ScheduleSettings&)>& how) {
  auto& coordinator = ScheduleCoordinator::shared();
  const auto before = coordinator.getSettings();
  const auto settings = coordinator.changeSettings(how);
  auto& agent = LaunchAgentManager::shared();
  if (settings.frequency != before.frequency && agent.isInstalled()) {
    agent.install(windowProgram(), settings.frequency);
  }
  printScheduleSettings(session, settings);
  return ExitStatus::done;
}

ExitStatus runScheduleShow(Session& session, const Arguments& /*arguments*/) {
  printScheduleSettings(session, ScheduleCoordinator::shared().getSettings());
  return ExitStatus::done;
}

ExitStatus runScheduleEnable(Session& session, const Arguments& /*arguments*/) {
  return changeSchedule(session, [](ScheduleSettings& settings) { settings.isEnabled = true; });
}

ExitStatus runScheduleDisable(Session& session, const Arguments& /*arguments*/) {
  return changeSchedule(session, [](ScheduleSettings& settings) { settings.isEnabled = false; });
}

ScheduleFrequency frequencyFrom(const std::string& word) {
  if (word == "daily") return Daily{};
  if (word == "weekly") return Weekly{};
  if (word == "monthly") return Monthly{};
  if (word.starts_with(lowDiskPrefix)) {
    OnLowDiskSpace low;
    const auto* end = word.data() + word.size();
    const auto result = std::from_chars(word.data() + lowDiskPrefix.size(), end, low.thresholdGB);
    if (result.ec == std::errc() && result.ptr == end && low.thresholdGB > 0) return low;
    throw UsageError(
        fmt::format("{}: give the free space in GB as a whole number, such as low-disk:10", escapedForDisplay(word)));
  }
  throw UsageError(fmt::format("'{}' is none of daily, weekly, monthly and low-disk:GB", escapedForDisplay(word)));
}

ExitStatus runScheduleSet(Session& session, const Arguments& arguments) {
  const auto frequency = frequencyFrom(arguments.plain().front());
  return changeSchedule(session, [&](ScheduleSettings& settings) { settings.frequency = frequency; });
}

ExitStatus runDue(Session& session, const Arguments& /*arguments*/) {
  const bool isDue = ScheduleCoordinator::shared().isRunDue(freeBytes());
  if (session.isJson()) {
    session.out().line(jsonText(Json{{"due", isDue}}));
  } else {
    session.out().line(isDue ? "A scheduled cleanup is due." : "No scheduled cleanup is due.");
  }
  return ExitStatus::done;
}

ExitStatus runScheduleRun(Session& session, const Arguments& arguments) {
  const bool isToSave = arguments.has("--save");
  if (!isToSave) requireConsentPossible(arguments);
  tellJournalNotices();
  Proposal proposal;
  auto answer = Answer::yes;
  std::optional<ExitStatus> saved;
  const auto stop = session.stop();
  RunReport report;
  {
    ProgressLine line(session);
    report = ScheduleCoordinator::shared().carryOutScheduledRun({
        .approve =
            [&](const Approval& approval) {
              proposal = approval.proposal();
              tellNotices(proposal.notices());
              if (isToSave) {
                saved = saveProposal(session, arguments, approval);
                return false;
              }
              printMoves(session, proposal);
              if (!approval.empty()) answer = askToMove(session, arguments, approval);
              return answer == Answer::yes;
            },
        .progress = movingProgress(line),
        .stop = stop,
    });
  }
  tellJournalNotices();
  if (isToSave && saved) return *saved;
  if (isToSave) throw std::runtime_error("no rule is switched on, so there is nothing to save");
  if (answer == Answer::interrupted || (report.outcomes.empty() && stop.stop_requested())) {
    return ExitStatus::interrupted;
  }
  return printRulesReport(session, proposal, report);
}

constexpr ArgumentSpec frequencyArgument{.name = "FREQUENCY",
                                         .help = "daily, weekly, monthly, or low-disk:GB for a run when less is free.",
                                         .min = 1,
                                         .max = 1};

}  // namespace

constexpr CommandSpec scheduleShowCommand{
    .name = "schedule show",
    .summary = "Show when cleanups run by themselves",
    .details = "Scheduled cleanups offer every file of the granted folders to the rules that are on.",
    .arguments = {},
    .options = {},
    .run = runScheduleShow,
};

constexpr CommandSpec scheduleEnableCommand{
    .name = "schedule enable",
    .summary = "Let cleanups run by themselves",
    .details = "'orvanectl agent install' has them started while the window is closed.",
    .arguments = {},
    .options = {},
    .run = runScheduleEnable,
};

constexpr CommandSpec scheduleDisableCommand{
    .name = "schedule disable",
    .summary = "Let no cleanup run by itself",
    .details = "'orvanectl schedule run' still works.",
    .arguments = {},
    .options = {},
    .run = runScheduleDisable,
};

constexpr CommandSpec scheduleSetCommand{
    .name = "schedule set",
    .summary = "Say how often cleanups run by themselves",
    .details = "A background agent that is installed follows at once.",
    .arguments = frequencyArgument,
    .options = {},
    .run = runScheduleSet,
};

constexpr CommandSpec scheduleDueCommand{
    .name = "schedule due",
    .summary = "Say whether a scheduled cleanup is due",
    .details = "None is due while scheduled cleanups are off.",
    .arguments = {},
    .options = {},
    .run = runDue,
};

constexpr CommandSpec scheduleRunCommand{
    .name = "schedule run",
    .summary = "Carry out the scheduled cleanup now, due or not",
    .details =
        "Offers every file of the granted folders to the rules that are on, as one run that 'orvanectl restore' brings "
        "back, notes the time and shows a notification. Hidden files and what is inside of bundles are left out.",
    .arguments = {},
    .options = scheduleRunOptions,
    .run = runScheduleRun,
};

}  // namespace orvane::cli
