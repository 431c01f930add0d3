#include "cli/Arguments.h"
#include "cli/CleanSelection.h"
#include "cli/Consent.h"
#include "cli/FileArguments.h"
#include "cli/Folders.h"
#include "cli/RunReport.h"
#include "cli/Session.h"
#include "cli/Table.h"
#include "cli/UsageError.h"
#include "cli/commands/Commands.h"
#include "core/base/ByteCount.h"
#include "core/base/CheckedArithmetic.h"
#include "core/base/FileDescriptor.h"
#include "core/base/FileStatus.h"
#include "core/base/PathText.h"
#include "core/base/UnicodeText.h"
#include "core/safety/PathValidator.h"
#include "core/scanning/StorageScanner.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <array>
#include <cerrno>
#include <string>
#include <string_view>
#include <unordered_set>

namespace orvane::cli {
namespace {

constexpr std::array options{
    OptionSpec{.name = "--root",
               .valueName = "FOLDER",
               .help = "Act only inside this folder instead of the granted ones; may be given several times.",
               .kind = ValueKind::folder,
               .repeat = OptionSpec::Repeat::any},
    OptionSpec{.name = "--yes", .valueName = "", .help = "Do not ask."},
};

struct Plan {
  std::vector<MoveRequest> requests;
  std::vector<RunReport::Failure> failures;
  std::int64_t bytes = 0;
};

AllowedRoots rootsFrom(const Arguments& arguments) {
  auto folders = placesFromArguments(arguments.values("--root"));
  if (folders.empty()) {
    return AllowedRoots(requiredGrantedFolders("the folder that may be acted in with --root FOLDER"));
  }
  for (const auto& folder : folders) {
    if (!itemExists(folder.path().c_str())) {
      throw UsageError(fmt::format("--root {}: {}", shownPath(folder), errorText(ENOENT)));
    }
  }
  return AllowedRoots(std::move(folders));
}

void addPlace(Plan& plan, const FileUrl& place, const AllowedRoots& roots) {
  try {
    PathValidator::shared().validate(place, roots);
  } catch (const SecurityError& error) {
    plan.failures.push_back({place, error.what()});
    return;
  }
  auto request = moveRequestFor(place, 0);
  if (!request) {
    plan.failures.push_back({place, errorText(errno)});
    return;
  }
  plan.requests.push_back(*std::move(request));
}

// What lies inside another of the items goes with it.
void keepOutermost(std::vector<MoveRequest>& requests) {
  std::unordered_set<std::string> paths;
  for (const auto& request : requests) paths.insert(request.source.path());
  std::erase_if(requests, [&](const MoveRequest& request) {
    std::string_view folder = request.source.path();
    while (folder.size() > 1) {
      folder = parentPath(folder);
      if (paths.contains(std::string(folder))) return true;
    }
    return false;
  });
}

Plan planFor(const std::vector<FileUrl>& places, const AllowedRoots& roots) {
  Plan plan;
  for (const auto& place : places) addPlace(plan, place, roots);
  keepOutermost(plan.requests);
  for (auto& request : plan.requests) {
    // Only a folder is told by its name alone.
    if (!request.expectedIdentity) request.fileSize = StorageScanner::fastFolderSize(request.source.path());
    plan.bytes = checkedAdd(plan.bytes, request.fileSize);
  }
  return plan;
}

void showPlan(Session& session, const Plan& plan) {
  Table table({{"Size", Alignment::right}, {"Item"}});
  for (const auto& request : plan.requests) {
    table.addRow({{formatByteCount(request.fileSize)}, {shownPath(request.source)}});
  }
  if (!session.isJson()) table.print(session);
  for (const auto& warning : cloudWarnings(plan.requests)) Session::tell(escapedForDisplay(warning));
}

ExitStatus run(Session& session, const Arguments& arguments) {
  requireConsentPossible(arguments);
  const auto roots = rootsFrom(arguments);
  auto plan = planFor(placesFromArguments(arguments.plain()), roots);
  RunReport nothing;
  nothing.failures = plan.failures;
  if (plan.requests.empty()) return nothing.print(session);
  if (!arguments.has("--yes")) showPlan(session, plan);
  switch (askConsent(session, arguments, trashQuestion(static_cast<std::int64_t>(plan.requests.size()), plan.bytes))) {
    case Answer::interrupted:
      return ExitStatus::interrupted;
    case Answer::no:
      return nothing.print(session);
    case Answer::yes:
      break;
  }
  reportJournalNotices();
  return moveToTrash(session, roots, plan.requests, std::move(plan.failures)).print(session);
}

}  // namespace

constexpr CommandSpec trashCommand{
    .name = "trash",
    .summary = "Move the named items to the Trash",
    .details =
        "Moves files and folders to the Trash as one run that 'orvanectl restore' brings back. A symbolic link is "
        "moved as a link.\n\n"
        "Only items inside the allowed folders are moved: those of --root, else the granted folders. With "
        "--json, \"runId\" is null when nothing was moved.",
    .arguments = {.name = "PATH", .help = "Items to move.", .least = 1, .most = anyNumber, .kind = ValueKind::path},
    .options = options,
    .run = run,
};

}  // namespace orvane::cli
