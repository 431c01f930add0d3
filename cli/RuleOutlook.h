#pragma once

#include "cli/RuleScan.h"
#include "core/plans/PlanExecution.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace orvane::cli {

class Session;

[[nodiscard]] std::string actionText(const RuleAction& action);
// The rule with the files that it takes.
void printPreview(Session& session, const CleanupRule& rule, const RulePreview& preview,
                  std::span<const FileItem> items);

// What a run is going to do, as far as it is known before.
struct RuleOutlook {
  std::vector<bool> isTaken;  // by candidate
  std::int64_t trashed = 0;
  std::int64_t trashedBytes = 0;
  std::int64_t moved = 0;
  std::int64_t keptByLabel = 0;
};

// Of the rules that are on. Shows it to people too.
[[nodiscard]] RuleOutlook outlookFor(Session& session, std::span<const CleanupRule> rules,
                                     std::span<const FileItem> items, Date now);
[[nodiscard]] std::string questionFor(const RuleOutlook& outlook);
void printSummary(Session& session, const PlanExecutionSummary& summary, const RuleOutlook& outlook);

}  // namespace orvane::cli
