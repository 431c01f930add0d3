#include "cli/commands/Commands.h"
#include "cli/frame/Arguments.h"
#include "cli/frame/Consent.h"
#include "cli/frame/FileArguments.h"
#include "cli/frame/Folders.h"
#include "cli/frame/ProgressLine.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "cli/frame/UsageError.h"
#include "cli/text/RuleText.h"
#include "cli/text/Table.h"
#include "core/base/files/FileDescriptor.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"
#include "core/rules/records/RuleDocument.h"
#include "core/tasks/RulesTask.h"
#include "core/tasks/StoredRules.h"
#include "core/tasks/TaskServices.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace orvane::cli {
namespace {

constexpr std::size_t shownIdCharacters = 8;

constexpr OptionSpec yesOption{.name = "--yes", .valueName = "", .help = "Do not ask."};
constexpr std::array askingOptions{yesOption};
constexpr std::array rulesRunOptions{saveOption, yesOption};

using Rules = std::vector<CleanupRule>;

// Their identities are printed, so they have to be the same the next time.
Rules storedRules() {
  auto lasting = lastingRules(TaskServices::shared());
  if (lasting.setAsideUnder) {
    Session::report(fmt::format(
        "the stored rules could not be read, so the built-in ones count again; what was stored is kept as '{}' in "
        "preferences.json",
        *lasting.setAsideUnder));
  }
  return std::move(lasting.rules);
}

bool isCalled(const CleanupRule& rule, const std::string& reference) {
  return rule.name == reference || lowercased(rule.id.toString()).starts_with(lowercased(reference));
}

// The rule that is meant: by its exact name, or by the beginning of its identity. Throws UsageError.
const CleanupRule& ruleFrom(const Rules& rules, const std::string& reference) {
  const auto means = [&](const CleanupRule& rule) { return !reference.empty() && isCalled(rule, reference); };
  const auto found = std::ranges::find_if(rules, means);
  if (found == rules.end()) {
    throw UsageError(
        fmt::format("there is no rule '{}'; 'orvanectl rules list' shows them", escapedForDisplay(reference)));
  }
  if (std::ranges::find_if(found + 1, rules.end(), means) != rules.end()) {
    throw UsageError(fmt::format("'{}' means several rules: give more of the ID", escapedForDisplay(reference)));
  }
  return *found;
}

// The rules named; all of them where none is.
Rules chosenRules(const Arguments& arguments) {
  auto rules = storedRules();
  if (arguments.plain().empty()) return rules;
  Rules result;
  for (const auto& reference : arguments.plain()) result.push_back(ruleFrom(rules, reference));
  return result;
}

ExitStatus printRules(Session& session) {
  const auto rules = storedRules();
  if (session.isJson()) {
    Json json = Json::array();
    for (const auto& rule : rules) json.push_back(rule.toJson());
    session.out().line(jsonText(json));
    return ExitStatus::done;
  }
  Table table({{"ID"}, {"On"}, {"Name"}, {"Files"}, {"Action"}});
  for (const auto& rule : rules) {
    const auto colour = rule.isEnabled ? Colour::green : Colour::plain;
    table.addRow({{rule.id.toString().substr(0, shownIdCharacters)},
                  {rule.isEnabled ? "on" : "off", colour},
                  {escapedForDisplay(rule.name)},
                  {conditionsText(rule.trigger)},
                  {actionText(rule.action)}});
  }
  if (!rules.empty()) table.print(session);
  if (rules.empty()) session.out().line("There is no rule: 'orvanectl rules reset' brings the built-in ones back.");
  return ExitStatus::done;
}

ExitStatus runRulesList(Session& session, const Arguments& /*arguments*/) {
  return printRules(session);
}

CleanupRule ruleIn(const std::string& argument) {
  try {
    return ruleFromText(argument == "-" ? readAll(STDIN_FILENO, JsonLimits().bytes)
                                        : readFile(placeFromArgument(argument).path(), JsonLimits().bytes));
  } catch (const std::system_error& error) {
    throw std::runtime_error(fmt::format("{}: {}", argument, error.code().message()));
  } catch (const JsonError& error) {
    throw std::runtime_error(fmt::format("{}: {}", argument, error.what()));
  }
}

constexpr OptionSpec suggestedOption{
    .name = "--suggested",
    .valueName = "NAME",
    .help = "Add the rule of this name that 'orvanectl rules suggest' shows, instead of one from a file."};
constexpr std::array addOptions{suggestedOption};

ExitStatus runSuggest(Session& session, const Arguments& /*arguments*/) {
  const auto suggestions = suggestedRules(TaskServices::shared(), storedRules());
  if (session.isJson()) {
    Json json = Json::array();
    for (const auto& [name, rule, isAdded] : suggestions) {
      json.push_back(Json{{"name", name}, {"isAdded", isAdded}, {"rule", rule.toJson()}});
    }
    session.out().line(jsonText(json));
    return ExitStatus::done;
  }
  Table table({{"Suggestion"}, {"Added"}, {"Name"}, {"Files"}, {"Action"}});
  for (const auto& [name, rule, isAdded] : suggestions) {
    table.addRow({{std::string(name)},
                  {isAdded ? "yes" : "no"},
                  {rule.name},
                  {conditionsText(rule.trigger)},
                  {actionText(rule.action)}});
  }
  if (!suggestions.empty()) table.print(session);
  session.out().line(suggestions.empty() ? "There is no suggestion for this system."
                                         : "To make one your own: orvanectl rules add --suggested SUGGESTION");
  return ExitStatus::done;
}

CleanupRule suggestedRule(const std::string& name) {
  auto suggestions = suggestedRules(TaskServices::shared(), storedRules());
  const auto found = std::ranges::find(suggestions, name, &SuggestedRule::name);
  if (found == suggestions.end()) {
    throw UsageError(
        fmt::format("there is no suggestion '{}'; 'orvanectl rules suggest' shows them", escapedForDisplay(name)));
  }
  if (found->isAdded) throw UsageError(fmt::format("one of the rules does the same as '{}' already", name));
  return std::move(found->rule);
}

ExitStatus runRulesAdd(Session& session, const Arguments& arguments) {
  const auto suggested = arguments.value("--suggested");
  if (suggested.has_value() != arguments.plain().empty()) throw UsageError("name either a FILE or --suggested NAME");
  auto rule = suggested ? suggestedRule(*suggested) : ruleIn(arguments.plain().front());
  const auto rules = storedRules();
  const auto known = std::ranges::find(rules, rule.id, &CleanupRule::id);
  rule.isBuiltIn = known != rules.end() && known->isBuiltIn;
  storeRule(TaskServices::shared(), rule);
  return printRules(session);
}

ExitStatus toggle(Session& session, const Arguments& arguments, bool isEnabled) {
  for (const auto& rule : chosenRules(arguments)) switchRule(TaskServices::shared(), rule.id, isEnabled);
  return printRules(session);
}

ExitStatus runRulesEnable(Session& session, const Arguments& arguments) {
  return toggle(session, arguments, true);
}

ExitStatus runRulesDisable(Session& session, const Arguments& arguments) {
  return toggle(session, arguments, false);
}

ExitStatus runRulesDelete(Session& session, const Arguments& arguments) {
  const auto rules = chosenRules(arguments);
  const auto builtIn = std::ranges::find(rules, true, &CleanupRule::isBuiltIn);
  if (builtIn != rules.end()) {
    Session::report(fmt::format("'{}' is built in and cannot be deleted; 'orvanectl rules disable' switches it off",
                                escapedForDisplay(builtIn->name)));
    return ExitStatus::failed;
  }
  requireConsentPossible(arguments, "this deletes a rule of your own");
  const auto question = fmt::format("Delete the rule '{}'?", escapedForDisplay(rules.front().name));
  switch (askConsent(session, arguments, question)) {
    case Answer::interrupted:
      return ExitStatus::interrupted;
    case Answer::no:
      return ExitStatus::done;
    case Answer::yes:
      break;
  }
  for (const auto& rule : rules) deleteRule(TaskServices::shared(), rule.id);
  return printRules(session);
}

ExitStatus runReset(Session& session, const Arguments& arguments) {
  requireConsentPossible(arguments, "this deletes rules of your own");
  const auto rules = storedRules();
  const auto own = std::ranges::count(rules, false, &CleanupRule::isBuiltIn);
  const auto question =
      fmt::format("Bring the built-in rules back as they came{}?",
                  own == 0 ? "" : fmt::format(" and delete {} of your own", own == 1 ? "the one" : formatCount(own)));
  switch (askConsent(session, arguments, question)) {
    case Answer::interrupted:
      return ExitStatus::interrupted;
    case Answer::no:
      return ExitStatus::done;
    case Answer::yes:
      break;
  }
  resetRules(TaskServices::shared());
  return printRules(session);
}

RulesOptions optionsFor(Rules rules) {
  return {.rules = std::move(rules), .boundary = grantedBoundary("one with 'orvanectl folders add'")};
}

ExitStatus runRulesPreview(Session& session, const Arguments& arguments) {
  const auto rules = chosenRules(arguments);
  const auto& services = TaskServices::shared();
  auto options = optionsFor({});
  std::optional<ItemList> candidates;
  {
    ProgressLine line(session);
    candidates = ruleCandidates(services, options.boundary, scanMonitor(session, line));
  }
  if (!candidates) return interruptedBeforeChange();
  Json json = Json::array();
  for (const auto& rule : rules) {
    options.rules = {rule};
    options.rules.front().isEnabled = true;
    const auto proposal = proposeRules(services, options, *candidates);
    if (session.isJson()) {
      json.push_back(previewJson(rule, proposal));
    } else {
      printPreview(session, rule, proposal);
    }
  }
  if (session.isJson()) session.out().line(jsonText(json));
  return ExitStatus::done;
}

// Naming a rule is asking for it.
Rules rulesToRun(const Arguments& arguments) {
  auto rules = chosenRules(arguments);
  if (arguments.plain().empty()) {
    std::erase_if(rules, [](const CleanupRule& rule) { return !rule.isEnabled; });
  } else {
    for (auto& rule : rules) rule.isEnabled = true;
  }
  return rules;
}

ExitStatus runRulesRun(Session& session, const Arguments& arguments) {
  const bool isToSave = arguments.has("--save");
  if (!isToSave) requireConsentPossible(arguments);
  const auto options = optionsFor(rulesToRun(arguments));
  std::optional<Proposal> proposal;
  {
    ProgressLine line(session);
    proposal = proposeRules(TaskServices::shared(), options, scanMonitor(session, line));
  }
  if (!proposal) return interruptedBeforeChange();
  tellNotices(proposal->notices());
  const auto approval = proposal->approve();
  if (isToSave) {
    const auto status = saveProposal(session, arguments, approval);
    return status == ExitStatus::done ? tellFailures(*proposal, {}) : status;
  }
  printMoves(session, *proposal);
  RunReport report;
  if (!approval.empty()) {
    switch (askToMove(session, arguments, approval)) {
      case Answer::interrupted:
        return ExitStatus::interrupted;
      case Answer::no:
        break;
      case Answer::yes:
        report = moveApproved(session, approval);
        break;
    }
  }
  return printRulesReport(session, *proposal, report);
}

constexpr ArgumentSpec oneRule{.name = "ID",
                               .help = "A rule: its exact name, or the beginning of its ID.",
                               .min = 1,
                               .max = 1,
                               .kind = ValueKind::rule};
constexpr ArgumentSpec anyRules{.name = "ID",
                                .help = "A rule: its exact name, or the beginning of its ID.",
                                .min = 0,
                                .max = anyNumber,
                                .kind = ValueKind::rule};

}  // namespace

