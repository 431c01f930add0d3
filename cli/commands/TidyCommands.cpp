#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/Consent.h"
#include "cli/frame/FileArguments.h"
#include "cli/frame/Folders.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "cli/frame/UsageError.h"
#include "cli/text/OrganizeText.h"
#include "core/base/files/PlaceText.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/base/values/Calendar.h"
#include "core/organizer/services/AutoOrganizeSettingsStore.h"
#include "core/organizer/tidy/AutoOrganizeController.h"
#include "core/platform/LoginItems.h"
#include "core/platform/RepeatingTimer.h"
#include "core/tasks/NamedTopics.h"
#include "core/tasks/TaskServices.h"
#include "core/tasks/TidyTask.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace orvane::cli {
namespace {

constexpr std::array<std::string_view, 2> switchWords{"on", "off"};

constexpr std::array setOptions{
    OptionSpec{.name = "--days", .valueName = "N", .help = "How long an item counts as recent: 1 to 30 days."},
    OptionSpec{.name = "--folder",
               .valueName = "DIR",
               .help = "Watch this folder instead of those before; may be given several times.",
               .kind = ValueKind::folder,
               .repeat = OptionSpec::Repeat::any},
    OptionSpec{.name = "--ai-topics",
               .valueName = "on|off",
               .help = "Let a language model on this machine name folders for older items.",
               .kind = ValueKind::choice,
               .choices = switchWords},
};
constexpr std::array tidyRunOptions{
    saveOption,
    OptionSpec{.name = "--returned",
               .valueName = "",
               .help = "Take what was brought back before as well, though it has not changed since."},
    OptionSpec{.name = "--yes", .valueName = "", .help = "Do not ask."},
};

std::string topicsText(const AutoOrganizeSettings& settings) {
  if (!settings.useAITopics) return "off";
  const auto reason = topicsUnavailableReason(TaskServices::shared());
  return reason.empty() ? "on" : fmt::format("on, but not used: {}", escapedForDisplay(reason));
}

std::string lastRunText(const AutoOrganizeSettings& settings) {
  if (!settings.lastRunDate) return "never";
  return fmt::format("{}, {} moved", formatDateTime(*settings.lastRunDate), itemCount(settings.lastRunMovedCount));
}

void printTidySettings(Session& session, const AutoOrganizeSettings& settings) {
  if (session.isJson()) {
    session.out().line(jsonText(settings.toJson()));
    return;
  }
  const auto row = [&](std::string_view title, std::string_view text) {
    session.out().line(fmt::format("{:<18}{}", title, text));
  };
  row("Tidying by itself", settings.isEnabled ? "on" : "off");
  row("Recent for",
      fmt::format("{} {}", formatCount(settings.recentsDays), settings.recentsDays == 1 ? "day" : "days"));
  std::string_view title = "Folders";
  for (const auto& folder : settings.folderURLs()) {
    row(title, shownPath(folder));
    title = "";
  }
  row("Topics", topicsText(settings));
  row("Last run", lastRunText(settings));
}

ExitStatus runTidyShow(Session& session, const Arguments& /*arguments*/) {
  printTidySettings(session, AutoOrganizeSettingsStore::shared().get());
  return ExitStatus::done;
}

ExitStatus changeTidy(Session& session, const std::function<void(AutoOrganizeSettings&)>& how) {
  printTidySettings(session, AutoOrganizeSettingsStore::shared().update(how));
  return ExitStatus::done;
}

ExitStatus runTidyEnable(Session& session, const Arguments& /*arguments*/) {
  return changeTidy(session, [](AutoOrganizeSettings& settings) { settings.isEnabled = true; });
}

ExitStatus runTidyDisable(Session& session, const Arguments& /*arguments*/) {
  return changeTidy(session, [](AutoOrganizeSettings& settings) { settings.isEnabled = false; });
}

std::int64_t daysFrom(const std::string& text) {
  constexpr auto range = AutoOrganizeSettings::recentsDayRange;
  std::int64_t days = 0;
  const auto* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, days);
  if (result.ec != std::errc() || result.ptr != end || days < range.first || days > range.last) {
    throw UsageError(
        fmt::format("--days {}: give a number from {} to {}", escapedForDisplay(text), range.first, range.last));
  }
  return days;
}

ExitStatus runTidySet(Session& session, const Arguments& arguments) {
  const auto days = arguments.value("--days");
  const auto topics = arguments.value("--ai-topics");
  const auto folders = placesFromArguments(arguments.values("--folder"));
  if (!days && !topics && folders.empty()) throw UsageError("name what to set: --days, --folder or --ai-topics");
  std::vector<std::string> paths;
  for (const auto& folder : folders) {
    if (const auto refusal = refusalOf(folder)) throw UsageError(fmt::format("--folder: {}", *refusal));
    paths.push_back(pathOrUrl(folder));
  }
  const auto dayCount = days ? std::optional(daysFrom(*days)) : std::nullopt;
  return changeTidy(session, [&](AutoOrganizeSettings& settings) {
    if (dayCount) settings.recentsDays = *dayCount;
    if (topics) settings.useAITopics = *topics == switchWords.front();
    if (!paths.empty()) settings.folderPaths = paths;
  });
}

// The terminal's runs are single ones.
class NoTimer : public RepeatingTimer {
 public:
  void start(std::chrono::seconds /*interval*/, std::function<void()> /*tick*/) override {}
  void stop() override {}
};
class NoLoginItems : public LoginItems {
 public:
  [[nodiscard]] bool isEnabled() const override { return false; }
  void setEnabled(bool /*isEnabled*/) override { throw std::runtime_error("the terminal program starts nothing"); }
};

