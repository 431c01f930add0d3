#include "cli/Arguments.h"
#include "cli/Consent.h"
#include "cli/FileArguments.h"
#include "cli/Folders.h"
#include "cli/OrganizeText.h"
#include "cli/ProgressLine.h"
#include "cli/RunReport.h"
#include "cli/Session.h"
#include "cli/UsageError.h"
#include "cli/commands/Commands.h"
#include "core/base/Json.h"
#include "core/base/UnicodeText.h"
#include "core/organizer/FolderOrganizerEngine.h"
#include "core/safety/UndoJournal.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

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
constexpr std::array<std::string_view, 3> strategyNames{strategies[0].name, strategies[1].name, strategies[2].name};

constexpr std::array options{
    OptionSpec{.name = "--strategy",
               .valueName = "HOW",
               .help = "Group by category (the default), date or type.",
               .kind = ValueKind::choice,
               .choices = strategyNames},
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
    OptionSpec{.name = "--yes", .valueName = "", .help = "Do not ask."},
};

using Groups = FolderOrganizerEngine::Groups;

struct Proposal {
  FileUrl folder;
  FileUrl destination;
  Groups groups;
  std::vector<std::size_t> renamed;  // indexes of groups
};

OrganizationStrategy strategyFrom(const Arguments& arguments) {
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

void renameGroup(Proposal& proposal, const Rename& wish) {
  auto& groups = proposal.groups;
  const auto found =
      std::find_if(groups.begin(), groups.end(), [&](const auto& group) { return group.name == wish.from; });
  if (found == groups.end()) {
    throw UsageError(fmt::format("--rename: there is no group '{}'", escapedForDisplay(wish.from)));
  }
  const auto index = static_cast<std::size_t>(found - groups.begin());
  groups = FolderOrganizerEngine::renamingGroup(index, wish.to, std::move(groups), proposal.destination);
  if (groups[index].name != trimmed(wish.to)) {
    throw UsageError(fmt::format("--rename: '{}' is no name for a folder", escapedForDisplay(wish.to)));
  }
  proposal.renamed.push_back(index);
}

// Absent when it was interrupted.
std::optional<Proposal> proposalFrom(Session& session, const Arguments& arguments) {
  Proposal proposal;
  proposal.folder = placeFromArgument(arguments.plain().front());
  const auto destination = arguments.value("--destination");
  proposal.destination =
      destination ? placeFromArgument(*destination) : FolderOrganizerEngine::defaultDestination(proposal.folder);
  std::vector<Rename> wishes;
  for (const auto& text : arguments.values("--rename")) wishes.push_back(renameFrom(text));
  const auto subfolders = arguments.has("--subfolders") ? Subfolders::include : Subfolders::keepWhole;
  const auto stop = session.stop();
  proposal.groups = FolderOrganizerEngine::shared().analyzeFolder(proposal.folder, proposal.destination, subfolders,
                                                                  strategyFrom(arguments), stop);
  if (stop.stop_requested()) return std::nullopt;
  for (const auto& wish : wishes) renameGroup(proposal, wish);
  return proposal;
}

void printSummary(Session& session, const PlanExecutionSummary& summary) {
  if (session.isJson()) {
    session.out().line(jsonText(summary.toJson()));
  } else if (summary.itemsProcessed == 0) {
    session.out().line("Nothing was moved.");
  } else {
    session.out().line(fmt::format("Moved {} into other folders.", itemCount(summary.itemsProcessed)));
    session.out().line(fmt::format("To bring everything back: orvanectl restore {}", summary.batchId.toString()));
  }
}

ExitStatus apply(Session& session, const Arguments& arguments, const Proposal& proposal) {
  const PlanExecutionSummary nothing{.batchId = Uuid::random()};
  const auto count = selectedCount(proposal.groups);
  if (count == 0) {
    printSummary(session, nothing);
    return ExitStatus::done;
  }
  switch (askConsent(session, arguments, fmt::format("Move {} into other folders?", itemCount(count)))) {
    case Answer::interrupted:
      return ExitStatus::interrupted;
    case Answer::no:
      printSummary(session, nothing);
      return ExitStatus::done;
    case Answer::yes:
      break;
  }
  auto& engine = FolderOrganizerEngine::shared();
  for (const auto index : proposal.renamed) engine.rememberCategory(proposal.groups[index]);
  reportJournalNotices();
  PlanExecution execution;
  {
    const auto stop = session.stop();
    ProgressLine line(session);
    execution = engine.carryOut(proposal.groups, UndoJournal::shared(),
                                Boundary({proposal.folder, proposal.destination}), movingProgress(line), stop);
  }
  reportJournalNotices();
  const auto status = reportOutcomes(execution.outcomes);
  printSummary(session, execution.summary);
  return status;
}

void printProposal(Session& session, const Proposal& proposal) {
  if (session.isJson()) {
    Json json = Json::array();
    for (const auto& group : proposal.groups) json.push_back(group.toJson());
    session.out().line(jsonText(json));
  } else if (proposal.groups.empty()) {
    session.out().line(fmt::format("There is nothing to organize in {}.", shownPath(proposal.folder)));
  } else {
    printGroups(session, proposal.groups);
  }
}

ExitStatus run(Session& session, const Arguments& arguments) {
  const bool isToApply = arguments.has("--apply");
  if (isToApply) requireConsentPossible(arguments);
  const auto folder = placeFromArgument(arguments.plain().front());
  if (const auto refusal = refusalOf(folder)) {
    Session::report(*refusal);
    return ExitStatus::failed;
  }
  const auto proposal = proposalFrom(session, arguments);
  if (!proposal) {
    Session::report("interrupted; nothing was changed");
    return ExitStatus::interrupted;
  }
  if (!isToApply || !session.isJson()) {
    printProposal(session, *proposal);
  }
  if (isToApply) return apply(session, arguments, *proposal);
  if (!session.isJson() && !proposal->groups.empty()) {
    session.out().line("Nothing was moved: add --apply to move them.");
  }
  return ExitStatus::done;
}

}  // namespace

constexpr CommandSpec organizeCommand{
    .name = "organize",
    .summary = "Sort a folder's files into category folders",
    .details =
        "Proposes where the files and folders of FOLDER would go, and with --apply asks and moves them as one run that "
        "'orvanectl restore' brings back. Folders move whole; with --subfolders the files inside them are proposed "
        "instead, except those of software projects and bundles, which stay together.\n\n"
        "Hidden items, symbolic links, what lies in its place already and folders made by earlier runs stay where they "
        "are. A taken name gets a number. Files whose group was renamed go to the new name in later runs too.\n\n"
        "With --json it prints the groups with all their moves, and with --apply the summary.",
    .arguments = {.name = "FOLDER", .help = "The folder to sort.", .least = 1, .most = 1, .kind = ValueKind::folder},
    .options = options,
    .run = run,
};

}  // namespace orvane::cli
