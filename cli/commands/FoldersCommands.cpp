#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/FileArguments.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "core/base/files/PlaceText.h"
#include "core/base/text/Json.h"
#include "core/tasks/Folders.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>

namespace orvane::cli {
namespace {

ExitStatus print(Session& session) {
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

ExitStatus runList(Session& session, const Arguments& /*arguments*/) {
  return print(session);
}

ExitStatus runAdd(Session& session, const Arguments& arguments) {
  if (const auto problem = grantFolders(TaskServices::shared(), placesFromArguments(arguments.plain()))) {
    Session::report(textOf(*problem));
    return ExitStatus::failed;
  }
  return print(session);
}

ExitStatus runRemove(Session& session, const Arguments& arguments) {
  const auto removal = removeGrants(TaskServices::shared(), placesFromArguments(arguments.plain()));
  for (const auto& folder : removal.notGranted) {
    Session::report(fmt::format("{}: is no granted folder", shownPath(folder)));
  }
  if (!removal.notGranted.empty()) return ExitStatus::failed;
  if (removal.wouldLeaveNone) {
    Session::report("at least one folder has to stay: add another one first");
    return ExitStatus::failed;
  }
  return print(session);
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
    .run = runList,
};

constexpr CommandSpec foldersAddCommand{
    .name = "folders add",
    .summary = "Grant a folder",
    .details = "Links are resolved. Folders of the system are refused.",
    .arguments =
        {.name = "DIR", .help = "The folder to look after.", .least = 1, .most = anyNumber, .kind = ValueKind::folder},
    .options = {},
    .run = runAdd,
};

constexpr CommandSpec foldersRemoveCommand{
    .name = "folders remove",
    .summary = "Take a grant back",
    .details = "Nothing in the folder is touched. The last folder cannot be taken away.",
    .arguments = {.name = "DIR",
                  .help = "The folder to leave alone from now on.",
                  .least = 1,
                  .most = anyNumber,
                  .kind = ValueKind::folder},
    .options = {},
    .run = runRemove,
};

}  // namespace orvane::cli
