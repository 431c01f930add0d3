#include "cli/text/RuleText.h"

#include "cli/frame/FileArguments.h"
#include "cli/frame/ProposalRun.h"
#include "cli/frame/Session.h"
#include "core/base/text/ByteCount.h"
#include "core/base/text/Json.h"
#include "core/base/text/UnicodeText.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <array>
#include <string_view>
#include <vector>

namespace orvane::cli {
namespace {

// Of each rule: nobody reads thousands of lines, and whatever reads them takes the JSON.
constexpr std::size_t filesShown = 20;

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

// The rows of one rule.
struct RuleRows {
  std::vector<std::size_t> shown;
  RowSum sum;
};

// By group, of the rows that pass.
template <typename Passes>
std::vector<RuleRows> rowsByRule(const Proposal& proposal, Passes passes) {
  std::vector<RuleRows> result(proposal.groups().size());
  proposal.forEach([&](std::size_t index, const ProposedRow& row) {
    if (!passes(row)) return;
    auto& rows = result[row.group->source];
    rows.sum.add(row.item.fileSize());
    if (rows.shown.size() < filesShown) rows.shown.push_back(index);
  });
  return result;
}

void printRows(Session& session, const Proposal& proposal, const RuleRows& rows) {
  for (const auto index : rows.shown) {
    const auto& item = proposal.row(index).item;
    session.out().line(fmt::format("  {:>9}  {}", item.formattedSize(), shownPath(item.url())));
  }
  const auto more = rows.sum.count - static_cast<std::int64_t>(rows.shown.size());
  if (more > 0) session.out().line(fmt::format("             and {} more", formatCount(more)));
  session.out().line(fmt::format("  {}.", itemsText(rows.sum)));
}

std::string destinationText(const RowGroup& group) {
  return group.destinationFolder ? "move to " + shownPath(*group.destinationFolder) : std::string("move to Trash");
}

template <typename Kind>
std::int64_t countOf(const Proposal& proposal) {
  const auto* notice = firstNotice<Kind>(proposal.notices());
  return notice == nullptr ? 0 : notice->rows.count;
}

std::string notTakenText(const RowsNotTaken& notTaken) {
  std::vector<std::string> reasons;
  for (std::size_t i = 0; i < mismatchWords.size(); ++i) {
    if (notTaken.counts[i] == 0) continue;
    reasons.push_back(fmt::format("{} {}", formatCount(notTaken.counts[i]), mismatchWords[i].text));
  }
  return fmt::format("{}", fmt::join(reasons, ", "));
}

}  // namespace

std::string conditionsText(const RuleTrigger& trigger) {
  const auto conditions = trigger.conditions();
  if (conditions.empty()) return "every file";
  return escapedForDisplay(fmt::format("{}", fmt::join(conditions, ", ")));
}

std::string actionText(const RuleAction& action) {
  switch (action.type()) {
    case RuleAction::Type::moveToFolder:
      return fmt::format("move to {}", escapedForDisplay(action.path()));
    case RuleAction::Type::moveToTrash:
      return "move to Trash";
    case RuleAction::Type::reviewOnly:
      break;
  }
  return "only list";
}

void printMoves(Session& session, const Proposal& proposal) {
  if (session.isJson()) return;
  const auto rules = rowsByRule(proposal, [](const ProposedRow& row) { return row.lock == Lock::none; });
  for (std::size_t at = 0; at < rules.size(); ++at) {
    if (rules[at].sum.count == 0) continue;
    const auto& group = proposal.groups()[at];
    session.out().line(fmt::format("{}: {}", escapedForDisplay(group.name), destinationText(group)));
    printRows(session, proposal, rules[at]);
  }
}

void printPreview(Session& session, const CleanupRule& rule, const Proposal& proposal) {
  const auto say = [&](std::string_view text) { session.out().line(fmt::format("  {}", text)); };
  session.out().line(
      fmt::format("{}{}: {}", escapedForDisplay(rule.name), rule.isEnabled ? "" : " (off)", actionText(rule.action)));
  if (const auto* refused = firstNotice<RuleRefused>(proposal.notices())) {
    say(fmt::format("Left out of runs: {}.", escapedForDisplay(refused->reason)));
    return;
  }
  printRows(session, proposal, rowsByRule(proposal, [](const ProposedRow&) { return true; }).front());
  if (const auto& refusal = proposal.groups().front().refusal; !refusal.empty()) {
    say(fmt::format("None may go there: {}", escapedForDisplay(refusal)));
  }
  if (const auto* notTaken = firstNotice<RowsNotTaken>(proposal.notices())) {
    if (const auto reasons = notTakenText(*notTaken); !reasons.empty()) say(fmt::format("Not taken: {}.", reasons));
  }
  if (const auto count = countOf<RowsInPlace>(proposal); count > 0) {
    say(fmt::format("{} in place already.", itemCount(count)));
  }
  if (const auto count = countOf<RowsKeptByLabel>(proposal); count > 0) {
    say(fmt::format("{} would match but for the label 'manual', which no rule ever touches.", itemCount(count)));
  }
}

Json previewJson(const CleanupRule& rule, const Proposal& proposal) {
  Json json = Json::object();
  json["ruleId"] = jsonFromUuid(rule.id);
  json["name"] = rule.name;
  auto& matches = json["matches"] = Json::array();
  proposal.forEach([&](std::size_t, const ProposedRow& row) { matches.push_back(row.item.toJson()); });
  json["inPlace"] = countOf<RowsInPlace>(proposal);
  json["keptByLabel"] = countOf<RowsKeptByLabel>(proposal);
  const auto* notTaken = firstNotice<RowsNotTaken>(proposal.notices());
  auto& reasons = json["notTaken"] = Json::object();
  for (std::size_t i = 0; i < mismatchWords.size(); ++i) {
    reasons[mismatchWords[i].key] = notTaken == nullptr ? 0 : notTaken->counts[i];
  }
  const auto& refusal = proposal.groups().front().refusal;
  if (const auto* refused = firstNotice<RuleRefused>(proposal.notices())) {
    json["refused"] = refused->reason;
  } else if (!refusal.empty()) {
    json["refused"] = refusal;
  }
  return json;
}

ExitStatus printRulesReport(Session& session, const Proposal& proposal, const RunReport& report) {
  if (!session.isJson()) return printReport(session, proposal, report);
  const auto status = tellFailures(proposal, report);
  session.out().line(jsonText(report.summary().toJson()));
  return status;
}

}  // namespace orvane::cli
