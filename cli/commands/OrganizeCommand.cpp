#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/FileArguments.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "cli/frame/UsageError.h"
#include "cli/text/OrganizeText.h"
#include "cli/text/Table.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/tasks/OrganizeTask.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvane::cli {
namespace {

struct StrategyRow {
  std::string_view name;
  OrganizationStrategy strategy;
};
constexpr std::array strategies{
    StrategyRow{"category", OrganizationStrategy::byCategory},
    StrategyRow{"date", OrganizationStrategy::byDate},
    StrategyRow{"type", OrganizationStrategy::byType},
};
constexpr std::array<std::string_view, 3> organizeStrategyNames{strategies[0].name, strategies[1].name,
                                                                strategies[2].name};

constexpr std::array organizeOptions{
    OptionSpec{.name = "--strategy",
               .valueName = "HOW",
               .help = "Group by category (the default), date or type.",
               .kind = ValueKind::choice,
               .choices = organizeStrategyNames},
    OptionSpec{.name = "--destination",
               .valueName = "DIR",
               .help = "Make the category folders here instead of in FOLDER/Organized.",
               .kind = ValueKind::folder},
    OptionSpec{.name = "--subfolders", .valueName = "", .help = "Propose the files of all subfolders too."},
    OptionSpec{.name = "--rename",
               .valueName = "OLD=NEW",
               .help = "Give the group OLD another name, remembered once it is applied; may be given several times.",
               .repeat = OptionSpec::Repeat::any},
    OptionSpec{.name = "--apply", .valueName = "", .help = "Move what is proposed."},
    OptionSpec{.name = "--learned", .valueName = "", .help = "List the names that renamed groups taught, and stop."},
    OptionSpec{.name = "--forget", .valueName = "", .help = "Forget those names, and stop."},
    saveOption,
    OptionSpec{.name = "--yes", .valueName = "", .help = "Do not ask."},
};

OrganizationStrategy organizeStrategyFrom(const Arguments& arguments) {
  const auto name = arguments.value("--strategy").value_or(std::string(strategies.front().name));
  return std::find_if(strategies.begin(), strategies.end(), [&](const auto& row) { return row.name == name; })
      ->strategy;
}

struct Rename {
  std::string from;
  std::string to;
};

Rename renameFrom(const std::string& text) {
  const auto sign = text.find('=');
  if (sign == std::string::npos || sign == 0) {
    throw UsageError(fmt::format("--rename {}: give it as OLD=NEW", escapedForDisplay(text)));
  }
  return {text.substr(0, sign), text.substr(sign + 1)};
}

// Renames each, and gives the indexes of the groups that were.
std::vector<std::size_t> renameGroups(Proposal& proposal, const std::vector<Rename>& renames) {
  std::vector<std::size_t> renamed;
  for (const auto& rename : renames) {
    const auto& groups = proposal.groups();
    const auto found = std::ranges::find(groups, rename.from, &RowGroup::name);
    if (found == groups.end()) {
      throw UsageError(fmt::format("--rename: there is no group '{}'", escapedForDisplay(rename.from)));
    }
    renamed.push_back(static_cast<std::size_t>(found - groups.begin()));
    auto changed = renameGroup(TaskServices::shared(), proposal, proposal.selection(), renamed.back(), rename.to);
    if (!changed) {
      throw UsageError(fmt::format("--rename: '{}' is no name for a folder", escapedForDisplay(rename.to)));
    }
    proposal = *std::move(changed);
  }
  return renamed;
}

OrganizeOptions organizeOptionsFrom(const Arguments& arguments) {
  OrganizeOptions options{.folder = placeFromArgument(arguments.plain().front()),
                          .strategy = organizeStrategyFrom(arguments)};
  if (const auto destination = arguments.value("--destination")) options.destination = placeFromArgument(*destination);
  if (arguments.has("--subfolders")) options.subfolders = Subfolders::include;
  return options;
}

ExitStatus printSummary(Session& session, const Proposal& proposal, const RunReport& report) {
  if (!session.isJson()) return printReport(session, proposal, report);
  const auto status = tellFailures(proposal, report);
  auto summary = report.summary();
  summary.timestamp = report.started;
  session.out().line(jsonText(summary.toJson()));
  return status;
}

ExitStatus printLearned(Session& session) {
  const auto names = rememberedNames(TaskServices::shared());
  if (session.isJson()) {
    Json json = Json::object();
    for (const auto& [kind, name] : names) json[kind] = name;
    session.out().line(jsonText(json));
    return ExitStatus::done;
  }
  Table table({{"Kind"}, {"Folder"}});
  for (const auto& [kind, name] : names) {
    table.addRow({{kind.empty() ? "(no extension)" : escapedForDisplay(kind)}, {escapedForDisplay(name)}});
  }
  if (names.empty()) {
    session.out().line("No name is remembered.");
  } else {
    table.print(session);
  }
  return ExitStatus::done;
}

ExitStatus apply(Session& session, const Arguments& arguments, const Proposal& proposal,
                 const std::vector<std::size_t>& renamed) {
  const auto approval = proposal.approve();
  if (approval.empty()) return printSummary(session, proposal, {});
  switch (askToMove(session, arguments, approval)) {
    case Answer::interrupted:
      return ExitStatus::interrupted;
    case Answer::no:
      return printSummary(session, proposal, {});
    case Answer::yes:
      break;
  }
  const auto report = moveApproved(session, approval);
  rememberNames(TaskServices::shared(), proposal, filledGroups(proposal, renamed, report));
  return printSummary(session, proposal, report);
}

void printOrganize(Session& session, const Proposal& proposal, const FileUrl& folder) {
  if (session.isJson()) {
    Json json = Json::array();
    for (const auto& group : groupsOf(proposal)) json.push_back(group.toJson());
    session.out().line(jsonText(json));
  } else if (proposal.empty()) {
    session.out().line(fmt::format("There is nothing to organize in {}.", shownPath(folder)));
  } else {
    printGroups(session, proposal);
  }
}

ExitStatus runOrganize(Session& session, const Arguments& arguments) {
  if (arguments.has("--forget")) forgetNames(TaskServices::shared());
  if (arguments.has("--forget") || arguments.has("--learned")) return printLearned(session);
  if (arguments.plain().empty()) throw UsageError("name the FOLDER to sort");
  const bool isToSave = arguments.has("--save");
  const bool isToApply = arguments.has("--apply") && !isToSave;
  if (isToApply) requireConsentPossible(arguments);
  const auto options = organizeOptionsFrom(arguments);
  std::vector<Rename> renames;
  for (const auto& text : arguments.values("--rename")) renames.push_back(renameFrom(text));
  auto proposal = proposeOrganize(TaskServices::shared(), options, ReferenceClock::now(), {.stop = session.stop()});
  if (!proposal) return interruptedBeforeChange();
  tellNotices(proposal->notices());
  if (firstNotice<FolderLeftOut>(proposal->notices()) != nullptr) return ExitStatus::failed;
  const auto renamed = renameGroups(*proposal, renames);
  if (isToSave) return saveProposal(session, arguments, proposal->approve());
  if (!isToApply || !session.isJson()) printOrganize(session, *proposal, options.folder);
  if (isToApply) return apply(session, arguments, *proposal, renamed);
  if (!session.isJson() && !proposal->empty()) session.out().line("Nothing was moved: add --apply to move them.");
  return tellFailures(*proposal, {});
}

}  // namespace

constexpr CommandSpec organizeCommand{
    .name = "organize",
    .summary = "Sort a folder's files into category folders",
    .details =
        "Proposes where the files and folders of FOLDER would go, and with --apply asks and moves them as one run that "
        "'orvanectl restore' brings back. Folders move whole; with --subfolders the files inside them are proposed "
        "instead, except those of software projects and bundles, which stay together.\n\n"
        "Hidden items, symbolic links, downloads in progress, what lies in its place already and folders made by "
        "earlier "
        "runs stay where they are. A taken name gets a number. Files whose group was renamed go to the new name in "
        "later runs too.\n\n"
        "With --json it prints the groups with all their moves, and with --apply the summary.",
    .arguments = {.name = "FOLDER", .help = "The folder to sort.", .min = 0, .max = 1, .kind = ValueKind::folder},
    .options = organizeOptions,
    .run = runOrganize,
};

}  // namespace orvane::cli
