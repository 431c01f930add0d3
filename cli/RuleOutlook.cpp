#include "cli/RuleOutlook.h"

#include "cli/FileArguments.h"
#include "cli/RunReport.h"
#include "cli/Session.h"
#include "core/base/ByteCount.h"
#include "core/base/Json.h"
#include "core/base/UnicodeText.h"

#include <fmt/format.h>

#include <algorithm>

namespace orvane::cli {
namespace {

// Of each rule: nobody reads thousands of lines, and whatever reads them takes the JSON.
constexpr std::size_t matchesShown = 20;

}  // namespace

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

void printPreview(Session& session, const CleanupRule& rule, const RulePreview& preview,
                  std::span<const FileItem> items) {
  session.out().line(
      fmt::format("{}{}: {}", escapedForDisplay(rule.name), rule.isEnabled ? "" : " (off)", actionText(rule.action)));
  const auto shown = std::min(matchesShown, preview.matches.size());
  for (std::size_t i = 0; i < shown; ++i) {
    const auto& item = items[preview.matches[i]];
    session.out().line(fmt::format("  {:>9}  {}", item.formattedSize(), shownPath(item.url())));
  }
  if (shown < preview.matches.size()) {
    session.out().line(fmt::format("             and {} more",
                                   formatCount(static_cast<std::int64_t>(preview.matches.size() - shown))));
  }
  session.out().line(fmt::format("  {} ({}).", itemCount(static_cast<std::int64_t>(preview.matches.size())),
                                 formatByteCount(preview.bytes)));
}

RuleOutlook outlookFor(Session& session, std::span<const CleanupRule> rules, std::span<const FileItem> items,
                       Date now) {
  RuleOutlook outlook{.isTaken = std::vector<bool>(items.size(), false)};
  for (const auto& rule : rules) {
    if (!rule.isEnabled || rule.action.type() == RuleAction::Type::reviewOnly) continue;
    const auto preview = previewRule(rule, items, now);
    outlook.keptByLabel += preview.keptByLabel;
    if (!session.isJson() && !preview.matches.empty()) printPreview(session, rule, preview, items);
    for (const auto index : preview.matches) {
      if (outlook.isTaken[index]) continue;
      outlook.isTaken[index] = true;
      if (rule.action.type() == RuleAction::Type::moveToFolder) {
        ++outlook.moved;
      } else {
        ++outlook.trashed;
        outlook.trashedBytes += items[index].fileSize();
      }
    }
  }
  return outlook;
}

std::string questionFor(const RuleOutlook& outlook) {
  if (outlook.moved == 0) return trashQuestion(outlook.trashed, outlook.trashedBytes);
  if (outlook.trashed == 0) return fmt::format("Move {} into other folders?", itemCount(outlook.moved));
  return fmt::format("Move {} ({}) to the Trash and {} into other folders?", itemCount(outlook.trashed),
                     formatByteCount(outlook.trashedBytes), itemCount(outlook.moved));
}

void printSummary(Session& session, const PlanExecutionSummary& summary, const RuleOutlook& outlook) {
  if (session.isJson()) {
    session.out().line(jsonText(summary.toJson()));
    return;
  }
  if (summary.itemsProcessed == 0) {
    session.out().line("Nothing was moved.");
  } else {
    session.out().line(fmt::format("Moved {}; what is in the Trash ({}) is free once the Trash is emptied.",
                                   itemCount(summary.itemsProcessed), formatByteCount(summary.bytesReclaimed)));
    session.out().line(fmt::format("To bring everything back: orvanectl restore {}", summary.batchId.toString()));
  }
  if (outlook.keptByLabel > 0) {
    session.out().line(fmt::format("{} would have matched but for the label 'manual', which no rule ever touches.",
                                   itemCount(outlook.keptByLabel)));
  }
}

}  // namespace orvane::cli