constexpr CommandSpec rulesListCommand{
    .name = "rules list",
    .summary = "List the cleanup rules",
    .details = "With --json it prints them whole, in the form that 'rules add' reads.",
    .arguments = {},
    .options = {},
    .run = runRulesList,
};

constexpr CommandSpec rulesAddCommand{
    .name = "rules add",
    .summary = "Add a rule from a file",
    .details =
        "The file holds one JSON object: \"name\"; \"trigger\" with any of \"folderPath\", \"fileExtensions\", "
        "\"categories\", \"minimumAgeDays\", \"minimumSizeBytes\" and \"namePattern\"; and \"action\" with \"type\" "
        "moveToTrash, reviewOnly, or moveToFolder and its \"path\". A rule with the \"id\" of another one takes its "
        "place. One that narrows nothing, and so would take every file, is refused.",
    .arguments =
        {.name = "FILE", .help = "The file, or - for the standard input.", .min = 0, .max = 1, .kind = ValueKind::path},
    .options = addOptions,
    .run = runRulesAdd,
};

constexpr CommandSpec rulesSuggestCommand{
    .name = "rules suggest",
    .summary = "List rules that suit this system",
    .details =
        "They do nothing until they are added with 'orvanectl rules add --suggested NAME', and are rules of your own "
        "then.",
    .arguments = {},
    .options = {},
    .run = runSuggest,
};