Answer askAbout(Session& session, const Arguments& arguments, std::span<const TidyProposal> proposals) {
  std::int64_t count = 0;
  for (const auto& [folder, proposal] : proposals) {
    const auto approval = proposal.approve();
    count += approval.toFolders().count;
    if (!session.isJson() && !arguments.has("--yes")) {
      session.out().line(fmt::format("{}:", shownPath(folder)));
      printGroups(session, proposal);
    }
    tellSynced(approval);
  }
  return askConsent(session, arguments, fmt::format("Move {}?", itemCount(count)));
}

void printReport(Session& session, const AutoOrganizeResult& result, const std::string& status) {
  if (session.isJson()) {
    Json json = Json::object();
    json["result"] = result.toJson();
    json["statusMessage"] = status;
    session.out().line(jsonText(json));
    return;
  }
  session.out().line(status);
  for (const auto& id : result.batchIDs) {
    session.out().line(fmt::format("To bring everything back: orvanectl restore {}", id.toString()));
  }
}

ReturnedUse returnedUse(const Arguments& arguments) {
  return arguments.has("--returned") ? ReturnedUse::take : ReturnedUse::leave;
}

ExitStatus saveLook(Session& session, const Arguments& arguments) {
  auto options = TidyOptions::of(AutoOrganizeSettingsStore::shared().get());
  options.returned = returnedUse(arguments);
  const auto proposal = proposeTidy(TaskServices::shared(), options, ReferenceClock::now(), {.stop = session.stop()});
  if (!proposal) return interruptedBeforeChange();
  tellNotices(proposal->notices());
  return statusWith(proposal->notices(), saveProposal(session, arguments, proposal->approve()));
}

ExitStatus runTidyRun(Session& session, const Arguments& arguments) {
  if (arguments.has("--save")) return saveLook(session, arguments);
  requireConsentPossible(arguments);
  NoTimer timer;
  NoLoginItems loginItems;
  AutoOrganizeController controller({.organizer = AutoOrganizer::shared(),
                                     .store = AutoOrganizeSettingsStore::shared(),
                                     .factory = TaskServices::shared().topics,
                                     .timer = timer,
                                     .loginItems = loginItems});
  tellJournalNotices();
  const auto stop = session.stop();
  auto answer = Answer::yes;
  const auto report = controller.runNow(
      [&](std::span<const TidyProposal> proposals) {
        answer = askAbout(session, arguments, proposals);
        return answer == Answer::yes;
      },
      stop, {}, returnedUse(arguments));
  tellJournalNotices();
  switch (report.end) {
    case AutoOrganizeReport::End::busy:
      Session::report("another run is tidying up at this moment; nothing was changed");
      return ExitStatus::failed;
    case AutoOrganizeReport::End::declined:
      printReport(session, report.result, "Nothing was moved.");
      return answer == Answer::interrupted ? ExitStatus::interrupted : ExitStatus::done;
    case AutoOrganizeReport::End::completed:
      break;
  }
  tellNotices(report.notices);
  auto status = ExitStatus::done;
  for (const auto& [proposal, run] : report.runs) {
    if (const auto ending = tellFailures(proposal, run); ending != ExitStatus::done) status = ending;
  }
  printReport(session, report.result, controller.statusMessage().value_or(""));
  return stop.stop_requested() ? ExitStatus::interrupted : status;
}

constexpr ArgumentSpec noArguments{};

}  // namespace

constexpr CommandSpec tidyShowCommand{
    .name = "tidy show",
    .summary = "Show how watched folders are kept tidy",
    .details = "Shows the settings of the automatic organizer and what its last run did.",
    .arguments = noArguments,
    .options = {},
    .run = runTidyShow,
};

constexpr CommandSpec tidyEnableCommand{
    .name = "tidy enable",
    .summary = "Keep the watched folders tidy without being asked",
    .details = "From now on the program tidies the watched folders by itself while it runs, and in its scheduled runs.",
    .arguments = noArguments,
    .options = {},
    .run = runTidyEnable,
};

constexpr CommandSpec tidyDisableCommand{
    .name = "tidy disable",
    .summary = "Tidy only when asked",
    .details = "'orvanectl tidy run' still works.",
    .arguments = noArguments,
    .options = {},
    .run = runTidyDisable,
};

constexpr CommandSpec tidySetCommand{
    .name = "tidy set",
    .summary = "Change how watched folders are kept tidy",
    .details =
        "Topics need a model server on this machine that speaks the common chat-completions form. Its address is the "
        "setting \"OrvaneLocalModelEndpoint\" in preferences.json, such as \"http://127.0.0.1:11434\", and the model's "
        "name \"OrvaneLocalModelName\". Only the names of items are sent, and only to this machine.",
    .arguments = noArguments,
    .options = setOptions,
    .run = runTidySet,
};

constexpr CommandSpec tidyRunCommand{
    .name = "tidy run",
    .summary = "Tidy the watched folders now",
    .details =
        "Moves what arrived lately into \"Recents\" inside each watched folder and sorts older files into folders "
        "below "
        "\"Sorted\", each folder as one run that 'orvanectl restore' brings back. What is in \"Sorted\" or \"Keep As "
        "Is\", older folders that were never recent, hidden items, links, downloads in progress, whatever changed in "
        "the last two minutes and what was brought back and has not changed since stay where they are.",
    .arguments = noArguments,
    .options = tidyRunOptions,
    .run = runTidyRun,
};

}  // namespace orvane::cli
