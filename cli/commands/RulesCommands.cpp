#include "cli/Arguments.h"
#include "cli/Consent.h"
#include "cli/FileArguments.h"
#include "cli/Folders.h"
#include "cli/ProgressLine.h"
#include "cli/RuleFile.h"
#include "cli/RuleOutlook.h"
#include "cli/RuleScan.h"
#include "cli/RunReport.h"
#include "cli/Session.h"
#include "cli/Table.h"
#include "cli/UsageError.h"
#include "cli/commands/Commands.h"
#include "core/base/ByteCount.h"
#include "core/base/FileDescriptor.h"
#include "core/base/Json.h"
#include "core/base/UnicodeText.h"
#include "core/rules/RuleEngine.h"
#include "core/safety/UndoJournal.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <system_error>
#include <vector>

namespace orvane::cli {
namespace {

constexpr std::size_t shownIdCharacters = 8;

// Why files are not taken, in the order of RuleMismatch.
struct MismatchWords {
  std::string_view key;
  std::string_view text;
};
constexpr std::array<MismatchWords, ruleMismatchCount> mismatchWords{{
    {"manualLabel", "labelled 'manual'"},
    {"folder", "in another folder"},
    {"category", "of another category"},
    {"extension", "of another file type"},
    {"age", "too young"},
    {"size", "too small"},
    {"name", "of another name"},
}};

constexpr std::array runOptions{
    OptionSpec{.name = "--yes", .valueName = "", .help = "Do not ask."},
};

using Rules = std::vector<CleanupRule>;

// Their identities are printed, so they have to be the same the next time.
Rules storedRules() {
  auto& engine = RuleEngine::shared();
  engine.keepIdentities();
  return engine.getRules();
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

std::string conditionsText(const RuleTrigger& trigger) {
  std::vector<std::string> parts;
  if (trigger.folderPath && !trigger.folderPath->empty()) parts.push_back("in " + *trigger.folderPath);
  if (trigger.categories && !trigger.categories->empty()) {
    std::vector<std::string_view> names;
    names.reserve(trigger.categories->size());
    for (const auto category : *trigger.categories) names.push_back(displayName(category));
    parts.push_back(fmt::format("{}", fmt::join(names, " or ")));
  }
  if (trigger.fileExtensions && !trigger.fileExtensions->empty()) {
    parts.push_back(fmt::format(".{}", fmt::join(*trigger.fileExtensions, " .")));
  }
  if (trigger.namePattern && !trigger.namePattern->empty()) parts.push_back("named *" + *trigger.namePattern + "*");
  if (trigger.minimumAgeDays) parts.push_back(fmt::format("{} days old", *trigger.minimumAgeDays));
  if (trigger.minimumSizeBytes) parts.push_back(formatByteCount(*trigger.minimumSizeBytes) + " or more");
  if (parts.empty()) return "every file";
  return escapedForDisplay(fmt::format("{}", fmt::join(parts, ", ")));
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

ExitStatus runList(Session& session, const Arguments& /*arguments*/) {
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

ExitStatus runAdd(Session& session, const Arguments& arguments) {
  auto rule = ruleIn(arguments.plain().front());
  const auto rules = storedRules();
  const auto known = std::ranges::find(rules, rule.id, &CleanupRule::id);
  rule.isBuiltIn = known != rules.end() && known->isBuiltIn;
  RuleEngine::shared().addOrUpdateRule(rule);
  return printRules(session);
}

ExitStatus toggle(Session& session, const Arguments& arguments, bool isEnabled) {
  for (const auto& rule : chosenRules(arguments)) RuleEngine::shared().toggleRule(rule.id, isEnabled);
  return printRules(session);
}

ExitStatus runEnable(Session& session, const Arguments& arguments) {
  return toggle(session, arguments, true);
}

ExitStatus runDisable(Session& session, const Arguments& arguments) {
  return toggle(session, arguments, false);
}

ExitStatus runDelete(Session& session, const Arguments& arguments) {
  const auto rules = chosenRules(arguments);
  const auto builtIn = std::ranges::find(rules, true, &CleanupRule::isBuiltIn);
  if (builtIn != rules.end()) {
    Session::report(fmt::format("'{}' is built in and cannot be deleted; 'orvanectl rules disable' switches it off",
                                escapedForDisplay(builtIn->name)));
    return ExitStatus::failed;
  }
  for (const auto& rule : rules) RuleEngine::shared().deleteRule(rule.id);
  return printRules(session);
}

ExitStatus runReset(Session& session, const Arguments& arguments) {
  requireConsentPossible(arguments);
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
  RuleEngine::shared().resetToDefaults();
  return printRules(session);
}

void printNotTaken(Session& session, const RulePreview& preview) {
  std::vector<std::string> reasons;
  for (std::size_t i = 0; i < mismatchWords.size(); ++i) {
    if (preview.notTaken[i] == 0) continue;
    reasons.push_back(fmt::format("{} {}", formatCount(preview.notTaken[i]), mismatchWords[i].text));
  }
  if (!reasons.empty()) session.out().line(fmt::format("  Not taken: {}.", fmt::join(reasons, ", ")));
  if (preview.keptByLabel > 0) {
    session.out().line(fmt::format("  {} would match but for the label 'manual', which no rule ever touches.",
                                   itemCount(preview.keptByLabel)));
  }
}

Json previewJson(const CleanupRule& rule, const RulePreview& preview, std::span<const FileItem> items) {
  Json json = Json::object();
  json["ruleId"] = jsonFromUuid(rule.id);
  json["name"] = rule.name;
  json["matches"] = Json::array();
  for (const auto index : preview.matches) json["matches"].push_back(items[index].toJson());
  json["keptByLabel"] = preview.keptByLabel;
  json["notTaken"] = Json::object();
  for (std::size_t i = 0; i < mismatchWords.size(); ++i) json["notTaken"][mismatchWords[i].key] = preview.notTaken[i];
  return json;
}

ExitStatus runPreview(Session& session, const Arguments& arguments) {
  const auto rules = chosenRules(arguments);
  const auto candidates = ruleCandidates(session, requiredGrantedFolders("one with 'orvanectl folders add'"));
  if (!candidates) return ExitStatus::interrupted;
  const auto now = ReferenceClock::now();
  Json json = Json::array();
  for (const auto& rule : rules) {
    const auto preview = previewRule(rule, candidates->items, now);
    if (session.isJson()) {
      json.push_back(previewJson(rule, preview, candidates->items));
    } else {
      printPreview(session, rule, preview, candidates->items);
      printNotTaken(session, preview);
    }
  }
  if (session.isJson()) session.out().line(jsonText(json));
  return ExitStatus::done;
}

ExitStatus runRun(Session& session, const Arguments& arguments) {
  requireConsentPossible(arguments);
  auto rules = chosenRules(arguments);
  // Naming a rule is asking for it.
  if (!arguments.plain().empty()) {
    for (auto& rule : rules) rule.isEnabled = true;
  }
  const auto folders = requiredGrantedFolders("one with 'orvanectl folders add'");
  const auto candidates = ruleCandidates(session, folders);
  if (!candidates) return ExitStatus::interrupted;
  // No file may grow old enough for a rule while the question stands.
  const auto now = ReferenceClock::now();
  const auto outlook = outlookFor(session, rules, candidates->items, now);
  const PlanExecutionSummary nothing{.batchId = Uuid::random()};
  if (outlook.trashed + outlook.moved == 0) {
    printSummary(session, nothing, outlook);
    return ExitStatus::done;
  }
  switch (askConsent(session, arguments, questionFor(outlook))) {
    case Answer::interrupted:
      return ExitStatus::interrupted;
    case Answer::no:
      printSummary(session, nothing, {});
      return ExitStatus::done;
    case Answer::yes:
      break;
  }
  reportJournalNotices();
  PlanExecution execution;
  {
    const auto stop = session.stop();
    ProgressLine line(session);
    execution =
        RuleEngine::shared().carryOut(rules, candidates->items, Boundary(folders), movingProgress(line), stop, now);
  }
  reportJournalNotices();
  const auto status = reportOutcomes(execution.outcomes);
  printSummary(session, execution.summary, outlook);
  return status;
}

constexpr ArgumentSpec oneRule{
    .name = "ID", .help = "A rule: its exact name, or the beginning of its ID.", .least = 1, .most = 1};
constexpr ArgumentSpec anyRules{
    .name = "ID", .help = "A rule: its exact name, or the beginning of its ID.", .least = 0, .most = anyNumber};

}  // namespace

constexpr CommandSpec rulesListCommand{
    .name = "rules list",
    .summary = "List the cleanup rules",
    .details = "With --json it prints them whole, in the form that 'rules add' reads.",
    .arguments = {},
    .options = {},
    .run = runList,
};

constexpr CommandSpec rulesAddCommand{
    .name = "rules add",
    .summary = "Add a rule from a file",
    .details =
        "The file holds one JSON object: \"name\"; \"trigger\" with any of \"folderPath\", \"fileExtensions\", "
        "\"categories\", \"minimumAgeDays\", \"minimumSizeBytes\" and \"namePattern\"; and \"action\" with \"type\" "
        "moveToTrash, reviewOnly, or moveToFolder and its \"path\". A rule with the \"id\" of another one takes its "
        "place.",
    .arguments = {.name = "FILE",
                  .help = "The file, or - for the standard input.",
                  .least = 1,
                  .most = 1,
                  .kind = ValueKind::path},
    .options = {},
    .run = runAdd,
};

constexpr CommandSpec rulesEnableCommand{
    .name = "rules enable",
    .summary = "Switch a rule on",
    .details = "A rule that is on takes part in 'rules run' and in scheduled cleanups.",
    .arguments = oneRule,
    .options = {},
    .run = runEnable,
};

constexpr CommandSpec rulesDisableCommand{
    .name = "rules disable",
    .summary = "Switch a rule off",
    .details = "It is kept, and runs only when it is named.",
    .arguments = oneRule,
    .options = {},
    .run = runDisable,
};

constexpr CommandSpec rulesDeleteCommand{
    .name = "rules delete",
    .summary = "Delete a rule of your own",
    .details = "Built-in rules cannot be deleted, only switched off.",
    .arguments = oneRule,
    .options = {},
    .run = runDelete,
};

constexpr CommandSpec rulesResetCommand{
    .name = "rules reset",
    .summary = "Bring the built-in rules back as they came",
    .details = "Rules of your own are deleted. Asks before.",
    .arguments = {},
    .options = runOptions,
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
    .run = runPreview,
};

constexpr CommandSpec rulesRunCommand{
    .name = "rules run",
    .summary = "Carry out rules",
    .details =
        "Scans the granted folders, asks, and carries out the rules that are switched on, or those named, as one run "
        "that "
        "'orvanectl restore' brings back. Destinations have to lie in granted folders too.",
    .arguments = anyRules,
    .options = runOptions,
    .run = runRun,
};

}  // namespace orvane::cli