constexpr CommandSpec rulesEnableCommand{
    .name = "rules enable",
    .summary = "Switch a rule on",
    .details = "A rule that is on takes part in 'rules run' and in scheduled cleanups.",
    .arguments = oneRule,
    .options = {},
    .run = runRulesEnable,
};

constexpr CommandSpec rulesDisableCommand{
    .name = "rules disable",
    .summary = "Switch a rule off",
    .details = "It is kept, and runs only when it is named.",
    .arguments = oneRule,
    .options = {},
    .run = runRulesDisable,
};

constexpr CommandSpec rulesDeleteCommand{
    .name = "rules delete",
    .summary = "Delete a rule of your own",
    .details = "Built-in rules cannot be deleted, only switched off. Asks before.",
    .arguments = oneRule,
    .options = askingOptions,
    .run = runRulesDelete,
};

constexpr CommandSpec rulesResetCommand{
    .name = "rules reset",
    .summary = "Bring the built-in rules back as they came",
    .details = "Rules of your own are deleted. Asks before.",
    .arguments = {},
    .options = askingOptions,
    .run = runReset,
};

constexpr CommandSpec rulesPreviewCommand{
    .name = "rules preview",
    .summary = "Show which files rules would take, and change nothing",
    .details =
        "Scans the granted folders and holds every rule, or those named, against what is found, whether they are "
        "switched on or not. Files labelled 'manual', and with them everything that no category claims, match no rule "
        "whatever its trigger; how many would is said.",
    .arguments = anyRules,
    .options = {},
    .run = runRulesPreview,
};

constexpr CommandSpec rulesRunCommand{
    .name = "rules run",
    .summary = "Carry out rules",
    .details =
        "Scans the granted folders, asks, and carries out the rules that are switched on, or those named, as one run "
        "that 'orvanectl restore' brings back. Each file goes by the first rule that takes it. Destinations have to "
        "lie "
        "in granted folders too; files that are there already stay.",
    .arguments = anyRules,
    .options = rulesRunOptions,
    .run = runRulesRun,
};

}  // namespace orvane::cli
