#include "cli/Arguments.h"
#include "cli/Consent.h"
#include "cli/FileArguments.h"
#include "cli/RunReport.h"
#include "cli/Session.h"
#include "cli/Table.h"
#include "cli/UsageError.h"
#include "cli/commands/Commands.h"
#include "core/base/ByteCount.h"
#include "core/base/Calendar.h"
#include "core/base/CheckedArithmetic.h"
#include "core/base/FileStatus.h"
#include "core/base/Json.h"
#include "core/base/UnicodeText.h"
#include "core/safety/TrashMover.h"
#include "core/safety/UndoJournal.h"
#include "core/uninstaller/AppUninstallerEngine.h"

#include <fmt/format.h>

#include <array>
#include <stdexcept>

namespace orvane::cli {
namespace {

std::string appCount(std::size_t count) {
  return fmt::format("{} {}", formatCount(static_cast<std::int64_t>(count)),
                     count == 1 ? "application" : "applications");
}

bool looksLikePath(std::string_view text) {
  return text.find('/') != std::string_view::npos || text.ends_with(".app");
}

template <typename Matches>
std::vector<InstalledApp> appsThat(const std::vector<InstalledApp>& apps, Matches matches) {
  std::vector<InstalledApp> result;
  for (const auto& app : apps) {
    if (matches(app)) result.push_back(app);
  }
  return result;
}

// The application that a path, a bundle identifier or a unique name means.
InstalledApp appMeantBy(const std::string& text) {
  auto& engine = AppUninstallerEngine::shared();
  if (looksLikePath(text)) {
    const auto place = placeFromArgument(text);
    if (itemExists(place.path().c_str())) return engine.appAt(place);
  }
  const auto apps = engine.listInstalledApps();
  auto found = appsThat(apps, [&](const InstalledApp& app) { return app.bundleIdentifier == text; });
  if (found.empty()) {
    const auto name = lowercased(text);
    found = appsThat(apps, [&](const InstalledApp& app) { return lowercased(app.name) == name; });
  }
  if (found.size() == 1) return found.front();
  if (found.empty()) {
    throw std::runtime_error(
        fmt::format("there is no application '{}'; 'orvanectl apps list' shows them", escapedForDisplay(text)));
  }
  std::string places;
  for (const auto& app : found) places += (places.empty() ? "" : ", ") + shownPath(app.url);
  throw UsageError(
      fmt::format("several applications are '{}': give the path of one ({})", escapedForDisplay(text), places));
}

ExitStatus runList(Session& session, const Arguments& arguments) {
  std::optional<std::vector<FileUrl>> directories;
  if (auto named = placesFromArguments(arguments.values("--directory")); !named.empty()) directories = std::move(named);
  const auto apps = AppUninstallerEngine::shared().listInstalledApps(directories);
  if (session.isJson()) {
    Json json = Json::array();
    for (const auto& app : apps) json.push_back(app.toJson());
    session.out().line(jsonText(json));
    return ExitStatus::done;
  }
  Table table(
      {{"Name"}, {"Version"}, {"Size", Alignment::right}, {"Last opened"}, {"Identifier"}, {"Protection"}, {"Path"}});
  std::int64_t bytes = 0;
  for (const auto& app : apps) {
    bytes = checkedAdd(bytes, app.appSize);
    table.addRow({{escapedForDisplay(app.name)},
                  {escapedForDisplay(app.version.value_or(""))},
                  {app.formattedSize()},
                  {app.lastOpenedDate ? formatDateTime(*app.lastOpenedDate) : ""},
                  {escapedForDisplay(app.bundleIdentifier.value_or(""))},
                  {app.isSystemProtected ? "protected" : "", Colour::yellow},
                  {shownPath(app.url)}});
  }
  if (!apps.empty()) table.print(session);
  session.out().line(fmt::format("{}, {}.", appCount(apps.size()), formatByteCount(bytes)));
  return ExitStatus::done;
}

std::int64_t leftoverBytes(const AppUninstallBundle& bundle) {
  std::int64_t bytes = 0;
  for (const auto& item : bundle.leftovers) bytes = checkedAdd(bytes, item.fileSize());
  return bytes;
}

std::string leftoverSummary(const AppUninstallBundle& bundle) {
  const auto count = bundle.leftovers.size();
  return fmt::format("{} {} ({})", formatCount(static_cast<std::int64_t>(count)), count == 1 ? "leftover" : "leftovers",
                     formatByteCount(leftoverBytes(bundle)));
}

void printBundle(Session& session, const AppUninstallBundle& bundle) {
  Table table({{"Size", Alignment::right}, {"What"}, {"Item"}});
  table.addRow({{bundle.app.formattedSize()}, {"application"}, {shownPath(bundle.app.url)}});
  for (const auto& item : bundle.leftovers) {
    table.addRow(
        {{item.formattedSize()}, {item.isSelected() ? "leftover" : "leftover, stays"}, {shownPath(item.url())}});
  }
  table.print(session);
}

ExitStatus runLeftovers(Session& session, const Arguments& arguments) {
  const auto bundle = AppUninstallerEngine::shared().findLeftovers(appMeantBy(arguments.plain().front()));
  if (session.isJson()) {
    session.out().line(jsonText(bundle.toJson()));
    return ExitStatus::done;
  }
  Table table({{"Size", Alignment::right}, {"Item"}});
  table.addRow({{bundle.app.formattedSize()}, {shownPath(bundle.app.url)}});
  for (const auto& item : bundle.leftovers) table.addRow({{item.formattedSize()}, {shownPath(item.url())}});
  table.print(session);
  session.out().line(fmt::format("{}: {} and {}.{}", escapedForDisplay(bundle.app.name), bundle.app.formattedSize(),
                                 leftoverSummary(bundle),
                                 bundle.app.isSystemProtected ? " Part of the system: it cannot be uninstalled." : ""));
  return ExitStatus::done;
}

ExitStatus runUninstall(Session& session, const Arguments& arguments) {
  requireConsentPossible(arguments);
  auto& engine = AppUninstallerEngine::shared();
  const auto app = appMeantBy(arguments.plain().front());
  engine.requireUninstallable(app);
  auto bundle = engine.findLeftovers(app);
  const bool takesLeftovers = arguments.has("--all-leftovers");
  for (auto& item : bundle.leftovers) item.setSelected(takesLeftovers);

  const auto count = takesLeftovers ? bundle.leftovers.size() + 1 : 1;
  const auto bytes = takesLeftovers ? checkedAdd(app.appSize, leftoverBytes(bundle)) : app.appSize;
  if (!arguments.has("--yes") && !session.isJson()) printBundle(session, bundle);
  if (!takesLeftovers && !bundle.leftovers.empty()) {
    Session::report(fmt::format("{} stay; --all-leftovers takes them too", leftoverSummary(bundle)));
  }
  switch (askConsent(session, arguments, trashQuestion(static_cast<std::int64_t>(count), bytes))) {
    case Answer::interrupted:
      return ExitStatus::interrupted;
    case Answer::no:
      return RunReport{}.print(session);
    case Answer::yes:
      break;
  }
  reportJournalNotices();
  const auto carryOut = [&](const CleanupRun::Progress& progress, const std::stop_token& stop) -> CarriedOut {
    auto result = engine.uninstall(bundle, TrashMover::shared(), UndoJournal::shared(), std::nullopt, progress, stop);
    return {result.runId, std::move(result.outcomes)};
  };
  return reportRun(session, carryOut).print(session);
}

constexpr std::array listOptions{
    OptionSpec{.name = "--directory",
               .valueName = "DIR",
               .help = "Look in this folder instead of the usual ones; may be given several times.",
               .kind = ValueKind::folder,
               .repeat = OptionSpec::Repeat::any},
};
constexpr std::array uninstallOptions{
    OptionSpec{.name = "--all-leftovers", .valueName = "", .help = "Take everything that 'apps leftovers' shows too."},
    OptionSpec{.name = "--yes", .valueName = "", .help = "Do not ask."},
};
constexpr ArgumentSpec appArgument{
    .name = "APP",
    .help = "Path of an application, its bundle identifier, or its name where no other has it.",
    .least = 1,
    .most = 1,
    .kind = ValueKind::path,
};

}  // namespace

constexpr CommandSpec appsListCommand{
    .name = "apps list",
    .summary = "List the installed applications",
    .details =
        "Lists the applications in /Applications and ~/Applications with their whole sizes, and tells which are "
        "part of the system and cannot be uninstalled. \"Last opened\" is when the executable was last read.",
    .arguments = {},
    .options = listOptions,
    .run = runList,
};

constexpr CommandSpec appsLeftoversCommand{
    .name = "apps leftovers",
    .summary = "Show what an application keeps in the Library",
    .details =
        "Shows the application and what it left in ~/Library: what is named by its bundle identifier, and "
        "folders named like the application where no other application can mean the same name.",
    .arguments = appArgument,
    .options = {},
    .run = runLeftovers,
};

constexpr CommandSpec appsUninstallCommand{
    .name = "apps uninstall",
    .summary = "Move an application to the Trash",
    .details =
        "Moves the application, and with --all-leftovers everything that 'orvanectl apps leftovers' shows, to the "
        "Trash as one run that 'orvanectl restore' brings back. The leftovers stay when the application cannot be "
        "moved.\n\n"
        "Applications of the system are refused. With --json, \"runId\" is null when nothing was moved.",
    .arguments = appArgument,
    .options = uninstallOptions,
    .run = runUninstall,
};

}  // namespace orvane::cli
