#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/FileArguments.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "cli/frame/UsageError.h"
#include "cli/text/Table.h"
#include "core/base/files/FileStatus.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/base/values/Calendar.h"
#include "core/base/values/CheckedArithmetic.h"
#include "core/tasks/TaskServices.h"
#include "core/tasks/UninstallTask.h"

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

// The application that a path, a bundle identifier or a unique name means.
FileUrl appMeantBy(const std::string& text) {
  if (looksLikePath(text)) {
    auto place = placeFromArgument(text);
    if (itemExists(place.path().c_str())) return place;
  }
  const auto found = appsMeantBy(TaskServices::shared(), text);
  if (found.size() == 1) return found.front().url;
  if (found.empty()) {
    throw std::runtime_error(
        fmt::format("there is no application '{}'; 'orvanectl apps list' shows them", escapedForDisplay(text)));
  }
  std::string places;
  for (const auto& app : found) places += (places.empty() ? "" : ", ") + shownPath(app.url);
  throw UsageError(
      fmt::format("several applications are '{}': give the path of one ({})", escapedForDisplay(text), places));
}

std::string kindText(const InstalledApp& app) {
  if (!app.system) return "bundle";
  const auto& system = *app.system;
  switch (system.kind) {
    case SystemApplication::Kind::appImage:
      return "AppImage";
    case SystemApplication::Kind::flatpak:
      return "Flatpak";
    case SystemApplication::Kind::flatpakData:
      return "left over from Flatpak";
    case SystemApplication::Kind::desktopEntry:
      return system.isOrphan ? "menu entry, program gone" : "menu entry";
    case SystemApplication::Kind::versionedTool:
      return "tool";
    case SystemApplication::Kind::package:
      return "package";
  }
  return {};
}

std::string protectionText(const InstalledApp& app) {
  if (!app.isSystemProtected) return {};
  if (!app.system || app.system->removalCommand.empty()) return "protected";
  return "remove with: " + escapedForDisplay(app.system->removalCommand);
}

ExitStatus runAppsList(Session& session, const Arguments& arguments) {
  const auto& services = TaskServices::shared();
  auto apps = installedApps(services, placesFromArguments(arguments.values("--directory")));
  static_cast<void>(measureApps(services, apps));
  if (session.isJson()) {
    Json json = Json::array();
    for (const auto& app : apps) json.push_back(app.toJson());
    session.out().line(jsonText(json));
    return ExitStatus::done;
  }
  Table table({{"Name"},
               {"Version"},
               {"Size", Alignment::right},
               {"Last opened"},
               {"Kind"},
               {"Identifier"},
               {"Protection"},
               {"Path"}});
  std::int64_t bytes = 0;
  for (const auto& app : apps) {
    bytes = checkedAdd(bytes, app.appSize);
    table.addRow({{escapedForDisplay(app.name)},
                  {escapedForDisplay(app.version.value_or(""))},
                  {app.formattedSize()},
                  {app.lastOpenedDate ? formatDateTime(*app.lastOpenedDate) : ""},
                  {kindText(app)},
                  {escapedForDisplay(app.bundleIdentifier.value_or(""))},
                  {protectionText(app), Colour::yellow},
                  {shownPath(app.url)}});
  }
  if (!apps.empty()) table.print(session);
  session.out().line(fmt::format("{}, {}.", appCount(apps.size()), formatByteCount(bytes)));
  return ExitStatus::done;
}

std::string protectionNote(const InstalledApp& app) {
  if (!app.isSystemProtected) return {};
  if (!app.system || app.system->removalCommand.empty()) return " Part of the system: it cannot be uninstalled.";
  return " Its package manager removes it: " + escapedForDisplay(app.system->removalCommand);
}

ExitStatus runLeftovers(Session& session, const Arguments& arguments) {
  const auto bundle = bundleAt(TaskServices::shared(), appMeantBy(arguments.plain().front()));
  if (session.isJson()) {
    session.out().line(jsonText(bundle.toJson()));
    return ExitStatus::done;
  }
  RowSum leftovers;
  Table table({{"Size", Alignment::right}, {"Item"}});
  table.addRow({{bundle.app.formattedSize()}, {shownPath(bundle.app.url)}});
  for (const auto& item : bundle.leftovers) {
    leftovers.add(item.fileSize());
    table.addRow({{item.formattedSize()}, {shownPath(item.url())}});
  }
  table.print(session);
  session.out().line(fmt::format("{}: {} and {}.{}", escapedForDisplay(bundle.app.name), bundle.app.formattedSize(),
                                 leftoversText(leftovers), protectionNote(bundle.app)));
  return ExitStatus::done;
}

void printAppsProposal(Session& session, const Proposal& proposal) {
  Table table({{"Size", Alignment::right}, {"What"}, {"Item"}});
  proposal.forEach([&](std::size_t index, const ProposedRow& row) {
    const auto* const kept = row.choice == Choice::selected ? "goes with it" : "leftover, stays";
    table.addRow({{row.item.formattedSize()}, {index == 0 ? "application" : kept}, {shownPath(row.item.url())}});
  });
  table.print(session);
}

ExitStatus runAppsUninstall(Session& session, const Arguments& arguments) {
  const bool isToSave = arguments.has("--save");
  if (!isToSave) requireConsentPossible(arguments);
  const auto leftovers = arguments.has("--all-leftovers") ? Leftovers::take : Leftovers::leave;
  const auto proposal = proposeUninstall(TaskServices::shared(), {appMeantBy(arguments.plain().front()), leftovers});
  if (isToSave) return saveProposal(session, arguments, proposal.approve());
  if (!arguments.has("--yes") && !session.isJson()) printAppsProposal(session, proposal);
  tellNotices(proposal.notices());
  return askAndMove(session, arguments, proposal.approve());
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
    saveOption,
    OptionSpec{.name = "--yes", .valueName = "", .help = "Do not ask."},
};
constexpr ArgumentSpec appArgument{
    .name = "APP",
    .help = "Path of an application, its bundle identifier, or its name where no other has it.",
    .min = 1,
    .max = 1,
    .kind = ValueKind::path,
};

}  // namespace

constexpr CommandSpec appsListCommand{
    .name = "apps list",
    .summary = "List the installed applications",
    .details =
        "Lists the applications in /Applications and ~/Applications with their whole sizes, and tells which are "
        "part of the system and cannot be uninstalled. \"Last opened\" is when the executable was last read.\n\n"
        "Where no folder is named, AppImages, Flatpaks, your own menu entries, what is left over of Flatpaks and "
        "packages with a menu entry are listed too. Flatpaks and packages belong to their package manager: the list "
        "shows the command that removes them.",
    .arguments = {},
    .options = listOptions,
    .run = runAppsList,
};

constexpr CommandSpec appsLeftoversCommand{
    .name = "apps leftovers",
    .summary = "Show what an application keeps in the Library",
    .details =
        "Shows the application and what it left in ~/Library: what is named by its bundle identifier, and "
        "folders named like the application where no other application can mean the same name. Of an AppImage, a "
        "menu entry or a tool: the folders named exactly by its identifier.",
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
        "An AppImage takes its menu entry with it. Applications of the system and of package managers are refused. "
        "With --json, \"runId\" is null when nothing was moved.",
    .arguments = appArgument,
    .options = uninstallOptions,
    .run = runAppsUninstall,
};

}  // namespace orvane::cli
