#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/FileArguments.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "cli/text/Table.h"
#include "core/base/files/PlaceText.h"
#include "core/base/text/Json.h"
#include "core/tasks/Folders.h"
#include "core/tasks/KnownPlaces.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>

#include <array>

namespace orvane::cli {
namespace {

constexpr std::array<std::string_view, 2> switchStates{"on", "off"};

ExitStatus printFolders(Session& session) {
  const auto folders = listedGrants(TaskServices::shared());
  if (session.isJson()) {
    Json json = Json::array();
    for (const auto& folder : folders) json.push_back(pathOrUrl(folder));
    session.out().line(jsonText(json));
    return ExitStatus::done;
  }
  for (const auto& folder : folders) session.out().line(shownPath(folder));
  if (folders.empty()) session.out().line("There is none: 'orvanectl folders add DIR' grants one.");
  return ExitStatus::done;
}

ExitStatus runFoldersList(Session& session, const Arguments& /*arguments*/) {
  return printFolders(session);
}

ExitStatus runKnown(Session& session, const Arguments& arguments) {
  const auto& services = TaskServices::shared();
  if (!arguments.plain().empty()) {
    grantKnownPlaces(services, arguments.plain().front() == "on" ? KnownPlaces::include : KnownPlaces::leaveOut);
  }
  const bool isOn = grantedKnownPlaces(services) == KnownPlaces::include;
  const auto places = knownPlaceItems(services, DeveloperCaches::include, {});
  if (session.isJson()) {
    Json json = Json::object();
    json["enabled"] = isOn;
    auto& items = json["items"] = Json::array();
    for (const auto& place : places) items.push_back(place.toJson());
    session.out().line(jsonText(json));
    return ExitStatus::done;
  }
  Table table({{"Size", Alignment::right}, {"Risk"}, {"Place"}, {"Why"}});
  for (const auto& place : places) {
    table.addRow({{place.formattedSize()},
                  {std::string(rawValue(place.riskLabel()))},
                  {shownPath(place.url())},
                  {knownPlaceReason(services, place, AppLanguage::en)}});
  }
  if (!places.empty()) table.print(session);
  session.out().line(isOn ? "Caches and logs of programs are scanned." : "Caches and logs of programs are left out.");
  return ExitStatus::done;
}

ExitStatus runFoldersAdd(Session& session, const Arguments& arguments) {
  const auto& services = TaskServices::shared();
  const auto folders = placesFromArguments(arguments.plain());
  if (const auto problem = grantFolders(services, folders)) {
    Session::report(textOf(*problem));
    return ExitStatus::failed;
  }
  for (const auto& folder : folders) {
    const auto holder = grantHolding(services, folder);
    if (holder)
      Session::report(fmt::format("{} is covered by {}: it counts once", shownPath(folder), shownPath(*holder)));
  }
  return printFolders(session);
}

ExitStatus runFoldersRemove(Session& session, const Arguments& arguments) {
  const auto removal = removeGrants(TaskServices::shared(), placesFromArguments(arguments.plain()));
  for (const auto& folder : removal.notGranted) {
    Session::report(fmt::format("{}: is no granted folder", shownPath(folder)));
  }
  if (!removal.notGranted.empty()) return ExitStatus::failed;
  if (removal.wouldLeaveNone) {
    Session::report("at least one folder has to stay: add another one first");
    return ExitStatus::failed;
  }
  return printFolders(session);
}

}  // namespace

constexpr CommandSpec foldersListCommand{
    .name = "folders list",
    .summary = "List the granted folders",
    .details =
        "The folders that Orvane looks after: those that are scanned where none is named, and the only ones that "
        "rules, "
        "plans and scheduled cleanups change anything in. Downloads, Documents, Desktop, Pictures and the caches "
        "folder, "
        "as far as they exist, until others are chosen.",
    .arguments = {},
    .options = {},
    .run = runFoldersList,
};

constexpr CommandSpec foldersKnownCommand{
    .name = "folders known",
    .summary = "Show the caches and logs of programs, or switch them on or off",
    .details =
        "The places where programs keep what they can make again or nobody reads any more. They count as one grant of "
        "their own: 'scan' and 'clean' look through them where no folder is named, without walking the hidden folders "
        "around them. What a running program uses is shown, and not selected. With --json, prints "
        "{\"enabled\",\"items\"}.",
    .arguments = {.name = "STATE",
                  .help = "on or off; neither only shows.",
                  .min = 0,
                  .max = 1,
                  .kind = ValueKind::choice,
                  .choices = switchStates},
    .options = {},
    .run = runKnown,
};

constexpr CommandSpec foldersAddCommand{
    .name = "folders add",
    .summary = "Grant a folder",
    .details = "Links are resolved. Folders of the system are refused.",
    .arguments =
        {.name = "DIR", .help = "The folder to look after.", .min = 1, .max = anyNumber, .kind = ValueKind::folder},
    .options = {},
    .run = runFoldersAdd,
};

constexpr CommandSpec foldersRemoveCommand{
    .name = "folders remove",
    .summary = "Take a grant back",
    .details = "Nothing in the folder is touched. The last folder cannot be taken away.",
    .arguments = {.name = "DIR",
                  .help = "The folder to leave alone from now on.",
                  .min = 1,
                  .max = anyNumber,
                  .kind = ValueKind::folder},
    .options = {},
    .run = runFoldersRemove,
};

}  // namespace orvane::cli
