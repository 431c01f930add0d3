#include "cli/Arguments.h"
#include "cli/FileArguments.h"
#include "cli/Folders.h"
#include "cli/Session.h"
#include "cli/commands/Commands.h"
#include "core/base/CanonicalPath.h"
#include "core/base/Json.h"
#include "core/safety/FileAccessService.h"

#include <fmt/format.h>

#include <set>
#include <string>

namespace orvane::cli {
namespace {

ExitStatus print(Session& session) {
  const auto folders = FileAccessService::shared().getManagedFolderURLs();
  if (session.isJson()) {
    Json json = Json::array();
    for (const auto& folder : folders) json.push_back(pathForJson(folder));
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

// What counts as granted as long as nothing is stored; the first grant must not take these away unasked.
void keepDefaults() {
  auto& service = FileAccessService::shared();
  if (service.hasGrants()) return;
  for (const auto& folder : service.getManagedFolderURLs()) service.saveBookmark(folder);
}

ExitStatus runAdd(Session& session, const Arguments& arguments) {
  const auto folders = placesFromArguments(arguments.plain());
  for (const auto& folder : folders) {
    if (const auto refusal = refusalOf(folder)) {
      Session::report(*refusal);
      return ExitStatus::failed;
    }
  }
  keepDefaults();
  for (const auto& folder : folders) FileAccessService::shared().saveBookmark(folder);
  return print(session);
}

ExitStatus runRemove(Session& session, const Arguments& arguments) {
  auto& service = FileAccessService::shared();
  // By where they lead: two names may mean one folder, and without any grant the defaults would count again.
  std::set<std::string> left;
  for (const auto& folder : service.getManagedFolderURLs()) left.insert(canonicalPath(folder.path()));
  const auto granted = left;
  const auto folders = placesFromArguments(arguments.plain());
  auto status = ExitStatus::done;
  for (const auto& folder : folders) {
    const auto path = canonicalPath(folder.path());
    left.erase(path);
    if (granted.contains(path)) continue;
    Session::report(fmt::format("{}: is no granted folder", shownPath(folder)));
    status = ExitStatus::failed;
  }
  if (status != ExitStatus::done) return status;
  if (left.empty()) {
    Session::report("at least one folder has to stay: add another one first");
    return ExitStatus::failed;
  }
  keepDefaults();
  for (const auto& folder : folders) service.removeManagedFolder(folder);
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
